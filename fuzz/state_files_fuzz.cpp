// Fuzzes the readers and rewriters of the installation and work-order state
// files: arbitrary bytes become the files of an installation directory, which
// every reader then reads into heap buffers of exactly the capacity its
// contract states, and every rewriter edits with fuzzed values.
#include <fuzzer/FuzzedDataProvider.h>

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
    "param.sys",    "PEQUENO.SYS",  "SERVPACK.DTS", "MIRSELID.CFG", "MIRSELPR.CFG",
    "MIRSELIN.CNI", "UNIDADES.CFG", "ORDENACT.SYS", "DIRBDACT.SYS", "LSPINOOF.SYS",
    "LISTOFS.SYS",  "CHGCHAPA.SYS", "CFGSMACH.CFG", "MOSAICOS.CFG",
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
  ReadInstallation();
  ReadWorkOrderState();
  return 0;
}
