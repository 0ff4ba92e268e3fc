// Fuzzes reading text files that may be UTF-16: arbitrary bytes (a mark in
// front or not) become a file read through CUTF16File with both line readers
// in a random order, the buffer reader with small and large heap buffers of
// exactly the capacity it is given. Each result, and the file's position
// after it, is compared with a plain model of the block reads the class is
// defined by, so that reading straight from the stream's buffer can never
// give another line than the block reads would. The same bytes are also read
// in text mode and as 8-bit text, for their buffers only.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "korvalen/korvalen.h"

namespace {

// The file the input is written to, unique to this process.
struct WorkFile {
  WorkFile() {
    std::random_device random;
    name = (std::filesystem::temp_directory_path() /
            ("korvalen-utf16-fuzz-" + std::to_string(random()) + ".txt"))
               .string();
    wide.assign(name.begin(), name.end());
  }
  ~WorkFile() { std::remove(name.c_str()); }
  std::string name;
  std::wstring wide;
};

// The reads of a UTF-16 file opened in binary mode, step by step as the class
// is specified: 4096-byte blocks into a queue of units, the logical position
// counted as the units are taken, and the seek back to it after two line
// ends.
class Model {
 public:
  explicit Model(const std::string& bytes) : bytes_(bytes) {
    if (bytes_.size() < 2) return;
    position_ = 2;
    logical_ = 2;
    const auto b0 = static_cast<unsigned char>(bytes_[0]);
    const auto b1 = static_cast<unsigned char>(bytes_[1]);
    unicode_ = (b0 == 0xFF && b1 == 0xFE) || (b0 == 0xFE && b1 == 0xFF);
    big_endian_ = b0 == 0xFE && b1 == 0xFF;
    if (!unicode_) position_ = logical_ = 0;
  }
  bool unicode() const { return unicode_; }
  std::size_t position() const { return position_; }

  bool ReadLine(std::wstring& line) {
    line.clear();
    Load();
    if (queue_.empty()) return false;
    for (;;) {
      const char16_t c = Take();
      if (c == 13 || c == 10) break;
      logical_ += 2;
      line += static_cast<wchar_t>(c);
      if (queue_.empty()) {
        Load();
        if (queue_.empty()) return true;
      }
    }
    logical_ += 2;
    AfterLineEnd();
    return true;
  }

  bool ReadBuffer(std::wstring& text, unsigned capacity) {
    text.clear();
    if (capacity <= 1) return true;
    Load();
    if (queue_.empty()) return false;
    while (--capacity != 0) {
      const char16_t c = Take();
      logical_ += 2;
      text += static_cast<wchar_t>(c);
      if (c == 13 || c == 10) {
        logical_ += 2;
        AfterLineEnd();
        break;
      }
      if (queue_.empty()) {
        Load();
        if (queue_.empty()) break;
      }
    }
    return true;
  }

 private:
  void Load() {
    const std::size_t left = position_ < bytes_.size() ? bytes_.size() - position_ : 0;
    const std::size_t n = std::min<std::size_t>(4096, left);
    for (std::size_t i = 0; i + 1 < n; i += 2) {
      const auto a = static_cast<unsigned char>(bytes_[position_ + i]);
      const auto b = static_cast<unsigned char>(bytes_[position_ + i + 1]);
      queue_.push_back(static_cast<char16_t>(big_endian_ ? (a << 8) | b : a | (b << 8)));
    }
    position_ += n;
  }
  char16_t Take() {
    const char16_t c = queue_.front();
    queue_.pop_front();
    return c;
  }
  void AfterLineEnd() {
    if (queue_.empty()) return;
    const char16_t d = Take();
    if (d == 13 || d == 10) {
      logical_ += 2;
      position_ = logical_;
      queue_.clear();
    }
  }

  const std::string& bytes_;
  std::size_t position_ = 0;
  std::uint32_t logical_ = 0;
  bool unicode_ = false;
  bool big_endian_ = false;
  std::deque<char16_t> queue_;
};

// Reads the whole file in one mode, for its buffers only.
void ReadThrough(const std::wstring& name, UINT flags, unsigned capacity) {
  CUTF16File file;
  if (!file.Open(name.c_str(), CFile::modeRead | flags)) return;
  CString line;
  std::unique_ptr<wchar_t[]> buffer(new wchar_t[capacity]);
  for (int i = 0; i < 4000; ++i) {
    if ((i & 1) ? file.ReadString(buffer.get(), capacity) == nullptr : !file.ReadString(line))
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider provider(data, size);
  const unsigned small = provider.ConsumeIntegralInRange<unsigned>(0, 40);
  const unsigned large = provider.ConsumeIntegralInRange<unsigned>(1000, 9000);
  const std::uint64_t plan = provider.ConsumeIntegral<std::uint64_t>();
  std::string bytes = provider.ConsumeRemainingBytesAsString();
  // Most inputs should be UTF-16 with a mark.
  if ((plan & 3) != 0) bytes.insert(0, (plan & 4) ? "\xFE\xFF" : "\xFF\xFE");

  static const WorkFile work;
  FILE* out = std::fopen(work.name.c_str(), "wb");
  if (out == nullptr) return 0;
  std::fwrite(bytes.data(), 1, bytes.size(), out);
  std::fclose(out);

  {
    CUTF16File file;
    if (!file.Open(work.wide.c_str(), CFile::modeRead | CFile::typeBinary)) std::abort();
    Model model(bytes);
    if ((file.IsUnicodeFile() == 1) != model.unicode()) std::abort();
    if (model.unicode()) {
      std::unique_ptr<wchar_t[]> small_buffer(new wchar_t[small == 0 ? 1 : small]);
      std::unique_ptr<wchar_t[]> large_buffer(new wchar_t[large]);
      CString line;
      std::wstring expected;
      for (int call = 0; call < 2000; ++call) {
        const unsigned way = static_cast<unsigned>(plan >> (8 + (call % 28) * 2)) & 3;
        bool got = false;
        bool wanted = false;
        std::wstring text;
        if (way == 0) {
          got = file.ReadString(line) != 0;
          text.assign(line, static_cast<std::size_t>(line.GetLength()));
          wanted = model.ReadLine(expected);
        } else {
          const unsigned capacity = way == 1 ? small : large;
          wchar_t* buffer = way == 1 ? small_buffer.get() : large_buffer.get();
          const wchar_t* result = file.ReadString(buffer, capacity);
          wanted = model.ReadBuffer(expected, capacity);
          got = result != nullptr;
          if (capacity > 1) {
            text.assign(buffer, std::min<std::size_t>(expected.size(), capacity - 1));
            if (got && buffer[expected.size()] != 0) std::abort();
          } else {
            text = expected;
          }
        }
        if (got != wanted || text != expected) std::abort();
        if (file.GetPosition() != model.position()) std::abort();
        if (!got) break;
      }
    }
  }
  ReadThrough(work.wide, CFile::typeText, small < 2 ? 2 : small);
  ReadThrough(work.wide, CFile::typeBinary, large);
  return 0;
}
