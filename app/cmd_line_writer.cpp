// The way of a record back into a parameter file.
#include <algorithm>

#include "Common/fixed_text.h"
#include "Common/temp_file.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/cmd_line_info.h"
#include "app/option_table.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::size_t kLineCapacity = 276;

// The line of a text option, empty when there is nothing to write; nothing when it doesn't fit.
std::optional<std::u16string> TextLine(std::u16string_view name, std::u16string_view value) {
  if (value.empty()) return std::u16string();
  return WideFormatWithin(kLineCapacity, u"/%s \"%s\"\n", name, value);
}

// The same for any option of a record.
std::optional<std::u16string> Line(const CCmdLineInfo& info, const OptionRow& row) {
  if (row.written == Written::Never) return std::u16string();
  if (row.kind == OptionKind::Text) return TextLine(row.name, info.*row.writtenFrom);
  if (row.kind == OptionKind::WindowHandle) {
    // A window's handle has no more than 32 bits that count, and its readers know no longer number.
    const auto number = static_cast<std::int32_t>(info.m_nHwnd);
    return TextLine(row.name, info.m_nHwnd == 0 ? u"" : WideFormat(u"%d", number));
  }
  const std::int32_t flag = info.*row.flag;
  const bool isWritten = row.written == Written::WhenOne ? flag == 1 : flag != 0;
  if (!isWritten) return std::u16string();
  return WideFormatWithin(kLineCapacity, u"/%s\n", row.name);
}

bool WriteOption(HANDLE file, const CCmdLineInfo& info, const OptionRow& row) {
  const std::optional<std::u16string> line = Line(info, row);
  return line && (line->empty() || WriteText(file, *line));
}

bool WriteRecord(const CCmdLineInfo& info, const PathText& path) {
  const OwnedFile file(Os().files.CreateFileW(path.c_str(), GENERIC_WRITE,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, CREATE_ALWAYS,
                                              FILE_ATTRIBUTE_NORMAL));
  if (!file) return false;
  return std::ranges::all_of(
      OptionTable(), [&](const OptionRow& row) { return WriteOption(file.get(), info, row); });
}

}  // namespace

int CCmdLineInfo::CreateParamFileName() {
  m_szOutFileName.clear();
  m_szTempPath = TempFolder();
  PathText path;
  if (Os().files.GetTempFileNameW(m_szTempPath.c_str(), kTempFilePrefix, 0, path.buffer()) == 0)
    return 0;
  const std::u16string_view name = path.view();
  m_szOutFileName = name.substr(name.rfind(u'\\') + 1);
  return 1;
}

int CCmdLineInfo::WriteParamFile() {
  if (CreateParamFileName() == 0) return 0;
  PathText path;
  if (!FormatTo(path, u"%s%s", m_szTempPath, m_szOutFileName)) return 0;
  return WriteRecord(*this, path) ? 1 : 0;
}

int CCmdLineInfo::WriteParamFile(const char16_t* szPrinterName, const char16_t* szPortName,
                                 const char16_t* szModelID) {
  m_szPrinterName = OrEmpty(szPrinterName);
  m_szPortName = OrEmpty(szPortName);
  m_szModelID = OrEmpty(szModelID);
  if (WriteParamFile() == 1) return 1;
  PathText path;
  if (!m_szOutFileName.empty() && FormatTo(path, u"%s%s", m_szTempPath, m_szOutFileName))
    Os().files.DeleteFileW(path.c_str());
  return 0;
}

}  // namespace vgl
