// The serial link against a pseudo-terminal pair: what arrives at the far end,
// what the receiver gets, the port state the line settings give, the write
// count and time limit, and the failures that must leave nothing open.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "korvalen/korvalen.h"
#include "process_support.h"
#include "serial_peer.h"
#include "temp_dir_test.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <asm/termbits.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {

using korvalen::testing::SerialPeer;
using Clock = std::chrono::steady_clock;

// What the receiver routine reaches: it is started with a null argument.
struct Link {
  TRegCom com{};
  HANDLE event = nullptr;
  HANDLE thread = nullptr;
  OVERLAPPED write{};
  OVERLAPPED read{};
  std::atomic<bool> ready{false};
  std::atomic<bool> ran{false};
  std::atomic<bool> ended{false};
};
Link* g_link = nullptr;

bool Stopped(Link& l) { return std::atomic_ref<int>(l.com.stop_request).load() == 1000; }

// The test thread watches the count while the receiver adds to it.
void Keep(Link& l, const char* bytes, DWORD n) {
  const DWORD kept = l.com.received_bytes;
  n = std::min<DWORD>(n, kComReceiveBytes - kept);
  std::memcpy(l.com.received + kept, bytes, n);
  std::atomic_ref<DWORD>(l.com.received_bytes).store(kept + n);
}

DWORD WINAPI Receive(LPVOID) {
  Link& l = *g_link;
  l.ran = true;
  // The events are made after the thread starts.
  while (!l.ready && !Stopped(l)) std::this_thread::yield();
  char buffer[256];
  if (!l.ready) {
    l.ended = true;
    return 0;
  }
#if defined(_WIN32)
  // Wait for a character, then take what came; closing ends the wait by
  // clearing the mask and setting the event.
  ResetEvent(l.event);
  SetCommMask(l.com.port, EV_RXCHAR);
  HANDLE wake[2] = {l.read.hEvent, l.event};
  while (!Stopped(l)) {
    DWORD mask = 0;
    DWORD n = 0;
    if (!WaitCommEvent(l.com.port, &mask, &l.read)) {
      if (GetLastError() != ERROR_IO_PENDING) break;
      WaitForMultipleObjects(2, wake, FALSE, INFINITE);
      if (Stopped(l)) break;
      GetOverlappedResult(l.com.port, &l.read, &n, TRUE);
    }
    // Reads do not wait (a read time-out below 1000 ms).
    if (ReadFile(l.com.port, buffer, sizeof buffer, &n, &l.read) ||
        GetOverlappedResult(l.com.port, &l.read, &n, TRUE)) {
      Keep(l, buffer, n);
    }
  }
#else
  const int port = static_cast<int>(reinterpret_cast<intptr_t>(l.com.port));
  const int event = static_cast<int>(reinterpret_cast<intptr_t>(l.event));
  std::uint64_t count = 0;
  (void)!read(event, &count, sizeof count);
  pollfd wake[2] = {{port, POLLIN, 0}, {event, POLLIN, 0}};
  while (!Stopped(l) && poll(wake, 2, -1) > 0 && !Stopped(l)) {
    const ssize_t n = read(port, buffer, sizeof buffer);
    if (n > 0) Keep(l, buffer, static_cast<DWORD>(n));
  }
#endif
  l.ended = true;
  return 0;
}

class SerialLink : public korvalen::testing::TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    if (!peer_.unavailable().empty()) GTEST_SKIP() << peer_.unavailable();
    g_link = &link_;
    link_.com.port_number = peer_.port();
    link_.com.baud_rate = 19200;
    link_.com.data_bits = 8;
    link_.com.parity = L'N';
    link_.com.stop_bits = 1;
  }
  void TearDown() override {
    Close();
    TempDirTest::TearDown();
  }

  int Open(int handshake = 0, DWORD read_timeout = 999) {
    link_.ready = false;
    const int opened = InicializarElPuerto(link_.com, 4096, 4096, link_.event, link_.thread,
                                           link_.write, link_.read, Receive, handshake, 0x11, 0x13,
                                           read_timeout, 100, 200, 0, 0);
    link_.ready = opened == 1;
    return opened;
  }
  void Close() { CerrarElPuerto(link_.com, link_.event, link_.thread, link_.write, link_.read); }

  SerialPeer peer_;
  Link link_;
};

