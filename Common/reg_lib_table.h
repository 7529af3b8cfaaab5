// The exports of the registry library, and the tables that they are bound in.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/platform.h"

namespace vgl {

// The exports by their ordinals, which the library fixes; it gives them no names. Each stands for
// the system's function of that name and gives 0 or a system error number.
enum class RegExport : std::uint16_t {
  CreateKeyEx = 2,
  OpenKeyEx = 4,
  DeleteKey = 6,
  CloseKey = 7,
  EnumKeyEx = 9,
  QueryValueEx = 11,
  DeleteValue = 13,
  SetValueEx = 15,
  EnumValue = 17,
  QueryInfoKey = 19,
  Unknown20 = 20,  // what it does isn't known, and nobody calls it
};

// The order of binding. Table A has all of them, table W those before CloseKey.
inline constexpr std::array kRegExports = {
    RegExport::CreateKeyEx,  RegExport::OpenKeyEx,   RegExport::DeleteKey,  RegExport::EnumKeyEx,
    RegExport::QueryValueEx, RegExport::DeleteValue, RegExport::SetValueEx, RegExport::EnumValue,
    RegExport::QueryInfoKey, RegExport::CloseKey,    RegExport::Unknown20,
};
template <class Char>
inline constexpr std::size_t kRegSlots = kRegExports.size();
template <>
inline constexpr std::size_t kRegSlots<char16_t> = kRegExports.size() - 2;
template <RegExport Export>
inline constexpr auto kRegSlotOf = static_cast<std::size_t>(std::find(kRegExports.begin(),
                                                                      kRegExports.end(), Export) -
                                                            kRegExports.begin());

// What an export is called as: the system's own parameters. Pointers to what the agent never has
// (security attributes) or doesn't look into (a FILETIME) are void.
template <class Char, RegExport Export>
struct RegExportShape;
template <class Char>
struct RegExportShape<Char, RegExport::CreateKeyEx> {
  using Function = std::int32_t (*)(platform::HKEY key, const Char* subKey, std::uint32_t reserved,
                                    Char* keyClass, std::uint32_t options, std::uint32_t access,
                                    void* security, platform::HKEY* result,
                                    std::uint32_t* disposition);
};
template <class Char>
struct RegExportShape<Char, RegExport::OpenKeyEx> {
  using Function = std::int32_t (*)(platform::HKEY key, const Char* subKey, std::uint32_t options,
                                    std::uint32_t access, platform::HKEY* result);
};
template <class Char>
struct RegExportShape<Char, RegExport::DeleteKey> {
  using Function = std::int32_t (*)(platform::HKEY key, const Char* subKey);
};
template <class Char>
struct RegExportShape<Char, RegExport::CloseKey> {
  using Function = std::int32_t (*)(platform::HKEY key);
};
template <class Char>
struct RegExportShape<Char, RegExport::EnumKeyEx> {
  using Function = std::int32_t (*)(platform::HKEY key, std::uint32_t index, Char* name,
                                    std::uint32_t* nameChars, std::uint32_t* reserved,
                                    Char* keyClass, std::uint32_t* classChars, void* written);
};
template <class Char>
struct RegExportShape<Char, RegExport::QueryValueEx> {
  using Function = std::int32_t (*)(platform::HKEY key, const Char* name, std::uint32_t* reserved,
                                    std::uint32_t* type, void* data, std::uint32_t* bytes);
};
template <class Char>
struct RegExportShape<Char, RegExport::DeleteValue> {
  using Function = std::int32_t (*)(platform::HKEY key, const Char* name);
};
template <class Char>
struct RegExportShape<Char, RegExport::SetValueEx> {
  using Function = std::int32_t (*)(platform::HKEY key, const Char* name, std::uint32_t reserved,
                                    std::uint32_t type, const void* data, std::uint32_t bytes);
};
template <class Char>
struct RegExportShape<Char, RegExport::EnumValue> {
  using Function = std::int32_t (*)(platform::HKEY key, std::uint32_t index, Char* name,
                                    std::uint32_t* nameChars, std::uint32_t* reserved,
                                    std::uint32_t* type, void* data, std::uint32_t* bytes);
};
template <class Char>
struct RegExportShape<Char, RegExport::QueryInfoKey> {
  using Function = std::int32_t (*)(platform::HKEY key, Char* keyClass, std::uint32_t* classChars,
                                    std::uint32_t* reserved, std::uint32_t* subKeys,
                                    std::uint32_t* longestSubKey, std::uint32_t* longestClass,
                                    std::uint32_t* values, std::uint32_t* longestName,
                                    std::uint32_t* longestData, std::uint32_t* securityBytes,
                                    void* written);
};
template <class Char>
struct RegExportShape<Char, RegExport::Unknown20> {
  using Function = std::int32_t (*)(std::int32_t argument);
};

// The addresses of the exports, as functions that take texts of `Char`: char (eleven slots) or
// char16_t (nine). It is bound whole or not at all.
//
// Both tables hold the same exports, and a library takes texts of one width. The suite's takes wide
// ones: of its table A only CloseKey and Unknown20, which have no text, may be called.
template <class Char>
class CRegLibTable {
 public:
  // When the library lacks an export of this table, all of it is empty.
  void Bind(platform::HMODULE library) {
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot) {
      m_slots[slot] = platform::Os().modules.GetProcAddress(
          library, static_cast<std::uint16_t>(kRegExports[slot]));
      if (m_slots[slot] == nullptr) return Clear();
    }
  }

  void Clear() { m_slots = {}; }

  // Null when the table is empty.
  template <RegExport Export>
  auto Get() const requires(kRegSlotOf<Export> < kRegSlots<Char>) {
    return reinterpret_cast<typename RegExportShape<Char, Export>::Function>(
        m_slots[kRegSlotOf<Export>]);
  }

 private:
  std::array<platform::ExportedFunction, kRegSlots<Char>> m_slots{};
};

using CRegLibTableA = CRegLibTable<char>;
using CRegLibTableW = CRegLibTable<char16_t>;

}  // namespace vgl
