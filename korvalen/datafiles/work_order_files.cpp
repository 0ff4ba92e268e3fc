#include "korvalen/datafiles/work_order_files.h"

#include <cstdio>
#include <initializer_list>

#include "korvalen/config/config_reader.h"
#include "korvalen/datafiles/internal/message_resources.h"
#include "korvalen/datafiles/internal/state_lines.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/file_exists.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/foundation/string_resources.h"

namespace {

using korvalen::detail::file_exists;
using korvalen::detail::or_empty;

constexpr const wchar_t* kPartListFile = L"LSPINOOF.SYS";
constexpr const wchar_t* kPartsChangedFile = L"CHGPIEZA.SYS";
constexpr const wchar_t* kDefaultLastOrdersFile = L"LISTOFS.SYS";
constexpr const wchar_t* kActiveOrderFile = L"ORDENACT.SYS";
constexpr const wchar_t* kActiveDatabaseFile = L"DIRBDACT.SYS";

constexpr int kNameChars = 40;
constexpr int kDirectoryChars = 256;
constexpr int kLastOrders = 10;
constexpr int kLastOrderChars = 81;

void Clear(wchar_t* text) {
  if (text != nullptr) text[0] = 0;
}

// The file becomes the lines, each followed by a line end.
void WriteLines(const wchar_t* file_name, std::initializer_list<const wchar_t*> lines) {
  korvalen::detail::write_whole_file(file_name, [&](FILE* f) {
    for (const wchar_t* line : lines) korvalen::detail::write_state_line(f, or_empty(line));
  });
}

// out = the first line of the file (at most max characters), or empty.
// false when the file cannot be opened.
bool ReadFirstLine(const wchar_t* file_name, wchar_t* out, int max) {
  Clear(out);
  if (out == nullptr) return false;
  FILE* f = fOpen(file_name, L"rt");
  if (f == nullptr) return false;
  LeerLineaDeFichero(f, out, max);
  std::fclose(f);
  return true;
}

}  // namespace

// --- part list without a work order ---------------------------------------------

void GenerarFicheroDeLstPieSinOF(const wchar_t* name) { WriteLines(kPartListFile, {name}); }

void BorrarFicheroDeLstPieSinOF() {
  if (file_exists(kPartListFile)) Remove(kPartListFile);
}

int DamePieDeLstPieSinOF(wchar_t* name) {
  return ReadFirstLine(kPartListFile, name, kNameChars) ? 1 : 0;
}

// --- parts-changed marker ------------------------------------------------------------

void CrearFicheroCambioPiezas() {
  if (file_exists(kPartsChangedFile)) return;
  if (FILE* f = fOpen(kPartsChangedFile, L"wt")) std::fclose(f);
}

int ExisteFicheroCambioPiezas() {
  if (!file_exists(kPartsChangedFile)) return 0;
  Remove(kPartsChangedFile);
  return 1;
}

// --- last work orders ------------------------------------------------------------------

void GenerarFicheroUltimasOFs(const wchar_t* file_name, TRegListaNombre* list) {
  korvalen::detail::write_whole_file(file_name, [&](FILE* f) {
    const TRegListaNombre* node = list;
    for (int i = 0; i < kLastOrders; ++i) {
      korvalen::detail::write_state_line(f, node != nullptr ? node->name : L"");
      if (node != nullptr) node = node->next;
    }
  });
}

void LeerFicheroUltimasOFs(const wchar_t* file_name, TRegListaNombre*& first,
                           TRegListaNombre*& last) {
  first = nullptr;
  last = nullptr;
  FILE* f = fOpen(or_empty(file_name), L"rt");
  if (f == nullptr) GenerarFicheroUltimasOFs(kDefaultLastOrdersFile, nullptr);
  for (int i = 0; i < kLastOrders; ++i) {
    TRegListaNombre node{};
    if (f != nullptr) LeerLineaDeFichero(f, node.name, kLastOrderChars);
    korvalen::detail::append(first, last, node);
  }
  if (f != nullptr) std::fclose(f);
}

// --- active work order and database directory ------------------------------------------

void GenerarFicheroDeOFActiva(const wchar_t* name, const wchar_t* quote) {
  WriteLines(kActiveOrderFile, {name, quote});
}

void DameNombreDeOFActiva(wchar_t* name) { ReadFirstLine(kActiveOrderFile, name, kNameChars); }

void DameNombreYQuoteDeOFActiva(wchar_t* name, wchar_t* quote) {
  Clear(name);
  Clear(quote);
  if (name == nullptr || quote == nullptr) return;
  FILE* f = fOpen(kActiveOrderFile, L"rt");
  if (f == nullptr) return;
  LeerLineaDeFichero(f, name, kNameChars);
  if (!std::feof(f)) LeerLineaDeFichero(f, quote, kNameChars);
  std::fclose(f);
}

void GenerarFicheroDeDirBDActiva(const wchar_t* dir) { WriteLines(kActiveDatabaseFile, {dir}); }

void DameNombreDeDirBDActiva(wchar_t* dir) {
  ReadFirstLine(kActiveDatabaseFile, dir, kDirectoryChars);
}

// --- helpers -------------------------------------------------------------------------------

void DameMensajeEspecial(wchar_t* text) {
  const unsigned id = korvalen::detail::special_message_id(text);
  if (id != 0) LoadStr(id, text);
}

void QuitarDirectorioAlFichero(wchar_t* path) {
  if (path == nullptr) return;
  const int n = StrLen(path);
  if (n <= 1) return;
  int i = n - 1;
  while (i > 1 && path[i] != L'\\') --i;
  if (i <= 1) return;
  int k = 0;
  for (int j = i + 1; j <= n; ++j) path[k++] = path[j];
}
