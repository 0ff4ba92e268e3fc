// Finding running programs by their main-window class, against helper
// programs that stand in for the suite's: what each function asks of the
// window, its results, its looks and time limits, the main-window notices and
// the help hand-shake; on Linux also the registry's refusals (a registration
// left by a crash, a folder others can enter, another user's socket, a
// program that does not answer).
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "korvalen/korvalen.h"
#include "process_support.h"
#include "program_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::FileLines;
using korvalen::testing::HelperCommand;
using korvalen::testing::WaitForFile;
using korvalen::testing::WaitForLine;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr const wchar_t* kNoProgram = L"no-such-program-here";

#if defined(_WIN32)
constexpr bool kRegistry = false;
#else
constexpr bool kRegistry = true;
#endif

std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

// Whether the lines hold these, in this order (others may come between).
bool InOrder(const std::vector<std::string>& lines, const std::vector<std::string>& wanted) {
  auto at = lines.begin();
  for (const std::string& w : wanted) {
    at = std::find(at, lines.end(), w);
    if (at == lines.end()) return false;
    ++at;
  }
  return true;
}

class SingleInstanceTest : public korvalen::testing::TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    runtime_ = (dir() / "run").string();
    korvalen::testing::MakePrivateFolder(runtime_);
    korvalen::testing::SetEnvironment("XDG_RUNTIME_DIR", runtime_);
    korvalen::testing::SetEnvironment("KORVALEN_TEST_TIME_DIVISOR", "");
  }
  void TearDown() override {
    // Every helper is gone before its folder goes.
    for (const std::string& c : started_) EsperarATerminarEjec(Wide(c).c_str(), 1);
    TempDirTest::TearDown();
  }

  // The helper's command line for a window of that class, logging to
  // "<class>.log" and living 20 s unless told.
  static std::wstring Command(const std::string& class_name, const std::string& options = "") {
    return HelperCommand("--class " + class_name + " --log " + class_name + ".log --ready " +
                         class_name + ".ready --life 20000 " + options);
  }
  // Starts the helper and waits for its window.
  void Start(const std::string& class_name, const std::string& options = "") {
    started_.push_back(class_name);
    LanzarEjecutable(Command(class_name, options).c_str());
    ASSERT_TRUE(WaitForFile(class_name + ".ready", 10000)) << class_name;
  }
  static std::vector<std::string> Log(const std::string& class_name) {
    return FileLines(class_name + ".log");
  }
  static bool Ends(const std::string& class_name, int timeout_ms = 5000) {
    return WaitForLine(class_name + ".log", "end", timeout_ms);
  }
  std::string RegistryFile(const std::string& name) const { return runtime_ + "/korvalen/" + name; }

  std::string runtime_;
  std::vector<std::string> started_;
};

TEST_F(SingleInstanceTest, OtherCopyComesToTheFrontOrIsClosedWhenInvisible) {
  EXPECT_EQ(HayOtroProgramaIgual(L"KvNone"), 0);

  Start("KvShown");
  EXPECT_EQ(HayOtroProgramaIgual(L"KvShown"), 1);
  EXPECT_TRUE(WaitForLine("KvShown.log", "activate", 2000));
  EXPECT_TRUE(InOrder(Log("KvShown"), {"minimize", "restore", "activate"}));
  EXPECT_FALSE(InOrder(Log("KvShown"), {"close"}));

  Start("KvHidden", "--invisible");
  EXPECT_EQ(HayOtroProgramaIgual(L"KvHidden"), 0);
  EXPECT_TRUE(Ends("KvHidden"));
  EXPECT_TRUE(InOrder(Log("KvHidden"), {"close", "end"}));
}

TEST_F(SingleInstanceTest, LaunchBringsTheRunningCopyForwardOrStartsOne) {
  Start("KvFront");
  LanzarEjecutableVnt(L"KvFront", kNoProgram);
  EXPECT_TRUE(WaitForLine("KvFront.log", "activate", 2000));

  Start("KvIcon", "--minimized");
  LanzarEjecutableVnt(L"KvIcon", kNoProgram);
  EXPECT_TRUE(WaitForLine("KvIcon.log", "restore", 2000));

  started_.push_back("KvNew");
  LanzarEjecutableVnt(L"KvNew", Command("KvNew").c_str());
  EXPECT_TRUE(WaitForFile("KvNew.ready", 10000));
}

TEST_F(SingleInstanceTest, ActivateFindsTheWindowOrWaitsForTheStartedOne) {
  Start("KvRuns", "--minimized");
  EXPECT_EQ(ActivarEjecutableVnt(L"KvRuns", kNoProgram), 1);
  EXPECT_TRUE(WaitForLine("KvRuns.log", "restore", 2000));  // posted

  started_.push_back("KvLate");
  const auto start = Clock::now();
  EXPECT_EQ(ActivarEjecutableVnt(L"KvLate", Command("KvLate", "--delay 300").c_str()), 1);
  EXPECT_GE(Clock::now() - start, milliseconds(300));

  EXPECT_EQ(ActivarEjecutableVnt(L"KvNone", kNoProgram), 0);
}

