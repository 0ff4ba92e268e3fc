// A stand-in for a program of the suite, started by the machine tests: it
// shows (or registers) a main window of a given class and behaves as told.
//
//   korvalen_window_program --class C [--invisible] [--minimized]
//       [--ignore-close] [--hang] [--exit N] [--linger MS] [--delay MS]
//       [--life MS] [--log FILE] [--ready FILE] [--abort] [--publish-help]
//       [--no-window [--stop FILE]]
//   korvalen_window_program --args FILE WORD...   writes each WORD as a line, exits 0
//   korvalen_window_program                       exits 42
//
// The log gets one line per request that reaches the window (minimize,
// restore, activate, front, close, notice N) and "end" when the program ends;
// --ready names a file made once the window is there. A program ends when its
// window closes (after --linger), or when --life has passed (30 s unless
// told), with the --exit code; one with no window also when FILE appears.
// --ignore-close ignores the first close request. --hang (Linux only) never answers a request.
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "korvalen/korvalen.h"

#if defined(_WIN32)
#include <shellapi.h>
#include <windows.h>
#endif

namespace {

struct Options {
  std::wstring class_name;
  bool invisible = false;
  bool minimized = false;
  bool ignore_close = false;
  bool hang = false;
  bool abort_at_start = false;
  bool publish_help = false;
  bool window = true;
  int exit_code = 0;
  int linger_ms = 0;
  int delay_ms = 0;
  int life_ms = 30000;
  std::string log;
  std::string ready;
  std::string stop;
};

Options g_options;
std::mutex g_mutex;
bool g_minimized = false;
bool g_logging = false;

void Log(const std::string& line) {
  std::lock_guard<std::mutex> hold(g_mutex);
  if (!g_logging || g_options.log.empty()) return;
  if (FILE* f = std::fopen(g_options.log.c_str(), "ab")) {
    std::fprintf(f, "%s\n", line.c_str());
    std::fclose(f);
  }
}

void Touch(const std::string& name) {
  if (FILE* f = std::fopen(name.c_str(), "wb")) std::fclose(f);
}

void Pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

std::string Narrow(const std::wstring& text) {
  std::string out;
  for (wchar_t c : text) {
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xE0 | ((c >> 12) & 0x0F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

int WriteArguments(const std::vector<std::wstring>& args) {
  FILE* f = std::fopen(Narrow(args[2]).c_str(), "wb");
  if (f == nullptr) return 1;
  for (std::size_t i = 3; i < args.size(); ++i) std::fprintf(f, "%s\n", Narrow(args[i]).c_str());
  std::fclose(f);
  return 0;
}

bool Parse(const std::vector<std::wstring>& args) {
  const struct {
    const wchar_t* name;
    bool* flag;
  } flags[] = {
      {L"--invisible", &g_options.invisible},       {L"--minimized", &g_options.minimized},
      {L"--ignore-close", &g_options.ignore_close}, {L"--hang", &g_options.hang},
      {L"--abort", &g_options.abort_at_start},      {L"--publish-help", &g_options.publish_help}};
  const struct {
    const wchar_t* name;
    int* number;
  } numbers[] = {{L"--exit", &g_options.exit_code},
                 {L"--linger", &g_options.linger_ms},
                 {L"--delay", &g_options.delay_ms},
                 {L"--life", &g_options.life_ms}};
  const struct {
    const wchar_t* name;
    std::string* text;
  } texts[] = {
      {L"--log", &g_options.log}, {L"--ready", &g_options.ready}, {L"--stop", &g_options.stop}};
  for (std::size_t i = 1; i < args.size(); ++i) {
    const std::wstring& a = args[i];
    bool known = false;
    if (a == L"--no-window") {
      g_options.window = false;
      known = true;
    }
    for (const auto& f : flags) {
      if (a == f.name) *f.flag = known = true;
    }
    if (i + 1 < args.size()) {
      if (a == L"--class") {
        g_options.class_name = args[++i];
        continue;
      }
      for (const auto& n : numbers) {
        if (a == n.name) *n.number = std::stoi(Narrow(args[++i])), known = true;
      }
      for (const auto& t : texts) {
        if (!known && a == t.name) *t.text = Narrow(args[++i]), known = true;
      }
    }
    if (!known) return false;
  }
  return true;
}

// After the window is there: what the tests asked for at the start.
void Started(HWND window) {
  if (g_options.publish_help) PonerHandleAyudaProcesos(window);
  {
    std::lock_guard<std::mutex> hold(g_mutex);
    g_logging = true;
  }
  if (!g_options.ready.empty()) Touch(g_options.ready);
  if (g_options.abort_at_start) std::abort();
}

// --ignore-close ignores the first request only, so that the tests can end
// the program afterwards.
bool IgnoreClose() {
  const bool ignore = g_options.ignore_close;
  g_options.ignore_close = false;
  return ignore;
}

int End() {
  Pause(g_options.linger_ms);
  Log("end");
  return g_options.exit_code;
}

int Windowless() {
  if (g_options.abort_at_start) std::abort();
  g_logging = true;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(g_options.life_ms);
  while (std::chrono::steady_clock::now() < end) {
    if (!g_options.stop.empty()) {
      if (FILE* f = std::fopen(g_options.stop.c_str(), "rb")) {
        std::fclose(f);
        break;
      }
    }
    Pause(10);
  }
  return End();
}

#if defined(_WIN32)

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      if (wparam == SIZE_MINIMIZED && !g_minimized) Log("minimize");
      if (wparam == SIZE_RESTORED && g_minimized) Log("restore");
      g_minimized = wparam == SIZE_MINIMIZED;
      break;
    case WM_ACTIVATE:
      if (LOWORD(wparam) != WA_INACTIVE) Log("activate");
      break;
    case WM_CLOSE:
      Log("close");
      if (IgnoreClose()) return 0;
      DestroyWindow(window);
      return 0;
    case WM_TIMER:
      DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      if (message >= WM_USER && message < WM_USER + 16) {
        Log("notice " + std::to_string(message));
        return 0;
      }
  }
  return DefWindowProcW(window, message, wparam, lparam);
}

int Run() {
  if (!g_options.window) return Windowless();
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = Procedure;
  window_class.hInstance = GetModuleHandleW(nullptr);
  window_class.lpszClassName = g_options.class_name.c_str();
  if (!RegisterClassW(&window_class)) return 91;
  HWND window = CreateWindowExW(0, g_options.class_name.c_str(), L"helper", WS_OVERLAPPEDWINDOW, 0,
                                0, 200, 100, nullptr, nullptr, window_class.hInstance, nullptr);
  if (window == nullptr) return 92;
  if (!g_options.invisible) ShowWindow(window, g_options.minimized ? SW_SHOWMINIMIZED : SW_SHOW);
  g_minimized = IsIconic(window) != FALSE;
  // Windows programs are found by their windows: registering only names this one.
  const TRegVentanaPrincipal unused{};
  if (RegistrarVentanaPrincipal(g_options.class_name.c_str(), &unused) != window) return 93;
  SetTimer(window, 1, static_cast<UINT>(g_options.life_ms), nullptr);
  Started(window);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return End();
}

std::vector<std::wstring> Arguments(int, char**) {
  int count = 0;
  wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> args(words, words + count);
  LocalFree(words);
  return args;
}

#else

std::condition_variable g_closed_changed;
bool g_closed = false;

void Block() {
  for (;;) Pause(60000);
}

int Visible(void*) {
  if (g_options.hang) Block();
  return g_options.invisible ? 0 : 1;
}
int Minimized(void*) { return g_minimized ? 1 : 0; }
void Minimize(void*) {
  g_minimized = true;
  Log("minimize");
}
void Restore(void*) {
  g_minimized = false;
  Log("restore");
}
void Activate(void*) { Log("activate"); }
void Front(void*) { Log("front"); }
void Notice(void*, unsigned message) { Log("notice " + std::to_string(message)); }
int Close(void*) {
  Log("close");
  if (IgnoreClose()) return 0;
  std::lock_guard<std::mutex> hold(g_mutex);
  g_closed = true;
  g_closed_changed.notify_all();
  return 1;
}

int Run() {
  if (!g_options.window) return Windowless();
  g_minimized = g_options.minimized;
  const TRegVentanaPrincipal callbacks{nullptr,  Visible, Minimized, Minimize, Restore,
                                       Activate, Front,   Close,     Notice};
  HWND window = RegistrarVentanaPrincipal(g_options.class_name.c_str(), &callbacks);
  if (window == nullptr) return 93;
  Started(window);
  {
    std::unique_lock<std::mutex> hold(g_mutex);
    g_closed_changed.wait_for(hold, std::chrono::milliseconds(g_options.life_ms),
                              [] { return g_closed; });
  }
  // A hung registration is left to the end of the program, as a crash leaves it.
  if (!g_options.hang) BorrarRegistroVentanaPrincipal(window);
  return End();
}

std::vector<std::wstring> Arguments(int argc, char** argv) {
  std::vector<std::wstring> args;
  for (int i = 0; i < argc; ++i) {
    std::wstring wide;  // the tests pass ASCII only
    for (const char* c = argv[i]; *c != 0; ++c) wide += static_cast<unsigned char>(*c);
    args.push_back(wide);
  }
  return args;
}

#endif

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::wstring> args = Arguments(argc, argv);
  if (args.size() == 1) return 42;
  if (args.size() >= 3 && args[1] == L"--args") return WriteArguments(args);
  if (!Parse(args) || g_options.class_name.empty()) return 90;
  Pause(g_options.delay_ms);
  return Run();
}
