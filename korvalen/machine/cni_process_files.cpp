#include "korvalen/machine/cni_process_files.h"

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <vector>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/settings/product_settings.h"

namespace {

constexpr const wchar_t* kProcessFile = L"MIRSELIN.CNI";
constexpr int kSettingsTextChars = 256;  // what LeerDatosLFocus writes into
// Machine numbers above this one own the records of number - 180.
constexpr int kHighMachines = 200;
constexpr int kHighMachineShift = 180;
// The import process owns the Z records of this range only.
constexpr int kImportFirstZ = 6;
constexpr int kImportLastZ = 66;

// One output of a reader: the record that fills it and how its field reads.
struct Output {
  wchar_t type;
  int index;
  wchar_t* text = nullptr;
  int* number = nullptr;
  bool is_switch = false;
};

Output Text(wchar_t type, int index, wchar_t* text) { return {type, index, text}; }
Output Switch(int z_index, int& value) { return {L'Z', z_index, nullptr, &value, true}; }
Output Integer(int z_index, int& value) { return {L'Z', z_index, nullptr, &value, false}; }

// The machine's texts of one type, at hundreds + m for the hundreds 100, 200, ...
// in the order given.
void AddMachineTexts(std::vector<Output>& outputs, wchar_t type, int m,
                     std::initializer_list<wchar_t*> texts) {
  int hundreds = 100;
  for (wchar_t* text : texts) {
    outputs.push_back(Text(type, hundreds + m, text));
    hundreds += 100;
  }
}

// Asks the product settings for the current machine number (and the units
// flag, and the company text where the caller wants it); gives m.
int MachineOffset(int& machine_number, int& units_flag, wchar_t* company) {
  wchar_t style[kSettingsTextChars] = L"";
  wchar_t product[kSettingsTextChars] = L"";
  wchar_t scratch_company[kSettingsTextChars] = L"";
  units_flag = 1;
  LeerDatosLFocus(machine_number, style, product, units_flag,
                  company != nullptr ? company : scratch_company);
  return machine_number > kHighMachines ? machine_number - kHighMachineShift : machine_number;
}

// One pass over the process file, each record of an output read into it (a
// null text output skips its record); Z records outside [first_z, last_z]
// are skipped. False when the file does not open.
bool ReadOutputs(const std::vector<Output>& outputs, int first_z = INT_MIN, int last_z = INT_MAX) {
  return korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      kProcessFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type == L'Z' && (index < first_z || index > last_z)) return true;
        const auto output = std::find_if(outputs.begin(), outputs.end(), [&](const Output& o) {
          return o.type == type && o.index == index;
        });
        if (output == outputs.end()) return true;
        if (output->text != nullptr) {
          LeerUnTexto(line, cursor, output->text);
        } else if (output->number != nullptr) {
          if (output->is_switch) {
            LeerSIoNO(line, cursor, *output->number);
          } else {
            LeerUnEntero(line, cursor, *output->number);
          }
        }
        return true;
      });
}

void Empty(wchar_t* text) {
  if (text != nullptr) *text = 0;
}

// Both generation readers; integer_z068 is null for the one without it.
void ReadGeneration(int& machine_number, int& integer_z024, wchar_t* text_z006, wchar_t* text_z007,
                    int& switch_z018, int& switch_z021, int& switch_z022, wchar_t* header_text1,
                    wchar_t* header_text2, wchar_t* header_text3,
                    std::initializer_list<wchar_t*> k_texts,
                    std::initializer_list<wchar_t*> l_texts, int& integer_z027, int& units_flag,
                    int& switch_z029, int* integer_z068) {
  const int m = MachineOffset(machine_number, units_flag, nullptr);
  int header_switch = 0;
  std::vector<Output> outputs = {
      Switch(0, header_switch),      Text(L'A', 100, header_text1), Text(L'A', 101, header_text2),
      Text(L'A', 102, header_text3), Text(L'Z', 6, text_z006),      Text(L'Z', 7, text_z007),
      Switch(18, switch_z018),       Switch(21, switch_z021),       Switch(22, switch_z022),
      Integer(24, integer_z024),     Integer(27, integer_z027),     Switch(29, switch_z029),
  };
  if (integer_z068 != nullptr) outputs.push_back(Integer(68, *integer_z068));
  AddMachineTexts(outputs, L'K', m, k_texts);
  AddMachineTexts(outputs, L'L', m, l_texts);
  if (!ReadOutputs(outputs) || header_switch == 0) {
    Empty(header_text1);
    Empty(header_text2);
    Empty(header_text3);
  }
}

}  // namespace

