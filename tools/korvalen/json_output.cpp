#include "json_output.h"

#include <cstdio>
#include <optional>

#include "korvalen/platform/internal/utf8.h"

namespace korvalen::tool {
namespace {

std::optional<Json> g_document;
Json* g_section = nullptr;

}  // namespace

std::string utf8(const std::wstring& text) { return platform::to_utf8(text); }

std::string json_key(const std::wstring& label) {
  std::string key;
  bool gap = false;
  for (const wchar_t c : label) {
    const bool digit = c >= L'0' && c <= L'9';
    const bool letter = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
    if (!digit && !letter) {
      gap = !key.empty();
      continue;
    }
    if (gap) key += '_';
    gap = false;
    key += static_cast<char>(letter ? (c | 0x20) : c);
  }
  return key;
}

void add_json_flag(CLI::App& command, bool& json, const std::string& keys) {
  command.add_flag("--json", json, "Print one JSON document instead: " + keys);
}

void open_document() {
  g_document = Json::object();
  g_section = &*g_document;
}

bool json_wanted() { return g_document.has_value(); }

Json& document() { return *g_document; }

void open_section(const std::string& key) {
  if (!g_document) return;
  g_section = key.empty() ? &*g_document : &(*g_document)[key];
  if (g_section->is_null()) *g_section = Json::object();
}

Json& section() {
  // Without a document what the command adds is dropped.
  static Json discarded;
  if (g_section != nullptr) return *g_section;
  discarded = Json::object();
  return discarded;
}

bool document_takes(const std::wstring& label, const std::wstring& value) {
  if (!g_document) return false;
  const std::string key = json_key(label);
  if (!key.empty()) (*g_section)[key] = utf8(value);
  return true;
}

void close_document() {
  if (!g_document) return;
  const std::string text = g_document->dump(2) + "\n";
  g_document.reset();
  g_section = nullptr;
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

}  // namespace korvalen::tool
