// Text-mode reading over the stream's chunk boundaries: whatever the size of
// the stream's buffer and of the reads, CR LF reads as LF, a lone CR stays,
// a CR at the end of a chunk is decided by the byte after it, and Ctrl-Z ends
// the input.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "korvalen/foundation/streams.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::RunningUnderWine;
using korvalen::testing::WriteBytes;

class TextModeRead : public korvalen::testing::TempDirTest {};

// What a text-mode reader must give for the bytes on disk.
std::string Folded(const std::string& raw) {
  std::string out;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    const char c = raw[i];
    if (c == '\x1A') break;
    if (c == '\r' && i + 1 < raw.size() && raw[i + 1] == '\n') continue;
    out += c;
  }
  return out;
}

enum class Way { kFreadChunks, kFgets, kGetc };

// Reads the whole file through fOpen "rt" with the given stream buffer
// (0: as opened, -1: unbuffered) and the given way of reading.
std::string ReadText(const char* name, int buffer, Way way, std::size_t chunk) {
  FILE* f = fOpen(name, "rt");
  if (f == nullptr) return "<cannot open>";
  if (buffer < 0) std::setvbuf(f, nullptr, _IONBF, 0);
  if (buffer > 0) std::setvbuf(f, nullptr, _IOFBF, static_cast<std::size_t>(buffer));
  std::string out;
  std::vector<char> piece(chunk + 1);
  switch (way) {
    case Way::kFreadChunks:
      for (std::size_t n; (n = std::fread(piece.data(), 1, chunk, f)) > 0;)
        out.append(piece.data(), n);
      break;
    case Way::kFgets:
      while (std::fgets(piece.data(), static_cast<int>(piece.size()), f) != nullptr)
        out += piece.data();
      break;
    case Way::kGetc:
      for (int c; (c = std::getc(f)) != EOF;) out += static_cast<char>(c);
      break;
  }
  std::fclose(f);
  return out;
}

struct Reading {
  int buffer;
  Way way;
  std::size_t chunk;
};

const Reading kReadings[] = {
    {0, Way::kFreadChunks, 30000}, {0, Way::kFreadChunks, 1000},   {0, Way::kFgets, 100},
    {-1, Way::kGetc, 1},           {1, Way::kFreadChunks, 7},      {2, Way::kGetc, 1},
    {3, Way::kFgets, 50},          {4096, Way::kFgets, 5000},      {8191, Way::kFreadChunks, 8192},
    {8192, Way::kGetc, 1},         {8193, Way::kFreadChunks, 333}, {20000, Way::kFgets, 9000},
};

// Dense line ends, so that every kind of them falls on every offset around
// each chunk boundary as the phase moves.
const std::string kPattern = "ab\r\n\r\r\nc\rd\n\r\n\n\rxyz\r\r";

std::string PatternFile(std::size_t phase, std::size_t size) {
  std::string raw(phase, 'p');
  while (raw.size() < size) raw += kPattern;
  raw.resize(size);
  return raw;
}

TEST_F(TextModeRead, LineEndsAcrossChunkBoundaries) {
  for (std::size_t phase = 0; phase < kPattern.size(); ++phase) {
    // The last byte alternates between a CR (kept at the end of the file) and
    // an ordinary one.
    const std::string raw = PatternFile(phase, 20000 + phase % 2);
    WriteBytes("T.TXT", raw);
    const std::string expected = Folded(raw);
    for (const Reading& r : kReadings) {
      EXPECT_EQ(ReadText("T.TXT", r.buffer, r.way, r.chunk), expected)
          << "phase " << phase << " buffer " << r.buffer << " chunk " << r.chunk;
    }
    if (HasFailure()) break;
  }
}

TEST_F(TextModeRead, CtrlZAroundChunkBoundaries) {
  for (std::size_t at = 8185; at <= 8200; ++at) {
    std::string raw = PatternFile(at % kPattern.size(), 20000);
    raw[at] = '\x1A';
    if (at % 2 == 0) raw[at - 1] = '\r';  // a CR right before the end of input stays
    WriteBytes("Z.TXT", raw);
    const std::string expected = Folded(raw);
    ASSERT_LT(expected.size(), at);
    for (const Reading& r : kReadings) {
      // Wine's runtime reads on past the Ctrl-Z once the read that met it
      // has returned; Windows and the library stop for good.
      if (RunningUnderWine() && r.way == Way::kFreadChunks && r.chunk < raw.size()) continue;
      EXPECT_EQ(ReadText("Z.TXT", r.buffer, r.way, r.chunk), expected)
          << "Ctrl-Z at " << at << " buffer " << r.buffer << " chunk " << r.chunk;
    }
    if (HasFailure()) break;
  }
}

}  // namespace
