// The small state files through which the suite's programs tell one another
// which work order, quote and database directory are active, which part list
// is worked without a work order, that parts have changed, and which work
// orders were used last; with two helpers that live beside them.
//
// Every file has a fixed bare name and so lives in the current directory:
//
//   "ORDENACT.SYS"  work order, then its quote        (40 characters each)
//   "DIRBDACT.SYS"  active database directory         (256 characters)
//   "LSPINOOF.SYS"  part list worked without an order (40 characters)
//   "CHGPIEZA.SYS"  empty; its existence says parts changed
//   "LISTOFS.SYS"   ten lines: the last work orders   (81 characters each)
//
//   GenerarFicheroDeOFActiva(L"OF-2024-0117", L"Q-88");
//   wchar_t order[41], quote[41];
//   DameNombreYQuoteDeOFActiva(order, quote);
//
// Files are 8-bit ANSI text with CR LF line ends. Readers never fail: a
// missing file leaves the outputs empty. The queue of sheets to redo is in
// sheet_queue.h.
#pragma once

#include "korvalen/export.h"
#include "korvalen/foundation/name_list.h"

// --- part list without a work order -------------------------------------------
KORVALEN_API void GenerarFicheroDeLstPieSinOF(const wchar_t* name);
KORVALEN_API void BorrarFicheroDeLstPieSinOF();
// name (41 characters) = the first line, or empty. 1 when the file was read,
// 0 when it could not be opened. The file stays.
KORVALEN_API int DamePieDeLstPieSinOF(wchar_t* name);

// --- parts-changed marker --------------------------------------------------------
// Creates the empty marker unless it exists already.
KORVALEN_API void CrearFicheroCambioPiezas();
// 1 when the marker existed, which this call removes: each change is seen once.
KORVALEN_API int ExisteFicheroCambioPiezas();

// --- last work orders ------------------------------------------------------------
// Writes exactly ten lines: the names of the first ten nodes, then empty lines.
KORVALEN_API void GenerarFicheroUltimasOFs(const wchar_t* file_name, TRegListaNombre* list);
// A new list of exactly ten nodes (first and last are reset first), one per
// line, each cut to 81 characters. When the file cannot be opened, ten empty
// names come back and "LISTOFS.SYS" (always that name) is written with ten
// empty lines. The caller frees the nodes with LiberarLista.
KORVALEN_API void LeerFicheroUltimasOFs(const wchar_t* file_name, TRegListaNombre*& first,
                                        TRegListaNombre*& last);

// --- active work order and database directory ------------------------------------
KORVALEN_API void GenerarFicheroDeOFActiva(const wchar_t* name, const wchar_t* quote);
// name and quote hold 41 characters.
KORVALEN_API void DameNombreDeOFActiva(wchar_t* name);
KORVALEN_API void DameNombreYQuoteDeOFActiva(wchar_t* name, wchar_t* quote);
KORVALEN_API void GenerarFicheroDeDirBDActiva(const wchar_t* dir);
// dir holds 257 characters.
KORVALEN_API void DameNombreDeDirBDActiva(wchar_t* dir);

// --- helpers -----------------------------------------------------------------------
// A special message is the three characters U+00AA, '@' and a code c; it is
// replaced by string resource 26235 + c of the language module (empty when
// there is none). Any other text stays as it is. The buffer must hold the
// resource text.
KORVALEN_API void DameMensajeEspecial(wchar_t* text);
// Reduces a path in place to what follows its last backslash; a backslash at
// index 0 or 1 does not count, and a path ending in one becomes empty.
KORVALEN_API void QuitarDirectorioAlFichero(wchar_t* path);
