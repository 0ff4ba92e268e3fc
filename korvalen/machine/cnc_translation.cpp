#include "korvalen/machine/cnc_translation.h"

#include <cstdio>
#include <memory>
#include <unordered_map>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"

#if defined(_WIN32) && !defined(_WIN64)
static_assert(sizeof(TRegListaCaract) == 24);
#endif

namespace {

constexpr int kProgramLineChars = 255;

// Only the first character of a text counts; the node keeps one more and the
// terminator.
void KeepText(const wchar_t* text, wchar_t (&out)[3]) {
  out[0] = text[0];
  out[1] = text[0] != 0 ? text[1] : 0;
  out[2] = 0;
}

TRegListaCaract* FindIndex(TRegListaCaract* head, int index) {
  for (TRegListaCaract* node : korvalen::detail::each(head)) {
    if (node->index == index) return node;
  }
  return nullptr;
}

bool LoadList(const wchar_t* file_name, TRegListaCaract*& head, TRegListaCaract*& tail) {
  if (file_name == nullptr || file_name[0] == 0) return false;
  FILE* in = fOpen(file_name, L"rt");
  if (in == nullptr) return false;
  head = tail = nullptr;
  wchar_t text[korvalen::kCfgLineChars + 1];
  korvalen::detail::walk_lines<korvalen::kCfgLineChars>(
      in, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type == L'A') {
          LeerUnTexto(line, cursor, text);
          TRegListaCaract node{};
          node.index = index;
          KeepText(text, node.character);
          // Until a 'B' record says otherwise the character stays itself.
          KeepText(text, node.replacement);
          korvalen::detail::append(head, tail, node);
        } else if (type == L'B') {
          if (TRegListaCaract* node = FindIndex(head, index)) {
            LeerUnTexto(line, cursor, text);
            KeepText(text, node->replacement);
          }
        }
        return true;
      });
  std::fclose(in);
  return true;
}

// The replacement of each character, from the first entry that carries it.
std::unordered_map<wchar_t, wchar_t> ReplacementTable(TRegListaCaract* head) {
  std::unordered_map<wchar_t, wchar_t> table;
  for (const TRegListaCaract* node : korvalen::detail::each(head)) {
    if (node->character[0] != 0) table.emplace(node->character[0], node->replacement[0]);
  }
  return table;
}

void Translate(FILE* in, FILE* out, const std::unordered_map<wchar_t, wchar_t>& table) {
  wchar_t line[kProgramLineChars + 1];
  for (;;) {
    LeerLineaDeFichero(in, line, kProgramLineChars);
    if (line[0] == 0 && std::feof(in)) break;
    for (wchar_t* c = line; *c != 0; ++c) {
      const auto found = table.find(*c);
      if (found != table.end()) *c = found->second;
      // An empty replacement ends the line here.
      if (*c == 0) break;
    }
    EscribirLineaEnFichero(out, line);
    if (std::feof(in)) break;
  }
}

}  // namespace

void CargarListaConfig(const wchar_t* file_name, TRegListaCaract*& head, TRegListaCaract*& tail) {
  try {
    LoadList(file_name, head, tail);
  } catch (...) {
  }
}

void CambiarCnc(const wchar_t* translation_file, const wchar_t* input_file,
                const wchar_t* output_file) {
  TRegListaCaract* head = nullptr;
  TRegListaCaract* tail = nullptr;
  try {
    LoadList(translation_file, head, tail);
    const std::unordered_map<wchar_t, wchar_t> table = ReplacementTable(head);
    FILE* in = fOpen(input_file != nullptr ? input_file : L"", L"rt");
    if (in != nullptr) {
      std::unique_ptr<FILE, int (*)(FILE*)> reading(in, std::fclose);
      korvalen::detail::write_whole_file(output_file, [&](FILE* out) {
        Translate(in, out, table);
        // Done with the input before the output takes its place: it may be
        // the same file, which Windows replaces only once it is closed.
        reading.reset();
      });
    }
  } catch (...) {
  }
  korvalen::detail::free_list(head, tail);
}
