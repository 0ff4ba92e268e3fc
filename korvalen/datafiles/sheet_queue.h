// The queue of sheets to redo, "CHGCHAPA.SYS": pairs of lines, a key (a work
// order, at most 255 characters) then a sheet name (at most 40). One program
// adds pairs, another takes out those of its key:
//
//   AnadirFicheroRehacerChapas(L"OF-2024-0117", L"CH-0042");
//   TRegListaNombre* first = nullptr;
//   TRegListaNombre* last = nullptr;
//   LeerFicheroRehacerChapas(L"OF-2024-0117", first, last);  // appends "CH-0042"
//   LiberarLista((void**)&first, (void**)&last);
//
// Both rewrite the queue through the work file "CHGCHAPA.AUX", which only one
// program at a time may hold: a call waits while another program has it (a
// work file left behind by a program that died is taken over once it has not
// changed for a few seconds) and gives up, changing nothing, after about ten
// seconds. The new queue replaces the old one in one step, so the queue is
// always a sequence of whole pairs.
//
// The end of the file is tested after each pair, so a queue that ends with a
// line end yields one more pair of two empty lines, handled like any other.
#pragma once

#include "korvalen/export.h"
#include "korvalen/foundation/name_list.h"

// Appends the pair, dropping every earlier pair whose key equals key or whose
// sheet equals sheet. A line feed, or a character the code page cannot hold,
// ends a written value; its line end is written all the same.
KORVALEN_API void AnadirFicheroRehacerChapas(const wchar_t* key, const wchar_t* sheet);
// Takes every pair whose key equals key out of the queue and appends its sheet
// name (cut to 40 characters) to the caller's list, in file order; first and
// last are not reset. Nothing happens when the queue does not exist.
KORVALEN_API void LeerFicheroRehacerChapas(const wchar_t* key, TRegListaNombre*& first,
                                           TRegListaNombre*& last);
