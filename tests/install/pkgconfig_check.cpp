// Built with nothing but `pkg-config --cflags --libs korvalen`.
#include <korvalen/korvalen.h>

#include <cstdio>

int main() {
  wchar_t line[81] = L"A000 5 ;";
  wchar_t type = L' ';
  int index = -1;
  int cursor = 0;
  int value = 0;
  ObtenerTipoIndexCfg(line, type, index, cursor);
  LeerUnEntero(line, cursor, value);
  if (type != L'A' || index != 0 || value != 5 || StrCmp(L"abc", "abd") != -1) {
    std::puts("pkg-config program: wrong results");
    return 1;
  }
  std::puts("pkg-config program: OK");
  return 0;
}
