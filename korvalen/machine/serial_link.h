// The serial link to a CNC control: opening and configuring port "COMn",
// sending program text over it, and closing it. Receiving is the caller's: it
// supplies the routine that the library runs on its receiver thread.
//
//   TRegCom com{};
//   com.port_number = 1;
//   com.baud_rate = 9600;
//   com.data_bits = 7;
//   com.parity = L'E';
//   com.stop_bits = 2;
//   HANDLE event, thread;
//   OVERLAPPED write{}, read{};
//   if (InicializarElPuerto(com, 4096, 4096, event, thread, write, read, Receiver,
//                           1, 0x11, 0x13, 1000, 512, 512, 0, 0)) {
//     EnviarUnTexto(com.port, write, L"N10 G00 X0 Y0\r\n");
//     CerrarElPuerto(com, event, thread, write, read);
//   }
//
// The receiver runs with a null argument, so it reaches the port record
// through the caller's own variables. It must test stop_request after every
// wake-up and end when it reads 1000; read it with std::atomic_ref (or an
// interlocked read on Windows), since the closing thread writes it. The thread
// may start before the events exist (they are made after it), and `event`
// starts out set: a receiver resets it before waiting on it. On Windows the
// closing wakes the receiver through SetCommMask and `event`; on POSIX (see
// windows_types.h for what the handles are there) through `event`, whose
// descriptor the receiver polls beside the port's.
//
// A write that cannot complete at once is waited for at most 1000 ms, then
// abandoned. write.Offset counts the bytes of the writes that had to wait; a
// write that completes at once does not add to it. write.Internal is 0 and
// write.InternalHigh the bytes written once a write has completed.
#pragma once

#include <cstdio>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

inline constexpr int kComReceiveBytes = 4096;

// The port record, owned by the caller.
struct TRegCom {
  HANDLE port;  // INVALID_HANDLE_VALUE when the open failed
  int port_number;
  int baud_rate;
  int data_bits;   // 5 to 8
  wchar_t parity;  // 'N', 'O', 'E' or 'M'
  double stop_bits;
  // The caller's receive area; the library never touches it.
  char received[kComReceiveBytes];
  DWORD received_bytes;
  int stop_request;  // 0 while the link runs, 1000 once it closes
  FILE* capture;     // optional copy of the traffic, closed with the port
};

// Opens "COMn", sets its queues, time-outs and state (RellenarRegistroDCB
// with the record's line settings and these handshake arguments), starts the
// receiver at the highest priority, makes the events and raises DTR. Read
// time-outs from 1000 ms on make a read wait that long for its first byte;
// shorter ones make reads return at once. Returns 1, or 0 with nothing left
// open (port INVALID_HANDLE_VALUE, the other handles null).
KORVALEN_API int InicializarElPuerto(TRegCom& com, DWORD input_queue_bytes,
                                     DWORD output_queue_bytes, HANDLE& event, HANDLE& thread,
                                     OVERLAPPED& write, OVERLAPPED& read,
                                     LPTHREAD_START_ROUTINE receiver, int handshake, int xon_char,
                                     int xoff_char, DWORD read_timeout_ms, int xon_limit,
                                     int xoff_limit, int rts_handshake, int dtr_handshake);

// Changes the port's state and leaves the rest as it was: the rate only when
// it is one of 110 to 256000 of the usual steps, parity only for 'N', 'O', 'E'
// and 'M', stop bits 1 below 1.1, 1.5 below 1.6, else 2. handshake 0 none, 1
// XON/XOFF, 2 hardware (RTS/CTS and DTR/DSR whatever rts_handshake and
// dtr_handshake say); otherwise each of those two from 1 up turns its own on.
// Returns non-zero on success, 0 when the state cannot be read or set.
KORVALEN_API int RellenarRegistroDCB(HANDLE& port, int baud, wchar_t parity, int data_bits,
                                     double stop_bits, int handshake, int xon_char, int xoff_char,
                                     int xon_limit, int xoff_limit, int rts_handshake,
                                     int dtr_handshake);

// Asks the receiver to stop (stop_request 1000), wakes it and waits until it
// has ended, drops DTR, empties both directions, closes every handle and the
// capture file. Harmless when called again, or after a failed open.
KORVALEN_API void CerrarElPuerto(TRegCom& com, HANDLE& event, HANDLE& thread, OVERLAPPED& write,
                                 OVERLAPPED& read);

// The text in the ANSI code page (it ends at a character the code page cannot
// hold); one byte.
KORVALEN_API void EnviarUnTexto(HANDLE& port, OVERLAPPED& write, const wchar_t* text);
KORVALEN_API void EnviarUnCaracter(HANDLE& port, OVERLAPPED& write, char character);
