#include "Common/REGISTRY.h"

#include <cstddef>
#include <new>

#include "Common/KVRDEFREGISTRY.h"
#include "Common/fatal_error.h"
#include "Common/fixed_text.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

// The buffers of the enumerations, in characters.
using EnumText = FixedText<256>;

// Null when there isn't that much memory.
template <class T>
std::unique_ptr<T[]> Zeroed(std::size_t count) {
  return std::unique_ptr<T[]>(new (std::nothrow) T[count]());
}

// Room for a value of `bytes` bytes as text that ends within the buffer, whatever is read into it:
// a whole character behind an odd last byte.
std::unique_ptr<char16_t[]> RoomForText(std::uint32_t bytes) {
  return Zeroed<char16_t>(std::size_t{bytes} / sizeof(char16_t) + 2);
}

}  // namespace

Registry& SystemRegistry() { return Os().registry; }

template <Registry& (*Road)(), class Base>
RegistryOperations<Road, Base>::RegistryOperations(HKEY root, const char16_t* subKey, bool create,
                                                   std::uint32_t access) {
  if (create)
    CreateKey(root, subKey, access, nullptr);
  else
    OpenKey(root, subKey, access);
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::OpenKey(HKEY root, const char16_t* subKey,
                                             std::uint32_t access) {
  m_Access = access == 0 ? KEY_READ : access;
  HKEY key{};
  const std::int32_t error = Road().RegOpenKeyExW(root, subKey, m_Access, &key);
  return Take(error, key);
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::CreateKey(HKEY root, const char16_t* subKey,
                                               std::uint32_t access, std::uint32_t* disposition) {
  m_Access = access == 0 ? KEY_ALL_ACCESS : access;
  HKEY key{};
  const std::int32_t error = Road().RegCreateKeyExW(root, subKey, m_Access, &key, disposition);
  return Take(error, key);
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::Take(std::int32_t error, HKEY key) {
  m_IsOpen = error == ERROR_SUCCESS ? 1 : 0;
  if (m_IsOpen != 0) m_hKey = key;
  return m_IsOpen != 0;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::Create(HKEY root, const char16_t* subKey,
                                            std::uint32_t access) {
  if (m_IsOpen != 0) FatalError();  // "!m_IsOpen"
  std::uint32_t disposition = 0;
  return CreateKey(root, subKey, access, &disposition) && disposition == REG_CREATED_NEW_KEY;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::Open(HKEY root, const char16_t* subKey, std::uint32_t access) {
  if (m_IsOpen != 0) FatalError();  // "!m_IsOpen"
  return OpenKey(root, subKey, access);
}

template <Registry& (*Road)(), class Base>
void RegistryOperations<Road, Base>::Close() {
  if (m_hKey != HKEY{}) Road().RegCloseKey(m_hKey);
  m_hKey = HKEY{};
  m_IsOpen = 0;
}

template <Registry& (*Road)(), class Base>
std::u16string RegistryOperations<Road, Base>::EnumKey() const {
  EnumText name;
  EnumText keyClass;
  std::uint32_t chars = EnumText::capacity();
  std::uint32_t classChars = EnumText::capacity();
  if (m_IsOpen == 0 || Road().RegEnumKeyExW(m_hKey, 0, name.buffer(), &chars, keyClass.buffer(),
                                            &classChars) != ERROR_SUCCESS)
    return {};
  return std::u16string(name.view());
}

template <Registry& (*Road)(), class Base>
std::u16string RegistryOperations<Road, Base>::EnumValueName(std::uint32_t index) const {
  EnumText name;
  std::uint32_t chars = EnumText::capacity();
  if (m_IsOpen == 0 || Road().RegEnumValueW(m_hKey, index, name.buffer(), &chars, nullptr, nullptr,
                                            nullptr) != ERROR_SUCCESS)
    return {};
  return std::u16string(name.view());
}

template <Registry& (*Road)(), class Base>
std::u16string RegistryOperations<Road, Base>::EnumValueData(std::uint32_t index) const {
  std::u16string name;
  return EnumValue(index, name);
}

template <Registry& (*Road)(), class Base>
std::u16string RegistryOperations<Road, Base>::EnumValue(std::uint32_t index,
                                                         std::u16string& outName) const {
  outName.clear();
  EnumText name;
  EnumText data;
  std::uint32_t chars = EnumText::capacity();
  std::uint32_t bytes = EnumText::capacity() * sizeof(char16_t);
  if (m_IsOpen == 0 || Road().RegEnumValueW(m_hKey, index, name.buffer(), &chars, nullptr,
                                            data.buffer(), &bytes) != ERROR_SUCCESS)
    return {};
  outName = name.view();
  return std::u16string(data.view());
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::DeleteKeyTree(const char16_t* subKey) {
  if (m_IsOpen == 0) return false;
  {
    RegistryOperations tree(m_hKey, subKey, false, m_Access);
    std::u16string name = tree.EnumKey();
    while (!name.empty() && tree.DeleteKeyTree(name.c_str())) name = tree.EnumKey();
  }
  // Whatever has become of those below: the registry refuses while there are any.
  return Road().RegDeleteKeyW(m_hKey, subKey) == ERROR_SUCCESS;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::DeleteValue(const char16_t* name) {
  return m_IsOpen != 0 && Road().RegDeleteValueW(m_hKey, name) == ERROR_SUCCESS;
}

template <Registry& (*Road)(), class Base>
std::uint32_t RegistryOperations<Road, Base>::GetType(const char16_t* name) const {
  std::uint32_t type = 0;
  std::uint32_t bytes = 0;
  if (m_IsOpen == 0 ||
      Road().RegQueryValueExW(m_hKey, name, &type, nullptr, &bytes) != ERROR_SUCCESS)
    return 0;
  return type;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::IsString(const char16_t* name) const {
  const std::uint32_t type = GetType(name);
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::IsDword(const char16_t* name) const {
  const std::uint32_t type = GetType(name);
  return type == REG_DWORD || type == REG_DWORD_BIG_ENDIAN;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::IsBinary(const char16_t* name) const {
  return GetType(name) == REG_BINARY;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::Read(const char16_t* name, void* data,
                                          std::uint32_t* bytes) const {
  return m_IsOpen != 0 &&
         Road().RegQueryValueExW(m_hKey, name, nullptr, data, bytes) == ERROR_SUCCESS;
}

template <Registry& (*Road)(), class Base>
std::u16string RegistryOperations<Road, Base>::GetString(const char16_t* name,
                                                         std::u16string_view fallback,
                                                         std::uint32_t size) const {
  if (size != 0 || Read(name, nullptr, &size)) {
    const auto text = RoomForText(size);
    if (text != nullptr && Read(name, text.get(), &size)) return text.get();
  }
  return std::u16string(fallback);
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::SetString(const char16_t* name, const char16_t* text) {
  const std::u16string_view stored(text == nullptr ? u"" : text);
  const std::uint32_t length = static_cast<std::uint32_t>(stored.size()) & 0x7FFFFFFF;
  return m_IsOpen != 0 &&
         Road().RegSetValueExW(m_hKey, name, REG_SZ, stored.data(),
                               (length + 1) * std::uint32_t{sizeof(char16_t)}) == ERROR_SUCCESS;
}

template <Registry& (*Road)(), class Base>
std::uint32_t RegistryOperations<Road, Base>::GetDword(const char16_t* name,
                                                       std::uint32_t fallback) const {
  std::uint32_t value = fallback;  // a copy, as a failed read may have written
  std::uint32_t bytes = sizeof(value);
  return Read(name, &value, &bytes) ? value : fallback;
}

template <Registry& (*Road)(), class Base>
std::uint32_t RegistryOperations<Road, Base>::GetDwordOrMinus1(const char16_t* name) const {
  return GetDword(name, 0xFFFFFFFF);
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::SetDword(const char16_t* name, std::uint32_t value) {
  return m_IsOpen != 0 &&
         Road().RegSetValueExW(m_hKey, name, REG_DWORD, &value, sizeof(value)) == ERROR_SUCCESS;
}

template <Registry& (*Road)(), class Base>
std::uint32_t RegistryOperations<Road, Base>::GetSize(const char16_t* name) const {
  std::uint32_t bytes = 0;
  return Read(name, nullptr, &bytes) ? bytes : 0;
}

template <Registry& (*Road)(), class Base>
std::unique_ptr<std::uint8_t[]> RegistryOperations<Road, Base>::GetBinaryAlloc(
    const char16_t* name) const {
  std::uint32_t bytes = GetSize(name);
  if (bytes == 0) return nullptr;
  auto data = Zeroed<std::uint8_t>(bytes);
  return data != nullptr && Read(name, data.get(), &bytes) ? std::move(data) : nullptr;
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::GetBinary(const char16_t* name, void* buffer) const {
  if (buffer == nullptr) return false;
  std::uint32_t bytes = GetSize(name);
  return bytes != 0 && Read(name, buffer, &bytes);
}

template <Registry& (*Road)(), class Base>
bool RegistryOperations<Road, Base>::SetBinary(const char16_t* name, const void* data,
                                               std::uint32_t length) {
  return m_IsOpen != 0 &&
         Road().RegSetValueExW(m_hKey, name, REG_BINARY, data, length) == ERROR_SUCCESS;
}

template class RegistryOperations<SystemRegistry, RegistryFields>;
template class RegistryOperations<RegistryInUse, CRegistry>;

}  // namespace vgl
