// korvalen text cat FILE: a text file of the suite, UTF-16 (by its
// byte-order mark, found as the library finds it) or 8-bit in the code page,
// printed line by line as UTF-8, as the suite's programs read it.
// korvalen text convert --to utf16|ansi IN OUT: the same lines written as
// UTF-16LE with a mark, or as 8-bit text, with CR LF line ends. Converting to
// 8-bit cuts a line at a character the code page cannot hold; the command
// then says so and exits 1.
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

using Lines = std::vector<std::wstring>;

// The lines of the file as CUTF16File reads them: a UTF-16 file in binary
// mode, an 8-bit one in text mode, as settings files are read.
bool ReadLines(const std::wstring& name, Lines& lines) {
  CUTF16File file;
  constexpr UINT kRead = CFile::modeRead | CFile::shareDenyWrite;
  if (!file.Open(name.c_str(), kRead | CFile::typeBinary)) return false;
  if (file.IsUnicodeFile() != 1 && !file.Open(name.c_str(), kRead | CFile::typeText)) return false;
  CString line;
  while (file.ReadString(line))
    lines.emplace_back(static_cast<const wchar_t*>(line), line.GetLength());
  return true;
}

// UTF-16 lines hold surrogate pairs as two characters; where wchar_t has 32
// bits a pair becomes the one character it stands for before printing.
std::wstring Printable(const std::wstring& units) {
  if constexpr (sizeof(wchar_t) == 2) {
    return units;
  } else {
    std::wstring text;
    for (std::size_t i = 0; i < units.size(); ++i) {
      const auto high = static_cast<unsigned>(units[i]);
      const auto low = i + 1 < units.size() ? static_cast<unsigned>(units[i + 1]) : 0u;
      if (high >= 0xD800 && high < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
        text += static_cast<wchar_t>(0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00));
        ++i;
      } else {
        text += units[i];
      }
    }
    return text;
  }
}

// Whether the line comes back whole from the code page.
bool FitsCodePage(const std::wstring& line) {
  const int bytes = static_cast<int>(line.size() * 4 + 1);
  std::vector<char> narrow(static_cast<std::size_t>(bytes));
  std::vector<wchar_t> back(line.size() + 1);
  TCharToChar(narrow.data(), bytes, line.c_str());
  CharToTChar(back.data(), static_cast<int>(back.size()), narrow.data());
  return line == back.data();
}

int Convert(const std::string& to, const std::wstring& in, const std::wstring& out) {
  Lines lines;
  errno = 0;
  if (!ReadLines(in, lines)) fail_errno(in, L"cannot be read");
  const bool utf16 = to == "utf16";
  CUTF16File file;
  CFileException error;
  if (!file.Open(
          out.c_str(),
          CFile::modeCreate | CFile::modeWrite | (utf16 ? CFile::typeBinary : CFile::typeText),
          &error)) {
    fail(out, L"cannot be written");
  }
  int cut = 0;
  for (const std::wstring& line : lines) {
    if (!utf16 && !FitsCodePage(line)) ++cut;
    file.WriteString(line.c_str(), utf16 ? 1 : 0);
    file.WriteString(utf16 ? L"\r\n" : L"\n", utf16 ? 1 : 0);
  }
  file.Close();
  if (cut > 0) {
    fail(in, std::to_wstring(cut) +
                 L" line(s) hold characters the code page cannot; they were cut there");
  }
  return 0;
}

// The file classes report failures of reading and writing by throwing.
template <typename Work>
int Guarded(Work work) {
  try {
    return work();
  } catch (CFileException* e) {
    const std::wstring name = static_cast<const wchar_t*>(e->m_strFileName);
    e->Delete();
    fail(name, L"input/output error");
  }
}

}  // namespace

void add_text_commands(CLI::App& app) {
  auto* text = app.add_subcommand("text", "UTF-16 and 8-bit text files");
  text->require_subcommand(1);

  auto* cat = text->add_subcommand("cat", "Print a text file as UTF-8");
  static std::string file;
  static std::string directory;
  static bool json = false;
  cat->add_option("FILE", file, "UTF-16 or 8-bit text file")->required();
  add_directory_option(*cat, directory);
  add_json_flag(*cat, json, "file, lines [text of each line]");
  cat->callback([] {
    enter_directory(directory);
    const int status = Guarded([] {
      Lines lines;
      errno = 0;
      if (!ReadLines(argument_text(file), lines))
        fail_errno(argument_text(file), L"cannot be read");
      if (json) open_document();
      section()["file"] = utf8(argument_text(file));
      section()["lines"] = Json::array();
      for (const std::wstring& line : lines) {
        print(Printable(line) + L"\n");
        section()["lines"].push_back(utf8(Printable(line)));
      }
      close_document();
      return 0;
    });
    std::fflush(stdout);
    if (status != 0) throw CLI::RuntimeError(status);
  });

  auto* convert = text->add_subcommand("convert", "Write a text file as UTF-16 or 8-bit text");
  static std::string to;
  static std::string in;
  static std::string out;
  convert->add_option("--to", to, "utf16 or ansi")
      ->required()
      ->check(CLI::IsMember({"utf16", "ansi"}));
  convert->add_option("IN", in, "Text file to read")->required();
  convert->add_option("OUT", out, "File to write")->required();
  add_directory_option(*convert, directory);
  convert->callback([] {
    enter_directory(directory);
    const int status = Guarded([] { return Convert(to, argument_text(in), argument_text(out)); });
    if (status != 0) throw CLI::RuntimeError(status);
  });
}

}  // namespace korvalen::tool