void LeerMirselPrcCNIGenPie(TRegUnidades* /*units*/, int& machine_number, int& integer_z024,
                            wchar_t* text_z006, wchar_t* text_z007, int& switch_z018,
                            int& switch_z021, int& switch_z022, wchar_t* header_text1,
                            wchar_t* header_text2, wchar_t* header_text3, wchar_t* k_text1,
                            wchar_t* k_text2, wchar_t* k_text3, wchar_t* k_text4, wchar_t* k_text5,
                            wchar_t* k_text6, wchar_t* k_text7, wchar_t* k_text8, wchar_t* l_text1,
                            wchar_t* l_text2, wchar_t* l_text3, int& integer_z027, int& units_flag,
                            int& switch_z029) {
  try {
    ReadGeneration(machine_number, integer_z024, text_z006, text_z007, switch_z018, switch_z021,
                   switch_z022, header_text1, header_text2, header_text3,
                   {k_text1, k_text2, k_text3, k_text4, k_text5, k_text6, k_text7, k_text8},
                   {l_text1, l_text2, l_text3}, integer_z027, units_flag, switch_z029, nullptr);
  } catch (...) {
  }
}

void LeerMirselPrcCNIGenPieAux(TRegUnidades* /*units*/, int& machine_number, int& integer_z024,
                               wchar_t* text_z006, wchar_t* text_z007, int& switch_z018,
                               int& switch_z021, int& switch_z022, wchar_t* header_text1,
                               wchar_t* header_text2, wchar_t* header_text3, wchar_t* k_text1,
                               wchar_t* k_text2, wchar_t* k_text3, wchar_t* k_text4,
                               wchar_t* k_text5, wchar_t* k_text6, wchar_t* k_text7,
                               wchar_t* k_text8, wchar_t* l_text1, wchar_t* l_text2,
                               wchar_t* l_text3, int& integer_z027, int& units_flag,
                               int& switch_z029, int& integer_z068) {
  try {
    ReadGeneration(machine_number, integer_z024, text_z006, text_z007, switch_z018, switch_z021,
                   switch_z022, header_text1, header_text2, header_text3,
                   {k_text1, k_text2, k_text3, k_text4, k_text5, k_text6, k_text7, k_text8},
                   {l_text1, l_text2, l_text3}, integer_z027, units_flag, switch_z029,
                   &integer_z068);
  } catch (...) {
  }
}

void LeerMirselPrcCNIImport(TRegUnidades* /*units*/, int& machine_number, int& integer_z024,
                            wchar_t* text_z006, wchar_t* text_z007, int& switch_z018,
                            int& switch_z021, int& switch_z022, wchar_t* i_text0, wchar_t* i_text1,
                            wchar_t* i_text2, wchar_t* i_text3, wchar_t* i_text4, wchar_t* i_text5,
                            wchar_t* k_text1, wchar_t* k_text2, wchar_t* k_text3, wchar_t* l_text1,
                            wchar_t* l_text2, wchar_t* l_text3, wchar_t* n_text1, int& switch_z028,
                            int& switch_z041, int& units_flag, int& switch_z034, wchar_t* company,
                            int& switch_z066) {
  try {
    const int m = MachineOffset(machine_number, units_flag, company);
    std::vector<Output> outputs = {
        Text(L'Z', 6, text_z006), Text(L'Z', 7, text_z007), Switch(18, switch_z018),
        Switch(21, switch_z021),  Switch(22, switch_z022),  Integer(24, integer_z024),
        Switch(28, switch_z028),  Switch(34, switch_z034),  Switch(41, switch_z041),
        Switch(66, switch_z066),
    };
    // I(m) is the machine's only record below 100: there is none for m of 100 or more.
    if (m < 100) outputs.push_back(Text(L'I', m, i_text0));
    AddMachineTexts(outputs, L'I', m, {i_text1, i_text2, i_text3, i_text4, i_text5});
    AddMachineTexts(outputs, L'K', m, {k_text1, k_text2, k_text3});
    AddMachineTexts(outputs, L'L', m, {l_text1, l_text2, l_text3});
    AddMachineTexts(outputs, L'N', m, {n_text1});
    ReadOutputs(outputs, kImportFirstZ, kImportLastZ);
  } catch (...) {
  }
}
