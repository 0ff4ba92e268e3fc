// `korvalen send` through a pseudo-terminal whose master the test reads, and
// `korvalen translate`: the bytes that arrive, the exit status, the error line.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "process_support.h"
#include "temp_dir_test.h"

#if !defined(_WIN32)
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

fs::path Tool() {
  return fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "tools" / "korvalen" /
         "korvalen";
}

// Exit status and what the tool printed on both outputs.
std::pair<int, std::string> RunTool(const std::string& arguments) {
  const int status =
      std::system(("'" + Tool().string() + "' " + arguments + " > out.txt 2>&1").c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadBytes("out.txt")};
}

class ToolSend : public korvalen::testing::TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    if (!fs::exists(Tool())) GTEST_SKIP() << "the tool is not built";
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0);
    korvalen::testing::SetEnvironment("KORVALEN_COM3", ptsname(master_));
  }
  void TearDown() override {
    if (master_ >= 0) close(master_);
    TempDirTest::TearDown();
  }

  // Runs the tool while reading the master until the tool ends and the line is quiet.
  std::pair<std::pair<int, std::string>, std::string> Send(const std::string& arguments) {
    std::string arrived;
    std::atomic<bool> done{false};
    std::thread reader([&] {
      char buffer[65536];
      pollfd p{master_, POLLIN, 0};
      for (;;) {
        const int ready = poll(&p, 1, 200);
        const ssize_t n = ready > 0 ? read(master_, buffer, sizeof buffer) : 0;
        if (n > 0) {
          arrived.append(buffer, static_cast<std::size_t>(n));
        } else if (done) {
          break;
        } else if (ready > 0) {  // no slave open: hung up until the tool opens it
          std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
      }
    });
    auto result = RunTool(arguments);
    done = true;
    reader.join();
    return {result, arrived};
  }

  int master_ = -1;
};

TEST_F(ToolSend, SendsEveryByteAndTranslates) {
  std::string program;
  for (int i = 0; program.size() < 300000; ++i) {
    program += "N" + std::to_string(i) + " G01 X" + std::to_string(i % 977) + " (\xe9)\r\n";
    if (i % 1000 == 0) program += std::string("\0\x80\xff\x13\x11", 5);
  }
  WriteBytes("PROG.CNC", program);
  const auto [result, arrived] = Send("send --port 3 --baud 115200 --parity E --data 7 PROG.CNC");
  EXPECT_EQ(result.first, 0) << result.second;
  EXPECT_EQ(result.second, "");  // no progress bar: not a terminal
  EXPECT_TRUE(arrived == program) << arrived.size() << " of " << program.size() << " bytes";

  WriteBytes("TRAD.CFG", "A000 \"(\" ;\r\nB000 \"[\" ;\r\n");
  WriteBytes("SHORT.CNC", "N1 (X)\r\nN2\r\n");
  EXPECT_EQ(Send("send --port 3 --translate TRAD.CFG SHORT.CNC").second, "N1 [X)\r\nN2\r\n");
  EXPECT_EQ(RunTool("translate TRAD.CFG SHORT.CNC OUT.CNC").first, 0);
  EXPECT_EQ(ReadBytes("OUT.CNC"), "N1 [X)\r\nN2\r\n");
}

TEST_F(ToolSend, PortThatCannotOpenIsOneLineAndExitOne) {
  WriteBytes("PROG.CNC", "N1\r\n");
  korvalen::testing::SetEnvironment("KORVALEN_COM3", "/nonexistent/tty");
  const auto result = RunTool("send --port 3 PROG.CNC");
  EXPECT_EQ(result.first, 1);
  EXPECT_EQ(result.second.rfind("korvalen: COM3: cannot open the port", 0), 0u) << result.second;
  EXPECT_EQ(result.second.find('\n'), result.second.size() - 1);
  EXPECT_EQ(RunTool("send --port 3 MISSING.CNC").first, 1);
  EXPECT_EQ(RunTool("translate TRAD.CFG MISSING.CNC OUT.CNC").first, 1);
}

}  // namespace
#endif
