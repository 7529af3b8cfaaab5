#include "profile/install_desc.h"

#include "Common/text_conversion.h"
#include "platform/registry.h"
#include "profile/dat_text_file.h"
#include "profile/drv_file_locator.h"
#include "profile/install_desc_parser.h"
#include "profile/install_desc_report.h"

namespace vgl {

using namespace platform;

namespace {

constexpr CDrvFileLocator kLocator;

const std::u16string* TagOf(const CRegPathList& list, std::u16string_view path) {
  for (const CRegPathEntry& entry : list.Access())
    if (EqualsIgnoringAsciiCase(entry.m_csPath, path)) return &entry.m_csTag;
  return nullptr;
}

const CRegEnterEntry* EntryOf(const CRegEnterList& list, std::u16string_view tag,
                              std::u16string_view name) {
  for (const CRegEnterEntry& entry : list.Access()) {
    if (EqualsIgnoringAsciiCase(entry.m_csName, name) &&
        EqualsIgnoringAsciiCase(entry.m_csTag, tag))
      return &entry;
  }
  return nullptr;
}

}  // namespace

int CInstallDesc::LoadByPrinter(const char16_t* printer) {
  std::u16string sadat;
  kLocator.GetSADatPath(printer, &sadat);
  return Load(sadat, [&](std::u16string* out) { return kLocator.GetDriverDir(printer, out); });
}

int CInstallDesc::LoadByHandle(HPRINTER handle, const char16_t* printer) {
  std::u16string sadat;
  kLocator.GetSADatPathByHandle(handle, printer, &sadat);
  return Load(sadat, [&](std::u16string* out) {
    return kLocator.GetDriverDirByHandle(handle, printer, out);
  });
}

int CInstallDesc::LoadByVif(const char16_t* vifPath) {
  std::u16string sadat;
  kLocator.GetSADatPathOfVif(vifPath, &sadat);
  return Load(sadat, [&](std::u16string* out) {
    *out = FolderOfVif(vifPath);
    return 1;  // numbers need no folder
  });
}

int CInstallDesc::LoadByDriver(const char16_t* driver) {
  std::u16string sadat;
  kLocator.GetSADatPathOfDriver(driver, &sadat);
  return Load(sadat, [&](std::u16string* out) {
    std::u16string vif;
    kLocator.FindDriverFiles(driver, &vif, out);
    return out->empty() ? 0 : 1;
  });
}

void CInstallDesc::RemoveAll() {
  m_Paths.RemoveAll();
  m_Entries.RemoveAll();
}

int CInstallDesc::Load(const std::u16string& sadatPath, const FolderFinder& findFolder) {
  RemoveAll();
  // A report tells all that the file describes.
  const bool isForAll = !m_Question || g_hInstallReportWnd != HWND{};
  int result = isForAll ? Read(sadatPath, findFolder) : ReadFor(*m_Question, sadatPath, findFolder);
  if (m_Question && Find(m_Question->keyPath, m_Question->valueName) == nullptr) result = 0;
  if (result != 1) RemoveAll();
  return result;
}

// The folder is asked for between the two stages: of a file that describes no key nothing more is
// asked.
int CInstallDesc::Read(const std::u16string& sadatPath, const FolderFinder& findFolder) {
  CDatTextFile file;
  std::u16string folder;
  if (file.Open(sadatPath) != 1 || ParsePaths(file, m_Paths) != 1) return 0;
  return findFolder(&folder) == 1 ? ParseEntries(file, folder, m_Entries) : 0;
}

int CInstallDesc::ReadFor(const Question& question, const std::u16string& sadatPath,
                          const FolderFinder& findFolder) {
  CDatTextFile file;
  std::u16string folder;
  if (file.Open(sadatPath) != 1 || ParsePathFor(question.keyPath, file, m_Paths) != 1) return 0;
  if (findFolder(&folder) != 1) return 0;
  const std::u16string* tag = TagOf(m_Paths, question.keyPath);
  if (tag == nullptr) return 0;
  return ParseEntryFor(*tag, question.valueName, file, folder, m_Entries);
}

const CRegEnterEntry* CInstallDesc::Find(std::u16string_view keyPath,
                                         std::u16string_view valueName) const {
  const std::u16string* tag = TagOf(m_Paths, keyPath);
  return tag == nullptr ? nullptr : EntryOf(m_Entries, *tag, valueName);
}

std::u16string CInstallDesc::GetRegString(std::u16string_view keyPath,
                                          std::u16string_view valueName) const {
  const CRegEnterEntry* entry = Find(keyPath, valueName);
  return entry != nullptr && entry->m_uType == REG_SZ ? entry->m_csText : std::u16string();
}

std::int64_t CInstallDesc::GetRegDword(std::u16string_view keyPath,
                                       std::u16string_view valueName) const {
  const CRegEnterEntry* entry = Find(keyPath, valueName);
  return entry != nullptr && entry->m_uType == REG_DWORD ? entry->m_nNumber : -1;
}

}  // namespace vgl
