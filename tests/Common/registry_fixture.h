// A registry object under test, on each of the roads that its calls can take.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "Common/KVRDEFREGISTRY.h"
#include "Common/reg_library.h"
#include "platform/sim/machine.h"
#include "platform/sim/registry_library.h"

namespace vgl {

// Which class, and whether its calls go through the registry library.
template <class KeyType, bool ThroughLibrary>
struct RegistryRoad {
  using Key = KeyType;
  static constexpr bool kThroughLibrary = ThroughLibrary;
};

using RegistryRoads =
    testing::Types<RegistryRoad<CRegistry, false>, RegistryRoad<CKvRdefRegistry, false>,
                   RegistryRoad<CKvRdefRegistry, true>>;

struct RegistryRoadName {
  template <class Road>
  static std::string GetName(int) {
    if (std::is_same_v<typename Road::Key, CRegistry>) return "CRegistry";
    return Road::kThroughLibrary ? "CKvRdefRegistryThroughTheLibrary" : "CKvRdefRegistryDirect";
  }
};

// A machine with one key in it, and in the library's case the library in use. What is said of one
// road holds for all.
template <class Road>
class RegistryObject : public testing::Test {
 protected:
  using Key = typename Road::Key;
  static constexpr platform::HKEY kHive = platform::HKEY_LOCAL_MACHINE;
  static constexpr const char16_t* kPath = u"Software\\KAVRO\\VGL3\\Driver\\D";
  static constexpr const char16_t* kLibrary = u"C:\\Drivers\\R.DLL";

  RegistryObject() {
    machine.registry().MakeKey(kHive, kPath);
    if (!Road::kThroughLibrary) return;
    sim::AddRegistryLibrary(machine, kLibrary);
    EXPECT_EQ(CRegLibrary::LoadByPath(kLibrary), 1);
    g_bRegLibraryMode = 1;
  }

  void TearDown() override {
    if (inside.process().ending()) return;
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty());
  }

  // The key, open with all rights.
  struct OpenKey : Key {
    OpenKey() : Key(kHive, kPath, false, platform::KEY_ALL_ACCESS) {}
  };

  sim::RegistryTree& tree() { return machine.registry(); }
  std::uint64_t calls() { return inside.process().calls(); }
  void FailNext(const char* operation) {
    inside.process().FailNext(operation, platform::ERROR_NO_SYSTEM_RESOURCES);
  }
  void Set(std::u16string_view name, std::uint32_t type, std::string_view bytes) {
    tree().SetBytes(kHive, kPath, name, type, bytes);
  }
  std::string Stored(std::u16string_view name) {
    return tree().Bytes(kHive, kPath, name).value_or("(missing)");
  }
  static std::u16string Below(std::u16string_view subKey) {
    return std::u16string(kPath) + u"\\" + std::u16string(subKey);
  }

  sim::Machine machine;
  sim::Inside inside{machine};
};

// A text's bytes as the registry has them, without any terminator.
inline std::string Utf16(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

}  // namespace vgl
