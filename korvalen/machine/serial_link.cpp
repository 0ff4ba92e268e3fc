#include "korvalen/machine/serial_link.h"

#include <atomic>
#include <cstring>
#include <memory>
#include <new>

#include "korvalen/foundation/string_functions.h"
#include "korvalen/foundation/text_conversion.h"
#include "korvalen/platform/internal/serial_port.h"

namespace {

namespace platform = korvalen::platform;

constexpr int kStopRequested = 1000;
// Read time-outs from here on wait for the first byte; below it reads never wait.
constexpr DWORD kWaitingReadThreshold = 1000;
constexpr DWORD kWriteWaitMs = 1000;
constexpr int kBaudRates[] = {110,   300,   600,   1200,  2400,   4800,   9600,  14400,
                              19200, 38400, 56000, 57600, 115200, 128000, 256000};

// Other letters (space parity among them) leave the port's parity.
constexpr struct {
  wchar_t letter;
  BYTE value;
} kParities[] = {{L'N', NOPARITY}, {L'O', ODDPARITY}, {L'E', EVENPARITY}, {L'M', MARKPARITY}};

bool IsListedRate(int baud) {
  for (int rate : kBaudRates) {
    if (rate == baud) return true;
  }
  return false;
}

// A record that was never opened holds a null port.
bool IsOpen(HANDLE port) { return port != INVALID_HANDLE_VALUE && port != nullptr; }

void ClosePort(HANDLE& port) {
  if (IsOpen(port)) platform::close_port(port);
  port = INVALID_HANDLE_VALUE;
}

void CloseThread(HANDLE& thread) {
  if (thread != nullptr) platform::close_thread(thread);
  thread = nullptr;
}

void CloseEvent(HANDLE& event) {
  if (event != nullptr) platform::close_event(event);
  event = nullptr;
}

void RequestStop(TRegCom& com) { std::atomic_ref<int>(com.stop_request).store(kStopRequested); }

// The write OVERLAPPED's Offset word counts the bytes of the writes that had
// to wait; one that completes at once is not counted. The suite's transfer
// programs read the word that way.
void Send(HANDLE port, OVERLAPPED& write, const char* bytes, DWORD size) {
  platform::WriteEnd end = platform::WriteEnd::kAtOnce;
  DWORD written = 0;
  if (!platform::write_port(port, write, bytes, size, kWriteWaitMs, end, written) &&
      end == platform::WriteEnd::kAfterWait) {
    write.Offset += written;
  }
}

// The open after the port itself: settings, receiver, events, DTR. Each
// failure leaves behind what was made so far for the caller to close.
bool StartLink(TRegCom& com, DWORD input_queue_bytes, DWORD output_queue_bytes, HANDLE& event,
               HANDLE& thread, OVERLAPPED& write, OVERLAPPED& read, LPTHREAD_START_ROUTINE receiver,
               int handshake, int xon_char, int xoff_char, DWORD read_timeout_ms, int xon_limit,
               int xoff_limit, int rts_handshake, int dtr_handshake) {
  // The queue sizes are a wish the driver may ignore.
  (void)platform::set_queue_sizes(com.port, input_queue_bytes, output_queue_bytes);
  COMMTIMEOUTS timeouts{};
  timeouts.ReadIntervalTimeout = MAXDWORD;
  if (read_timeout_ms >= kWaitingReadThreshold) {
    timeouts.ReadTotalTimeoutMultiplier = MAXDWORD;
    timeouts.ReadTotalTimeoutConstant = read_timeout_ms;
  }
  (void)platform::set_timeouts(com.port, timeouts);
  if (!RellenarRegistroDCB(com.port, com.baud_rate, com.parity, com.data_bits, com.stop_bits,
                           handshake, xon_char, xoff_char, xon_limit, xoff_limit, rts_handshake,
                           dtr_handshake)) {
    return false;
  }
  com.stop_request = 0;
  if (receiver == nullptr || platform::start_thread(receiver, thread)) return false;
  write.Offset = write.OffsetHigh = 0;
  read.Offset = read.OffsetHigh = 0;
  if (platform::create_event(true, true, event) ||
      platform::create_event(true, false, write.hEvent) ||
      platform::create_event(true, false, read.hEvent)) {
    return false;
  }
  // Ports without modem lines (pseudo-terminals) refuse this, and need no DTR.
  (void)platform::set_dtr(com.port, true);
  return true;
}

}  // namespace

