#include "tests/platform/registry_fixture.h"

namespace platform {

void DeleteTree(Registry& registry, HKEY parent, const std::u16string& name) {
  OwnedKey key;
  if (registry.RegOpenKeyExW(parent, name.c_str(), KEY_READ, key.Out()) != ERROR_SUCCESS) return;
  char16_t child[MAX_PATH];
  std::uint32_t chars = MAX_PATH;
  while (registry.RegEnumKeyExW(key.get(), 0, child, &chars, nullptr, nullptr) == ERROR_SUCCESS) {
    DeleteTree(registry, key.get(), child);
    chars = MAX_PATH;
  }
  key.Reset();
  ASSERT_EQ(registry.RegDeleteKeyW(parent, name.c_str()), ERROR_SUCCESS);
}

RegistryContract::RegistryContract() {
  DeleteTree(registry, HKEY_CURRENT_USER, kScratchKey);  // what a test that crashed has left
  EXPECT_EQ(registry.RegCreateKeyExW(HKEY_CURRENT_USER, kScratchKey, KEY_ALL_ACCESS, m_key.Out(),
                                     nullptr),
            ERROR_SUCCESS);
  key = m_key.get();
}

RegistryContract::~RegistryContract() {
  m_key.Reset();
  DeleteTree(registry, HKEY_CURRENT_USER, kScratchKey);
}

OwnedKey RegistryContract::Open(const char16_t* subKey, std::uint32_t access) {
  OwnedKey opened;
  EXPECT_EQ(registry.RegOpenKeyExW(key, subKey, access, opened.Out()), ERROR_SUCCESS);
  return opened;
}

OwnedKey RegistryContract::Make(const char16_t* subKey) {
  OwnedKey made;
  EXPECT_EQ(registry.RegCreateKeyExW(key, subKey, KEY_ALL_ACCESS, made.Out(), nullptr),
            ERROR_SUCCESS);
  return made;
}

void RegistryContract::SetText(const char16_t* name, std::u16string_view text) {
  const std::u16string terminated(text);
  ASSERT_EQ(registry.RegSetValueExW(key, name, REG_SZ, terminated.c_str(),
                                    static_cast<std::uint32_t>(2 * (terminated.size() + 1))),
            ERROR_SUCCESS);
}

void RegistryContract::SetNumber(const char16_t* name, std::uint32_t number) {
  ASSERT_EQ(registry.RegSetValueExW(key, name, REG_DWORD, &number, sizeof(number)), ERROR_SUCCESS);
}

void RegistryContract::SetBytes(const char16_t* name, std::uint32_t type, std::string_view bytes) {
  ASSERT_EQ(registry.RegSetValueExW(key, name, type, bytes.data(),
                                    static_cast<std::uint32_t>(bytes.size())),
            ERROR_SUCCESS);
}

std::optional<std::string> RegistryContract::Bytes(const char16_t* name) {
  std::string bytes(1000, '\0');
  auto size = static_cast<std::uint32_t>(bytes.size());
  const std::int32_t error = registry.RegQueryValueExW(key, name, nullptr, bytes.data(), &size);
  if (error == ERROR_FILE_NOT_FOUND) return std::nullopt;
  EXPECT_EQ(error, ERROR_SUCCESS);
  bytes.resize(size);
  return bytes;
}

std::optional<std::uint32_t> RegistryContract::Number(HKEY from, const char16_t* name) {
  std::uint32_t number = 0;
  std::uint32_t type = REG_NONE;
  std::uint32_t bytes = sizeof(number);
  if (registry.RegQueryValueExW(from, name, &type, &number, &bytes) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(bytes, 4u);
  return number;
}

}  // namespace platform
