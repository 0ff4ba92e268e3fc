// korvalen: inspect and edit the suite's settings and state files.
#include <CLI/CLI.hpp>

#include "commands.h"
#include "version.h"

int main(int argc, char** argv) {
  CLI::App app{"korvalen: settings, state and diagnostics of a sheet-metal CAD/CAM installation"};
  app.require_subcommand(1);
  app.set_version_flag("--version", "korvalen " KORVALEN_TOOL_VERSION);
  korvalen::tool::add_cfg_commands(app);
  korvalen::tool::add_state_commands(app);
  korvalen::tool::add_params_commands(app);
  korvalen::tool::add_machine_commands(app);
  korvalen::tool::add_send_commands(app);
  korvalen::tool::add_lang_commands(app);
  korvalen::tool::add_settings_commands(app);
  korvalen::tool::add_migrate_commands(app);
  korvalen::tool::add_catalog_commands(app);
  korvalen::tool::add_figure_commands(app);
  korvalen::tool::add_columns_commands(app);
  korvalen::tool::add_text_commands(app);
  korvalen::tool::add_doctor_commands(app);
  CLI11_PARSE(app, argc, argv);
  return 0;
}
