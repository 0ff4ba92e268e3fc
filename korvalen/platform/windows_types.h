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

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef MAX_PATH
#define MAX_PATH 260
#endif

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
