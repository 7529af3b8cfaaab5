// The driver package's registry library: on the systems that it is for, the agent reaches the
// driver's branch of the registry through it alone.
//
// The library is closed. Its exports have the shape of the system's registry functions, the suite's
// that of the wide ones, and are found by ordinal (Common/reg_lib_table.h). It is loaded once for
// the process, at start-up, and freed at its end, both on the main thread; nothing is locked.
#pragma once

#include <cstdint>
#include <type_traits>

#include "Common/reg_lib_loader.h"

namespace vgl {

class CRegLibrary;

// Whether CKvRdefRegistry goes through the library: 0 or 1.
extern platform::ProcessWideValue<std::int32_t> g_bRegLibraryMode;
// The one object, null until a load entry has made it. The process owns it.
extern platform::ProcessWideValue<CRegLibrary*> g_pRegLibrary;

// What an application does at its start, with the name of its printer's driver: 1 when the library
// is in use now, or was before; 0 on a system that it isn't for, where the plain registry is to be
// used; -1 when it is wanted and can't be loaded.
std::int32_t LoadMonitorEnv(const char16_t* driverName);

// What it does at its end, when the library is in use: deletes the one object, which frees the
// library, and sets g_bRegLibraryMode to 0.
void ReleaseRegLibrary();

// What a wrapper gives when there is no object or the export isn't bound.
inline constexpr std::int32_t kRegNotBound = 12;
inline constexpr std::int32_t kRegUnknown20NotBound = -1;

class CRegLibrary {
 public:
  // The load entries, for texts of `Char`: char (in the system's code page) or char16_t. They make
  // the one object where it is missing. The library is looked for in texts of that width (see
  // CDrvPathCache), unless it is loaded already; both tables are bound.
  //
  // 0 at once on any system but NT 5.0 and later: it isn't for those, which is no failure.
  // Otherwise 1 or 0: whether the library is loaded. One that lacks exports stays loaded, and the
  // wrappers of the table that couldn't be bound all give kRegNotBound.
  template <class Char>
  static std::int32_t LoadByPrinter(const Char* printer) {
    return Load(RegLibStart::Printer, printer);
  }
  template <class Char>
  static std::int32_t LoadByDriver(const Char* driver) {
    return Load(RegLibStart::Driver, driver);
  }
  template <class Char>
  static std::int32_t LoadByVif(const Char* vifPath) {
    return Load(RegLibStart::Vif, vifPath);
  }
  template <class Char>
  static std::int32_t LoadByPath(const Char* libraryPath) {
    return Load(RegLibStart::Library, libraryPath);
  }

  // The same where the object exists already; 0 where it doesn't.
  template <class Char>
  static std::int32_t LoadExistingByPrinter(const Char* printer) {
    return LoadExisting(RegLibStart::Printer, printer);
  }
  template <class Char>
  static std::int32_t LoadExistingByDriver(const Char* driver) {
    return LoadExisting(RegLibStart::Driver, driver);
  }
  template <class Char>
  static std::int32_t LoadExistingByVif(const Char* vifPath) {
    return LoadExisting(RegLibStart::Vif, vifPath);
  }
  template <class Char>
  static std::int32_t LoadExistingByPath(const Char* libraryPath) {
    return LoadExisting(RegLibStart::Library, libraryPath);
  }

  // The wrappers: what the export gives, kRegNotBound where there is none to call. Sub-keys and
  // value names may be null; the library gets a copy of its own, and null for an empty one.

