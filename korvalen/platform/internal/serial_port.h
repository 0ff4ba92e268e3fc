// Serial ports, the receiver thread beside them, and events: one call for each
// step of opening, configuring, writing to and closing a port "COMn", with
// Windows semantics on every system. The serial link of the library strings
// them together.
//
//   HANDLE port = INVALID_HANDLE_VALUE;
//   if (open_serial_port(1, port)) return 0;
//   DCB state{};
//   state.DCBlength = sizeof state;
//   if (get_port_state(port, state) || set_port_state(port, state)) close_port(port);
//
// Windows uses its comm API. POSIX opens the device that COMn names (the
// environment variable KORVALEN_COM<n> when set, else /dev/ttyS<n-1>) in raw
// mode and applies the DCB through termios: the rate exactly as given (any
// rate, not only the B-constants), 5 to 8 data bits, parity none, odd, even,
// mark and space (CMSPAR), XON/XOFF with the given characters, RTS/CTS.
// Termios has no 1.5 stop bits: ONE5STOPBITS sets CSTOPB, which a UART sends
// as 1.5 stop bits with 5 data bits and as 2 otherwise, the choice of most
// drivers. DSR/DTR flow control, XonLim, XoffLim and the error characters have
// no termios form: they are not kept, and read back as a fresh Windows port
// has them. Ports without modem lines (pseudo-terminals) skip the DTR calls.
#pragma once

#include <system_error>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// CreateFileW("COMn") for reading and writing, unshared, overlapped. Another
// holder of the port makes it fail with errc::device_or_resource_busy. On
// failure port is INVALID_HANDLE_VALUE.
std::error_code open_serial_port(int number, HANDLE& port);
// SetupComm: the driver's queue sizes (nothing to size on POSIX).
std::error_code set_queue_sizes(HANDLE port, DWORD input_bytes, DWORD output_bytes);
// SetCommTimeouts. POSIX keeps the read part as VMIN 0 and VTIME (tenths of a
// second, at most 25.5 s): a blocking read returns what is buffered or waits
// that long for the first byte. The library's own descriptor is non-blocking
// for its writes, so a receiver reading it polls first.
std::error_code set_timeouts(HANDLE port, const COMMTIMEOUTS& timeouts);
std::error_code get_port_state(HANDLE port, DCB& state);
std::error_code set_port_state(HANDLE port, const DCB& state);
// EscapeCommFunction SETDTR or CLRDTR.
std::error_code set_dtr(HANDLE port, bool raised);
// SetCommMask with an empty mask, which ends a pending WaitCommEvent. POSIX
// has no such wait: nothing to do.
std::error_code clear_event_mask(HANDLE port);
// PurgeComm of both directions: pending transfers abandoned, queues emptied.
// A pseudo-terminal's output is already the far end's input: it stays there.
std::error_code purge_port(HANDLE port);
void close_port(HANDLE port);

enum class WriteEnd { kAtOnce, kAfterWait };

// WriteFile with the caller's OVERLAPPED. A write that cannot complete at once
// is waited for up to wait_ms; it then ends kAfterWait with `written` bytes
// (GetOverlappedResult), or fails with errc::timed_out and is abandoned (on
// POSIX the bytes not yet taken are dropped). The OVERLAPPED's Internal and
// InternalHigh tell the status and the bytes taken, as Windows fills them.
std::error_code write_port(HANDLE port, OVERLAPPED& overlapped, const char* bytes, DWORD size,
                           DWORD wait_ms, WriteEnd& end, DWORD& written);

// CreateThread (parameter null) at THREAD_PRIORITY_HIGHEST, then ResumeThread.
// On POSIX raising the priority needs the right to; without it the thread
// runs at the normal priority.
std::error_code start_thread(LPTHREAD_START_ROUTINE routine, HANDLE& thread);
// GetExitCodeThread reports STILL_ACTIVE.
bool thread_running(HANDLE thread);
// CloseHandle of a thread: the routine goes on if it still runs.
void close_thread(HANDLE thread);

// CreateEventW without a name. On POSIX an eventfd that polls readable while
// the event is set; reading it resets it.
std::error_code create_event(bool manual_reset, bool signalled, HANDLE& event);
std::error_code set_event(HANDLE event);
void close_event(HANDLE event);

}  // namespace korvalen::platform
