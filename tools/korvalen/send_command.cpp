// korvalen send --port N [line settings] [--translate FILE] PROGRAM: sends a
// CNC program to a machine control over the serial link, byte for byte, with
// a progress bar when standard error is a terminal. Exit status 0 only when
// the port took every byte.
// korvalen translate FILE IN OUT: the character translation of a program for
// its control, as the send command applies it with --translate.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "failure.h"
#include "korvalen/korvalen.h"
#include "serial_line.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

using Clock = std::chrono::steady_clock;

// What Windows leaves in OVERLAPPED::Internal while a write is not complete.
constexpr ULONG_PTR kStatusPending = 0x103;
constexpr int kStopRequested = 1000;

struct SendOptions {
  int port = 0;
  int baud = 9600;
  std::string parity = "N";
  int data_bits = 8;
  std::string stop_bits = "1";
  std::string handshake = "none";
  std::string translation;
  std::string program;
};

TRegCom* g_link = nullptr;

// The tool only sends; its receiver waits for the link to close. A control's
// XOFF is obeyed by the port itself.
DWORD WINAPI WaitForClose(LPVOID) {
  while (std::atomic_ref<int>(g_link->stop_request).load() != kStopRequested) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return 0;
}

bool ReadProgram(const std::wstring& name, std::string& bytes) {
  FILE* f = fOpen(name.c_str(), L"rb");
  if (f == nullptr) return false;
  char buffer[65536];
  std::size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
  const bool complete = std::ferror(f) == 0;
  std::fclose(f);
  return complete;
}

class Progress {
 public:
  Progress(std::size_t total, bool shown) : total_(total), shown_(shown), start_(Clock::now()) {}

  void Update(std::size_t sent, bool last = false) {
    if (!shown_) return;
    const Clock::time_point now = Clock::now();
    if (!last && now - drawn_ < std::chrono::milliseconds(100)) return;
    drawn_ = now;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double rate = seconds > 0 ? static_cast<double>(sent) / seconds : 0;
    const long left = rate > 0 ? static_cast<long>(static_cast<double>(total_ - sent) / rate) : 0;
    const int width = 24;
    const int filled = total_ > 0 ? static_cast<int>(width * sent / total_) : width;
    std::fprintf(stderr, "\r[%s%s] %zu of %zu bytes  %.1f kB/s  %ld:%02ld left ",
                 std::string(static_cast<std::size_t>(filled), '#').c_str(),
                 std::string(static_cast<std::size_t>(width - filled), '.').c_str(), sent, total_,
                 rate / 1000, left / 60, left % 60);
    if (last) std::fputc('\n', stderr);
    std::fflush(stderr);
  }

 private:
  std::size_t total_;
  bool shown_;
  Clock::time_point start_;
  Clock::time_point drawn_{};
};

// One write of the library; true when the port took all of it.
bool SendPiece(TRegCom& link, OVERLAPPED& write, const std::string& piece) {
  write.Internal = kStatusPending;
  write.InternalHigh = 0;
  if (piece.size() == 1 && piece[0] == 0) {
    EnviarUnCaracter(link.port, write, 0);
  } else {
    std::vector<wchar_t> text(piece.size() + 1);
    CharToTChar(text.data(), static_cast<int>(text.size()), piece.c_str());
    EnviarUnTexto(link.port, write, text.data());
  }
  return write.Internal == 0 && write.InternalHigh == piece.size();
}

// Pieces the line puts out well within the 1000 ms a write may wait (a tenth
// of the rate in bytes per second), cut after a line end where there is one;
// a NUL byte, which would end a text, goes by itself.
bool SendProgram(TRegCom& link, OVERLAPPED& write, const std::string& bytes, Progress& progress,
                 std::size_t& sent) {
  const std::size_t most =
      std::clamp<std::size_t>(static_cast<std::size_t>(link.baud_rate) / 40, 16, 4096);
  while (sent < bytes.size()) {
    std::size_t size = std::min(most, bytes.size() - sent);
    const std::size_t nul = bytes.find('\0', sent);
    if (nul == sent) {
      size = 1;
    } else if (nul != std::string::npos && nul < sent + size) {
      size = nul - sent;
    } else if (sent + size < bytes.size()) {
      const std::size_t line_end = bytes.rfind('\n', sent + size - 1);
      if (line_end != std::string::npos && line_end >= sent) size = line_end + 1 - sent;
    }
    if (!SendPiece(link, write, bytes.substr(sent, size))) return false;
    sent += size;
    progress.Update(sent);
  }
  return true;
}

