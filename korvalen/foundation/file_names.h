// File names and directories: composing and checking names, translating names
// through name-pair lists, the current and application directories, copying a
// file, and emptying and deleting a database directory tree.
//
//   CambiarDirectorioDeApp();               // once at start: settings files by bare name
//   wchar_t dir[kDirectoryChars], name[kFullNameChars];
//   DameDirectorioActual(dir);
//   DameNombreCompleto(dir, L"UNIDADES", L".CFG", name);
//
// Composed names use "\" as the separator on every system. None of these
// functions reports an error: what fails leaves the file system as it was.
#pragma once

#include "korvalen/export.h"
#include "korvalen/foundation/name_list.h"

namespace korvalen {

// Capacities, with the terminator, of the caller's buffers.
inline constexpr int kDirectoryChars = 256;  // DameDirectorioActual, DameDirectorioDeApp
inline constexpr int kFullNameChars = 260;   // DameNombreCompleto, ModifNomDatos (MAX_PATH)

}  // namespace korvalen

// A record of a name-pair list (a double record list, see record_list.h).
struct TRegListaParNombre {
  TRegListaParNombre* next;
  TRegListaParNombre* previous;
  wchar_t first[kNameListChars];
  wchar_t second[kNameListChars];
};

// directory + "\" (unless it already ends with one) + name + extension, or
// name + extension when the directory is empty. The extension carries its dot.
// Cut to kFullNameChars.
KORVALEN_API void DameNombreCompleto(const wchar_t* directory, const wchar_t* name,
                                     const wchar_t* extension, wchar_t* result);

// 1 when the name holds one of * ? \ / : " > < |, else 0.
KORVALEN_API int NomFicheroTieneCaracterNoPermitido(const wchar_t* name);
// Replaces each of those characters, in place, by the given one.
KORVALEN_API void SustituirCaracteresNoPermitidoPor(wchar_t* name, wchar_t character);

// 1 when a record of the list holds the name (without regard to case), else 0.
KORVALEN_API int EstaEnListaNombre(TRegListaNombre* list, const wchar_t* name);
// Translates a name through a pair list: with direction non-zero the first
// names are compared (exactly) and the second of the first match is returned;
// with direction 0 the other way round. Without a match the result is the
// name itself when keep_if_missing is non-zero, else empty. At most 255
// characters.
KORVALEN_API void DameOtroNombre(TRegListaParNombre* pairs, const wchar_t* name, wchar_t* result,
                                 int direction, int keep_if_missing);

// The bucketed name bucket + "\" + name, where the bucket is the name without
// its last two characters ("PLATE01" -> "PLATE\PLATE01"; "AB" -> "A\AB";
// "X" -> "0\X"). With a base directory, base + "\" + bucket is created if
// missing. An empty name gives an empty result and creates nothing. The
// result is cut to kFullNameChars.
KORVALEN_API void ModifNomDatos(const wchar_t* name, wchar_t* result,
                                const wchar_t* base_directory);

// The current directory without a trailing separator, so the root of a drive
// comes back as "C:" (and "/" as "" on POSIX). Empty when it does not fit in
// kDirectoryChars: a cut directory would name another one.
KORVALEN_API void DameDirectorioActual(wchar_t* result);
// Makes the directory current; a bare drive ("C:") means its root.
KORVALEN_API void CambiarDirectorio(const wchar_t* directory);
// The directory of the running program (not of this library), with its
// trailing separator. Empty when it does not fit in kDirectoryChars.
KORVALEN_API void DameDirectorioDeApp(wchar_t* result);
// Initialises the object linking services for the calling thread where the
// system has them (Windows), then makes the application directory current.
KORVALEN_API void CambiarDirectorioDeApp();

// Copies the file byte for byte ("rb" to "wb", 2048 bytes at a time). Nothing
// happens when a name is empty, the names are equal without regard to case, or
// the source cannot be opened.
KORVALEN_API void CopiarFichero(const wchar_t* source, const wchar_t* destination);

// A database directory holds the subdirectories "General", "Nestings" and
// "Products"; each of them holds files and subdirectories of files only.
//
// Empties a database directory: in each of the three, deletes every file,
// empties every subdirectory of its files and removes it, then removes the
// subdirectory itself; then deletes the files directly in the directory.
// Returns 1 when all three were there and no subdirectory is left directly in
// the directory, else 0. What does not fit the shape (a deeper subdirectory, a
// foreign one) is left as it is. Symbolic links (and junctions) are removed as
// links and never followed.
KORVALEN_API int VaciarDirectorio(const wchar_t* directory);
// Deletes a database directory completely, only when the name is longer than 3
// characters (never a drive root), the directory has exactly the shape above,
// and emptying it succeeded. A name or shape that does not fit leaves the
// directory untouched; an emptying that fails halfway (an entry that cannot be
// deleted) keeps the directory with what could not be removed.
KORVALEN_API void BorrarDirectorio(const wchar_t* directory);
