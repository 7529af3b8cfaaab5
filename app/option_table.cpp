#include "app/option_table.h"

#include "Common/text_conversion.h"

namespace vgl {

namespace {

using TextField = std::u16string CCmdLineInfo::*;
using FlagField = std::int32_t CCmdLineInfo::*;
using Info = CCmdLineInfo;

constexpr OptionRow Text(std::u16string_view name, TextField field) {
  return {name, OptionKind::Text, Written::WhenSet, field, field};
}
constexpr OptionRow CrossedText(std::u16string_view name, TextField readInto,
                                TextField writtenFrom) {
  return {name, OptionKind::Text, Written::WhenSet, readInto, writtenFrom};
}
constexpr OptionRow Flag(std::u16string_view name, FlagField field,
                         Written written = Written::WhenSet) {
  return {name, OptionKind::Flag, written, nullptr, nullptr, field};
}
constexpr OptionRow FlagOfOne(std::u16string_view name, FlagField field) {
  return Flag(name, field, Written::WhenOne);
}
constexpr OptionRow Special(std::u16string_view name, OptionKind kind,
                            Written written = Written::Never, TextField readInto = nullptr) {
  return {name, kind, written, readInto};
}

constexpr OptionRow kOptions[] = {
    Text(u"P", &Info::m_szPrinterName),
    Text(u"D", &Info::m_szDriverName),
    Text(u"O", &Info::m_szPortName),
    Text(u"M", &Info::m_szModelID),
    // These two change places whenever a record is read and written again. Programs of the suite
    // count on it: between one that writes them and one that reads them stands one that passes them
    // on.
    CrossedText(u"J", &Info::m_szJI, &Info::m_szJ),
    CrossedText(u"JI", &Info::m_szJ, &Info::m_szJI),
    Flag(u"S", &Info::m_fS),
    Flag(u"R", &Info::m_fRemove),
    Flag(u"E", &Info::m_fE),
    Flag(u"U", &Info::m_fU),
    Flag(u"C", &Info::m_fC),
    Text(u"KVM", &Info::m_szKVM),
    Flag(u"I", &Info::m_fIconInstall),
    Special(u"HWND", OptionKind::WindowHandle, Written::WhenSet),
    Flag(u"SPL", &Info::m_fSPL),
    FlagOfOne(u"DP", &Info::m_fDP),
    FlagOfOne(u"A", &Info::m_fA),
    Text(u"T", &Info::m_szT),
    Text(u"L", &Info::m_szL),
    Text(u"N", &Info::m_szN),
    Text(u"IC", &Info::m_szIC),
    Text(u"CN", &Info::m_szCN),
    Text(u"WPB", &Info::m_szWPB),
    FlagOfOne(u"ASMRT", &Info::m_fASMRT),
    FlagOfOne(u"MA", &Info::m_fMA),
    FlagOfOne(u"WA", &Info::m_fWA),
    Text(u"TC", &Info::m_szTC),
    FlagOfOne(u"PPOP", &Info::m_fPPOP),
    Text(u"X", &Info::m_szX),
    Text(u"PS", &Info::m_szPS),
    FlagOfOne(u"BSR", &Info::m_fBSR),
    Text(u"RP", &Info::m_szRP),
    FlagOfOne(u"TD", &Info::m_fTD),
    FlagOfOne(u"PN", &Info::m_fPN),
    FlagOfOne(u"PR", &Info::m_fPR),
    FlagOfOne(u"MON", &Info::m_fMON),
    Flag(u"ZM", &Info::m_fZM, Written::Never),
    Special(u"V", OptionKind::Text, Written::Never, &Info::m_szV),
    Special(u"EF", OptionKind::IconFrom),
    Special(u"KVT", OptionKind::PrinterRecord),
    Special(u"FU", OptionKind::FileName, Written::Never, &Info::m_szFileName),
};

}  // namespace

std::span<const OptionRow> OptionTable() { return kOptions; }

const OptionRow* FindOption(std::u16string_view name) {
  for (const OptionRow& row : kOptions) {
    // Most rows are of another length: not worth a call each.
    if (row.name.size() == name.size() && EqualsIgnoringAsciiCase(row.name, name)) return &row;
  }
  return nullptr;
}

}  // namespace vgl
