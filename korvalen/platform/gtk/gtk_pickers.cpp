// The modal dialogs of the GTK module: message boxes, file and folder
// pickers and the printer setup, each run to the user's answer.
#include <gtk/gtkunixprint.h>

#include <cstring>
#include <string>

#include "korvalen/platform/gtk/gtk_calls.h"
#include "korvalen/platform/gtk/gtk_state.h"

namespace korvalen::gtk {
namespace {

// Windows answer values.
constexpr int kOk = 1, kCancel = 2, kYes = 6, kNo = 7;
constexpr const char* kSettingsGroup = "Print Settings";
constexpr const char* kPageGroup = "Page Setup";

GtkMessageType MessageType(unsigned style) {
  switch (style & 0xF0) {
    case 0x10:
      return GTK_MESSAGE_ERROR;
    case 0x20:
      return GTK_MESSAGE_QUESTION;
    case 0x30:
      return GTK_MESSAGE_WARNING;
    case 0x40:
      return GTK_MESSAGE_INFO;
    default:
      return GTK_MESSAGE_OTHER;
  }
}

char* Copy(const std::string& text) { return g_strdup(text.c_str()); }

void CopyName(char* to, const char* from) { g_strlcpy(to, from != nullptr ? from : "", 256); }

}  // namespace

int message_box(const char* text, const char* caption, unsigned style) {
  GtkWidget* box = gtk_message_dialog_new(nullptr, GTK_DIALOG_MODAL, MessageType(style),
                                          GTK_BUTTONS_NONE, "%s", text);
  set_caption(GTK_WINDOW(box), caption);
  // The buttons of MB_OK, MB_OKCANCEL, MB_YESNOCANCEL and MB_YESNO, with
  // the Windows answers as responses.
  switch (style & 0x0F) {
    case 1:
      gtk_dialog_add_buttons(GTK_DIALOG(box), "OK", kOk, "Cancel", kCancel, nullptr);
      break;
    case 3:
      gtk_dialog_add_buttons(GTK_DIALOG(box), "Yes", kYes, "No", kNo, "Cancel", kCancel, nullptr);
      break;
    case 4:
      gtk_dialog_add_buttons(GTK_DIALOG(box), "Yes", kYes, "No", kNo, nullptr);
      break;
    default:
      gtk_dialog_add_button(GTK_DIALOG(box), "OK", kOk);
      break;
  }
  int answer = run_modal(GTK_DIALOG(box));
  gtk_widget_destroy(box);
  pump();
  // Closed from the title bar: what Escape gives on Windows.
  if (answer < 0) answer = (style & 0x0F) == 0 ? kOk : (style & 0x0F) == 4 ? kNo : kCancel;
  return answer;
}

int choose_file(const KorvalenGtkFileRequest* request, char** paths, char** folder) {
  *paths = *folder = nullptr;
  const GtkFileChooserAction action = request->folder_only ? GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER
                                      : request->open      ? GTK_FILE_CHOOSER_ACTION_OPEN
                                                           : GTK_FILE_CHOOSER_ACTION_SAVE;
  GtkWidget* chooser = gtk_file_chooser_dialog_new(
      request->title, nullptr, action, "Cancel", GTK_RESPONSE_CANCEL,
      request->open || request->folder_only ? "Open" : "Save", GTK_RESPONSE_ACCEPT, nullptr);
  set_caption(GTK_WINDOW(chooser), request->title);
  gtk_window_set_default_size(GTK_WINDOW(chooser), 760, 520);
  GtkFileChooser* files = GTK_FILE_CHOOSER(chooser);
  gtk_file_chooser_set_local_only(files, TRUE);
  gtk_file_chooser_set_select_multiple(files, request->multiple != 0);
  gtk_file_chooser_set_do_overwrite_confirmation(files, request->confirm_overwrite != 0);
  if (request->folder != nullptr && *request->folder != 0) {
    gtk_file_chooser_set_current_folder(files, request->folder);
  }
  if (request->name != nullptr && *request->name != 0) {
    if (request->open) {
      gtk_file_chooser_select_filename(files, request->name);
    } else {
      gchar* base = g_path_get_basename(request->name);
      gtk_file_chooser_set_current_name(files, base);
      g_free(base);
    }
  }
  // One filter per pattern, as the system's picker lists them.
  std::string patterns = request->patterns != nullptr ? request->patterns : "";
  for (std::size_t at = 0, end; (end = patterns.find('\n', at)) != std::string::npos;
       at = end + 1) {
    const std::string pattern = patterns.substr(at, end - at);
    GtkFileFilter* filter = gtk_file_filter_new();
    gtk_file_filter_set_name(filter, pattern.c_str());
    gtk_file_filter_add_pattern(filter, pattern.c_str());
    gtk_file_chooser_add_filter(files, filter);
  }
  if (const std::string path = pending_test_path(); !path.empty()) {
    if (request->open || request->folder_only) {
      gtk_file_chooser_select_filename(files, path.c_str());
    } else {
      gtk_file_chooser_set_filename(files, path.c_str());
    }
    pump();
  }
  const bool confirmed = run_modal(GTK_DIALOG(chooser)) == GTK_RESPONSE_ACCEPT;
  std::string chosen;
  if (confirmed) {
    GSList* names = gtk_file_chooser_get_filenames(files);
    for (GSList* n = names; n != nullptr; n = n->next) {
      chosen += static_cast<const char*>(n->data);
      chosen += '\n';
    }
    g_slist_free_full(names, g_free);
  }
  gchar* ended_in = gtk_file_chooser_get_current_folder(files);
  *folder = g_strdup(ended_in != nullptr ? ended_in : "");
  g_free(ended_in);
  *paths = Copy(chosen);
  gtk_widget_destroy(chooser);
  pump();
  return confirmed && !chosen.empty() ? 1 : 0;
}

int choose_printer(KorvalenGtkPrinter* printer) {
  GtkWidget* dialog = gtk_print_unix_dialog_new("Printer setup", nullptr);
  set_caption(GTK_WINDOW(dialog), "Printer setup");
  GtkPrintUnixDialog* print = GTK_PRINT_UNIX_DIALOG(dialog);
  // A setup: the paper and orientation beside the printers, and a choice
  // rather than a print.
  gtk_print_unix_dialog_set_embed_page_setup(print, TRUE);
  if (GtkWidget* ok = gtk_dialog_get_widget_for_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK)) {
    gtk_button_set_label(GTK_BUTTON(ok), "OK");
  }
  // The stored settings are a key file of the toolkit's own when this module
  // wrote them; any other bytes leave the dialog on its defaults.
  GKeyFile* stored = g_key_file_new();
  if (printer->settings != nullptr && printer->settings_size > 0 &&
      g_key_file_load_from_data(stored, reinterpret_cast<const char*>(printer->settings),
                                printer->settings_size, G_KEY_FILE_NONE, nullptr)) {
    if (GtkPrintSettings* s =
            gtk_print_settings_new_from_key_file(stored, kSettingsGroup, nullptr)) {
      gtk_print_unix_dialog_set_settings(print, s);
      g_object_unref(s);
    }
    if (GtkPageSetup* p = gtk_page_setup_new_from_key_file(stored, kPageGroup, nullptr)) {
      gtk_print_unix_dialog_set_page_setup(print, p);
      g_object_unref(p);
    }
  } else if (printer->device[0] != 0) {
    GtkPrintSettings* s = gtk_print_settings_new();
    gtk_print_settings_set_printer(s, printer->device);
    gtk_print_unix_dialog_set_settings(print, s);
    g_object_unref(s);
  }
  g_key_file_free(stored);
  const bool confirmed = run_modal(GTK_DIALOG(dialog)) == GTK_RESPONSE_OK;
  GtkPrinter* chosen = gtk_print_unix_dialog_get_selected_printer(print);
  if (confirmed && chosen != nullptr) {
    CopyName(printer->driver, "GTK");
    CopyName(printer->device, gtk_printer_get_name(chosen));
    CopyName(printer->port, gtk_printer_get_location(chosen));
    GKeyFile* chosen_settings = g_key_file_new();
    GtkPrintSettings* s = gtk_print_unix_dialog_get_settings(print);
    gtk_print_settings_to_key_file(s, chosen_settings, kSettingsGroup);
    g_object_unref(s);
    gtk_page_setup_to_key_file(gtk_print_unix_dialog_get_page_setup(print), chosen_settings,
                               kPageGroup);
    gsize size = 0;
    printer->settings =
        reinterpret_cast<unsigned char*>(g_key_file_to_data(chosen_settings, &size, nullptr));
    printer->settings_size = static_cast<std::uint32_t>(size);
    g_key_file_free(chosen_settings);
  }
  gtk_widget_destroy(dialog);
  pump();
  return confirmed && chosen != nullptr ? 1 : 0;
}

}  // namespace korvalen::gtk
