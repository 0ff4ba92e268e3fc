// The GTK module's own state and helpers shared by its files: the dialogs
// built from templates, the modal dialogs run to an answer, and the test
// hooks that answer those without a user.
#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <deque>
#include <map>
#include <string>

namespace korvalen::gtk {

// A dialog built from a template: its window and its controls by
// identifier, and the keys pressed in it not yet taken.
struct TemplateDialog {
  GtkWidget* window = nullptr;
  std::map<std::uint32_t, GtkWidget*> controls;
  std::deque<unsigned> keys;
};

// Runs the toolkit until nothing is pending.
void pump();

// Saves what the window shows as a PNG image, once it is on the screen.
bool save_image(GtkWidget* window, const char* png);

// Runs a modal dialog to its response. A pending test answer replies in the
// user's place, after saving the dialog's image.
int run_modal(GtkDialog* dialog);
// The path a pending test answer picks in a file chooser (empty: none).
std::string pending_test_path();
void answer_next_modal(int answer, const char* png, const char* path);

// A title bar of the toolkit's own: the caption shows even where no window
// manager draws one (as on a virtual display).
void set_caption(GtkWindow* window, const char* caption);

}  // namespace korvalen::gtk
