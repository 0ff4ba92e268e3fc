// The language of an installation and its resource library: the language
// number ("LanID" of "iVortan.cfg"), the library that holds its texts
// (named in "Languages.xml", else by the fixed table of the suite, English
// for any other number), loading and checking that library and making it the
// one every text of the library comes from, and the character set of a
// language.
//
//   int language = 3;
//   LeerElIdioma(language);
//   HMODULE texts = CargaRecursosDeIdioma(language);
//   if (texts != nullptr && !DllDeRecursosCorrecta(texts, language)) { ... }
//   wchar_t text[1024];
//   LoadStr(25000, text);  // from the loaded library
//   LiberaRecursosDeIdioma(texts);
//
// "Languages.xml" (any main element) holds a "CONSTANTS" element, whose
// attributes name character-set constants, and "LANGUAGE" elements with
// "LanID", "LanguageDLL" and "CharSet" (a number or a constant's name).
// Nothing is shown to the user; missing files and attributes fall back as
// stated.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/framework.h"
#include "korvalen/platform/windows_types.h"
#include "korvalen/platform/xml_node.h"

// "LanID" of "iVortan.cfg": nonzero when it was read. Without it the
// caller's number stays.
KORVALEN_API int LeerElIdioma(int& language);
// "LanID" := language ("%d"), saved: nonzero when written.
KORVALEN_API int EscribirElIdioma(int language);

// The "LanguageDLL" of the first "LANGUAGE" element of main whose "LanID" is
// the language; library empty when none is.
KORVALEN_API void LoadLanguageParameters(int language, CString& library, IXMLDOMNodePtr main);
// Its "CharSet": a constant's value when it names one of "CONSTANTS", else
// its number; charset unchanged when no element matches.
KORVALEN_API void LoadCharSetParameters(int language, int& charset, IXMLDOMNodePtr main);
// The same from the document in the file, when it exists (outputs untouched
// otherwise).
KORVALEN_API void LoadLanguageDllFromFile(int language, const wchar_t* file, CString& library);
KORVALEN_API void LoadCharSetFromFile(int language, const wchar_t* file, int& charset);

// The file name of the language's library: the one "Languages.xml" of the
// current directory names, else the table's (English for a number the table
// does not have). library holds 256 characters. The library's own addition,
// the first step of CargaRecursosDeIdioma, for those who list the libraries.
KORVALEN_API void DameDllDeIdioma(int language, wchar_t* library);

// Loads the language's library (as DameDllDeIdioma names it) when the file
// exists, and makes it current: every
// text of the library comes from it from then on. Null (and the current one
// kept) when it cannot be loaded.
KORVALEN_API HMODULE CargaRecursosDeIdioma(int language);
// 1 when the library holds, as string 13051, its language's verification
// text of the table (any library passes for a language the table does not
// have); 0 for a null handle or another text.
KORVALEN_API int DllDeRecursosCorrecta(HMODULE module, int language);
// Frees the library and clears the handle; when it was current, no library
// is current any more.
KORVALEN_API void LiberaRecursosDeIdioma(HMODULE& module);

// The language's character set from "Languages.xml"; 0 when none.
KORVALEN_API int DameCharSetDeIdioma(int language);
// "base.nnn": the base name and the language in three digits ("AYUDA.007").
// output holds the base name and 5 characters more.
KORVALEN_API void DameFicheroDeIdioma(const wchar_t* base, int language, wchar_t* output);
// A font text "name##charset" split: name without "##..." and charset when
// the number after the last '#' is above 0 (charset unchanged otherwise);
// any other text is the name whole. name holds the text.
KORVALEN_API void DameFuenteYCharset(const wchar_t* font, wchar_t* name, int& charset);