TEST_F(SerialLink, BytesArriveIntactBothWays) {
  ASSERT_EQ(Open(), 1);
  EXPECT_EQ(link_.com.stop_request, 0);
  // Every byte but NUL, through the code page and back, then one NUL.
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  wchar_t wide[256];
  CharToTChar(wide, 256, all.c_str());
  EnviarUnTexto(link_.com.port, link_.write, L"N10 G01 X12.5 \u00e9\u20ac\r\n");
  EnviarUnTexto(link_.com.port, link_.write, wide);
  EnviarUnCaracter(link_.com.port, link_.write, '\0');
  // A character outside the code page ends the text.
  EnviarUnTexto(link_.com.port, link_.write, L"%\u4e00X");
  const std::string expected = "N10 G01 X12.5 \xe9\x80\r\n" + all + std::string(1, '\0') + "%";
  EXPECT_EQ(peer_.Read(expected.size(), 2000), expected);

  const std::string answer = "ACK\x13\x11\r\n\xff";
  ASSERT_TRUE(peer_.Write(answer));
  for (auto end = Clock::now() + std::chrono::seconds(3);
       std::atomic_ref<DWORD>(link_.com.received_bytes).load() < answer.size() &&
       Clock::now() < end;) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  FILE* capture = std::fopen("capture.bin", "wb");
  link_.com.capture = capture;
  Close();
  EXPECT_TRUE(link_.ran && link_.ended);
  EXPECT_EQ(std::string(link_.com.received, link_.com.received_bytes), answer);
  EXPECT_EQ(link_.com.stop_request, 1000);
  EXPECT_EQ(link_.com.capture, nullptr);
  EXPECT_EQ(link_.com.port, INVALID_HANDLE_VALUE);
  EXPECT_EQ(link_.thread, nullptr);
  Close();  // again: harmless
}

DWORD WINAPI NoReceiver(LPVOID) { return 0; }

TEST_F(SerialLink, SecondOpenOfABusyPortFails) {
  if (korvalen::testing::RunningUnderWine()) GTEST_SKIP() << "Wine opens a serial port twice";
  ASSERT_EQ(Open(), 1);
  Link second;
  second.com = link_.com;
  EXPECT_EQ(InicializarElPuerto(second.com, 0, 0, second.event, second.thread, second.write,
                                second.read, NoReceiver, 0, 0x11, 0x13, 0, 0, 0, 0, 0),
            0);
  EXPECT_EQ(second.com.port, INVALID_HANDLE_VALUE);
  EXPECT_EQ(second.event, nullptr);
  CerrarElPuerto(second.com, second.event, second.thread, second.write, second.read);
  // The first holder still sends.
  EnviarUnTexto(link_.com.port, link_.write, L"still here");
  EXPECT_EQ(peer_.Read(10, 2000), "still here");
}

#if !defined(_WIN32)

int OpenDescriptors() {
  int n = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    ++n;
  return n;
}

termios2 PortState(int master) {
  termios2 t{};
  ioctl(master, TCGETS2, &t);
  return t;
}

TEST_F(SerialLink, LineSettingsAndTimeOutsReachTheTermiosState) {
  ASSERT_EQ(Open(), 1);
  // A pseudo-terminal keeps every flag but the data bits and the parity
  // enable (it reports 8 bits without parity): the parity shows in PARODD and
  // CMSPAR, and a parity left as it was is none.
  struct Row {
    int baud;
    wchar_t parity;
    double stop;
    int handshake, rts, dtr;
    unsigned speed;  // expected
    tcflag_t cflag;  // expected, within PARODD | CMSPAR | CSTOPB | CRTSCTS
    tcflag_t iflag;  // expected, within IXON | IXOFF
  };
  const Row rows[] = {
      {19200, L'E', 1, 0, 0, 0, 19200, 0, 0},
      {7200, L'O', 1.05, 0, 0, 0, 19200, PARODD, 0},  // a rate not listed: kept
      {14400, L'S', 1.1, 0, 0, 0, 14400, CSTOPB, 0},  // 'S' keeps the parity
      {256000, L'M', 1.5, 1, 0, 0, 256000, PARODD | CMSPAR | CSTOPB, IXON | IXOFF},
      {110, L'N', 1.6, 2, 0, 0, 110, CSTOPB | CRTSCTS, 0},
      {9600, L'N', 2, 0, 1, 0, 9600, CSTOPB | CRTSCTS, 0},
      {56000, L'N', 1, 0, 0, 1, 56000, 0, 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.baud);
    EXPECT_NE(RellenarRegistroDCB(link_.com.port, r.baud, r.parity, 8, r.stop, r.handshake, 0x11,
                                  0x13, 10, 20, r.rts, r.dtr),
              0);
    const termios2 t = PortState(peer_.master());
    EXPECT_EQ(t.c_ospeed, r.speed);
    EXPECT_EQ(t.c_cflag & (PARODD | CMSPAR | CSTOPB | CRTSCTS), r.cflag);
    EXPECT_EQ(t.c_iflag & (IXON | IXOFF), r.iflag);
    EXPECT_EQ(t.c_cc[VSTART], 0x11);
    EXPECT_EQ(t.c_cc[VSTOP], 0x13);
  }
  EXPECT_EQ(RellenarRegistroDCB(link_.com.port, 9600, L'N', 9, 1, 0, 0x11, 0x13, 10, 20, 0, 0), 0);
  HANDLE none = INVALID_HANDLE_VALUE;
  EXPECT_EQ(RellenarRegistroDCB(none, 9600, L'N', 8, 1, 0, 0x11, 0x13, 10, 20, 0, 0), 0);

  // Read time-outs: from 1000 ms a read waits for its first byte (VTIME in tenths).
  const std::pair<DWORD, int> timeouts[] = {{999, 0}, {1000, 10}, {60000, 255}};
  for (const auto& [timeout, tenths] : timeouts) {
    Close();
    ASSERT_EQ(Open(0, timeout), 1);
    EXPECT_EQ(PortState(peer_.master()).c_cc[VTIME], tenths) << timeout;
  }
}

