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

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "korvalen/platform/internal/text_codec.h"
#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/xml_document.h"

namespace korvalen::platform::posix {
namespace {

// Documents are nearly all ASCII: where the machine has vectors, runs of it
// are converted 8 characters at a time.
#if defined(__SSE2__)
bool is_ascii16(const unsigned char* bytes) {
  return _mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes))) == 0;
}

// The next 16 bytes widened to 16 little-endian UTF-16 units when all of them
// are ASCII; false, with nothing written, otherwise.
bool widen_ascii16(const unsigned char* bytes, char* out) {
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  if (_mm_movemask_epi8(v) != 0) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(v, _mm_setzero_si128()));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16), _mm_unpackhi_epi8(v, _mm_setzero_si128()));
  return true;
}
#else
bool is_ascii16(const unsigned char*) { return false; }
bool widen_ascii16(const unsigned char*, char*) { return false; }
#endif

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

// Whether the bytes are UTF-8: ASCII runs skipped 16 at a time, each other
// sequence checked as the codec reads it.
bool valid_utf8(std::string_view bytes) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  const std::size_t n = bytes.size();
  std::size_t i = 0;
  while (i < n) {
    if (i + 16 <= n && is_ascii16(p + i)) {
      i += 16;
      continue;
    }
    if (p[i] < 0x80) {
      ++i;
      continue;
    }
    const std::size_t start = i++;
    while (i < n && (p[i] & 0xC0) == 0x80) ++i;
    const std::string_view sequence = bytes.substr(start, i - start);
    if (to_utf8(from_utf8(sequence)) != sequence) return false;
  }
  return true;
}

// --- writing ----------------------------------------------------------------

// The tree's texts are UTF-8 already; the markup around them is written so
// too, and converted once at the end.
// The reference a character is written as, or null for one written as it is.
const char* escape(char c, bool attribute) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return attribute ? nullptr : "&gt;";
    case '"':
      return attribute ? "&quot;" : nullptr;
    case '\t':
      return attribute ? "&#x9;" : nullptr;
    case '\n':
      return attribute ? "&#xA;" : nullptr;
    case '\r':
      return attribute ? "&#xD;" : nullptr;
    default:
      return nullptr;
  }
}

// The bytes that end a run of text written as it is: the terminator, and
// those written as references (in text, in attribute values).
struct Stops {
  bool text[256] = {};
  bool attribute[256] = {};
  constexpr Stops() {
    for (const unsigned char c : {'\0', '&', '<', '>'}) text[c] = true;
    for (const unsigned char c : {'\0', '&', '<', '"', '\t', '\n', '\r'}) attribute[c] = true;
  }
};
constexpr Stops kStops;

void append_escaped(std::string& out, const char* text, bool attribute) {
  const bool* stops = attribute ? kStops.attribute : kStops.text;
  for (;;) {
    const char* run = text;
    while (!stops[static_cast<unsigned char>(*text)]) ++text;
    out.append(run, static_cast<std::size_t>(text - run));
    if (*text == 0) return;
    out += escape(*text, attribute);
    ++text;
  }
}

void write_start(std::string& out, pugi::xml_node node) {
  out += '<';
  out += node.name();
  for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
    out += ' ';
    out += a.name();
    out += "=\"";
    append_escaped(out, a.value(), true);
    out += '"';
  }
  out += node.first_child() ? ">" : "/>";
}

void write_leaf(std::string& out, pugi::xml_node node) {
  switch (node.type()) {
    case pugi::node_pcdata:
      append_escaped(out, node.value(), false);
      break;
    case pugi::node_cdata:
      out += "<![CDATA[";
      out += node.value();
      out += "]]>";
      break;
    case pugi::node_comment:
      out += "<!--";
      out += node.value();
      out += "-->";
      break;
    case pugi::node_pi:
      out += "<?";
      out += node.name();
      if (*node.value() != 0) {
        out += ' ';
        out += node.value();
      }
      out += "?>";
      break;
    case pugi::node_declaration:
      out += "<?xml";
      for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        out += ' ';
        out += a.name();
        out += "=\"";
        out += a.value();
        out += '"';
      }
      out += "?>";
      break;
    default:  // a document type is not kept
      break;
  }
}

// The whole tree without recursion: documents may be nested deeper than the
// stack would allow.
std::string document_markup(const pugi::xml_document& tree, std::size_t size_hint) {
  std::string out;
  out.reserve(size_hint);
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
        out += "</";
        out += node.name();
        out += '>';
      }
      if (node == top) break;
      node = node.next_sibling();
    }
    if (top.type() != pugi::node_doctype) out += "\r\n";
  }
  return out;
}

