// The installation-wide settings an application reads when it starts, all
// by bare name in the current directory:
//
//   "param.sys"     sections: a header line such as "[Language]" (any case)
//                   and the value on the next line (256 characters)
//   "PEQUENO.SYS"   packaging: A000 integer, A001 box file text, A002 integer
//   "SERVPACK.DTS"  six lines, each an integer: version and service packs
//   "MIRSELPR.CFG"  of its long records only A302, the basic-options switch
//
// and the directory tree of a new database. The rewrites of "MIRSELID.CFG"
// and "MIRSELIN.CNI" are in settings_rewrites.h.
//
//   int language, units, cp1, cp2, wos;
//   wchar_t server[257], files[257], shared[257], company[257], title[257],
//       backup[257], style[257];
//   if (!LeerDatosParamSys(language, server, files, shared, units, cp1, cp2, company, title,
//                          wos, backup, style)) { /* no param.sys: the defaults */ }
//
// Readers never fail: missing files and sections give the defaults.
#pragma once

#include "korvalen/export.h"

// Every output is set to its default first: language 3, server "(local)",
// both switches (international units, WOS title) 1, the code-page switches 0,
// all other texts "". The text buffers hold 257 characters. A language below
// 1 reads as 3; a switch turns 0 only on the exact value "0"; the code-page
// switches both turn 1 on "932", "936", "949" or "950". A header on the last
// line keeps its default. Returns 0 when "param.sys" cannot be opened, else 1.
KORVALEN_API int LeerDatosParamSys(int& language, wchar_t* server_name, wchar_t* database_files_dir,
                                   wchar_t* shared_server_dir, int& international_units,
                                   int& code_page_switch1, int& code_page_switch2, wchar_t* company,
                                   wchar_t* project_title, int& wos_title, wchar_t* database_backup,
                                   wchar_t* style);

// The switch of the first A302 record of "MIRSELPR.CFG"; unchanged without one.
KORVALEN_API void LeerSiOpcBasicas(int& basic_options);

// Creates the directory and its "General", "Products" and "Nestings";
// existing ones are fine.
KORVALEN_API void CrearDirectoriosDB(const wchar_t* directory);

// Defaults 0, "CAJPEQU.CAJ" and 1, then the records of "PEQUENO.SYS".
// box_file holds 81 characters.
KORVALEN_API void LeerPequeno(int& first_value, wchar_t* box_file, int& second_value);
// Writes "A000 %d ;", "A001 \"%s\" ;" and "A002 %d ;".
KORVALEN_API void EscribirPequeno(int first_value, const wchar_t* box_file, int second_value);

// The versions in the six lines l1..l6 of "SERVPACK.DTS" (a missing line reads
// 0): version = l1 / 100, sub_version = (l1 % 100) / 10, service_pack = l2,
// then the same for l3 and l4 (second_*) and for l5 and l6 (third_*); only the
// tens digit of l3 and l5 counts, and the units digits are dropped ("312" is
// version 3.1). Without the file sub_version and service_pack become 0 and
// the others stay as they were.
KORVALEN_API void DameVersionYServicePack(int& version, int& sub_version, int& service_pack,
                                          int& second_sub_version, int& second_service_pack,
                                          int& third_sub_version, int& third_service_pack);
