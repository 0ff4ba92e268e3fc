// The values the program generation and import processes of the current
// machine take from the process file "MIRSELIN.CNI" of the current directory,
// each reader in one pass over the file.
//
// The current machine number comes from the product settings (LeerDatosLFocus,
// which gives it through its first argument); its records carry the index
// hundreds + m, m being the number itself, or the number - 180 above 200:
// machine 7 owns K107 ... K807, machine 203 owns K123. Records of other
// machines are ignored, a record that occurs twice gives its last value, and
// every output without a record keeps what the caller put in it, so callers
// set their defaults first. Texts are copied without a bound: every text
// buffer holds at least 81 characters.
//
//   int machine = 0, z024 = 0, z018 = 0, z021 = 0, z022 = 0, z027 = 0, units_flag = 0,
//       z029 = 0;
//   wchar_t z006[81] = L"", z007[81] = L"", header[3][81] = {}, k[8][81] = {}, l[3][81] = {};
//   LeerMirselPrcCNIGenPie(nullptr, machine, z024, z006, z007, z018, z021, z022, header[0],
//                          header[1], header[2], k[0], k[1], k[2], k[3], k[4], k[5], k[6],
//                          k[7], l[0], l[1], l[2], z027, units_flag, z029);
//
// The units record is not used. units_flag is set to 1 and handed to
// LeerDatosLFocus as its units output: 0 for metric settings, else 1.
#pragma once

#include "korvalen/datafiles/units_and_messages.h"
#include "korvalen/export.h"

// The generation process: Z006 and Z007 (texts), Z018, Z021, Z022 and Z029
// (switches), Z024 and Z027 (integers), the machine's K(100+m) to K(800+m)
// and L(100+m) to L(300+m), and the header texts A100 to A102, given only
// when the switch Z000 is ON: without it, with it OFF or without the file,
// the three header texts are emptied (with it ON, a missing A record keeps
// the caller's text).
KORVALEN_API void LeerMirselPrcCNIGenPie(TRegUnidades* units, int& machine_number,
                                         int& integer_z024, wchar_t* text_z006, wchar_t* text_z007,
                                         int& switch_z018, int& switch_z021, int& switch_z022,
                                         wchar_t* header_text1, wchar_t* header_text2,
                                         wchar_t* header_text3, wchar_t* k_text1, wchar_t* k_text2,
                                         wchar_t* k_text3, wchar_t* k_text4, wchar_t* k_text5,
                                         wchar_t* k_text6, wchar_t* k_text7, wchar_t* k_text8,
                                         wchar_t* l_text1, wchar_t* l_text2, wchar_t* l_text3,
                                         int& integer_z027, int& units_flag, int& switch_z029);

// As LeerMirselPrcCNIGenPie, and the integer Z068.
KORVALEN_API void LeerMirselPrcCNIGenPieAux(
    TRegUnidades* units, int& machine_number, int& integer_z024, wchar_t* text_z006,
    wchar_t* text_z007, int& switch_z018, int& switch_z021, int& switch_z022, wchar_t* header_text1,
    wchar_t* header_text2, wchar_t* header_text3, wchar_t* k_text1, wchar_t* k_text2,
    wchar_t* k_text3, wchar_t* k_text4, wchar_t* k_text5, wchar_t* k_text6, wchar_t* k_text7,
    wchar_t* k_text8, wchar_t* l_text1, wchar_t* l_text2, wchar_t* l_text3, int& integer_z027,
    int& units_flag, int& switch_z029, int& integer_z068);

// The import process: Z006 and Z007 (texts), Z018, Z021, Z022, Z028, Z034,
// Z041 and Z066 (switches), Z024 (integer), and the machine's texts I(m)
// (for m below 100), I(100+m) to I(500+m), K(100+m) to K(300+m), L(100+m) to
// L(300+m) and N(100+m). Z records below Z006 or above Z066 are not this
// process's. company is the text LeerDatosLFocus gives (record A001).
KORVALEN_API void LeerMirselPrcCNIImport(
    TRegUnidades* units, int& machine_number, int& integer_z024, wchar_t* text_z006,
    wchar_t* text_z007, int& switch_z018, int& switch_z021, int& switch_z022, wchar_t* i_text0,
    wchar_t* i_text1, wchar_t* i_text2, wchar_t* i_text3, wchar_t* i_text4, wchar_t* i_text5,
    wchar_t* k_text1, wchar_t* k_text2, wchar_t* k_text3, wchar_t* l_text1, wchar_t* l_text2,
    wchar_t* l_text3, wchar_t* n_text1, int& switch_z028, int& switch_z041, int& units_flag,
    int& switch_z034, wchar_t* company, int& switch_z066);
