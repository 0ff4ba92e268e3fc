// Dialogs built from their templates with GTK: each control placed where the
// template puts it, scaled from dialog units, and found again by its
// identifier.
#include <cstring>
#include <string>

#include "korvalen/platform/gtk/gtk_calls.h"
#include "korvalen/platform/gtk/gtk_state.h"

namespace korvalen::gtk {
namespace {

// Dialog units to pixels: a toolkit font needs more room than the 8-point
// font the templates were drawn for.
constexpr double kPixelsPerUnitX = 1.75;
constexpr double kPixelsPerUnitY = 2.0;

constexpr std::uint16_t kButton = 0x80, kEdit = 0x81;
constexpr std::uint32_t kButtonType = 0x0F, kGroupBox = 0x07, kEditReadOnly = 0x0800,
                        kEditRight = 0x0002, kDisabled = 0x08000000, kVisible = 0x10000000;

// Edit fields and check boxes as tight as the template's rows.
constexpr const char* kCompactStyle =
    "entry { min-height: 0; padding-top: 0; padding-bottom: 0; }"
    "checkbutton { min-height: 0; padding: 0; }";

int Px(int units, double scale) { return static_cast<int>(units * scale + 0.5); }

// "&File" shows as "File"; "&&" is one "&".
std::string WithoutMnemonics(const char* text) {
  std::string out;
  for (const char* p = text; *p != 0; ++p) {
    if (*p == '&' && p[1] != 0) ++p;
    out += *p;
  }
  return out;
}

void Compact(GtkWidget* widget) {
  static GtkCssProvider* style = [] {
    GtkCssProvider* provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, kCompactStyle, -1, nullptr);
    return provider;
  }();
  gtk_style_context_add_provider(gtk_widget_get_style_context(widget), GTK_STYLE_PROVIDER(style),
                                 GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

GtkWidget* MakeControl(const KorvalenGtkControl& c) {
  const std::string text = WithoutMnemonics(c.text);
  GtkWidget* widget = nullptr;
  if (c.kind == kButton) {
    switch (c.style & kButtonType) {
      case 0x00:
      case 0x01:
        widget = gtk_button_new_with_label(text.c_str());
        break;
      case kGroupBox:
        widget = gtk_frame_new(text.c_str());
        break;
      default:  // check boxes and radio buttons: a box with its label
        widget = gtk_check_button_new_with_label(text.c_str());
        break;
    }
  } else if (c.kind == kEdit) {
    widget = gtk_entry_new();
    gtk_entry_set_text(GTK_ENTRY(widget), text.c_str());
    gtk_editable_set_editable(GTK_EDITABLE(widget), (c.style & kEditReadOnly) == 0);
    gtk_entry_set_width_chars(GTK_ENTRY(widget), 1);
    if ((c.style & kEditRight) != 0) gtk_entry_set_alignment(GTK_ENTRY(widget), 1.0f);
  } else {
    widget = gtk_label_new(text.c_str());
    gtk_label_set_xalign(GTK_LABEL(widget), 0.0f);
  }
  Compact(widget);
  gtk_widget_set_size_request(widget, Px(c.width, kPixelsPerUnitX), Px(c.height, kPixelsPerUnitY));
  gtk_widget_set_sensitive(widget, (c.style & kDisabled) == 0);
  return widget;
}

TemplateDialog* Of(void* dialog) { return static_cast<TemplateDialog*>(dialog); }

GtkWidget* Control(void* dialog, std::uint32_t id) {
  const auto it = Of(dialog)->controls.find(id);
  return it != Of(dialog)->controls.end() ? it->second : nullptr;
}

// Windows key codes for the keys that have one of the same meaning.
unsigned KeyCode(guint value) {
  switch (value) {
    case GDK_KEY_Escape:
      return 27;
    case GDK_KEY_Return:
      return 13;
    case GDK_KEY_Tab:
      return 9;
    case GDK_KEY_BackSpace:
      return 8;
    default:
      break;
  }
  const guint32 c = gdk_keyval_to_unicode(gdk_keyval_to_upper(value));
  return c < 128 ? c : 0;
}

gboolean OnKey(GtkWidget*, GdkEventKey* event, gpointer data) {
  if (const unsigned key = KeyCode(event->keyval); key != 0) Of(data)->keys.push_back(key);
  return FALSE;
}

// The user does not close a modeless dialog of the library: its program does.
gboolean OnDelete(GtkWidget*, GdkEvent*, gpointer) { return TRUE; }

}  // namespace

void* dialog_create(const KorvalenGtkDialog* layout) {
  auto* dialog = new TemplateDialog;
  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  dialog->window = window;
  set_caption(GTK_WINDOW(window), layout->caption);
  gtk_window_set_resizable(GTK_WINDOW(window), FALSE);
  GtkWidget* fixed = gtk_fixed_new();
  gtk_widget_set_size_request(fixed, Px(layout->width, kPixelsPerUnitX),
                              Px(layout->height, kPixelsPerUnitY));
  gtk_container_add(GTK_CONTAINER(window), fixed);
  for (std::uint32_t i = 0; i < layout->control_count; ++i) {
    const KorvalenGtkControl& c = layout->controls[i];
    GtkWidget* widget = MakeControl(c);
    gtk_fixed_put(GTK_FIXED(fixed), widget, Px(c.x, kPixelsPerUnitX), Px(c.y, kPixelsPerUnitY));
    if ((c.style & kVisible) != 0) gtk_widget_show(widget);
    // Identifiers 0xFFFF and -1 are "no identifier"; the first of a repeated
    // one is what the system finds.
    if (c.id != 0xFFFF && c.id != 0xFFFFFFFF) dialog->controls.emplace(c.id, widget);
  }
  gtk_widget_show(fixed);
  g_signal_connect(window, "key-press-event", G_CALLBACK(OnKey), dialog);
  g_signal_connect(window, "delete-event", G_CALLBACK(OnDelete), nullptr);
  if ((layout->style & kVisible) != 0) gtk_widget_show(window);
  pump();
  return dialog;
}

void dialog_destroy(void* dialog) {
  gtk_widget_destroy(Of(dialog)->window);
  delete Of(dialog);
  pump();
}

void check(void* dialog, std::uint32_t id, int on) {
  if (GtkWidget* c = Control(dialog, id); c != nullptr && GTK_IS_TOGGLE_BUTTON(c)) {
    gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(c), on != 0);
  }
}

int checked(void* dialog, std::uint32_t id) {
  GtkWidget* c = Control(dialog, id);
  return c != nullptr && GTK_IS_TOGGLE_BUTTON(c) &&
                 gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(c))
             ? 1
             : 0;
}