TEST_F(SingleInstanceTest, ActivateGivesUpAfterAThousandLooks) {
  // 1000 looks 100 ms apart are 100 s; the test clock makes them 1 ms apart.
  korvalen::testing::SetEnvironment("KORVALEN_TEST_TIME_DIVISOR", "100");
  const auto start = Clock::now();
  EXPECT_EQ(ActivarEjecutableVnt(L"KvNever", Command("KvNever", "--no-window --stop stop").c_str()),
            0);
  const auto took = Clock::now() - start;
  EXPECT_GE(took, milliseconds(1000));
  EXPECT_LT(took, milliseconds(10000));
  EXPECT_TRUE(Log("KvNever").empty());  // still running
  korvalen::testing::WriteBytes("stop", "");
  EXPECT_TRUE(Ends("KvNever"));
}

TEST_F(SingleInstanceTest, CloseLooksSixTimesWhileTheWindowStays) {
  EXPECT_EQ(CerrarModuloActivo(L"KvNone"), 1);

  Start("KvCloses");
  EXPECT_EQ(CerrarModuloActivo(L"KvCloses"), 1);
  EXPECT_TRUE(InOrder(Log("KvCloses"), {"activate", "close", "end"}));

  Start("KvStays", "--ignore-close");
  auto start = Clock::now();
  EXPECT_EQ(CerrarModuloActivo(L"KvStays"), 0);
  EXPECT_LT(Clock::now() - start, milliseconds(1000));  // six quick looks, not a wait
  EXPECT_TRUE(InOrder(Log("KvStays"), {"close"}));
  EXPECT_FALSE(InOrder(Log("KvStays"), {"end"}));

  // Window gone, program still running: it keeps looking until the end.
  Start("KvLingers", "--linger 400");
  start = Clock::now();
  EXPECT_EQ(CerrarModuloActivo(L"KvLingers"), 1);
  EXPECT_GE(Clock::now() - start, milliseconds(400));
  EXPECT_TRUE(InOrder(Log("KvLingers"), {"close", "end"}));
}

TEST_F(SingleInstanceTest, WaitEndsWithTheProgram) {
  EsperarATerminarEjec(L"KvNone", 1);

  Start("KvAsked");
  EsperarATerminarEjec(L"KvAsked", 1);
  EXPECT_TRUE(InOrder(Log("KvAsked"), {"close", "end"}));

  Start("KvOwnTime", "--life 300");
  EsperarATerminarEjec(L"KvOwnTime", 0);
  EXPECT_EQ(Log("KvOwnTime"), std::vector<std::string>{"end"});
}

TEST_F(SingleInstanceTest, CrashedProgramIsNotFound) {
  int code = 0;
  ASSERT_EQ(LanzarProcesoEjecutable(Command("KvCrash", "--abort").c_str(), 1, code), 1);
  EXPECT_EQ(code, 3);
  EXPECT_EQ(HayOtroProgramaIgual(L"KvCrash"), 0);
  EXPECT_EQ(ActivarEjecutableVnt(L"KvCrash", kNoProgram), 0);
  EXPECT_EQ(CerrarModuloActivo(L"KvCrash"), 1);
  if (kRegistry) {
    EXPECT_TRUE(std::filesystem::is_empty(runtime_ + "/korvalen"));
  }
}

TEST_F(SingleInstanceTest, NoticesReachTheMainWindowInOrder) {
  ActualizarEnPrincipalTab();  // no main window: the marker only
  EXPECT_EQ(ExisteFicheroCambioPiezas(), 1);

  Start("C_ActualizaMIRSEL");
  ActualizarEnPrincipalTab();
  ActualizarEltosPrincipalFab();
  ActualizarEnPrincipalChp();
  ActualizarEnPrincipalPst();
  ActualizarEltosPrincipalDef();
  EXPECT_EQ(ExisteFicheroCambioPiezas(), 1);
  std::vector<std::string> notices;
  for (const auto end = Clock::now() + milliseconds(5000);
       notices.size() < 5 && Clock::now() < end;) {
    std::this_thread::sleep_for(milliseconds(10));
    notices.clear();
    for (const std::string& l : Log("C_ActualizaMIRSEL")) {
      if (l.rfind("notice", 0) == 0) notices.push_back(l);
    }
  }
  EXPECT_EQ(notices, (std::vector<std::string>{"notice 1024", "notice 1025", "notice 1025",
                                               "notice 1026", "notice 1024"}));
}

