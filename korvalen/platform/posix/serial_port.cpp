// Serial ports over termios (Linux termios2, which takes any rate), eventfd
// events and a detached thread for the receiver.
#include "korvalen/platform/internal/serial_port.h"

// termios2 and its ioctls; <termios.h> would clash with these definitions.
#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>

namespace korvalen::platform {
namespace {

constexpr ULONG_PTR kStatusPending = 0x103;
constexpr ULONG_PTR kStatusDeviceError = 0xC0000185;

std::error_code errno_error() { return std::error_code(errno, std::generic_category()); }

int descriptor(HANDLE handle) { return static_cast<int>(reinterpret_cast<std::intptr_t>(handle)); }

// Descriptors 0 to 2 would read as a null handle or a standard stream; a
// process that closed those gets its port above them all the same.
HANDLE handle_of(int& fd) {
  if (fd < 3) {
    const int moved = ::fcntl(fd, F_DUPFD_CLOEXEC, 3);
    ::close(fd);
    fd = moved;
  }
  return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(fd));
}

std::error_code get_termios(int fd, termios2& t) {
  return ::ioctl(fd, TCGETS2, &t) == 0 ? std::error_code() : errno_error();
}

std::error_code put_termios(int fd, const termios2& t) {
  while (::ioctl(fd, TCSETS2, &t) != 0) {
    if (errno != EINTR) return errno_error();
  }
  return {};
}

std::string device_of(int number) {
  const std::string variable = "KORVALEN_COM" + std::to_string(number);
  const char* mapped = std::getenv(variable.c_str());
  if (mapped != nullptr && *mapped != 0) return mapped;
  return "/dev/ttyS" + std::to_string(number - 1);
}

// A Windows port moves bytes as they are: no line-end or case translation,
// no echo, no signals, no modem lines needed to read.
void make_raw(termios2& t) {
  t.c_iflag &= ~static_cast<tcflag_t>(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL |
                                      IUCLC | IXANY | IMAXBEL);
  t.c_oflag &= ~static_cast<tcflag_t>(OPOST);
  t.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
  t.c_cflag |= CREAD | CLOCAL;
}

struct Receiver {
  LPTHREAD_START_ROUTINE routine;
  std::atomic<bool> running{true};
  std::atomic<int> holders{2};  // the thread and the handle

  void release() {
    if (holders.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }
};

void raise_priority() {
  // Linux gives each thread its own nice value; two steps up, as
  // THREAD_PRIORITY_HIGHEST is two above normal.
  const auto self = static_cast<id_t>(::gettid());
  errno = 0;
  const int now = ::getpriority(PRIO_PROCESS, self);
  if (errno == 0) ::setpriority(PRIO_PROCESS, self, now - 2);
}

}  // namespace

std::error_code open_serial_port(int number, HANDLE& port) {
  port = INVALID_HANDLE_VALUE;
  const std::string device = device_of(number);
  int fd = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return errno_error();
  std::error_code error;
  termios2 t{};
  // The lock keeps the port to one holder as an unshared Windows open does;
  // TIOCEXCL alone would let a privileged second opener through.
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    error = errno == EWOULDBLOCK ? std::make_error_code(std::errc::device_or_resource_busy)
                                 : errno_error();
  } else if (!(error = get_termios(fd, t))) {
    ::ioctl(fd, TIOCEXCL);
    make_raw(t);
    error = put_termios(fd, t);
  }
  if (!error && (port = handle_of(fd)) == INVALID_HANDLE_VALUE) error = errno_error();
  if (error && fd >= 0) ::close(fd);
  return error;
}

std::error_code set_queue_sizes(HANDLE, DWORD, DWORD) { return {}; }

std::error_code set_timeouts(HANDLE port, const COMMTIMEOUTS& timeouts) {
  termios2 t{};
  if (std::error_code error = get_termios(descriptor(port), t)) return error;
  DWORD wait = 0;
  if (timeouts.ReadIntervalTimeout == MAXDWORD && timeouts.ReadTotalTimeoutMultiplier == MAXDWORD) {
    wait = timeouts.ReadTotalTimeoutConstant;
  }
  const DWORD tenths = (wait + 99) / 100;
  t.c_cc[VMIN] = 0;
  t.c_cc[VTIME] = static_cast<cc_t>(tenths > 255 ? 255 : tenths);
  return put_termios(descriptor(port), t);
}

