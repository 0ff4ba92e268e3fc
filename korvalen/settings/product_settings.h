// The product settings of an installation, in two XML documents of the
// current directory:
//
//   "iVortan.cfg"  element LNKCFGPAR: language ("LanID"), database connection
//                  ("PrdCnn", "SvrType", "SvrName", "DBName", "DBFolder",
//                  "UsrName", "EntName"), companion service ("L2D..."), style
//                  ("StyRef"), unit system ("USyName": "MET" or "IMP"), Asian
//                  grid ("AsianGrd") and system font ("SysFontT"); a copy in
//                  "DefPer" is the default set
//   "iVortan.prd"  element PRDDATA: the product description ("PrdDsc")
//
// Both are saved as UTF-16 with a byte-order mark under the declaration
// 'version="1.0" encoding="Unicode"', which is put in when a loaded document
// has none. A document that cannot be loaded leaves a function without
// changes; nothing is shown to the user.
//
//   TratamientoFicherosConfiguracion();  // at start: migrates param.sys once
//   int language = 3, units = 0;
//   wchar_t style[256] = L"", product[256] = L"", company[256] = L"";
//   LeerDatosLFocus(language, style, product, units, company);
#pragma once

#include "korvalen/export.h"

// Creates "iVortan.cfg" in the current directory, replacing any: LanID from
// language, PrdCnn and DBName from connection, SvrName from server, DBFolder
// from folder, StyRef from style, USyName "MET" (units 0) or "IMP",
// AsianGrd and SysFontT "0" or "1", and the fixed "1020", "SYSADM", "ment"
// and companion-service values. text is accepted and not stored: the
// document has no attribute for it.
KORVALEN_API void CrearIVortanCfgBasico(int language, const wchar_t* server,
                                        const wchar_t* connection, const wchar_t* folder, int units,
                                        int asian_grid, int system_font, const wchar_t* text,
                                        const wchar_t* style);

// Writes the description into "PrdDsc" of "iVortan.prd" (created when
// missing). The other two texts are accepted and not stored.
KORVALEN_API void ActualizaIVortanPrd(const wchar_t* description, const wchar_t* second_text,
                                      const wchar_t* third_text);

// Sets "UsrName", "SvrName" and "DBName" of "iVortan.cfg", then the 'R'
// records 1 (server), 2 (database) and 3 (user) of "MIRSELIN.CNI", rewritten
// through "AUXMRSIN.AUX" without its empty lines.
KORVALEN_API void ActualizaParametrosConexion(const wchar_t* user, const wchar_t* server,
                                              const wchar_t* database);

// "USyName" := "MET" for units 0, else "IMP".
KORVALEN_API void ActualizaParametrosLFocus(int units);

// language := "LanID", style := "StyRef" and units := 1 for "USyName" "IMP"
// (else 0) from "iVortan.cfg"; product := "PrdDsc" of "IVORTAN.PRD"; company
// := the text of record A001 of "MIRSELIN.CNI". Buffers hold 256
// characters; whatever a file does not give keeps the caller's value.
KORVALEN_API void LeerDatosLFocus(int& language, wchar_t* style, wchar_t* product, int& units,
                                  wchar_t* company);

// At start, when "param.sys" reads: creates "iVortan.cfg" from it if there is
// none (and brings "MIRSELIN.CNI" and "iVortan.prd" in line), deletes
// "param.sys" so that this happens once, and copies "iVortan.cfg" to
// "DefPer\iVortan.cfg", creating "DefPer" when missing. From param.sys:
// language, server, the database files directory as the folder, the name of
// the database backup file (without directory and extension) as the
// connection, units "MET" when "[International units]" is on, the Asian grid
// and system font from the double-byte code page; the project title as the
// product description; and for "MIRSELIN.CNI" (ActualizaMirselinCNI) the
// values in param.sys's order: language, server, files directory, shared
// directory, units switch, company, project title, backup file, WOS title.
KORVALEN_API void TratamientoFicherosConfiguracion();
