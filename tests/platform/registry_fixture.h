// A registry key of a test's own, and short ways to put values there.
#pragma once

#include <optional>

#include "tests/platform/platform_test.h"

namespace platform {

class RegistryContract : public PlatformTest {
 protected:
  RegistryContract();
  ~RegistryContract() override;

  // A second handle to the scratch key or to a key below it.
  OwnedKey Open(const char16_t* subKey, std::uint32_t access);
  // A new key below the scratch key.
  OwnedKey Make(const char16_t* subKey);

  void SetText(const char16_t* name, std::u16string_view text);  // with its terminator
  void SetNumber(const char16_t* name, std::uint32_t number);
  void SetBytes(const char16_t* name, std::uint32_t type, std::string_view bytes);

  // The bytes of a value as they are stored; nothing when it isn't there.
  std::optional<std::string> Bytes(const char16_t* name);
  // The number of a REG_DWORD value.
  std::optional<std::uint32_t> Number(HKEY from, const char16_t* name);

  Registry& registry = os.registry;
  HKEY key{};  // empty, open with all rights

 private:
  OwnedKey m_key;
};

// Deletes a key with all that is below it, if there is one.
void DeleteTree(Registry& registry, HKEY parent, const std::u16string& name);

inline constexpr const char16_t* kScratchKey = u"Software\\KAVRO\\PlatformTest";

}  // namespace platform