std::error_code get_port_state(HANDLE port, DCB& state) {
  termios2 t{};
  if (std::error_code error = get_termios(descriptor(port), t)) return error;
  const DWORD length = state.DCBlength;
  state = DCB{};
  state.DCBlength = length;
  state.BaudRate = t.c_ospeed;
  state.fBinary = 1;
  state.fParity = (t.c_iflag & INPCK) != 0;
  const bool hardware = (t.c_cflag & CRTSCTS) != 0;
  state.fOutxCtsFlow = hardware;
  state.fRtsControl = hardware ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
  state.fDtrControl = DTR_CONTROL_ENABLE;
  state.fOutX = (t.c_iflag & IXON) != 0;
  state.fInX = (t.c_iflag & IXOFF) != 0;
  state.fTXContinueOnXoff = 1;
  state.XonLim = 2048;
  state.XoffLim = 512;
  switch (t.c_cflag & CSIZE) {
    case CS5:
      state.ByteSize = 5;
      break;
    case CS6:
      state.ByteSize = 6;
      break;
    case CS7:
      state.ByteSize = 7;
      break;
    default:
      state.ByteSize = 8;
      break;
  }
  if ((t.c_cflag & PARENB) == 0) {
    state.Parity = NOPARITY;
  } else if ((t.c_cflag & CMSPAR) != 0) {
    state.Parity = (t.c_cflag & PARODD) != 0 ? MARKPARITY : SPACEPARITY;
  } else {
    state.Parity = (t.c_cflag & PARODD) != 0 ? ODDPARITY : EVENPARITY;
  }
  state.StopBits = (t.c_cflag & CSTOPB) != 0 ? TWOSTOPBITS : ONESTOPBIT;
  state.XonChar = static_cast<char>(t.c_cc[VSTART]);
  state.XoffChar = static_cast<char>(t.c_cc[VSTOP]);
  return {};
}

std::error_code set_port_state(HANDLE port, const DCB& state) {
  static constexpr tcflag_t kSizes[] = {CS5, CS6, CS7, CS8};
  // Windows refuses these as SetCommState does.
  if (state.ByteSize < 5 || state.ByteSize > 8 || state.Parity > SPACEPARITY ||
      state.StopBits > TWOSTOPBITS || state.BaudRate == 0) {
    return std::make_error_code(std::errc::invalid_argument);
  }
  termios2 t{};
  if (std::error_code error = get_termios(descriptor(port), t)) return error;
  t.c_cflag &=
      ~static_cast<tcflag_t>(CBAUD | CIBAUD | CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS);
  t.c_cflag |= BOTHER | kSizes[state.ByteSize - 5];
  t.c_ispeed = t.c_ospeed = state.BaudRate;
  switch (state.Parity) {
    case ODDPARITY:
      t.c_cflag |= PARENB | PARODD;
      break;
    case EVENPARITY:
      t.c_cflag |= PARENB;
      break;
    case MARKPARITY:
      t.c_cflag |= PARENB | CMSPAR | PARODD;
      break;
    case SPACEPARITY:
      t.c_cflag |= PARENB | CMSPAR;
      break;
    default:
      break;
  }
  if (state.StopBits != ONESTOPBIT) t.c_cflag |= CSTOPB;
  if (state.fOutxCtsFlow || state.fRtsControl == RTS_CONTROL_HANDSHAKE) t.c_cflag |= CRTSCTS;
  t.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | INPCK);
  if (state.fOutX) t.c_iflag |= IXON;
  if (state.fInX) t.c_iflag |= IXOFF;
  if (state.fParity && state.Parity != NOPARITY) t.c_iflag |= INPCK;
  t.c_cc[VSTART] = static_cast<cc_t>(state.XonChar);
  t.c_cc[VSTOP] = static_cast<cc_t>(state.XoffChar);
  return put_termios(descriptor(port), t);
}

std::error_code set_dtr(HANDLE port, bool raised) {
  int line = TIOCM_DTR;
  return ::ioctl(descriptor(port), raised ? TIOCMBIS : TIOCMBIC, &line) == 0 ? std::error_code()
                                                                             : errno_error();
}