bool Send(const SendOptions& options) {
  std::wstring program = argument_text(options.program);
  std::filesystem::path translated;
  if (!options.translation.empty()) {
    translated = std::filesystem::temp_directory_path() /
                 ("korvalen-send-" + std::to_string(Clock::now().time_since_epoch().count()));
    CambiarCnc(argument_text(options.translation).c_str(), program.c_str(),
               translated.wstring().c_str());
    program = translated.wstring();
  }
  std::string bytes;
  const bool read = ReadProgram(program, bytes);
  if (!translated.empty()) {
    std::error_code ignored;
    std::filesystem::remove(translated, ignored);
  }
  if (!read) fail_errno(argument_text(options.program), L"cannot be read");

  static const std::map<std::string, int> kHandshakes = {{"none", 0}, {"xon", 1}, {"rts", 0}};
  TRegCom link{};
  link.port_number = options.port;
  link.baud_rate = options.baud;
  link.data_bits = options.data_bits;
  link.parity = static_cast<wchar_t>(options.parity[0]);
  link.stop_bits = std::stod(options.stop_bits);
  g_link = &link;
  HANDLE event = nullptr;
  HANDLE thread = nullptr;
  OVERLAPPED write{};
  OVERLAPPED read_overlapped{};
  if (!InicializarElPuerto(link, 4096, 4096, event, thread, write, read_overlapped, WaitForClose,
                           kHandshakes.at(options.handshake), 0x11, 0x13, 1000, 2048, 512,
                           options.handshake == "rts" ? 1 : 0, 0)) {
    fail(L"COM" + std::to_wstring(options.port),
         L"cannot open the port (missing, busy, not a serial port, or it refuses these line "
         L"settings)");
  }
  Progress progress(bytes.size(), error_output_is_terminal());
  std::size_t sent = 0;
  const bool complete = SendProgram(link, write, bytes, progress, sent);
  if (complete) drain_port(link.port);
  progress.Update(sent, true);
  CerrarElPuerto(link, event, thread, write, read_overlapped);
  if (!complete) {
    fail(L"COM" + std::to_wstring(options.port),
         L"the port took " + std::to_wstring(sent) + L" of " + std::to_wstring(bytes.size()) +
             L" bytes: a write did not complete within 1000 ms, or the line failed");
  }
  return true;
}

bool Translate(const std::string& translation, const std::string& in, const std::string& out) {
  const std::wstring input = argument_text(in);
  const std::wstring output = argument_text(out);
  errno = Access(input.c_str(), 4);
  if (errno != 0) fail_errno(input, L"cannot be read");
  CambiarCnc(argument_text(translation).c_str(), input.c_str(), output.c_str());
  if (Access(output.c_str(), 0) != 0) fail(output, L"cannot be written");
  return true;
}

}  // namespace

void add_send_commands(CLI::App& app) {
  static SendOptions options;
  auto* send = app.add_subcommand("send", "Send a CNC program to a machine control over COMn");
  send->add_option("--port", options.port, "Serial port number n of COMn")
      ->required()
      ->check(CLI::Range(1, 255));
  send->add_option("--baud", options.baud, "Bits per second")->check(CLI::PositiveNumber);
  send->add_option("--parity", options.parity, "N, O, E or M")
      ->check(CLI::IsMember({"N", "O", "E", "M"}));
  send->add_option("--data", options.data_bits, "Data bits")->check(CLI::Range(5, 8));
  send->add_option("--stop", options.stop_bits, "Stop bits")
      ->check(CLI::IsMember({"1", "1.5", "2"}));
  send->add_option("--handshake", options.handshake, "none, xon (XON/XOFF) or rts (RTS/CTS)")
      ->check(CLI::IsMember({"none", "xon", "rts"}));
  send->add_option("--translate", options.translation,
                   "Translation file applied to the program first");
  send->add_option("PROGRAM", options.program, "The CNC program")->required();
  static std::string directory;
  add_directory_option(*send, directory);
  send->callback([] {
    enter_directory(directory);
    if (!Send(options)) throw CLI::RuntimeError(1);
  });

  static std::string translation, in, out;
  auto* translate =
      app.add_subcommand("translate", "Translate a CNC program's characters for its control");
  translate->add_option("FILE", translation, "Translation file (A/B records)")->required();
  translate->add_option("IN", in, "The program")->required();
  translate->add_option("OUT", out, "The translated program")->required();
  add_directory_option(*translate, directory);
  translate->callback([] {
    enter_directory(directory);
    if (!Translate(translation, in, out)) throw CLI::RuntimeError(1);
  });
}

}  // namespace korvalen::tool