int InicializarElPuerto(TRegCom& com, DWORD input_queue_bytes, DWORD output_queue_bytes,
                        HANDLE& event, HANDLE& thread, OVERLAPPED& write, OVERLAPPED& read,
                        LPTHREAD_START_ROUTINE receiver, int handshake, int xon_char, int xoff_char,
                        DWORD read_timeout_ms, int xon_limit, int xoff_limit, int rts_handshake,
                        int dtr_handshake) {
  event = thread = write.hEvent = read.hEvent = nullptr;
  try {
    if (platform::open_serial_port(com.port_number, com.port)) return 0;
    if (StartLink(com, input_queue_bytes, output_queue_bytes, event, thread, write, read, receiver,
                  handshake, xon_char, xoff_char, read_timeout_ms, xon_limit, xoff_limit,
                  rts_handshake, dtr_handshake)) {
      return 1;
    }
  } catch (...) {
  }
  // A receiver already running is asked to end; it tests the request when
  // its port fails under it.
  if (thread != nullptr) RequestStop(com);
  ClosePort(com.port);
  CloseThread(thread);
  CloseEvent(event);
  CloseEvent(write.hEvent);
  CloseEvent(read.hEvent);
  return 0;
}

int RellenarRegistroDCB(HANDLE& port, int baud, wchar_t parity, int data_bits, double stop_bits,
                        int handshake, int xon_char, int xoff_char, int xon_limit, int xoff_limit,
                        int rts_handshake, int dtr_handshake) {
  try {
    DCB dcb{};
    dcb.DCBlength = sizeof dcb;
    if (platform::get_port_state(port, dcb)) return 0;
    if (IsListedRate(baud)) dcb.BaudRate = static_cast<DWORD>(baud);
    dcb.ByteSize = static_cast<BYTE>(data_bits);
    for (const auto& [letter, value] : kParities) {
      if (letter == parity) dcb.Parity = value;
    }
    if (stop_bits < 1.1) {
      dcb.StopBits = ONESTOPBIT;
    } else if (stop_bits < 1.6) {
      dcb.StopBits = ONE5STOPBITS;
    } else {
      dcb.StopBits = TWOSTOPBITS;
    }
    dcb.fBinary = 1;
    dcb.fParity = 1;
    dcb.fInX = dcb.fOutX = handshake == 1 ? 1 : 0;
    dcb.XonChar = static_cast<char>(xon_char);
    dcb.XoffChar = static_cast<char>(xoff_char);
    dcb.XonLim = static_cast<WORD>(xon_limit);
    dcb.XoffLim = static_cast<WORD>(xoff_limit);
    // Hardware handshake takes both lines whatever the RTS and DTR arguments say.
    const bool rts = handshake == 2 || rts_handshake >= 1;
    const bool dtr = handshake == 2 || dtr_handshake >= 1;
    dcb.fOutxCtsFlow = rts ? 1 : 0;
    dcb.fRtsControl = rts ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
    dcb.fOutxDsrFlow = dtr ? 1 : 0;
    dcb.fDtrControl = dtr ? DTR_CONTROL_HANDSHAKE : DTR_CONTROL_ENABLE;
    return platform::set_port_state(port, dcb) ? 0 : 1;
  } catch (...) {
    return 0;
  }
}

void CerrarElPuerto(TRegCom& com, HANDLE& event, HANDLE& thread, OVERLAPPED& write,
                    OVERLAPPED& read) {
  try {
    RequestStop(com);
    if (IsOpen(com.port)) (void)platform::clear_event_mask(com.port);
    if (event != nullptr) (void)platform::set_event(event);
    // No sleep between the polls: the receiver runs at the highest priority
    // and ends as soon as it sees the request.
    if (thread != nullptr) {
      while (platform::thread_running(thread)) {
      }
    }
    if (IsOpen(com.port)) {
      (void)platform::set_dtr(com.port, false);
      (void)platform::purge_port(com.port);
    }
    ClosePort(com.port);
    CloseThread(thread);
    CloseEvent(event);
    CloseEvent(write.hEvent);
    CloseEvent(read.hEvent);
    if (com.capture != nullptr) {
      std::fclose(com.capture);
      com.capture = nullptr;
    }
  } catch (...) {
  }
}

void EnviarUnTexto(HANDLE& port, OVERLAPPED& write, const wchar_t* text) {
  try {
    const int length = StrLen(text != nullptr ? text : L"");
    const int capacity = length * 2 + 1;
    std::unique_ptr<char[]> bytes(new (std::nothrow) char[static_cast<std::size_t>(capacity)]);
    if (bytes == nullptr) return;
    TCharToChar(bytes.get(), capacity, text != nullptr ? text : L"");
    Send(port, write, bytes.get(), static_cast<DWORD>(std::strlen(bytes.get())));
  } catch (...) {
  }
}

void EnviarUnCaracter(HANDLE& port, OVERLAPPED& write, char character) {
  try {
    const char byte[2] = {character, 0};
    Send(port, write, byte, 1);
  } catch (...) {
  }
}