// UTF-8 (as the tree holds it: valid) written as UTF-16LE behind a
// byte-order mark, a block at a time: each byte gives at most one unit.
bool write_utf16(std::string_view utf8, FILE* file) {
  constexpr std::size_t kBlockBytes = 32768;
  char units[2 * kBlockBytes + 4];
  units[0] = '\xFF';
  units[1] = '\xFE';
  char* o = units + 2;
  const auto put = [&o](char32_t unit) {
    *o++ = static_cast<char>(unit & 0xFF);
    *o++ = static_cast<char>(unit >> 8);
  };
  const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
  const std::size_t n = utf8.size();
  std::size_t i = 0;
  while (i < n) {
    // A block ends before a sequence's lead byte, never inside it.
    std::size_t end = i + kBlockBytes < n ? i + kBlockBytes : n;
    while (end < n && end > i && (p[end] & 0xC0) == 0x80) --end;
    while (i < end) {
      if (i + 16 <= end && widen_ascii16(p + i, o)) {
        i += 16;
        o += 32;
        continue;
      }
      const unsigned char lead = p[i];
      if (lead < 0x80) {
        put(lead);
        ++i;
        continue;
      }
      const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
      char32_t c = lead & (0x7F >> length);
      for (int k = 1; k < length && i + k < n; ++k) c = (c << 6) | (p[i + k] & 0x3F);
      i += static_cast<std::size_t>(length);
      if (c >= 0x10000) {
        put(0xD800 + ((c - 0x10000) >> 10));
        put(0xDC00 + ((c - 0x10000) & 0x3FF));
      } else {
        put(c);
      }
    }
    const auto size = static_cast<std::size_t>(o - units);
    if (std::fwrite(units, 1, size, file) != size) return false;
    o = units;
  }
  if (o != units) return std::fwrite(units, 1, 2, file) == 2;  // an empty document: the mark
  return true;
}

}  // namespace

bool document_text(std::string bytes, ParserInput& input) {
  const std::string_view view = bytes;
  std::size_t mark = 0;
  if (view.substr(0, 2) == "\xFF\xFE") {
    input.encoding = pugi::encoding_utf16_le;
    mark = 2;
  } else if (view.substr(0, 2) == "\xFE\xFF") {
    input.encoding = pugi::encoding_utf16_be;
    mark = 2;
  } else if (view.substr(0, 3) == "\xEF\xBB\xBF") {
    input.encoding = pugi::encoding_utf8;
    mark = 3;
  } else if (view.size() >= 2 && view[0] != 0 && view[1] == 0) {
    // Without a mark, UTF-16 shows in its first character, '<' or a blank.
    input.encoding = pugi::encoding_utf16_le;
  } else if (view.size() >= 2 && view[0] == 0 && view[1] != 0) {
    input.encoding = pugi::encoding_utf16_be;
  } else if (encoding_named(declared_label(view)) == Encoding::kWindows1252) {
    std::wstring text;
    text.reserve(view.size());
    for (const char c : view) text += ansi_char_to_wide(static_cast<unsigned char>(c));
    input.bytes = to_utf8(text);
    input.encoding = pugi::encoding_utf8;
    return true;
  } else {
    input.encoding = pugi::encoding_utf8;
  }
  if (input.encoding == pugi::encoding_utf8 ? !valid_utf8(view.substr(mark))
                                            : (view.size() - mark) % 2 != 0) {
    return false;
  }
  bytes.erase(0, mark);
  input.bytes = std::move(bytes);
  return true;
}

bool write_document(const pugi::xml_document& tree, std::size_t size_hint, FILE* file) {
  Encoding encoding = Encoding::kUtf8;
  for (pugi::xml_node top = tree.first_child(); top; top = top.next_sibling()) {
    if (top.type() == pugi::node_declaration) {
      encoding = encoding_named(top.attribute("encoding").value());
    }
  }
  const std::string markup = document_markup(tree, size_hint);
  switch (encoding) {
    case Encoding::kUtf16Le:
    case Encoding::kUtf16Be:
      return write_utf16(markup, file);
    case Encoding::kWindows1252: {
      std::string bytes;
      for (const wchar_t c : from_utf8(markup)) {
        const char byte = c == 0 ? 0 : wide_char_to_ansi(c);
        if (byte != 0 && ansi_char_to_wide(static_cast<unsigned char>(byte)) == c) {
          bytes += byte;
        } else {
          bytes += "&#" + std::to_string(static_cast<std::uint32_t>(c)) + ";";
        }
      }
      return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    }
    case Encoding::kUtf8:
      break;
  }
  return std::fwrite(markup.data(), 1, markup.size(), file) == markup.size();
}

}  // namespace korvalen::platform::posix
