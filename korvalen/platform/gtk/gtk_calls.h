// The functions of the GTK module's table (gtk_interface.h), by file:
// template dialogs (gtk_dialogs.cpp), modal dialogs (gtk_pickers.cpp).
#pragma once

#include <cstdint>

#include "korvalen/platform/posix/gtk_interface.h"

namespace korvalen::gtk {

void* dialog_create(const KorvalenGtkDialog* layout);
void dialog_destroy(void* dialog);
void check(void* dialog, std::uint32_t id, int checked);
int checked(void* dialog, std::uint32_t id);
void enable(void* dialog, std::uint32_t id, int enabled);
int enabled(void* dialog, std::uint32_t id);
void set_text(void* dialog, std::uint32_t id, const char* text);
std::uint32_t text(void* dialog, std::uint32_t id, char* buffer, std::uint32_t capacity);
void refresh(void* dialog);
int take_key_down(void* dialog, unsigned* key);
void press_key(void* dialog, unsigned key);

int message_box(const char* text, const char* caption, unsigned style);
int choose_file(const KorvalenGtkFileRequest* request, char** paths, char** folder);
int choose_printer(KorvalenGtkPrinter* printer);

}  // namespace korvalen::gtk
