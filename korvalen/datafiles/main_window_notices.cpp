#include "korvalen/datafiles/main_window_notices.h"

#include "korvalen/datafiles/work_order_files.h"
#include "korvalen/platform/internal/program_windows.h"

namespace {

namespace platform = korvalen::platform;

constexpr const wchar_t* kMainWindowClass = L"C_ActualizaMIRSEL";
constexpr unsigned kPartsChanged = 1024;
constexpr unsigned kElementsChanged = 1025;
constexpr unsigned kPostsChanged = 1026;

void Notify(unsigned message) {
  try {
    platform::FoundWindow window;
    if (!platform::find_window(kMainWindowClass, window)) {
      platform::post_message(window, message, 0, 0);
    }
  } catch (...) {
  }
}

}  // namespace

void ActualizarEnPrincipalTab() {
  CrearFicheroCambioPiezas();
  Notify(kPartsChanged);
}

void ActualizarEltosPrincipalFab() { Notify(kElementsChanged); }
void ActualizarEnPrincipalChp() { Notify(kElementsChanged); }
void ActualizarEnPrincipalPst() { Notify(kPostsChanged); }
void ActualizarEltosPrincipalDef() { Notify(kPartsChanged); }
