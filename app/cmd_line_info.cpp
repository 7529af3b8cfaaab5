#include "app/cmd_line_info.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "Common/REGISTRY.h"
#include "Common/fatal_error.h"
#include "Common/fixed_text.h"
#include "Common/printer_lookup.h"
#include "Common/target_records.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/option_table.h"
#include "app/option_walker.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::size_t kFatalNameLength = 80;
constexpr std::size_t kMostValueLength = 259;

// The decimal number at the start of a text, behind blanks and a sign; 0 when there is none. A
// number beyond 32 bits gives the nearest that has them.
std::int32_t SignedDecimal(std::u16string_view text) {
  const std::size_t start = std::min(text.find_first_not_of(u" \t\n\v\f\r"), text.size());
  text.remove_prefix(start);
  const bool isNegative = text.starts_with(u'-');
  if (isNegative || text.starts_with(u'+')) text.remove_prefix(1);

  using Limits = std::numeric_limits<std::int32_t>;
  std::int64_t number = 0;
  for (const char16_t digit : text) {
    if (digit < u'0' || digit > u'9') break;
    number = std::min(number * 10 + (digit - u'0'), -std::int64_t{Limits::min()});
  }
  if (isNegative) return static_cast<std::int32_t>(-number);
  return static_cast<std::int32_t>(std::min<std::int64_t>(number, Limits::max()));
}

bool WasReadBefore(const std::vector<ParamFile>& files, const ParamFile& file) {
  return std::any_of(files.begin(), files.end(), [&file](const ParamFile& earlier) {
    return EqualsIgnoringAsciiCase(earlier.path, file.path);
  });
}

}  // namespace

CCmdLineInfo::CCmdLineInfo() { InitDefaults(); }

CCmdLineInfo::CCmdLineInfo(const char16_t* szCmdText) {
  InitDefaults();
  m_szCmdText = szCmdText ? szCmdText : u"";
  ParseCommandLine();
}

void CCmdLineInfo::InitDefaults() {
  for (const OptionRow& row : OptionTable()) {
    if (row.readInto) (this->*row.readInto).clear();
    if (row.flag) this->*row.flag = 0;
  }
  m_szTempPath.clear();
  m_szOutFileName.clear();
  m_IconFrom = 0;
  m_nHwnd = 0;
}

int CCmdLineInfo::ParseCommandLine() {
  std::vector<ParamFile> files;  // the one named first in front
  bool isUnreadable = false;
  for (bool isFileNamed = ReadOptions(); isFileNamed; isFileNamed = ReadOptions()) {
    std::optional<ParamFile> file = OpenNamedFile();
    isUnreadable = !file;
    // Files that name each other in a ring would be read for ever.
    if (isUnreadable || WasReadBefore(files, *file)) break;
    m_szCmdText = std::exchange(file->text, {});
    files.push_back(std::move(*file));
  }

  // A file is used up when all that it names is done, so the last one ends first. Each ends like a
  // command line of its own; only one whose file can't be read ends without looking anything up.
  if (!isUnreadable) Resolve();
  const bool isFirstUnreadable = isUnreadable && files.empty();
  while (!files.empty()) {
    // A Run entry goes on naming its file at every logon, so that file stays.
    if (m_IconFrom == 0) DeleteAfterUse(std::move(files.back()));
    files.pop_back();
    Resolve();
  }
  return isFirstUnreadable ? 0 : 1;
}

// Applies the options of the raw text. True when one of them named a file.
bool CCmdLineInfo::ReadOptions() {
  bool isFileNamed = false;
  COptionWalker walker(m_szCmdText);
  while (const std::optional<SeenOption> option = walker.Next()) {
    if (option->name.size() >= kFatalNameLength) FatalError();
    const std::optional<std::u16string_view> value = walker.Value();
    // A value that doesn't fit takes the rest of the text with it, whatever option it stands
    // behind: what follows can no longer be trusted to be options.
    if (!value || value->size() > kMostValueLength) break;
    SetOption(option->name, *value);
    if (EqualsIgnoringAsciiCase(option->name, u"FU")) isFileNamed = true;
  }
  return isFileNamed;
}

// Applies one option; an unknown one has no effect. An option that takes a value and has none
// applies the empty value.
void CCmdLineInfo::SetOption(std::u16string_view name, std::u16string_view value) {
  const OptionRow* row = FindOption(name);
  if (!row) return;
  switch (row->kind) {
    case OptionKind::Text:
    case OptionKind::FileName:
      this->*row->readInto = value;
      break;
    case OptionKind::Flag:
      this->*row->flag = 1;
      break;
    case OptionKind::WindowHandle:
      m_nHwnd = SignedDecimal(value);
      break;
    case OptionKind::IconFrom:
      if (EqualsIgnoringAsciiCase(value, u"HKCU")) m_IconFrom = 1;
      if (EqualsIgnoringAsciiCase(value, u"HKLM")) m_IconFrom = 2;
      break;
    case OptionKind::PrinterRecord:
      TakeNameOfRecord(value);
      break;
  }
}

// Replaces the printer name by the one that a monitored-printer record tells, if there is that
// record.
void CCmdLineInfo::TakeNameOfRecord(std::u16string_view record) {
  PathText path;
  if (!FormatTo(path, u"%s\\%s", kDataBranch, record)) return;
  const CRegistry key(HKEY_CURRENT_USER, path.c_str(), false);
  if (key.m_IsOpen != 0) m_szPrinterName = key.GetString(u"Name");
}

// Reads m_szFileName, as it stands or from the temp folder. A file of the temp folder that can't be
// read is removed if it can at least be opened: it was made for this start, and nobody else will.
std::optional<ParamFile> CCmdLineInfo::OpenNamedFile() {
  if (std::optional<ParamFile> file = ReadParamFile(m_szFileName)) return file;
  m_szTempPath = TempFolder();
  PathText path;
  if (!FormatTo(path, u"%s%s", m_szTempPath, m_szFileName)) return std::nullopt;
  if (std::optional<ParamFile> file = ReadParamFile(path.c_str())) return file;
  DeleteParamFile(path.c_str());
  return std::nullopt;
}

void CCmdLineInfo::Resolve() {
  ResolvePrinterInfo();
  ResolveModelID();
}

int CCmdLineInfo::ResolvePrinterInfo() {
  if (!m_szDriverName.empty() && !m_szPortName.empty()) return 1;
  if (m_szPrinterName.empty()) return 0;
  std::u16string driver;
  std::u16string port;
  if (GetDriverAndPort(m_szPrinterName.c_str(), driver, port) != 1) return 0;
  m_szDriverName = std::move(driver);
  m_szPortName = std::move(port);
  return 1;
}

int CCmdLineInfo::ResolveModelID() {
  if (!m_szModelID.empty()) return 1;
  if (m_szDriverName.empty()) return 0;
  std::u16string modelId;
  GetModelId(m_szPrinterName.c_str(), m_szDriverName.c_str(), modelId);
  m_szModelID = std::move(modelId);
  return m_szModelID.empty() ? 0 : 1;
}

int CCmdLineInfo::DeleteParamFile(const char16_t* szPath) {
  if (!szPath) szPath = u"";
  if (m_szTempPath.empty()) m_szTempPath = TempFolder();
  if (CanBeRead(szPath)) return Os().files.DeleteFileW(szPath) ? 1 : 0;
  PathText path;
  if (!FormatTo(path, u"%s%s", m_szTempPath, szPath) || !CanBeRead(path.c_str())) return 0;
  return Os().files.DeleteFileW(path.c_str()) ? 1 : 0;
}

}  // namespace vgl
