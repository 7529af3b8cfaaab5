// What a driver's SADat file says, one value at a time: the file case of every setting that may be
// in the registry or in a file (SettingsAreInRegistry in profile/profile_keys.h).
#pragma once

#include <cstdint>
#include <string>

#include "platform/spooler.h"

namespace vgl {

// Each operation reads the file anew, and keeps nothing. How the file is found is told by
// CDrvFileLocator, how it is read by CInstallDesc. A text that is null or empty, and a null handle,
// give an empty text, -1, or 0 for IsDescribed, and so does everything that is missing, fails or is
// of the other kind.
//
// A key path is that of the registry below HKEY_LOCAL_MACHINE, as
// "Software\KAVRO\VGL3\Driver\Sample"; path and name ignore the case of A to Z.
class CDrvInfoReader {
 public:
  // Whether the printer's driver set describes at least one key and one value: 1 or 0.
  int IsDescribed(const char16_t* printer) const;

  std::u16string GetString(const char16_t* printer, const char16_t* keyPath,
                           const char16_t* valueName) const;
  std::int64_t GetDword(const char16_t* printer, const char16_t* keyPath,
                        const char16_t* valueName) const;

  std::u16string GetStringOfVif(const char16_t* vifPath, const char16_t* keyPath,
                                const char16_t* valueName) const;
  std::int64_t GetDwordOfVif(const char16_t* vifPath, const char16_t* keyPath,
                             const char16_t* valueName) const;

  std::u16string GetStringOfDriver(const char16_t* driver, const char16_t* keyPath,
                                   const char16_t* valueName) const;
  std::int64_t GetDwordOfDriver(const char16_t* driver, const char16_t* keyPath,
                                const char16_t* valueName) const;

  std::u16string GetStringByHandle(platform::HPRINTER handle, const char16_t* printer,
                                   const char16_t* keyPath, const char16_t* valueName) const;
  std::int64_t GetDwordByHandle(platform::HPRINTER handle, const char16_t* printer,
                                const char16_t* keyPath, const char16_t* valueName) const;

  // Any key of any section of the SADat file, which needn't describe anything, by the system's own
  // reader. A text has at most 127 characters. A number is read as a signed one; -1 for a key that
  // isn't there, 0 for one that doesn't begin with a number.
  std::u16string GetDatString(const char16_t* printer, const char16_t* section,
                              const char16_t* key) const;
  std::u16string GetDatStringByHandle(platform::HPRINTER handle, const char16_t* printer,
                                      const char16_t* section, const char16_t* key) const;
  std::int32_t GetDatInt(const char16_t* printer, const char16_t* section,
                         const char16_t* key) const;
};

}  // namespace vgl
