// The install description: the registry keys and values that an installer would have written, told
// in a SADat file and read in place of the registry. docs/driver-set.md tells the form of the file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/spooler.h"
#include "profile/install_desc_entries.h"

namespace vgl {

// One reading of one description: made, loaded, asked and deleted within a call.
class CInstallDesc {
 public:
  CInstallDesc() = default;
  // For one question, which is what a reader of a setting has: a load passes over what doesn't
  // answer it, and gives 1 only when something does. (While reports are wanted it keeps everything,
  // as a load without a question.) Both texts must outlive the object.
  CInstallDesc(std::u16string_view keyPath, std::u16string_view valueName)
      : m_Question(Question{keyPath, valueName}) {}
  CInstallDesc(const CInstallDesc&) = delete;
  CInstallDesc& operator=(const CInstallDesc&) = delete;
  virtual ~CInstallDesc() = default;

  // Each finds a SADat file, reads it, and closes it again. 1 when it describes at least one key
  // and one value (of an object for one question: the value asked for); otherwise 0, and the object
  // is empty, whatever it held before. Texts may be null, which counts as empty and finds nothing;
  // how a file is found, and what a printer's name stands for beside a handle, is told by
  // CDrvFileLocator. DRIVERDIR in the file is the driver's folder; without one nothing is
  // described. For LoadByVif it is FolderOfVif, and without one the numbers are described all the
  // same.
  int LoadByPrinter(const char16_t* printer);
  int LoadByHandle(platform::HPRINTER handle, const char16_t* printer);
  int LoadByVif(const char16_t* vifPath);
  int LoadByDriver(const char16_t* driver);

  // The value of that name in the key of that path, which is told without its hive; both ignore the
  // case of A to Z. The first key that is described with the path counts, and in it the first value
  // of that name. Empty or -1 when there is none, or it is of the other kind.
  std::u16string GetRegString(std::u16string_view keyPath, std::u16string_view valueName) const;
  std::int64_t GetRegDword(std::u16string_view keyPath, std::u16string_view valueName) const;

 private:
  // Gives the folder for DRIVERDIR; 0 when no value is to be read.
  using FolderFinder = std::function<int(std::u16string* out)>;

  struct Question {
    std::u16string_view keyPath;
    std::u16string_view valueName;
  };

  void RemoveAll();
  int Load(const std::u16string& sadatPath, const FolderFinder& findFolder);
  int Read(const std::u16string& sadatPath, const FolderFinder& findFolder);
  int ReadFor(const Question& question, const std::u16string& sadatPath,
              const FolderFinder& findFolder);
  const CRegEnterEntry* Find(std::u16string_view keyPath, std::u16string_view valueName) const;

  std::optional<Question> m_Question;  // nothing: any
  CRegPathList m_Paths;
  CRegEnterList m_Entries;
};

}  // namespace vgl