void enable(void* dialog, std::uint32_t id, int on) {
  if (GtkWidget* c = Control(dialog, id)) gtk_widget_set_sensitive(c, on != 0);
}

int enabled(void* dialog, std::uint32_t id) {
  GtkWidget* c = Control(dialog, id);
  return c != nullptr && gtk_widget_get_sensitive(c) ? 1 : 0;
}

void set_text(void* dialog, std::uint32_t id, const char* value) {
  GtkWidget* c = Control(dialog, id);
  if (c == nullptr) return;
  if (GTK_IS_ENTRY(c)) {
    // As an edit field: all selected, the selection replaced, the caret at
    // the end of the new text and in view.
    gtk_entry_set_text(GTK_ENTRY(c), value);
    gtk_editable_set_position(GTK_EDITABLE(c), -1);
  } else if (GTK_IS_LABEL(c)) {
    gtk_label_set_text(GTK_LABEL(c), value);
  } else if (GTK_IS_FRAME(c)) {
    gtk_frame_set_label(GTK_FRAME(c), value);
  } else if (GTK_IS_BUTTON(c)) {
    gtk_button_set_label(GTK_BUTTON(c), value);
  }
}

std::uint32_t text(void* dialog, std::uint32_t id, char* buffer, std::uint32_t capacity) {
  GtkWidget* c = Control(dialog, id);
  const char* value = "";
  if (c == nullptr) {
  } else if (GTK_IS_ENTRY(c)) {
    value = gtk_entry_get_text(GTK_ENTRY(c));
  } else if (GTK_IS_LABEL(c)) {
    value = gtk_label_get_text(GTK_LABEL(c));
  } else if (GTK_IS_FRAME(c)) {
    value = gtk_frame_get_label(GTK_FRAME(c));
  } else if (GTK_IS_BUTTON(c)) {
    value = gtk_button_get_label(GTK_BUTTON(c));
  }
  if (value == nullptr) value = "";
  const std::size_t length = std::strlen(value);
  if (capacity > 0) {
    const std::size_t copied = length < capacity ? length : capacity - 1;
    std::memcpy(buffer, value, copied);
    buffer[copied] = 0;
  }
  return static_cast<std::uint32_t>(length);
}

void refresh(void*) { pump(); }

int take_key_down(void* dialog, unsigned* key) {
  pump();
  auto& keys = Of(dialog)->keys;
  if (keys.empty()) return 0;
  *key = keys.front();
  keys.pop_front();
  return 1;
}

// As the window system delivers a key: the event goes to the window's own
// handlers.
void press_key(void* dialog, unsigned key) {
  GtkWidget* window = Of(dialog)->window;
  GdkEvent* event = gdk_event_new(GDK_KEY_PRESS);
  event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(window)));
  event->key.keyval = key;
  event->key.send_event = TRUE;
  gdk_event_set_device(
      event, gdk_seat_get_keyboard(gdk_display_get_default_seat(gtk_widget_get_display(window))));
  gtk_widget_event(window, event);
  gdk_event_free(event);
}

}  // namespace korvalen::gtk