std::error_code clear_event_mask(HANDLE) { return {}; }

// A pseudo-terminal has no transmit queue: what its slave wrote already lies
// in the master's input, and Linux would take it from there. Its output is
// therefore sent, not purged, as a port purges only what it has not sent.
bool is_pseudo_terminal(int fd) {
  constexpr unsigned kFirstSlaveMajor = 136;  // Unix98 slaves: majors 136 to 143
  struct stat st {};
  return ::fstat(fd, &st) == 0 && S_ISCHR(st.st_mode) && major(st.st_rdev) >= kFirstSlaveMajor &&
         major(st.st_rdev) < kFirstSlaveMajor + 8;
}

std::error_code purge_port(HANDLE port) {
  const int fd = descriptor(port);
  const int queues = is_pseudo_terminal(fd) ? TCIFLUSH : TCIOFLUSH;
  return ::ioctl(fd, TCFLSH, queues) == 0 ? std::error_code() : errno_error();
}

void close_port(HANDLE port) { ::close(descriptor(port)); }

std::error_code write_port(HANDLE port, OVERLAPPED& overlapped, const char* bytes, DWORD size,
                           DWORD wait_ms, WriteEnd& end, DWORD& written) {
  using Clock = std::chrono::steady_clock;
  const int fd = descriptor(port);
  overlapped.Internal = kStatusPending;
  overlapped.InternalHigh = 0;
  written = 0;
  DWORD taken = 0;
  bool waited = false;
  Clock::time_point deadline{};
  for (;;) {
    while (taken < size) {
      const ssize_t n = ::write(fd, bytes + taken, size - taken);
      if (n > 0) {
        taken += static_cast<DWORD>(n);
        overlapped.InternalHigh = taken;
      } else if (n < 0 && errno == EINTR) {
        continue;
      } else if (n < 0 && errno != EAGAIN) {
        overlapped.Internal = kStatusDeviceError;
        return errno_error();
      } else {
        break;
      }
    }
    if (taken == size) break;
    if (!waited) {
      waited = true;
      deadline = Clock::now() + std::chrono::milliseconds(wait_ms);
    }
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return std::make_error_code(std::errc::timed_out);
    pollfd p{fd, POLLOUT, 0};
    const int ready = ::poll(&p, 1, static_cast<int>(left.count()));
    if (ready < 0 && errno != EINTR) return errno_error();
    if (ready > 0 && (p.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
      overlapped.Internal = kStatusDeviceError;
      return std::make_error_code(std::errc::io_error);
    }
  }
  overlapped.Internal = 0;
  end = waited ? WriteEnd::kAfterWait : WriteEnd::kAtOnce;
  if (waited) written = taken;
  return {};
}

std::error_code start_thread(LPTHREAD_START_ROUTINE routine, HANDLE& thread) {
  thread = nullptr;
  auto* receiver = new Receiver{routine};
  try {
    std::thread([receiver] {
      raise_priority();
      receiver->routine(nullptr);
      receiver->running.store(false, std::memory_order_release);
      receiver->release();
    }).detach();
  } catch (const std::system_error& e) {
    delete receiver;
    return e.code();
  }
  thread = receiver;
  return {};
}

bool thread_running(HANDLE thread) {
  return static_cast<Receiver*>(thread)->running.load(std::memory_order_acquire);
}

void close_thread(HANDLE thread) { static_cast<Receiver*>(thread)->release(); }

std::error_code create_event(bool, bool signalled, HANDLE& event) {
  // No event is a null handle, as CreateEventW gives.
  event = nullptr;
  int fd = ::eventfd(signalled ? 1 : 0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (fd < 0) return errno_error();
  const HANDLE made = handle_of(fd);
  if (made == INVALID_HANDLE_VALUE) return errno_error();
  event = made;
  return {};
}

std::error_code set_event(HANDLE event) {
  const std::uint64_t one = 1;
  return ::write(descriptor(event), &one, sizeof one) == sizeof one ? std::error_code()
                                                                    : errno_error();
}

void close_event(HANDLE event) { ::close(descriptor(event)); }

}  // namespace korvalen::platform
