// The GTK module's entry: the table of its functions, the start of the
// toolkit, and what its files share.
#include <gtk/gtkunixprint.h>

#include <chrono>
#include <thread>

#include "korvalen/platform/gtk/gtk_calls.h"
#include "korvalen/platform/gtk/gtk_state.h"
#include "korvalen/platform/posix/gtk_interface.h"

namespace korvalen::gtk {
namespace {

struct TestAnswer {
  bool pending = false;
  int answer = 0;
  std::string png;
  std::string path;
  int waits = 0;
};
TestAnswer g_test_answer;

int start() { return gtk_init_check(nullptr, nullptr) ? 1 : 0; }

void free_bytes(void* bytes) { g_free(bytes); }

int save_dialog_image(void* dialog, const char* png) {
  return save_image(static_cast<TemplateDialog*>(dialog)->window, png) ? 1 : 0;
}

// The test's answer, once the dialog is on the screen and its image saved.
gboolean answer_now(gpointer data) {
  auto* dialog = static_cast<GtkDialog*>(data);
  // A print dialog lists its printers a while after it shows: confirming
  // needs one chosen (ten seconds at most).
  if (GTK_IS_PRINT_UNIX_DIALOG(dialog) && g_test_answer.answer == GTK_RESPONSE_OK &&
      gtk_print_unix_dialog_get_selected_printer(GTK_PRINT_UNIX_DIALOG(dialog)) == nullptr &&
      ++g_test_answer.waits < 25) {
    return G_SOURCE_CONTINUE;
  }
  if (!g_test_answer.png.empty()) save_image(GTK_WIDGET(dialog), g_test_answer.png.c_str());
  const int answer = g_test_answer.answer;
  g_test_answer = TestAnswer{};
  gtk_dialog_response(dialog, answer);
  return G_SOURCE_REMOVE;
}

}  // namespace

void pump() {
  while (gtk_events_pending()) gtk_main_iteration_do(FALSE);
}

bool save_image(GtkWidget* window, const char* png) {
  // A window is drawn some moments after it is mapped; two seconds at most.
  for (int i = 0; i < 200 && !gtk_widget_get_mapped(window); ++i) {
    pump();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  for (int i = 0; i < 20; ++i) {
    pump();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  GdkWindow* surface = gtk_widget_get_window(window);
  if (surface == nullptr || !gtk_widget_get_mapped(window)) return false;
  GdkPixbuf* image = gdk_pixbuf_get_from_window(surface, 0, 0, gdk_window_get_width(surface),
                                                gdk_window_get_height(surface));
  if (image == nullptr) return false;
  const bool saved = gdk_pixbuf_save(image, png, "png", nullptr, nullptr) != FALSE;
  g_object_unref(image);
  return saved;
}

int run_modal(GtkDialog* dialog) {
  if (g_test_answer.pending) {
    // Time for the dialog to be mapped and drawn before the answer.
    g_timeout_add(400, answer_now, dialog);
  }
  return gtk_dialog_run(dialog);
}

std::string pending_test_path() { return g_test_answer.pending ? g_test_answer.path : ""; }

void answer_next_modal(int answer, const char* png, const char* path) {
  g_test_answer =
      TestAnswer{true, answer, png != nullptr ? png : "", path != nullptr ? path : "", 0};
}

void set_caption(GtkWindow* window, const char* caption) {
  GtkWidget* bar = gtk_header_bar_new();
  gtk_header_bar_set_title(GTK_HEADER_BAR(bar), caption);
  gtk_widget_show(bar);
  gtk_window_set_titlebar(window, bar);
  gtk_window_set_title(window, caption);
}

}  // namespace korvalen::gtk

extern "C" __attribute__((visibility("default"))) const KorvalenGtkApi* korvalen_gtk_api(
    std::uint32_t version) {
  namespace gtk = korvalen::gtk;
  static const KorvalenGtkApi api = {
      kKorvalenGtkVersion,
      gtk::start,
      gtk::dialog_create,
      gtk::dialog_destroy,
      gtk::check,
      gtk::checked,
      gtk::enable,
      gtk::enabled,
      gtk::set_text,
      gtk::text,
      gtk::refresh,
      gtk::take_key_down,
      gtk::message_box,
      gtk::choose_file,
      gtk::choose_printer,
      gtk::free_bytes,
      gtk::save_dialog_image,
      gtk::answer_next_modal,
      gtk::press_key,
  };
  return version == kKorvalenGtkVersion ? &api : nullptr;
}
