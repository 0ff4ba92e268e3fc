// The bytes of XML documents on disk: reading them in whatever encoding they
// are in, and writing them as the suite's documents are written. A document
// is written the way MSXML saves one: the nodes in document order without
// added white space, each top-level node followed by CR LF, empty elements
// closed as "<name/>", attribute values in double quotes with '&', '<' and
// '"' escaped (and tab, line feed and carriage return as character
// references, so that they read back as they were), text with '&', '<' and
// '>' escaped.
#include <cstdint>
#include <string>
#include <string_view>

#include "korvalen/platform/internal/text_codec.h"
#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/xml_document.h"

namespace korvalen::platform::posix {
namespace {

enum class Encoding { kUtf8, kUtf16Le, kUtf16Be, kWindows1252 };

bool same_label(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

Encoding encoding_named(std::string_view label) {
  for (const char* utf16 : {"unicode", "utf-16", "ucs-2", "utf-16le"}) {
    if (same_label(label, utf16)) return Encoding::kUtf16Le;
  }
  for (const char* ansi : {"windows-1252", "iso-8859-1", "latin1", "us-ascii"}) {
    if (same_label(label, ansi)) return Encoding::kWindows1252;
  }
  return Encoding::kUtf8;
}

// The encoding label of an 8-bit declaration ("<?xml ... encoding='x'?>");
// empty when there is none.
std::string_view declared_label(std::string_view bytes) {
  if (bytes.substr(0, 5) != "<?xml") return {};
  const std::size_t end = bytes.find("?>");
  const std::string_view declaration = bytes.substr(0, end);
  const std::size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) return {};
  std::size_t p = at + 8;
  while (p < declaration.size() && (declaration[p] == ' ' || declaration[p] == '=')) ++p;
  if (p >= declaration.size() || (declaration[p] != '"' && declaration[p] != '\'')) return {};
  const char quote = declaration[p++];
  const std::size_t close = declaration.find(quote, p);
  if (close == std::string_view::npos) return {};
  return declaration.substr(p, close - p);
}

bool utf16_to_utf8(std::string_view bytes, bool little_endian, std::string& utf8) {
  if (bytes.size() % 2 != 0) return false;
  std::wstring wide;
  wide.reserve(bytes.size() / 2);
  const auto unit = [&](std::size_t i) {
    const auto a = static_cast<unsigned char>(bytes[i]);
    const auto b = static_cast<unsigned char>(bytes[i + 1]);
    return static_cast<char32_t>(little_endian ? a | (b << 8) : (a << 8) | b);
  };
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    char32_t c = unit(i);
    if (c >= 0xD800 && c < 0xDC00 && i + 2 < bytes.size()) {
      const char32_t low = unit(i + 2);
      if (low >= 0xDC00 && low <= 0xDFFF) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    wide += static_cast<wchar_t>(c);  // a lone surrogate is replaced when encoded
  }
  utf8 = to_utf8(wide);
  return true;
}

bool valid_utf8(std::string_view bytes) {
  // The codec replaces what is malformed; text that changes was malformed.
  return to_utf8(from_utf8(bytes)) == bytes;
}

// --- writing ----------------------------------------------------------------

void append_escaped(std::wstring& out, std::wstring_view text, bool attribute) {
  for (const wchar_t c : text) {
    switch (c) {
      case L'&':
        out += L"&amp;";
        break;
      case L'<':
        out += L"&lt;";
        break;
      case L'>':
        if (attribute) {
          out += c;
        } else {
          out += L"&gt;";
        }
        break;
      case L'"':
        if (attribute) {
          out += L"&quot;";
        } else {
          out += c;
        }
        break;
      case L'\t':
      case L'\n':
      case L'\r':
        if (attribute) {
          out += L"&#x";
          out += c == L'\t' ? L"9" : c == L'\n' ? L"A" : L"D";
          out += L';';
        } else {
          out += c;
        }
        break;
      default:
        out += c;
    }
  }
}

std::wstring wide(const char* utf8) { return from_utf8(utf8); }

void write_start(std::wstring& out, pugi::xml_node node) {
  out += L'<';
  out += wide(node.name());
  for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
    out += L' ';
    out += wide(a.name());
    out += L"=\"";
    append_escaped(out, wide(a.value()), true);
    out += L'"';
  }
  out += node.first_child() ? L">" : L"/>";
}

void write_leaf(std::wstring& out, pugi::xml_node node) {
  switch (node.type()) {
    case pugi::node_pcdata:
      append_escaped(out, wide(node.value()), false);
      break;
    case pugi::node_cdata:
      out += L"<![CDATA[" + wide(node.value()) + L"]]>";
      break;
    case pugi::node_comment:
      out += L"<!--" + wide(node.value()) + L"-->";
      break;
    case pugi::node_pi:
      out += L"<?" + wide(node.name());
      if (*node.value() != 0) out += L" " + wide(node.value());
      out += L"?>";
      break;
    case pugi::node_declaration:
      out += L"<?xml";
      for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        out += L" " + wide(a.name()) + L"=\"" + wide(a.value()) + L"\"";
      }
      out += L"?>";
      break;
    default:  // a document type is not kept
      break;
  }
}

