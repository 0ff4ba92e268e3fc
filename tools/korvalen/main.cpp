// korvalen: inspect and edit the suite's settings and state files.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

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
  korvalen::tool::add_errors_commands(app);
  korvalen::tool::add_doctor_commands(app);
  // One line per failure; 0 done (and --help), 1 the work failed, 2 the
  // command line was wrong.
  app.failure_message([](const CLI::App*, const CLI::Error& e) {
    return std::string("korvalen: ") + e.what() + "\n";
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::RuntimeError& e) {
    return e.get_exit_code();
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : 2;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "korvalen: %s\n", e.what());
    return 1;
  }
  return 0;
}
