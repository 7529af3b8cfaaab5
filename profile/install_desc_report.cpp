#include "profile/install_desc_report.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "Common/wide_format.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

platform::ProcessWideValue<HWND> g_hInstallReportWnd;

namespace {

constexpr char16_t kEnd[] = u"//////////////\r\n";

std::u16string LineOf(const CRegPathEntry& entry, std::int32_t number) {
  return WideFormat(u"#%ld [<%s> \"%s\"]\r\n", number, entry.m_csTag, entry.m_csPath);
}

std::u16string LineOf(const CRegEnterEntry& entry, std::int32_t number) {
  if (entry.m_uType == REG_DWORD)
    return WideFormat(u"#%ld [<%s> \"%s\", (%s) %ld]\r\n", number, entry.m_csTag, entry.m_csName,
                      u"REG_DWORD", entry.m_nNumber);
  return WideFormat(u"#%ld [<%s> \"%s\", (%s) \"%s\"]\r\n", number, entry.m_csTag, entry.m_csName,
                    u"REG_SZ", entry.m_csText);
}

void AppendToCaption(HWND window, std::u16string_view report) {
  constexpr std::int32_t kChars = 1024;
  std::u16string caption(kChars, u'\0');
  const std::int32_t length = Os().windowing.GetWindowTextW(window, caption.data(), kChars);
  caption.resize(static_cast<std::size_t>(std::max(length, 0)));
  caption += report;
  Os().windowing.SetWindowTextW(window, caption.c_str());
}

template <class Entries>
std::u16string TextOf(std::u16string_view begin, std::u16string_view none, const Entries& entries) {
  std::u16string text(begin);
  std::int32_t number = 0;
  for (const auto& entry : entries) text += LineOf(entry, ++number);
  if (number == 0) text += none;
  return text + kEnd;
}

}  // namespace

std::u16string PathsReport(const CRegPathList::Entries& entries) {
  return TextOf(u"/////path/////\r\n", u"None path data.\r\n", entries);
}

std::u16string EntriesReport(const CRegEnterList::Entries& entries) {
  return TextOf(u"\r\n/////enter////\r\n", u"None enter data.\r\n", entries);
}

void ReportPaths(const CRegPathList::Entries& entries) {
  const HWND window = g_hInstallReportWnd;
  if (window != HWND{}) AppendToCaption(window, PathsReport(entries));
}

void ReportEntries(const CRegEnterList::Entries& entries) {
  const HWND window = g_hInstallReportWnd;
  if (window != HWND{}) AppendToCaption(window, EntriesReport(entries));
}

}  // namespace vgl
