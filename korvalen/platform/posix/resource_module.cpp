// Resource libraries over POSIX: the DLL file read whole into memory and
// looked at as a PE image; nothing of it is executed.
#include <cstdio>
#include <memory>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/internal/pe_image.h"
#include "korvalen/platform/internal/resource_module.h"

// What an HMODULE points to here.
struct HINSTANCE__ {
  std::vector<std::uint8_t> bytes;
  korvalen::platform::PeImage image;
};

namespace korvalen::platform::native {
namespace {

// Widens 8 UTF-16LE units to 8 wide characters when none of them is a
// surrogate (where the machine has vectors); false, with nothing written,
// otherwise. Texts are nearly all of the first plane.
bool widen8(const std::uint8_t* units, wchar_t* out) {
#if defined(__SSE2__)
  static_assert(sizeof(wchar_t) == 4);
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  const __m128i surrogates =
      _mm_cmpeq_epi16(_mm_and_si128(v, _mm_set1_epi16(static_cast<short>(0xF800))),
                      _mm_set1_epi16(static_cast<short>(0xD800)));
  if (_mm_movemask_epi8(surrogates) != 0) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi16(v, _mm_setzero_si128()));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4), _mm_unpackhi_epi16(v, _mm_setzero_si128()));
  return true;
#else
  (void)units;
  (void)out;
  return false;
#endif
}

}  // namespace

std::error_code load_resource_module(const wchar_t* path, HMODULE& module) {
  FILE* file = nullptr;
  if (const std::error_code error = open_file(path, L"rb", -1, file)) return error;
  auto loaded = std::make_unique<HINSTANCE__>();
  // Read at the size the file has, then on to its end should it grow.
  if (std::fseek(file, 0, SEEK_END) == 0) {
    const long size = std::ftell(file);
    if (size > 0) loaded->bytes.reserve(static_cast<std::size_t>(size));
    std::rewind(file);
  }
  std::uint8_t block[65536];
  std::size_t n = 0;
  while ((n = std::fread(block, 1, sizeof block, file)) > 0) {
    loaded->bytes.insert(loaded->bytes.end(), block, block + n);
  }
  const bool read = std::ferror(file) == 0;
  std::fclose(file);
  if (!read) return make_error(std::errc::io_error);
  if (!loaded->image.Parse(loaded->bytes)) return make_error(std::errc::executable_format_error);
  module = loaded.release();
  return {};
}

std::error_code free_resource_module(HMODULE module) {
  delete module;
  return {};
}

std::error_code load_string(HMODULE module, unsigned id, wchar_t* buffer, int capacity,
                            int& length) {
  std::span<const std::uint8_t> units;
  if (!module->image.String(id, units)) return {};
  int used = 0;
  std::size_t i = 0;
  while (i + 16 <= units.size() && used + 8 <= capacity - 1 &&
         widen8(units.data() + i, buffer + used)) {
    i += 16;
    used += 8;
  }
  for (; i + 1 < units.size() && used < capacity - 1; i += 2) {
    char32_t c = static_cast<char32_t>(units[i] | (units[i + 1] << 8));
    if (c >= 0xD800 && c < 0xDC00 && i + 3 < units.size()) {
      const auto low = static_cast<char32_t>(units[i + 2] | (units[i + 3] << 8));
      if (low >= 0xDC00 && low <= 0xDFFF) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    buffer[used++] = static_cast<wchar_t>(c);
  }
  buffer[used] = 0;
  length = used;
  return {};
}

std::error_code find_resource(HMODULE module, std::uint32_t type, std::uint32_t name,
                              std::span<const std::uint8_t>& data) {
  data = module->image.FindResource(type, name);
  return {};
}

}  // namespace korvalen::platform::native
