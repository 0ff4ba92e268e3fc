// The --json output of the reading commands: one JSON document on standard
// output. While a document is open, the labelled fields of print_field go
// into it (under the label in snake_case, in the section last opened)
// instead of the screen, and print() writes nothing; lists are added to the
// section by the command itself.
//
//   if (json) open_document();
//   open_section("param_sys");
//   print_field(L"Language", L"3");   // {"param_sys": {"language": "3"}}
//   if (json_wanted()) section()["found"] = true;
//   close_document();                 // prints it, when one is open
#pragma once

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <string>

namespace korvalen::tool {

// Keys stay in the order the command adds them.
using Json = nlohmann::ordered_json;

std::string utf8(const std::wstring& text);
// "Box file (A001)" -> "box_file_a001".
std::string json_key(const std::wstring& label);

// Adds --json to a reading command; keys says what the document holds.
void add_json_flag(CLI::App& command, bool& json, const std::string& keys);

void open_document();
bool json_wanted();
Json& document();
// Later fields go into document()[key]; an empty key is the top level.
void open_section(const std::string& key);
// The open section; without a document, a scratch object that is dropped.
Json& section();
// Takes a labelled field into the open document; false when none is open.
bool document_takes(const std::wstring& label, const std::wstring& value);
void close_document();

}  // namespace korvalen::tool
