// The tool's commands. Each command family lives in its own source file and
// registers its subcommands on the application here.
#pragma once

#include <CLI/CLI.hpp>

namespace korvalen::tool {

void add_cfg_commands(CLI::App& app);
void add_state_commands(CLI::App& app);
void add_params_commands(CLI::App& app);
void add_machine_commands(CLI::App& app);
void add_send_commands(CLI::App& app);
void add_lang_commands(CLI::App& app);
void add_settings_commands(CLI::App& app);
void add_migrate_commands(CLI::App& app);
void add_catalog_commands(CLI::App& app);
void add_figure_commands(CLI::App& app);
void add_columns_commands(CLI::App& app);
void add_text_commands(CLI::App& app);
void add_errors_commands(CLI::App& app);
void add_doctor_commands(CLI::App& app);

}  // namespace korvalen::tool
