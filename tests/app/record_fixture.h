// For the tests of the command-line record: a simulated process to run in, and the record's fields
// by the options that set them, written out anew.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "app/cmd_line_info.h"
#include "platform/sim/machine.h"

namespace vgl::test {

class RecordTest : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  const std::u16string tempFolder = machine.system().tempFolder;
};

struct TextOption {
  const char16_t* name;
  std::u16string CCmdLineInfo::*field;  // that the option sets
};

inline constexpr TextOption kTextOptions[] = {
    {u"P", &CCmdLineInfo::m_szPrinterName}, {u"D", &CCmdLineInfo::m_szDriverName},
    {u"O", &CCmdLineInfo::m_szPortName},    {u"M", &CCmdLineInfo::m_szModelID},
    {u"J", &CCmdLineInfo::m_szJI},          {u"JI", &CCmdLineInfo::m_szJ},
    {u"KVM", &CCmdLineInfo::m_szKVM},       {u"T", &CCmdLineInfo::m_szT},
    {u"L", &CCmdLineInfo::m_szL},           {u"N", &CCmdLineInfo::m_szN},
    {u"IC", &CCmdLineInfo::m_szIC},         {u"CN", &CCmdLineInfo::m_szCN},
    {u"WPB", &CCmdLineInfo::m_szWPB},       {u"TC", &CCmdLineInfo::m_szTC},
    {u"X", &CCmdLineInfo::m_szX},           {u"PS", &CCmdLineInfo::m_szPS},
    {u"RP", &CCmdLineInfo::m_szRP},         {u"V", &CCmdLineInfo::m_szV},
    {u"FU", &CCmdLineInfo::m_szFileName},
};

struct FlagOption {
  const char16_t* name;
  std::int32_t CCmdLineInfo::*field;
};

inline constexpr FlagOption kFlagOptions[] = {
    {u"S", &CCmdLineInfo::m_fS},       {u"R", &CCmdLineInfo::m_fRemove},
    {u"E", &CCmdLineInfo::m_fE},       {u"U", &CCmdLineInfo::m_fU},
    {u"C", &CCmdLineInfo::m_fC},       {u"I", &CCmdLineInfo::m_fIconInstall},
    {u"SPL", &CCmdLineInfo::m_fSPL},   {u"DP", &CCmdLineInfo::m_fDP},
    {u"A", &CCmdLineInfo::m_fA},       {u"ASMRT", &CCmdLineInfo::m_fASMRT},
    {u"MA", &CCmdLineInfo::m_fMA},     {u"WA", &CCmdLineInfo::m_fWA},
    {u"PPOP", &CCmdLineInfo::m_fPPOP}, {u"BSR", &CCmdLineInfo::m_fBSR},
    {u"TD", &CCmdLineInfo::m_fTD},     {u"PN", &CCmdLineInfo::m_fPN},
    {u"PR", &CCmdLineInfo::m_fPR},     {u"MON", &CCmdLineInfo::m_fMON},
    {u"ZM", &CCmdLineInfo::m_fZM},
};

// Every field but the raw text and the temp folder, in words; what is at its default is left out.
inline std::u16string Describe(const CCmdLineInfo& info) {
  std::u16string words;
  for (const TextOption& option : kTextOptions)
    if (!(info.*option.field).empty())
      words += std::u16string(option.name) + u"=[" + info.*option.field + u"] ";
  for (const FlagOption& option : kFlagOptions)
    if (info.*option.field != 0)
      words += std::u16string(option.name) + (info.*option.field == 1 ? u" " : u"? ");
  for (const char c : std::to_string(info.m_nHwnd) + " EF" + std::to_string(info.m_IconFrom))
    words += static_cast<char16_t>(c);
  return words;
}

}  // namespace vgl::test
