// What the library and its GTK module (libkorvalen-gtk.so.1) say to each
// other: one table of C functions that the module hands out, so that the
// library links no toolkit and loads the module only when a display is
// there. Texts cross as UTF-8, dialog layouts in dialog units as their
// templates give them. Every call comes from the thread that started the
// module.
//
//   auto entry = reinterpret_cast<KorvalenGtkEntry>(dlsym(module, kKorvalenGtkEntryName));
//   const KorvalenGtkApi* gtk = entry != nullptr ? entry(kKorvalenGtkVersion) : nullptr;
//   if (gtk != nullptr && gtk->start()) { void* dialog = gtk->dialog_create(&layout); ... }
#pragma once

#include <cstdint>

extern "C" {

inline constexpr std::uint32_t kKorvalenGtkVersion = 1;
inline constexpr const char* kKorvalenGtkEntryName = "korvalen_gtk_api";

struct KorvalenGtkControl {
  std::uint32_t id;
  std::uint16_t kind;  // the predefined class atom (0x80 button ...), 0 for another class
  std::uint32_t style;
  const char* text;
  std::int16_t x, y, width, height;
};

struct KorvalenGtkDialog {
  const char* caption;
  std::uint32_t style;
  std::int16_t width, height;
  const KorvalenGtkControl* controls;
  std::uint32_t control_count;
};

// A file or folder picker. patterns: the filter's patterns, each ended by
// '\n' ("*.dxf\n*.dwg\n"), empty for none. The answer: the chosen paths,
// each ended by '\n', and the folder the user ended in.
struct KorvalenGtkFileRequest {
  int open;  // 0: save
  int folder_only;
  int multiple;
  int confirm_overwrite;
  const char* title;
  const char* folder;
  const char* name;
  const char* patterns;
};

// A printer choice: the names and the settings bytes (opaque to the library).
struct KorvalenGtkPrinter {
  char driver[256];
  char device[256];
  char port[256];
  unsigned char* settings;  // the module's; freed with free_bytes
  std::uint32_t settings_size;
};

struct KorvalenGtkApi {
  std::uint32_t version;
  // 1 when the toolkit opened the display; nothing else may be called when
  // it did not.
  int (*start)();

  void* (*dialog_create)(const KorvalenGtkDialog* layout);
  void (*dialog_destroy)(void* dialog);
  void (*check)(void* dialog, std::uint32_t id, int checked);
  int (*checked)(void* dialog, std::uint32_t id);
  void (*enable)(void* dialog, std::uint32_t id, int enabled);
  int (*enabled)(void* dialog, std::uint32_t id);
  void (*set_text)(void* dialog, std::uint32_t id, const char* text);
  // The text's length in bytes; at most capacity - 1 of them copied, ended by
  // a zero byte.
  std::uint32_t (*text)(void* dialog, std::uint32_t id, char* buffer, std::uint32_t capacity);
  void (*refresh)(void* dialog);
  // The oldest key pressed in the dialog, as a Windows key code; 0 when none.
  int (*take_key_down)(void* dialog, unsigned* key);

  // Modal dialogs: the button chosen with the Windows answer values (1 OK, 2
  // Cancel, 6 Yes, 7 No).
  int (*message_box)(const char* text, const char* caption, unsigned style);
  // 1 confirmed, 0 cancelled; paths and folder are the module's, freed with
  // free_bytes.
  int (*choose_file)(const KorvalenGtkFileRequest* request, char** paths, char** folder);
  // printer holds the choice to start from (settings may be null) and gets
  // the confirmed one; 1 confirmed, 0 cancelled.
  int (*choose_printer)(KorvalenGtkPrinter* printer);
  void (*free_bytes)(void* bytes);

  // For tests: the window saved as a PNG image (1 when written); the next
  // modal dialog answered with that button, after its image is saved when
  // png is not null and, for a file picker, the path chosen when not null;
  // a key (a GDK key value) pressed in the dialog.
  int (*save_image)(void* dialog, const char* png);
  void (*answer_next_modal)(int answer, const char* png, const char* path);
  void (*press_key)(void* dialog, unsigned key);
};

using KorvalenGtkEntry = const KorvalenGtkApi* (*)(std::uint32_t version);

}  // extern "C"
