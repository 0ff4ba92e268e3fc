// Fuzzes the readers and rewriters of the installation and work-order state
// files, the catalogues, the formats of a language, the column layouts and
// the figure lists: arbitrary bytes become the files of an installation
// directory, which every reader then reads into heap buffers of exactly the
// capacity its contract states, and every rewriter edits with fuzzed values.
#include <fuzzer/FuzzedDataProvider.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include "korvalen/korvalen.h"

namespace {

using Chars = std::unique_ptr<wchar_t[]>;

Chars Make(std::size_t capacity) { return Chars(new wchar_t[capacity]); }

// The files live by bare name in the current directory: each fuzzing process
// works in a directory of its own.
struct WorkDirectory {
  WorkDirectory() {
    std::random_device random;
    path = std::filesystem::temp_directory_path() /
           ("korvalen-state-fuzz-" + std::to_string(random()));
    std::filesystem::create_directories(path);
    std::filesystem::current_path(path);
  }
  ~WorkDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(std::filesystem::temp_directory_path(), ignored);
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;
};

constexpr const char* kFiles[] = {
    "param.sys",    "PEQUENO.SYS",  "SERVPACK.DTS", "MIRSELID.CFG", "MIRSELPR.CFG", "MIRSELIN.CNI",
    "UNIDADES.CFG", "ORDENACT.SYS", "DIRBDACT.SYS", "LSPINOOF.SYS", "LISTOFS.SYS",  "CHGCHAPA.SYS",
    "CFGSMACH.CFG", "MOSAICOS.CFG", "LISTPOST.ALL", "LISTPOST.CFG", "LISTIMPO.ALL", "LISTIMPO.CFG",
    "LISTEXPO.ALL", "LISTEXPO.CFG", "CFGSTABS.CFG", "LISTDUCT.CFG", "DUCTUSER.CFG", "FIGURE.CFG",
    "MACHINE.MAQ",  "LSIMPEXP.007",
};

void WriteFile(const char* name, const std::string& bytes) {
  FILE* f = std::fopen(name, "wb");
  if (f == nullptr) return;
  std::fwrite(bytes.data(), 1, bytes.size(), f);
  std::fclose(f);
}

std::wstring Widen(const std::string& text) {
  std::wstring out;
  // Some characters outside the code page, and line feeds, to cut values.
  for (unsigned char byte : text) out += byte == 0x7F ? L'\u4E2D' : static_cast<wchar_t>(byte);
  return out;
}

void ReadInstallation() {
  int language, units, cp1, cp2, wos;
  Chars server = Make(257), files = Make(257), shared = Make(257), company = Make(257),
        title = Make(257), backup = Make(257), style = Make(257);
  LeerDatosParamSys(language, server.get(), files.get(), shared.get(), units, cp1, cp2,
                    company.get(), title.get(), wos, backup.get(), style.get());
  int basic = 0;
  LeerSiOpcBasicas(basic);
  int first, second;
  Chars box = Make(81);
  LeerPequeno(first, box.get(), second);
  int v[7] = {};
  DameVersionYServicePack(v[0], v[1], v[2], v[3], v[4], v[5], v[6]);
  int flag = 0;
  Chars text = Make(501);
  text[0] = 0;
  LeerCfgMirselId(flag, text.get());
  TRegUnidades* units_table = nullptr;
  if (DamePunUnidades(units_table)) {
    LeerPunUnidades(units_table, 1);
    LeerPunUnidades(units_table, 2);
    LiberaPunUnidades(units_table);
  }
}

// The machine parameter set, the mosaics (the list rewritten, which frees it)
// and the punching records.
void ReadAndRewriteMachineSettings(int number, const std::wstring& text) {
  int a000, a001, a009;
  LONG a002, a003;
  Chars t[5] = {Make(81), Make(81), Make(81), Make(81), Make(81)};
  ReadCfgsMachParameters(a000, a001, a002, a003, t[0].get(), t[1].get(), t[2].get(), t[3].get(),
                         t[4].get(), a009);
  WriteCfgsMachParameters(number & 1, number, number / 3);
  TipoRegMosaico mosaics;
  int error = number & 2;
  LeerCfgMosaicos(mosaics, error);
  EscribirCfgMosaicos(mosaics);
  int p[9] = {};
  double reals[5] = {};
  Chars material = Make(501);
  LeerDatosCfgPnzMat(p[0], p[1], p[2], p[3], p[4], p[5], p[6], reals, p[7], p[8], material.get());
  EscribirDatosCfgPnzMat(number, 1, 2, 3, 4, 5, number, reals, 6, 7, text.c_str());
  Chars id = Make(kCfgOptionIDChars);
  GetCfgOptionID(number % 10, number / 10 % 10, id.get());
  std::wstring record = text;
  int position = number % 8, state = 0;
  // Past the end of a record without a terminator every word reads as 0.
  for (int i = 0; i < 1000; ++i) {
    if (LeerEstadoOpt(record.data(), position, state) == 0) break;
    if (position >= static_cast<int>(record.size())) break;
  }
}

void ReadWorkOrderState() {
  Chars name = Make(41), quote = Make(41), part = Make(41), dir = Make(257);
  DameNombreYQuoteDeOFActiva(name.get(), quote.get());
  DameNombreDeOFActiva(name.get());
  DamePieDeLstPieSinOF(part.get());
  DameNombreDeDirBDActiva(dir.get());
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  LeerFicheroUltimasOFs(L"LISTOFS.SYS", first, last);
  GenerarFicheroUltimasOFs(L"LISTOFS.SYS", first);
  LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last));
}

