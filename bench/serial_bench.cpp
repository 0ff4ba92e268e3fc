// Sending a 5 MB CNC program through a pseudo-terminal pair: the serial link
// (EnviarUnTexto) against a plain blocking write loop on the same pair, in the
// same run, once line by line and once in 4 KB pieces. A reader thread on the
// master takes everything and compares it with the program: lost or changed
// bytes must be 0. Each way runs 7 times, interleaved; the fastest run counts.
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "korvalen/korvalen.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::size_t kProgramBytes = 5 * 1024 * 1024;
constexpr int kRuns = 7;

TRegCom g_link{};

DWORD WINAPI WaitForClose(LPVOID) {
  while (std::atomic_ref<int>(g_link.stop_request).load() != 1000) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return 0;
}

std::vector<std::string> Pieces(bool by_line) {
  std::vector<std::string> pieces;
  std::string program;
  for (int i = 0; program.size() < kProgramBytes; ++i) {
    program += "N" + std::to_string(i) + " G01 X" + std::to_string(i % 1500) + ".250 Y" +
               std::to_string(i % 733) + ".5 F2000\r\n";
  }
  if (by_line) {
    for (std::size_t at = 0; at < program.size();) {
      const std::size_t end = program.find('\n', at) + 1;
      pieces.push_back(program.substr(at, end - at));
      at = end;
    }
  } else {
    for (std::size_t at = 0; at < program.size(); at += 4096) {
      pieces.push_back(program.substr(at, 4096));
    }
  }
  return pieces;
}

struct Result {
  double seconds;
  std::size_t bytes;
  std::size_t lost;
};

// Sends through `send` while the master is read; the time runs until the
// reader has every byte, or the line stays quiet for 2 s.
template <typename Send>
Result Transfer(int master, const std::string& expected, Send send) {
  std::string got;
  got.reserve(expected.size());
  std::thread reader([&] {
    char buffer[65536];
    pollfd p{master, POLLIN, 0};
    while (got.size() < expected.size() && poll(&p, 1, 2000) > 0) {
      const ssize_t n = read(master, buffer, sizeof buffer);
      if (n <= 0) break;
      got.append(buffer, static_cast<std::size_t>(n));
    }
  });
  const Clock::time_point start = Clock::now();
  send();
  reader.join();
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  std::size_t lost = expected.size() > got.size() ? expected.size() - got.size() : 0;
  for (std::size_t i = 0; i < std::min(got.size(), expected.size()); ++i) {
    if (got[i] != expected[i]) ++lost;
  }
  return {seconds, expected.size(), lost};
}

Result ThroughLibrary(int master, const std::vector<std::string>& pieces,
                      const std::string& expected) {
  std::vector<std::wstring> wide;
  for (const std::string& p : pieces) wide.emplace_back(p.begin(), p.end());
  g_link = TRegCom{};
  g_link.port_number = 5;
  g_link.baud_rate = 115200;
  g_link.data_bits = 8;
  g_link.parity = L'N';
  g_link.stop_bits = 1;
  HANDLE event, thread;
  OVERLAPPED write{}, read{};
  if (!InicializarElPuerto(g_link, 4096, 4096, event, thread, write, read, WaitForClose, 0, 0x11,
                           0x13, 999, 2048, 512, 0, 0)) {
    std::fprintf(stderr, "the port does not open\n");
    std::exit(1);
  }
  const Result r = Transfer(master, expected, [&] {
    for (const std::wstring& w : wide) EnviarUnTexto(g_link.port, write, w.c_str());
  });
  CerrarElPuerto(g_link, event, thread, write, read);
  return r;
}

Result ThroughWriteLoop(int master, const std::vector<std::string>& pieces,
                        const std::string& expected) {
  const int fd = open(ptsname(master), O_RDWR | O_NOCTTY);
  termios t{};
  tcgetattr(fd, &t);
  cfmakeraw(&t);
  tcsetattr(fd, TCSANOW, &t);
  const Result r = Transfer(master, expected, [&] {
    for (const std::string& p : pieces) {
      for (std::size_t done = 0; done < p.size();) {
        const ssize_t n = write(fd, p.data() + done, p.size() - done);
        if (n > 0) done += static_cast<std::size_t>(n);
      }
    }
  });
  close(fd);
  return r;
}

}  // namespace

int main() {
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) return 1;
  setenv("KORVALEN_COM5", ptsname(master), 1);
  for (const bool by_line : {true, false}) {
    const std::vector<std::string> pieces = Pieces(by_line);
    std::string expected;
    for (const std::string& p : pieces) expected += p;
    Result library{1e9, 0, 0}, plain{1e9, 0, 0};
    std::size_t lost = 0;
    for (int run = 0; run < kRuns; ++run) {
      const Result a = ThroughLibrary(master, pieces, expected);
      const Result b = ThroughWriteLoop(master, pieces, expected);
      lost += a.lost + b.lost;
      if (a.seconds < library.seconds) library = a;
      if (b.seconds < plain.seconds) plain = b;
    }
    std::printf("%s (%zu writes of %zu bytes):\n", by_line ? "line by line" : "4 KB pieces",
                pieces.size(), expected.size());
    std::printf("  EnviarUnTexto     %7.1f MB/s  (%.3f s)\n", library.bytes / library.seconds / 1e6,
                library.seconds);
    std::printf("  plain write loop  %7.1f MB/s  (%.3f s)\n", plain.bytes / plain.seconds / 1e6,
                plain.seconds);
    std::printf(
        "  library time / plain time %.2f, lost or changed bytes in all %d runs of each: %zu\n",
        library.seconds / plain.seconds, kRuns, lost);
  }
  close(master);
  return 0;
}
