// An application of the suite built against the installed library: it calls
// every overload of the text and file primitives and every config-record reader
// and writer by name, so that a name or overload missing from the installed
// headers or the export table fails to compile or to link, and checks a few
// results so that a library that loads but misbehaves fails to run.
#include <korvalen/korvalen.h>

#include <cstdio>
#include <ctime>
#include <initializer_list>

namespace {

int failures = 0;

void Check(bool ok, const char* what) {
  if (!ok) {
    std::printf("consumer: FAILED %s\n", what);
    ++failures;
  }
}

// _SH_DENYNO of the C runtime: others may read and write.
constexpr int kShareAll = 0x40;

void Conversions() {
  wchar_t wide[32];
  char narrow[32];
  Check(CharToTChar(wide, 32, "abc") > 0 && StrCmp(wide, L"abc") == 0, "CharToTChar");
  Check(TCharToChar(narrow, 32, L"abc") > 0 && StrCmp(narrow, "abc") == 0, "TCharToChar");
}

void Strings() {
  wchar_t a[64];
  StrCpy(a, L"ab");
  StrCpy(a, "ab");
  StrnCpy(a, L"abcdef", 7);
  StrnCpy(a, "abcdef", 7);
  StrCat(a, L"gh");
  StrCat(a, "ij");
  StrnCat(a, L"klxx", 2);
  StrnCat(a, "mnxx", 2);
  Check(StrCmp(a, L"abcdefghijklmn") == 0, "StrCpy/StrnCpy/StrCat/StrnCat");

  Check(StrCmp(L"abc", L"abd") == -1 && StrCmp("b", L"a") == 1 && StrCmp(L"a", "a") == 0 &&
            StrCmp("a", "b") == -1,
        "StrCmp");
  Check(StriCmp(L"ABC", L"abc") == 0 && StriCmp("ABC", L"abc") == 0 &&
            StriCmp(L"ABC", "abc") == 0 && StriCmp("ABC", "abd") < 0,
        "StriCmp");
  Check(StrnCmp(L"abcx", L"abcy", 3) == 0 && StrnCmp("abcx", L"abcy", 3) == 0 &&
            StrnCmp(L"abcx", "abcy", 3) == 0 && StrnCmp("abcx", "abcy", 4) != 0,
        "StrnCmp");
  Check(StrLen(L"four") == 4 && StrLen("three") == 5, "StrLen");
  Check(StrChr(L"a.b.c", L'.') != nullptr && StrChr("a.b.c", L'.') != nullptr, "StrChr");
  Check(StrCmp(StrrChr(L"a.b.c", L'.'), L".c") == 0 && StrCmp(StrrChr("a.b.c", L'.'), L".c") == 0,
        "StrrChr");
  Check(StrStr(L"haystack", L"st") != nullptr && StrStr("haystack", L"st") != nullptr &&
            StrStr(L"haystack", "st") != nullptr && StrStr("haystack", "xx") == nullptr,
        "StrStr");
  Check(StrCspn(L"abc;d", L";") == 3 && StrCspn("abc;d", L";") == 3 &&
            StrCspn(L"abc;d", ";") == 3 && StrCspn("abc;d", ";") == 3,
        "StrCspn");

  wchar_t tokens[32];
  StrCpy(tokens, L"one two,three");
  wchar_t* first = StrTok(tokens, L" ");
  wchar_t* second = StrTok(nullptr, ",");
  Check(first && second && StrCmp(first, L"one") == 0 && StrCmp(second, L"two") == 0, "StrTok");

  wchar_t text[16];
  StrCpy(text, L"Abc");
  StrUpr(text);
  Check(StrCmp(text, L"ABC") == 0, "StrUpr");
  StrLwr(text);
  Check(StrCmp(text, L"abc") == 0, "StrLwr");
  StrRev(text);
  Check(StrCmp(text, L"cba") == 0, "StrRev");
}

void Numbers() {
  wchar_t* end = nullptr;
  Check(StrTod(L"2.5x", &end) == 2.5 && StrTod("2.5", &end) == 2.5, "StrTod");
  Check(strToul(L"ff", &end, 16) == 255 && strToul("17", &end, 10) == 17, "strToul");
  Check(aToi(L"42") == 42 && aToi("-7") == -7, "aToi");
  Check(aTol(L"100000") == 100000 && aTol("-3") == -3, "aTol");
  Check(aTof(L"1.25") == 1.25 && aTof("0.5") == 0.5, "aTof");
  wchar_t digits[40];
  Check(StrCmp(iToa(255, digits, 16), L"ff") == 0, "iToa");
  Check(StrCmp(lToa(-12, digits, 10), L"-12") == 0, "lToa");
  Check(fabs(-3.5) == 3.5, "fabs");
}

void Time() {
  wchar_t date[16];
  wchar_t clock[16];
  Check(StrLen(StrDate(date)) == 8, "StrDate");
  Check(StrLen(StrTime(clock)) == 8, "StrTime");
  long long epoch = 0;
  std::tm* utc = gmTime(&epoch);
  Check(utc != nullptr && utc->tm_year == 70, "gmTime");
  if (utc == nullptr) return;
  // Before LocalTime: the two may share one result record, as in the C runtime.
  wchar_t formatted[32];
  Check(StrfTime(formatted, 32, L"%Y", utc) == 4 && StrCmp(formatted, L"1970") == 0, "StrfTime");
  Check(StrfTime(formatted, 32, "%m", utc) == 2 && StrCmp(formatted, L"01") == 0,
        "StrfTime 8-bit");
  long long now = static_cast<long long>(std::time(nullptr));
  std::tm* local = LocalTime(&now);
  Check(local != nullptr && local->tm_year >= 124, "LocalTime");
}

void Environment() {
  wchar_t found[MAX_PATH + 1];
  SearchEnv(L"korvalen-no-such-file", L"PATH", found);
  SearchEnv("korvalen-no-such-file", L"PATH", found);
  SearchEnv(L"korvalen-no-such-file", "PATH", found);
  SearchEnv("korvalen-no-such-file", "PATH", found);
  Check(found[0] == L'\0', "SearchEnv");
  wchar_t out[64];
  Check(sPrintf(out, L"%d-%d", 1, 2) == 3 && StrCmp(out, L"1-2") == 0, "sPrintf");
  Check(sPrintf(out, "%03d", 7) == 3 && StrCmp(out, L"007") == 0, "sPrintf 8-bit");
}

void Streams() {
  FILE* f = fOpen(L"CONSUMER.CFG", L"wt");
  Check(f != nullptr, "fOpen wt");
  if (f == nullptr) return;
  fPuts(L"A000 5 ;\n", f);
  fPuts("A001 \"two words\" ;\n", f);
  fPrintf(f, L"B012 %d %s ;\n", 3, L"ON");
  fPrintf(f, "C000 %d ;\n", 4);
  EscribirLineaEnFichero(f, L"D000 1.5 A ;");
  std::fclose(f);

  for (FILE* g : {fOpen("CONSUMER.CFG", L"rt"), fOpen(L"CONSUMER.CFG", "rt"),
                  fOpen("CONSUMER.CFG", "rt"), fsOpen(L"CONSUMER.CFG", L"rt", kShareAll),
                  fsOpen("CONSUMER.CFG", L"rt", kShareAll),
                  fsOpen(L"CONSUMER.CFG", "rt", kShareAll),
                  fsOpen("CONSUMER.CFG", "rt", kShareAll)}) {
    Check(g != nullptr, "fOpen/fsOpen rt");
    if (g == nullptr) continue;
    wchar_t line[1024];
    Check(fGets(line, 1024, g) != nullptr && StrCmp(line, L"A000 5 ;\n") == 0, "fGets");
    std::fclose(g);
  }
}

// Every reader of config records, on the file Streams() wrote.
void ConfigReader() {
  FILE* f = fOpen(L"CONSUMER.CFG", L"rt");
  Check(f != nullptr, "fOpen for reading");
  if (f == nullptr) return;
  wchar_t line[81];
  wchar_t type = L' ';
  int index = -1;
  int cursor = 0;
  LeerLineaDeCfg(f, line, type, index, cursor);
  int value = 0;
  LeerUnEntero(line, cursor, value);
  Check(type == L'A' && index == 0 && value == 5, "LeerLineaDeCfg/LeerUnEntero");

  wchar_t long_line[501];
  LeerLineaLargaDeCfg(f, long_line, type, index, cursor);
  wchar_t text[501];
  LeerUnTexto(long_line, cursor, text);
  Check(type == L'A' && index == 1 && StrCmp(text, L"two words") == 0,
        "LeerLineaLargaDeCfg/LeerUnTexto");

  LeerLineaDeFichero(f, line, 80);
  Check(StrCmp(line, L"B012 3 ON ;") == 0, "LeerLineaDeFichero");
  ObtenerTipoIndexCfg(line, type, index, cursor);
  short small = 0;
  int on = 0;
  LeerUnShort(line, cursor, small);
  LeerSIoNO(line, cursor, on);
  Check(type == L'B' && index == 12 && small == 3 && on == 1, "ObtenerTipoIndexCfg");

  Check(LeerEnteroDeFichero(f) == 0, "LeerEnteroDeFichero");  // "C000 4 ;" is no number
  Check(LeerRealDeFichero(f) == 0.0, "LeerRealDeFichero");    // "D000 ..." neither
  std::fclose(f);

  const wchar_t* record = L"E000 word \"quoted text\" 7 x 1.5 A 123456 1,2 ;";
  cursor = 4;
  wchar_t word[81];
  LeerUnStr(record, cursor, word);
  Check(StrCmp(word, L"word") == 0, "LeerUnStr");
  LeerUnString(record, cursor, text);
  Check(StrCmp(text, L"quoted text") == 0, "LeerUnString");
  LeerSIoNOInt(record, cursor, on);
  Check(on == 1, "LeerSIoNOInt");
  wchar_t c = 0;
  LeerUnChar(record, cursor, c);
  Check(c == L'x', "LeerUnChar");
  double real = 0;
  LeerUnReal(record, cursor, real);
  Check(real == 1.5, "LeerUnReal");
  LeerUnReal(record, cursor, real);
  Check(real == 99999.999, "LeerUnReal unset");
  LONG number = 0;
  LeerUnLong(record, cursor, number);
  Check(number == 123456, "LeerUnLong");
  int first = 0;
  LeerUnEnteroSep(record, cursor, ',', first);
  LeerUnStrSep(record, cursor, ',', word);
  Check(first == 1 && word[0] == L'2', "LeerUnEnteroSep/LeerUnStrSep");
  cursor = 0;
  LeerUnStringSep(L"\"a b\",c", cursor, ',', text);
  Check(StrCmp(text, L"a b") == 0, "LeerUnStringSep");
}

void ConfigWriter() {
  wchar_t line[128];
  int cursor = 4;
  int value = 7;
  StrCpy(line, L"A000 5 ;");
  EscribirUnEntero(line, cursor, value);
  Check(StrCmp(line, L"A000 7 ;") == 0 && cursor == 6, "EscribirUnEntero");

  StrCpy(line, L"A000 5   ;");
  cursor = 4;
  LONG big = -12;
  EscribirUnLong(line, cursor, big);
  Check(StrCmp(line, L"A000 -12 ;") == 0, "EscribirUnLong");

  StrCpy(line, L"A000 OFF ;");
  cursor = 4;
  int on = 5;
  EscribirSIoNO(line, cursor, on);
  Check(StrCmp(line, L"A000 ON  ;") == 0, "EscribirSIoNO");

  StrCpy(line, L"A002 0.000000 ;");
  cursor = 4;
  double real = 1.0;
  EscribirUnReal(line, cursor, real);
  Check(StrCmp(line, L"A002 1.000    ;") == 0, "EscribirUnReal");
  cursor = 4;
  EscribirUnRealLargo(line, cursor, real);
  Check(StrCmp(line, L"A002 1.000000 ;") == 0, "EscribirUnRealLargo");

  StrCpy(line, L"A003 old ;");
  cursor = 4;
  EscribirUnStr(line, cursor, L"new");
  Check(StrCmp(line, L"A003 new ;") == 0, "EscribirUnStr");

  StrCpy(line, L"A001 \"ab\"     ;");
  cursor = 4;
  EscribirUnTexto(line, cursor, L"abc");
  Check(StrCmp(line, L"A001 \"abc\"    ;") == 0, "EscribirUnTexto");

  StrCpy(line, L"A001 \"ab\" ;");
  cursor = 4;
  EscribirUnTextoForzado(line, cursor, L"abcdefgh");
  Check(StrCmp(line, L"A001 \"abcdefgh\"") == 0, "EscribirUnTextoForzado");

  wchar_t longer[128];
  cursor = 4;
  EscribirUnTextoLargo(L"A001 \"ab\" ;", longer, cursor, L"abcdefgh");
  Check(StrCmp(longer, L"A001 \"abcdefgh\"") == 0, "EscribirUnTextoLargo");

  wchar_t built[128];
  DameParametroTexto(L"A001 \"", L"abc", built);
  Check(StrLen(built) == 77 && built[76] == L';', "DameParametroTexto");
  DameParametroEntero(L"A000 ", 12, built);
  Check(StrCmp(built, L"A000 12 ;") == 0, "DameParametroEntero");
  DameParametroLong(L"A000 ", -3, built);
  Check(StrCmp(built, L"A000 -3 ;") == 0, "DameParametroLong");
  DameParametroReal(L"A002 ", 2.5, built);
  Check(StrCmp(built, L"A002 2.500 ;") == 0, "DameParametroReal");
  DameParametroBool(L"A003 ", 1, built);
  Check(StrCmp(built, L"A003 ON ;") == 0, "DameParametroBool");
  DameONOFFConUnInt(L"A003 ", 0, built);
  Check(StrCmp(built, L"A003 OFF ;") == 0, "DameONOFFConUnInt");
}

void FileSystem() {
  Check(mkDir(L"dir_w") == 0 && mkDir("dir_n") == 0, "mkDir");
  Check(Access(L"dir_w", 0) == 0 && Access("dir_n", 0) == 0, "Access");
  Check(chDir(L"dir_w") == 0 && chDir("..") == 0, "chDir");
  wchar_t cwd[1024];
  Check(GetCwd(cwd, 1024) != nullptr && StrLen(cwd) > 0, "GetCwd");
  Check(rmDir(L"dir_w") == 0 && rmDir("dir_n") == 0, "rmDir");

  for (const char* name : {"f1", "f2", "f3", "f4", "f5"}) {
    FILE* f = fOpen(name, "wt");
    if (f) std::fclose(f);
  }
  // Read and write permission: _S_IREAD | _S_IWRITE of the C runtime.
  Check(chMod(L"f1", 0x0180) == 0 && chMod("f2", 0x0180) == 0, "chMod");
  Check(Rename(L"f1", L"g1") == 0 && Rename("f2", L"g2") == 0 && Rename(L"f3", "g3") == 0 &&
            Rename("f4", "g4") == 0,
        "Rename");

  _wfinddata64i32_t data;
  intptr_t handle = FindFirst(L"g*", &data);
  int found = handle == -1 ? 0 : 1;
  while (handle != -1 && FindNext(handle, &data) == 0) ++found;
  Check(found == 4, "FindFirst/FindNext");
  Check(FindFirst("no-such-*", &data) == -1, "FindFirst 8-bit");

  Check(unLink(L"g1") == 0 && unLink("g2") == 0 && Remove(L"g3") == 0 && Remove("g4") == 0 &&
            Remove("f5") == 0,
        "unLink/Remove");
  Check(Access(L"g1", 0) != 0, "Access of a removed file");
}

void Paths() {
  wchar_t path[MAX_PATH + 1];
  MakePath(path, L"", L"dir", L"name", L"cfg");
  MakePath(path, L"", L"dir", "name", L"cfg");
  MakePath(path, L"", L"dir", L"name", "cfg");
  MakePath(path, L"", L"dir", "name", "cfg");
  wchar_t drive[8], dir[MAX_PATH + 1], name[MAX_PATH + 1], ext[MAX_PATH + 1];
  SplitPath(path, drive, dir, name, ext);
  Check(StrCmp(name, L"name") == 0 && StrCmp(ext, L".cfg") == 0, "MakePath/SplitPath");
  SplitPath("x.txt", drive, dir, name, ext);
  Check(StrCmp(name, L"x") == 0 && StrCmp(ext, L".txt") == 0, "SplitPath 8-bit");
}

void Resources() {
  // No language module is loaded: the buffer comes back empty.
  wchar_t text[1024] = L"stale";
  Check(LoadStr(13051, text) == 0 && text[0] == L'\0', "LoadStr");
}

}  // namespace

int main() {
  Conversions();
  Strings();
  Numbers();
  Time();
  Environment();
  Streams();
  ConfigReader();
  ConfigWriter();
  FileSystem();
  Paths();
  Resources();
  Remove(L"CONSUMER.CFG");
  if (failures != 0) {
    std::printf("consumer: %d check(s) failed\n", failures);
    return 1;
  }
  std::puts("consumer: OK");
  return 0;
}