template <typename T>
void Free(T*& first, T*& last) {
  LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last));
}

// The catalogues read and their installed files rewritten from what was
// installed; a machine's file names and the process-file settings.
void ReadAndRewriteCatalogs(int number) {
  for (const wchar_t* file : {L"LISTPOST.ALL", L"LISTIMPO.CFG"}) {
    TRegListaMaqFic* first = nullptr;
    TRegListaMaqFic* last = nullptr;
    DameListaMaqDeFichero(file, first, last);
    Free(first, last);
    TRegListaNombre *all = nullptr, *all_last = nullptr, *makers = nullptr, *makers_last = nullptr;
    ObtenerListaFabricantes(file, all, all_last, makers, makers_last);
    Free(all, all_last);
    Free(makers, makers_last);
  }
  const struct {
    decltype(&DameLasListasDeMaquinas) lists;
    decltype(&ActualizaMaquinasInstal) install;
  } kinds[] = {{DameLasListasDeMaquinas, ActualizaMaquinasInstal},
               {DameLasListasDeImportadores, ActualizaImportadoresInstal},
               {DameLasListasDeExportadores, ActualizaExportadoresInstal}};
  for (const auto& kind : kinds) {
    TRegListaNombre* l[8] = {};
    kind.lists(l[0], l[1], l[2], l[3], l[4], l[5], l[6], l[7]);
    kind.install(number & 1 ? l[0] : l[2]);
    for (int i = 0; i < 8; i += 2) Free(l[i], l[i + 1]);
  }
  int f[10];
  FicherosMaquinaEnRed(f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9]);
  Chars n[5] = {Make(kMachineFilePathChars), Make(kMachineFilePathChars),
                Make(kMachineFilePathChars), Make(kMachineFilePathChars),
                Make(kMachineFilePathChars)};
  DameNombresFicheros(L"MACHINE.MAQ", n[0].get(), n[1].get(), n[2].get(), n[3].get(), n[4].get());
  int flag = 0, help = 0;
  Chars identification = Make(81);
  LeerParametrosCNIIdentif(flag, identification.get());
  LeerParametrosCNIAyuda(help);
  DameLngMax(number % 4, number / 4 % 64);
}

// The formats of every kind (and of kinds that are none) read, added to with
// the fuzzed texts and deleted from; language INT_MIN names the longest file.
void ReadAndRewriteFormats(int number, const std::wstring& text) {
  const int language = (number & 4) != 0 ? 7 : INT_MIN;
  for (const wchar_t* kind : {L"IMP", L"EXP", L"LST", L"CFG", L"imp", text.c_str()}) {
    TRegListaNombre *names = nullptr, *names_last = nullptr, *texts = nullptr,
                    *texts_last = nullptr;
    DameListasImpExpDeDirActual(language, kind, names, names_last, texts, texts_last);
    MeterLsImpExpNuevo(language, kind, text.c_str(), text.c_str());
    BorrarEnLsImpExp(language, kind, (number & 1) != 0 ? names : texts);
    Free(names, names_last);
    Free(texts, texts_last);
  }
}