// The whole tree without recursion: documents may be nested deeper than the
// stack would allow.
std::wstring document_markup(const pugi::xml_document& tree) {
  std::wstring out;
  for (pugi::xml_node top = tree.first_child(); top; top = top.next_sibling()) {
    pugi::xml_node node = top;
    for (;;) {
      if (node.type() == pugi::node_element) {
        write_start(out, node);
        if (node.first_child()) {
          node = node.first_child();
          continue;
        }
      } else {
        write_leaf(out, node);
      }
      // Up until a node with a next sibling, closing the elements left.
      while (node != top && !node.next_sibling()) {
        node = node.parent();
        out += L"</" + wide(node.name()) + L">";
      }
      if (node == top) break;
      node = node.next_sibling();
    }
    if (top.type() != pugi::node_doctype) out += L"\r\n";
  }
  return out;
}

}  // namespace

bool document_text(std::string_view bytes, std::string& utf8) {
  if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE') {
    return utf16_to_utf8(bytes.substr(2), true, utf8);
  }
  if (bytes.size() >= 2 && bytes[0] == '\xFE' && bytes[1] == '\xFF') {
    return utf16_to_utf8(bytes.substr(2), false, utf8);
  }
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  // Without a mark, UTF-16 shows in its first character, '<' or a blank.
  if (bytes.size() >= 2 && bytes[0] != 0 && bytes[1] == 0) return utf16_to_utf8(bytes, true, utf8);
  if (bytes.size() >= 2 && bytes[0] == 0 && bytes[1] != 0) return utf16_to_utf8(bytes, false, utf8);
  if (encoding_named(declared_label(bytes)) == Encoding::kWindows1252) {
    std::wstring text;
    text.reserve(bytes.size());
    for (const char c : bytes) text += ansi_char_to_wide(static_cast<unsigned char>(c));
    utf8 = to_utf8(text);
    return true;
  }
  if (!valid_utf8(bytes)) return false;
  utf8.assign(bytes);
  return true;
}

std::string document_bytes(const pugi::xml_document& tree) {
  Encoding encoding = Encoding::kUtf8;
  for (pugi::xml_node top = tree.first_child(); top; top = top.next_sibling()) {
    if (top.type() == pugi::node_declaration) {
      encoding = encoding_named(top.attribute("encoding").value());
    }
  }
  const std::wstring markup = document_markup(tree);
  std::string bytes;
  switch (encoding) {
    case Encoding::kUtf16Le:
    case Encoding::kUtf16Be:
      bytes = "\xFF\xFE";
      for (const wchar_t c : markup) {
        const auto put = [&bytes](char32_t unit) {
          bytes += static_cast<char>(unit & 0xFF);
          bytes += static_cast<char>(unit >> 8);
        };
        const auto code = static_cast<char32_t>(c);
        if (code >= 0x10000 && code <= 0x10FFFF) {
          put(0xD800 + ((code - 0x10000) >> 10));
          put(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
          put(code > 0xFFFF ? 0xFFFD : code);
        }
      }
      break;
    case Encoding::kWindows1252:
      for (const wchar_t c : markup) {
        const char byte = c == 0 ? 0 : wide_char_to_ansi(c);
        if (byte != 0 && ansi_char_to_wide(static_cast<unsigned char>(byte)) == c) {
          bytes += byte;
        } else {
          bytes += "&#" + std::to_string(static_cast<std::uint32_t>(c)) + ";";
        }
      }
      break;
    case Encoding::kUtf8:
      bytes = to_utf8(markup);
      break;
  }
  return bytes;
}

}  // namespace korvalen::platform::posix
