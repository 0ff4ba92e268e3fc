// The Windows types that appear in the exported interface. On Windows they come
// from the system headers; elsewhere a small compatible definition stands in,
// with the Windows sizes (LONG is 32 bits on every system).
#pragma once

#include <cstdint>

// How the C runtime declares its functions (fabs is exported under its C name).
#if defined(_WIN32)
#define KORVALEN_CRT_NOEXCEPT
#else
#define KORVALEN_CRT_NOEXCEPT noexcept
#endif

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <io.h>
#include <sys/stat.h>
#include <windows.h>
#else
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using BOOL = int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using HANDLE = void*;
using HWND = struct HWND__*;
using HMODULE = struct HINSTANCE__*;
using HINSTANCE = HMODULE;
using INT_PTR = std::intptr_t;
using HGLOBAL = void*;

// A printer's settings: opaque here, a record of the print dialog's own.
struct DEVMODEW;
using LPDEVMODEW = DEVMODEW*;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef MAX_PATH
#define MAX_PATH 260
#endif

// A rectangle of device units, as windows report their client area.
struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

// Permission flags of chMod, with the values of the Windows C runtime.
#define _S_IREAD 0x0100
#define _S_IWRITE 0x0080

// File attributes reported by FindFirst/FindNext.
#define _A_NORMAL 0x00
#define _A_RDONLY 0x01
#define _A_HIDDEN 0x02
#define _A_SYSTEM 0x04
#define _A_SUBDIR 0x10
#define _A_ARCH 0x20

// --- serial ports and threads -------------------------------------------------
// On POSIX a port handle and an event handle are file descriptors (a
// descriptor of the serial device, an eventfd) held in the pointer's value, so
// a receiver can poll them side by side; INVALID_HANDLE_VALUE (-1) is no
// descriptor. A thread handle points to the library's own record of the
// running routine.
using LPVOID = void*;
using ULONG_PTR = std::uintptr_t;
#define WINAPI
#define INVALID_HANDLE_VALUE ((HANDLE)(std::intptr_t)-1)
#define MAXDWORD 0xffffffffu
using LPTHREAD_START_ROUTINE = DWORD(WINAPI*)(LPVOID);

// Internal and InternalHigh hold the status and the byte count of the last
// write (0 and the count when it completed, 0x103 while it was pending).
struct OVERLAPPED {
  ULONG_PTR Internal;
  ULONG_PTR InternalHigh;
  DWORD Offset;
  DWORD OffsetHigh;
  HANDLE hEvent;
};

// The port state with the Windows layout (28 bytes).
struct DCB {
  DWORD DCBlength;
  DWORD BaudRate;
  DWORD fBinary : 1;
  DWORD fParity : 1;
  DWORD fOutxCtsFlow : 1;
  DWORD fOutxDsrFlow : 1;
  DWORD fDtrControl : 2;
  DWORD fDsrSensitivity : 1;
  DWORD fTXContinueOnXoff : 1;
  DWORD fOutX : 1;
  DWORD fInX : 1;
  DWORD fErrorChar : 1;
  DWORD fNull : 1;
  DWORD fRtsControl : 2;
  DWORD fAbortOnError : 1;
  DWORD fDummy2 : 17;
  WORD wReserved;
  WORD XonLim;
  WORD XoffLim;
  BYTE ByteSize;
  BYTE Parity;
  BYTE StopBits;
  char XonChar;
  char XoffChar;
  char ErrorChar;
  char EofChar;
  char EvtChar;
  WORD wReserved1;
};
static_assert(sizeof(DCB) == 28);

struct COMMTIMEOUTS {
  DWORD ReadIntervalTimeout;
  DWORD ReadTotalTimeoutMultiplier;
  DWORD ReadTotalTimeoutConstant;
  DWORD WriteTotalTimeoutMultiplier;
  DWORD WriteTotalTimeoutConstant;
};

#define NOPARITY 0
#define ODDPARITY 1
#define EVENPARITY 2
#define MARKPARITY 3
#define SPACEPARITY 4
#define ONESTOPBIT 0
#define ONE5STOPBITS 1
#define TWOSTOPBITS 2
#define DTR_CONTROL_DISABLE 0
#define DTR_CONTROL_ENABLE 1
#define DTR_CONTROL_HANDSHAKE 2
#define RTS_CONTROL_DISABLE 0
#define RTS_CONTROL_ENABLE 1
#define RTS_CONTROL_HANDSHAKE 2
#define RTS_CONTROL_TOGGLE 3

// The wide find record of the Windows C runtime: 64-bit times, 32-bit size.
struct _wfinddata64i32_t {
  unsigned attrib;
  long long time_create;
  long long time_access;
  long long time_write;
  std::uint32_t size;
  wchar_t name[260];
};
#endif
