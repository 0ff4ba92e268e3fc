// A product settings document of about 1 MB ("iVortan.cfg", UTF-16 under the
// label "Unicode", 10 000 elements beside the settings): opened, 10 000
// attribute values read, then opened again, one setting changed and saved.
// The library's exported functions against pugixml used directly on the same
// file, in the same run; the target is 1.5 at most.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <pugixml.hpp>
#include <random>
#include <string>

#include "korvalen/korvalen.h"
#include "ratio_reporter.h"

namespace {

constexpr int kItems = 10000;

// The document, written once in a directory of its own (the library names
// the file by its bare name), removed at exit.
class Document {
 public:
  Document() {
    std::random_device random;
    dir_ =
        std::filesystem::temp_directory_path() / ("korvalen-xml-bench-" + std::to_string(random()));
    std::filesystem::create_directories(dir_);
    std::filesystem::current_path(dir_);
    std::wstring text =
        L"<?xml version=\"1.0\" encoding=\"Unicode\"?>\r\n<LNKCFGPAR LanID=\"3\" "
        L"PrdCnn=\"Planta2\" "
        L"SvrType=\"1020\" SvrName=\"SRV\" DBName=\"Planta2\" DBFolder=\"D:\\Bases\" "
        L"UsrName=\"SYSADM\" EntName=\"ment\" StyRef=\"Classic\" USyName=\"MET\">";
    for (int i = 0; i < kItems; ++i) {
      const std::wstring n = std::to_wstring(100000 + i);
      text += L"<ITEM Name=\"Item" + n + L"\" Value=\"value &amp; " + n + L" &lt;x&gt;\"/>";
    }
    text += L"</LNKCFGPAR>\r\n";
    std::string bytes = "\xFF\xFE";
    for (const wchar_t c : text) {
      bytes += static_cast<char>(c & 0xFF);
      bytes += static_cast<char>((c >> 8) & 0xFF);
    }
    FILE* f = std::fopen("iVortan.cfg", "wb");
    if (f == nullptr) std::abort();
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
  }
  ~Document() {
    std::error_code ignored;
    std::filesystem::current_path(std::filesystem::temp_directory_path(), ignored);
    std::filesystem::remove_all(dir_, ignored);
  }

 private:
  std::filesystem::path dir_;
};

void Library(benchmark::State& state) {
  int units = 0;
  for (auto _ : state) {
    const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromFile(L"iVortan.cfg");
    long long characters = 0;
    int read = 0;
    for (IXMLDOMNodePtr item = GetSimpleChildElementNode(main, L"ITEM"); item != nullptr;
         item = GetSimpleNextElementNode(item, L"ITEM")) {
      BSTR value = GetAttributeValue(item, L"Value");
      characters += SysStringLen(value);
      SysFreeString(value);
      ++read;
    }
    if (read != kItems) state.SkipWithError("not every element was read");
    ActualizaParametrosLFocus(units ^= 1);
    benchmark::DoNotOptimize(characters);
  }
}
BENCHMARK(Library)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

void Pugixml(benchmark::State& state) {
  int units = 0;
  for (auto _ : state) {
    pugi::xml_document document;
    if (!document.load_file("iVortan.cfg")) state.SkipWithError("pugixml cannot read it");
    long long characters = 0;
    int read = 0;
    for (const pugi::xml_node item : document.document_element().children("ITEM")) {
      characters +=
          static_cast<long long>(std::char_traits<char>::length(item.attribute("Value").value()));
      ++read;
    }
    if (read != kItems) state.SkipWithError("not every element was read");
    pugi::xml_document changed;
    changed.load_file("iVortan.cfg", pugi::parse_default | pugi::parse_declaration);
    changed.document_element().attribute("USyName").set_value((units ^= 1) != 0 ? "IMP" : "MET");
    changed.save_file("iVortan.cfg", "", pugi::format_raw | pugi::format_write_bom,
                      pugi::encoding_utf16_le);
    benchmark::DoNotOptimize(characters);
  }
}
BENCHMARK(Pugixml)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

}  // namespace

int main(int argc, char** argv) {
  const Document document;
  korvalen::bench::RatioReporter reporter({{"Library", "Pugixml", " (target <= 1.5)"}});
  return korvalen::bench::RunInterleaved(argc, argv, reporter, 15);
}