TEST_F(SingleInstanceTest, HelpIsClosedThroughThePublishedHandle) {
  EXPECT_EQ(CerrarAyuda(), 0);

  Start("KvHelp", "--publish-help");
  std::filesystem::rename("PROCHELP.SYS", "WINDHELP.SYS");
  EXPECT_EQ(CerrarAyuda(), 1);
  EXPECT_FALSE(Exists("WINDHELP.SYS"));
  EXPECT_TRUE(Ends("KvHelp"));
  EXPECT_TRUE(InOrder(Log("KvHelp"), {"close", "end"}));

  korvalen::testing::WriteBytes("WINDHELP.SYS", "1\r\n");  // no such window
  EXPECT_EQ(CerrarAyuda(), 1);
  EXPECT_FALSE(Exists("WINDHELP.SYS"));
}

TEST_F(SingleInstanceTest, EscapeIsTakenFromTheWindowsKeys) {
  EXPECT_EQ(HayEscapePulsado(nullptr), 0);
  korvalen::testing::OwnWindow window;
  if (kRegistry) {
    // No graphical interface loaded: no key is ever waiting.
    EXPECT_EQ(HayEscapePulsado(reinterpret_cast<HWND>(static_cast<std::intptr_t>(1))), 0);
    return;
  }
  ASSERT_NE(window.handle(), nullptr);
  window.PostKeyDown(27);
  EXPECT_EQ(HayEscapePulsado(window.handle()), 1);
  EXPECT_EQ(HayEscapePulsado(window.handle()), 0);
  window.PostKeyDown('A');  // taken, and lost
  window.PostKeyDown(27);
  EXPECT_EQ(HayEscapePulsado(window.handle()), 0);
  EXPECT_EQ(HayEscapePulsado(window.handle()), 1);
}

// --- the registry (Linux) ---------------------------------------------------------

TEST_F(SingleInstanceTest, RegistrationIsOneProgramsAtATime) {
  if (!kRegistry) GTEST_SKIP() << "Windows finds programs by their windows";
  const TRegVentanaPrincipal silent{};
  HWND me = RegistrarVentanaPrincipal(L"KvSelf", &silent);
  ASSERT_NE(me, nullptr);
  EXPECT_EQ(RegistrarVentanaPrincipal(L"kvself", &silent), nullptr);  // class names ignore case
  EXPECT_EQ(HayOtroProgramaIgual(L"KvSelf"), 1);  // null callbacks: a visible window
  BorrarRegistroVentanaPrincipal(me);
  EXPECT_EQ(HayOtroProgramaIgual(L"KvSelf"), 0);
  EXPECT_TRUE(std::filesystem::is_empty(runtime_ + "/korvalen"));

  // A program's registration is refused while this one holds the class.
  me = RegistrarVentanaPrincipal(L"KvTaken", &silent);
  int code = 0;
  EXPECT_EQ(LanzarProcesoEjecutable(Command("KvTaken").c_str(), 1, code), 1);
  EXPECT_EQ(code, 93);
  BorrarRegistroVentanaPrincipal(me);
}

TEST_F(SingleInstanceTest, RegistryRefusesWhatOthersCanReach) {
  if (!kRegistry) GTEST_SKIP() << "Windows finds programs by their windows";
  const TRegVentanaPrincipal silent{};
  korvalen::testing::MakePrivateFolder(runtime_ + "/korvalen", 0755);
  EXPECT_EQ(RegistrarVentanaPrincipal(L"KvOpen", &silent), nullptr);
  korvalen::testing::MakePrivateFolder(runtime_ + "/korvalen", 0700);

  const std::string lock = RegistryFile("KVFOREIGN.lock"), socket = RegistryFile("KVFOREIGN.sock");
  {
    korvalen::testing::ForeignListener own(lock, socket, 0);
    ASSERT_TRUE(own.listening());
    EXPECT_EQ(ActivarEjecutableVnt(L"KvForeign", kNoProgram), 1);
  }
  EXPECT_EQ(ActivarEjecutableVnt(L"KvForeign", kNoProgram), 0);  // died: removed
  EXPECT_FALSE(Exists(lock));
  if (!korvalen::testing::RunningAsRoot()) {
    GTEST_SKIP() << "listening as another user needs root";
  }
  korvalen::testing::ForeignListener other(lock, socket, 65534);
  ASSERT_TRUE(other.listening());
  EXPECT_EQ(ActivarEjecutableVnt(L"KvForeign", kNoProgram), 0);
  EXPECT_EQ(HayOtroProgramaIgual(L"KvForeign"), 0);
}

TEST_F(SingleInstanceTest, ProgramThatDoesNotAnswerHoldsNoCallerLong) {
  if (!kRegistry) GTEST_SKIP() << "a hung Windows program blocks SendMessageW, as the system does";
  Start("KvHung", "--hang --life 3000");
  auto start = Clock::now();
  EXPECT_EQ(HayOtroProgramaIgual(L"KvHung"), 1);  // no answer: taken as visible
  EXPECT_LT(Clock::now() - start, milliseconds(2500));
  start = Clock::now();
  EXPECT_EQ(CerrarModuloActivo(L"KvHung"), 0);
  EXPECT_LT(Clock::now() - start, milliseconds(2500));
}

}  // namespace