// Every table's columns read, given their headings with units, and written
// back; the texts are the fuzzed ones, whatever their length.
void ReadAndRewriteColumns(int number, const std::wstring& text) {
  const wchar_t* t = text.c_str();
  TRegUnidades* units = nullptr;
  if (!DamePunUnidades(units)) return;
  // Labels that fill their buffers, terminator and all.
  for (auto& label : units->unit_label) {
    for (std::size_t i = 0; i < kUnitLabelChars; ++i) label[i] = i < text.size() ? text[i] : L'u';
  }
  TRegTWin* first = nullptr;
  TRegTWin* last = nullptr;
  LeerFichCfgPieTablas(number, 1, t, t, t, t, t, t, t, t, t, t, t, first, last);
  LeerFichCfgFigTablas(number, 1, t, t, t, first, last);
  LeerFichCfgChpTablas(number, 1, t, t, t, first, last);
  LeerFichCfgLstTablas(number, 1, t, t, t, t, t, t, t, t, t, t, t, first, last);
  LeerFichCfgPieWinTablas(number, 1, t, t, t, t, t, t, t, t, first, last);
  LeerFichCfgChpWinTablas(number, 1, t, t, t, first, last);
  int magnitude = number;
  for (TRegTWin* c = first; c != nullptr; c = c->next) {
    c->unit_magnitude = magnitude++ % 20;
    Chars out = Make(kColumnTextChars);
    DameTextoDeColumna(out.get(), units, c);
  }
  TRegTWin* found = nullptr;
  BuscarColEnListaCfgTab(number, first, found);
  EscribirFichCfgPieTablas(number, first);
  EscribirFichCfgFigTablas(number, first);
  EscribirFichCfgChpTablas(number, first);
  EscribirFichCfgLstTablas(number, first);
  EscribirFichCfgPieWinTablas(first);
  EscribirFichCfgChpWinTablas(first);
  Free(first, last);
  LiberaPunUnidades(units);
}

// Figure groups, favourites and long names; a group written back with one
// figure whose name fills its buffer.
void ReadAndRewriteFigures(int number, const std::wstring& text) {
  for (const int group : {number % 130, 2, 9, 102}) {
    TRegFig* head = nullptr;
    TRegFig* tail = nullptr;
    LeerFicheroListaFiguras(group, head, tail);
    TRegFig full{};
    full.number = number;
    for (wchar_t& c : full.name) c = text.empty() ? L'n' : text[0];
    InsertarRegistro(reinterpret_cast<void**>(&head), reinterpret_cast<void**>(&tail), tail, &full,
                     static_cast<int>(sizeof full));
    EscribirFicheroListaFiguras(group, head);
    Free(head, tail);
  }
  IsFavorite(number, text.c_str());
  AddFavorite(number, text.c_str());
  RemoveFavorite(number / 2, L"");
  Chars long_name = Make(81);
  DameNombreLargo(L"FIGURE.CFG", long_name.get());
  PonNombreLargo(L"FIGURE.CFG", text.c_str());
  EscribirFiguraCfg(L"FIGURE2.CFG", text.c_str());
  DameNombreLargo(L"FIGURE2.CFG", long_name.get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const WorkDirectory work;
  FuzzedDataProvider provider(data, size);
  const std::wstring key = Widen(provider.ConsumeRandomLengthString(600));
  const std::wstring value = Widen(provider.ConsumeRandomLengthString(700));
  const int number = provider.ConsumeIntegral<int>();
  for (const char* name : kFiles) WriteFile(name, provider.ConsumeRandomLengthString(3000));

  ReadInstallation();
  ReadWorkOrderState();

  EscribirCfgMirselId(number, value.c_str());
  int a0 = number, r0 = number, unused = 0;
  ActualizaMirselinCNI(a0, value.c_str(), key.c_str(), L"", r0, value.c_str(), key.c_str(),
                       value.c_str(), unused);
  AnadirFicheroRehacerChapas(key.c_str(), value.c_str());
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  LeerFicheroRehacerChapas(key.c_str(), first, last);
  LeerFicheroRehacerChapas(L"", first, last);
  LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last));
  GenerarFicheroDeOFActiva(key.c_str(), value.c_str());
  GenerarFicheroDeLstPieSinOF(value.c_str());
  GenerarFicheroDeDirBDActiva(key.c_str());
  ReadAndRewriteMachineSettings(number, value);
  ReadAndRewriteCatalogs(number);
  ReadAndRewriteFormats(number, value);
  ReadAndRewriteColumns(number, key);
  ReadAndRewriteFigures(number, value);
  ReadInstallation();
  ReadWorkOrderState();
  return 0;
}
