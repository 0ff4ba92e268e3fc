// Dialog windows over POSIX: GTK through the module when there is one, built
// from the language library's template or else the built-in one; headless
// otherwise.
#include "korvalen/platform/internal/dialog_window.h"

#include <string>
#include <vector>

#include "korvalen/platform/internal/dialog_template.h"
#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/pe_image.h"
#include "korvalen/platform/internal/resource_module.h"
#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/gtk_module.h"
#include "korvalen/platform/posix/headless_dialog.h"

namespace korvalen::platform {

// The handle of a headless dialog is the dialog itself, never dereferenced
// as a window.
HWND HeadlessDialog::handle() const {
  return reinterpret_cast<HWND>(const_cast<HeadlessDialog*>(this));
}

namespace {

class ToolkitDialog final : public DialogWindow {
 public:
  ToolkitDialog(const KorvalenGtkApi& gtk, void* dialog)
      : gtk_(gtk), dialog_(dialog), handle_(remember_gtk_dialog(dialog)) {}
  ~ToolkitDialog() override {
    forget_gtk_dialog(handle_);
    gtk_.dialog_destroy(dialog_);
  }

  HWND handle() const override { return handle_; }
  void check(int id, bool on) override { gtk_.check(dialog_, Id(id), on ? 1 : 0); }
  bool checked(int id) const override { return gtk_.checked(dialog_, Id(id)) != 0; }
  void enable(int id, bool on) override { gtk_.enable(dialog_, Id(id), on ? 1 : 0); }
  bool enabled(int id) const override { return gtk_.enabled(dialog_, Id(id)) != 0; }
  void replace_text(int id, const wchar_t* text) override {
    gtk_.set_text(dialog_, Id(id), to_utf8(text).c_str());
  }
  std::wstring text(int id) const override {
    std::string bytes(256, '\0');
    const std::uint32_t length =
        gtk_.text(dialog_, Id(id), bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    if (length >= bytes.size()) {
      bytes.assign(length + 1, '\0');
      gtk_.text(dialog_, Id(id), bytes.data(), length + 1);
    }
    bytes.resize(length);
    return from_utf8(bytes);
  }
  void refresh() override { gtk_.refresh(dialog_); }

 private:
  static std::uint32_t Id(int id) { return static_cast<std::uint32_t>(id); }

  const KorvalenGtkApi& gtk_;
  void* dialog_;
  HWND handle_;
};

// The template as the module takes it: texts in UTF-8, kept alive here.
void* CreateInModule(const KorvalenGtkApi& gtk, const DialogTemplate& dialog) {
  const std::string caption = to_utf8(dialog.caption);
  std::vector<std::string> texts;
  texts.reserve(dialog.controls.size());
  std::vector<KorvalenGtkControl> controls;
  for (const DialogControl& c : dialog.controls) {
    texts.push_back(to_utf8(c.text));
    controls.push_back(KorvalenGtkControl{c.id, static_cast<std::uint16_t>(c.kind), c.style,
                                          texts.back().c_str(), c.x, c.y, c.width, c.height});
  }
  const KorvalenGtkDialog layout{caption.c_str(), dialog.style,
                                 dialog.width,    dialog.height,
                                 controls.data(), static_cast<std::uint32_t>(controls.size())};
  return gtk.dialog_create(&layout);
}

}  // namespace

namespace native {

std::error_code create_dialog_window(HMODULE resources, unsigned template_id,
                                     const DialogTemplate* builtin, HWND /*parent*/,
                                     const std::function<int()>& on_init,
                                     std::unique_ptr<DialogWindow>& window) {
  if (const KorvalenGtkApi* gtk = gtk_module()) {
    DialogTemplate from_library;
    std::span<const std::uint8_t> bytes;
    const DialogTemplate* dialog = builtin;
    if (resources != nullptr && !find_resource(resources, kResourceDialog, template_id, bytes) &&
        !bytes.empty() && parse_dialog_template(bytes, from_library)) {
      dialog = &from_library;
    }
    if (dialog == nullptr) return make_error(std::errc::no_such_file_or_directory);
    void* created = CreateInModule(*gtk, *dialog);
    if (created == nullptr) return make_error(std::errc::io_error);
    window = std::make_unique<ToolkitDialog>(*gtk, created);
  } else {
    window = std::make_unique<HeadlessDialog>();
  }
  if (on_init) on_init();
  return {};
}

}  // namespace native
}  // namespace korvalen::platform