TEST_F(SerialLink, ClosingPurgesTheInput) {
  int packet = 1;
  ASSERT_EQ(ioctl(peer_.master(), TIOCPKT, &packet), 0);
  ASSERT_EQ(Open(), 1);
  EnviarUnTexto(link_.com.port, link_.write, L"left unread");
  Close();
  // In packet mode the master's first read is the status of the slave's
  // queues: its input was flushed. Its output was not: on a pseudo-terminal
  // that is the far end's input, bytes already sent.
  const std::string packets = peer_.Read(1, 200);
  ASSERT_FALSE(packets.empty());
  EXPECT_EQ(packets[0] & (TIOCPKT_FLUSHREAD | TIOCPKT_FLUSHWRITE), TIOCPKT_FLUSHREAD);
}

TEST_F(SerialLink, WritesThatWaitAreCountedAndGiveUpAfterASecond) {
  ASSERT_EQ(Open(), 1);
  EnviarUnTexto(link_.com.port, link_.write, L"at once");
  EXPECT_EQ(peer_.Read(7, 1000), "at once");
  EXPECT_EQ(link_.write.Offset, 0u);  // completed at once: not counted
  EXPECT_EQ(link_.write.InternalHigh, 7u);

  // More than the pair buffers: the write waits for the reader.
  const std::wstring big(1 << 20, L'x');
  std::string drained;
  std::thread reader([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    drained = peer_.Read(big.size(), 1000);
  });
  EnviarUnTexto(link_.com.port, link_.write, big.c_str());
  reader.join();
  EXPECT_EQ(drained.size(), big.size());
  EXPECT_EQ(link_.write.Offset, big.size());
  EXPECT_EQ(link_.write.Internal, 0u);

  // Nobody reads: abandoned after 1000 ms, not counted.
  auto start = Clock::now();
  EnviarUnTexto(link_.com.port, link_.write, big.c_str());
  auto took = Clock::now() - start;
  EXPECT_GE(took, std::chrono::milliseconds(950));
  EXPECT_LT(took, std::chrono::milliseconds(1500));
  EXPECT_EQ(link_.write.Offset, big.size());
  EXPECT_EQ(link_.write.Internal, 0x103u);

  // The far end goes away in the middle: the send gives up at once.
  peer_.Close();
  start = Clock::now();
  EnviarUnTexto(link_.com.port, link_.write, big.c_str());
  EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1000));
}

TEST_F(SerialLink, FailedOpensLeaveNothingOpen) {
  const int before = OpenDescriptors();
  for (const char* device : {"/nonexistent/tty", "/dev/null", ""}) {
    SCOPED_TRACE(device);
    korvalen::testing::SetEnvironment("KORVALEN_COM7", device);
    link_.com.port_number = *device != 0 ? 7 : 999;  // /dev/ttyS998
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(link_.com.port, INVALID_HANDLE_VALUE);
    EXPECT_EQ(link_.event, nullptr);
    EXPECT_EQ(link_.thread, nullptr);
    EXPECT_EQ(OpenDescriptors(), before);
    Close();
  }
  // A line setting the port refuses fails the open after the port was opened.
  korvalen::testing::SetEnvironment("KORVALEN_COM7", ptsname(peer_.master()));
  link_.com.port_number = 7;
  link_.com.data_bits = 9;
  EXPECT_EQ(Open(), 0);
  EXPECT_EQ(OpenDescriptors(), before);
  Close();
}

#endif

}  // namespace