  // By table W. Reserved parameters are not there: the library gets 0 and null for them, and for
  // the key's class and security attributes.
  static std::int32_t RegCreateKeyExW(platform::HKEY key, const char16_t* subKey,
                                      std::uint32_t access, platform::HKEY* result,
                                      std::uint32_t* disposition);
  static std::int32_t RegOpenKeyExW(platform::HKEY key, const char16_t* subKey,
                                    std::uint32_t access, platform::HKEY* result);
  static std::int32_t RegDeleteKeyW(platform::HKEY key, const char16_t* subKey);
  static std::int32_t RegEnumKeyExW(platform::HKEY key, std::uint32_t index, char16_t* name,
                                    std::uint32_t* nameChars, char16_t* keyClass,
                                    std::uint32_t* classChars, void* written);
  static std::int32_t RegQueryValueExW(platform::HKEY key, const char16_t* name,
                                       std::uint32_t* type, void* data, std::uint32_t* bytes);
  static std::int32_t RegDeleteValueW(platform::HKEY key, const char16_t* name);
  static std::int32_t RegSetValueExW(platform::HKEY key, const char16_t* name, std::uint32_t type,
                                     const void* data, std::uint32_t bytes);
  // The name alone: the library isn't asked for type and data.
  static std::int32_t RegEnumValueW(platform::HKEY key, std::uint32_t index, char16_t* name,
                                    std::uint32_t* nameChars);
  static std::int32_t RegQueryInfoKeyW(platform::HKEY key, char16_t* keyClass,
                                       std::uint32_t* classChars, std::uint32_t* reserved,
                                       std::uint32_t* subKeys, std::uint32_t* longestSubKey,
                                       std::uint32_t* longestClass, std::uint32_t* values,
                                       std::uint32_t* longestName, std::uint32_t* longestData,
                                       std::uint32_t* securityBytes, void* written);

  // By table A. The parameters are handed on as they come, texts as narrow ones: for a library that
  // takes those. The suite's doesn't, so nobody calls these on it.
  static std::int32_t RegCreateKeyExA(platform::HKEY key, const char* subKey,
                                      std::uint32_t reserved, char* keyClass, std::uint32_t options,
                                      std::uint32_t access, void* security, platform::HKEY* result,
                                      std::uint32_t* disposition);
  static std::int32_t RegOpenKeyExA(platform::HKEY key, const char* subKey, std::uint32_t options,
                                    std::uint32_t access, platform::HKEY* result);
  static std::int32_t RegDeleteKeyA(platform::HKEY key, const char* subKey);
  static std::int32_t RegEnumKeyExA(platform::HKEY key, std::uint32_t index, char* name,
                                    std::uint32_t* nameChars, std::uint32_t* reserved,
                                    char* keyClass, std::uint32_t* classChars, void* written);
  static std::int32_t RegQueryValueExA(platform::HKEY key, const char* name,
                                       std::uint32_t* reserved, std::uint32_t* type, void* data,
                                       std::uint32_t* bytes);
  static std::int32_t RegDeleteValueA(platform::HKEY key, const char* name);
  static std::int32_t RegSetValueExA(platform::HKEY key, const char* name, std::uint32_t reserved,
                                     std::uint32_t type, const void* data, std::uint32_t bytes);
  static std::int32_t RegEnumValueA(platform::HKEY key, std::uint32_t index, char* name,
                                    std::uint32_t* nameChars, std::uint32_t* reserved,
                                    std::uint32_t* type, void* data, std::uint32_t* bytes);
  static std::int32_t RegQueryInfoKeyA(platform::HKEY key, char* keyClass,
                                       std::uint32_t* classChars, std::uint32_t* reserved,
                                       std::uint32_t* subKeys, std::uint32_t* longestSubKey,
                                       std::uint32_t* longestClass, std::uint32_t* values,
                                       std::uint32_t* longestName, std::uint32_t* longestData,
                                       std::uint32_t* securityBytes, void* written);
  // These two have no text: by table A, for a library of either width.
  static std::int32_t RegCloseKey(platform::HKEY key);
  // Gives kRegUnknown20NotBound where there is none to call.
  static std::int32_t Unknown20(std::int32_t argument);

  // The loader for texts of `Char`, with the table that it has bound.
  template <class Char>
  const CRegLibLoader<Char>& loader() const {
    if constexpr (std::is_same_v<Char, char>)
      return m_loaderA;
    else
      return m_loaderW;
  }

 private:
  CRegLibrary() = default;

  // Makes the object where it is missing, unless there isn't the memory for it.
  static void Make();
  template <class Char>
  static std::int32_t Load(RegLibStart start, const Char* input) {
    Make();
    return LoadExisting(start, input);
  }
  // The loader of the input's width goes first; the other one only binds.
  static std::int32_t LoadExisting(RegLibStart start, const char* input);
  static std::int32_t LoadExisting(RegLibStart start, const char16_t* input);

  CRegLibLoaderA m_loaderA;
  CRegLibLoaderW m_loaderW;
};

}  // namespace vgl
