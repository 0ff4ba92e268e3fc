#include "korvalen/ui/printer_setup.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/platform/internal/print_setup.h"

namespace {

namespace platform = korvalen::platform;

constexpr int kLineChars = 80;

int ReadInteger(FILE* file) {
  wchar_t line[kLineChars + 1];
  LeerLineaDeFichero(file, line, kLineChars);
  int cursor = 0, value = 0;
  LeerUnEntero(line, cursor, value);
  return value;
}

void ReadName(FILE* file, wchar_t* name) {
  wchar_t line[kLineChars + 1];
  LeerLineaDeFichero(file, line, kLineChars);
  int cursor = 0;
  LeerUnTexto(line, cursor, name);
}

// Lines 1 to 7: the stream is left at the settings bytes; null when the
// file cannot be opened.
FILE* ReadHead(const wchar_t* name, int& first, int& second, int& third, wchar_t* driver,
               wchar_t* device, wchar_t* port, int& size) {
  first = second = third = size = 0;
  FILE* file = name != nullptr ? fOpen(name, L"rb") : nullptr;
  if (file == nullptr) return nullptr;
  first = ReadInteger(file);
  second = ReadInteger(file);
  third = ReadInteger(file);
  ReadName(file, driver);
  ReadName(file, device);
  ReadName(file, port);
  size = ReadInteger(file);
  return file;
}

// A block the caller frees as global memory.
void* SettingsBlock(std::size_t size) {
#if defined(_WIN32)
  HGLOBAL block = GlobalAlloc(GHND, size);
  return block != nullptr ? GlobalLock(block) : nullptr;
#else
  return std::calloc(size, 1);
#endif
}

void WriteName(FILE* file, const std::wstring& name) {
  EscribirLineaEnFichero(file, (L"\"" + name + L"\"").c_str());
}

void WritePrinterFile(const wchar_t* name, const int (&values)[3],
                      const platform::PrinterChoice& choice) {
  korvalen::detail::write_whole_file(
      name,
      [&](FILE* file) {
        for (const int value : values) fPrintf(file, L"%d\n", value);
        WriteName(file, choice.driver);
        WriteName(file, choice.device);
        WriteName(file, choice.port);
        fPrintf(file, L"%d\n", static_cast<int>(choice.settings.size()));
        if (!choice.settings.empty()) {
          std::fwrite(choice.settings.data(), 1, choice.settings.size(), file);
        }
      },
      platform::WorkContent::kBinary);
}

}  // namespace

C_MiImpresora::C_MiImpresora() : CPrintDialog(TRUE, 0, nullptr) {}

C_MiImpresora::~C_MiImpresora() = default;

void C_MiImpresora::ConfigurarImpresora(int /*unused*/, const wchar_t* file) {
  try {
    int values[3] = {}, size = 0;
    wchar_t driver[kLineChars + 1] = {}, device[kLineChars + 1] = {}, port[kLineChars + 1] = {};
    platform::PrinterChoice choice;
    if (FILE* f = ReadHead(file, values[0], values[1], values[2], driver, device, port, size)) {
      // As the reader's block: n bytes, zeros where the file ends before them.
      if (size > 0) {
        choice.settings.assign(static_cast<std::size_t>(size), 0);
        std::fread(choice.settings.data(), 1, choice.settings.size(), f);
      }
      std::fclose(f);
    }
    choice.driver = driver;
    choice.device = device;
    choice.port = port;
    if (driver[0] != 0) {
      bool confirmed = false;
      (void)platform::run_print_setup(true, choice, confirmed);
    } else if (DoModal() == IDOK && Choice() != nullptr) {
      choice = *Choice();
    }
    WritePrinterFile(file, values, choice);
  } catch (...) {
  }
}

void LeerFicheroCfgList(const wchar_t* file, int& first, int& second, int& third, wchar_t* driver,
                        wchar_t* device, wchar_t* port, LPDEVMODEW& settings) {
  first = second = third = 0;
  try {
    int size = 0;
    FILE* f = ReadHead(file, first, second, third, driver, device, port, size);
    if (f == nullptr) return;
    if (size > 0) {
      void* block = SettingsBlock(static_cast<std::size_t>(size));
      settings = static_cast<LPDEVMODEW>(block);
      if (block != nullptr) std::fread(block, 1, static_cast<std::size_t>(size), f);
    }
    std::fclose(f);
  } catch (...) {
  }
}

#if !defined(_WIN32)
HGLOBAL GlobalFree(HGLOBAL block) {
  std::free(block);
  return nullptr;
}
#endif
