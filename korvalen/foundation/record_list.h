// Record lists: linked lists of malloc'ed copies of the caller's records, for
// every record type of the suite. The module knows nothing of the payload.
//
// A double record's first two members are the links (next, then previous); a
// simple record's first member is the next link. The caller keeps the head
// (and the tail, except for the "SinCola" functions) and passes them by
// reference:
//
//   TRegError* first = nullptr;
//   TRegError* last = nullptr;
//   TRegError record = {};
//   InsertarRegistro((void**)&first, (void**)&last, last, &record, sizeof record);  // append
//   LiberarLista((void**)&first, (void**)&last);
//
// Inside the library, korvalen/foundation/typed_list.h does the casts.
#pragma once

#include "korvalen/export.h"

// Copies size bytes of record into a new heap block and links it after
// `after` (null: at the front). Returns 1, or 0 when no memory (list unchanged).
KORVALEN_API int InsertarRegistro(void** head, void** tail, void* after, void* record, int size);
KORVALEN_API int InsertarRegistroSimple(void** head, void** tail, void* after, void* record,
                                        int size);
// Links an already allocated double record (no copy).
KORVALEN_API void InsertarComponenteEnLista(void** head, void** tail, void** after,
                                            void** record);

// Unlink and free *current, moving *current on: to the next record, or, when
// the tail was removed, to the new tail (the record before it).
KORVALEN_API void LiberarRegistro(void** head, void** tail, void** current);
KORVALEN_API void LiberarRegistroSinCola(void** head, void** current);
KORVALEN_API void LiberarRegistroSimple(void** head, void** tail, void** current);
KORVALEN_API void LiberarRegistroSimpleSinCola(void** head, void** current);

// Free every record; head (and tail) become null.
KORVALEN_API void LiberarLista(void** head, void** tail);
KORVALEN_API void LiberarListaSinCola(void** head);
KORVALEN_API void LiberarListaSimple(void** head, void** tail);
KORVALEN_API void LiberarListaSimpleSinCola(void** head);
