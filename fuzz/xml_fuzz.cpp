// Fuzzes the XML document helpers: arbitrary bytes become a document file
// (as they are, and as UTF-16 behind a byte-order mark) and a document text,
// whose elements are then walked, read and changed through the exported
// functions, with the encoding buffer of exactly its stated capacity.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include "korvalen/korvalen.h"

namespace {

// The document file lives by bare name in the current directory: each fuzzing
// process works in a directory of its own.
struct WorkDirectory {
  WorkDirectory() {
    std::random_device random;
    path = std::filesystem::temp_directory_path() /
           ("korvalen-xml-fuzz-" + std::to_string(random()));
    std::filesystem::create_directories(path);
    std::filesystem::current_path(path);
  }
  ~WorkDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(std::filesystem::temp_directory_path(), ignored);
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;
};

void WriteFile(const std::string& bytes) {
  FILE* f = std::fopen("doc.xml", "wb");
  if (f == nullptr) return;
  std::fwrite(bytes.data(), 1, bytes.size(), f);
  std::fclose(f);
}

std::wstring Widen(const std::string& bytes) {
  std::wstring out;
  for (unsigned char byte : bytes) out += static_cast<wchar_t>(byte == 0x7F ? 0x4E2D : byte);
  return out;
}

void Release(BSTR value) {
  if (value != nullptr) (void)SysStringLen(value);
  SysFreeString(value);
}

// Walks the children of node named name (any case) and their siblings,
// reading and changing their attributes.
void Exercise(const IXMLDOMNodePtr& main, const std::wstring& name, const std::wstring& value) {
  if (main == nullptr) return;
  Release(GetAttributeValue(main, name.c_str()));
  ChangeAttributeValue(main, name.c_str(), value.c_str());
  Release(GetAttributeValue(main, name.c_str()));
  Release(GetAttributeNodeValue(main));
  int steps = 0;
  for (IXMLDOMNodePtr node = GetSimpleChildElementNode(main, name.c_str());
       node != nullptr && steps < 64; node = GetSimpleNextElementNode(node, name.c_str()), ++steps) {
    Release(GetAttributeValue(node, name.c_str()));
    ChangeAttributeValue(node, name.c_str(), value.c_str());
  }
  AppendChildXMLText(main, value.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static WorkDirectory directory;
  FuzzedDataProvider input(data, size);
  const std::wstring name = Widen(input.ConsumeRandomLengthString(300));
  const std::wstring value = Widen(input.ConsumeRandomLengthString(400));
  const std::string document = input.ConsumeRemainingBytesAsString();

  WriteFile(document);
  Exercise(GetXMLMainNodeObjectFromFile(L"doc.xml"), name, value);
  WriteFile("\xFF\xFE" + document);
  Exercise(GetXMLMainNodeObjectFromFile(L"doc.xml"), name, value);
  Exercise(GetXMLMainNodeObjectFromString(Widen(document).c_str()), name, value);

  // The encoding into a buffer of exactly 256 characters.
  auto encoded = std::make_unique<wchar_t[]>(256);
  TranslateTxtAttributeValue(value.c_str(), encoded.get());
  return 0;
}
