#include "platform/sim/registry_calls.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

constexpr std::size_t kLongestName = 255;  // of a key

class OpenKey final : public HandleBody {
 public:
  OpenKey(std::shared_ptr<RegistryKey> key, std::uint32_t access)
      : m_key(std::move(key)), m_access(access) {}

  std::u16string Describe() const override { return u"key " + m_key->path; }
  bool IsKernelObject() const override { return false; }

  const std::shared_ptr<RegistryKey>& key() const { return m_key; }
  std::uint32_t access() const { return m_access; }

 private:
  std::shared_ptr<RegistryKey> m_key;
  std::uint32_t m_access;
};

// The key behind a handle that has the right `needed` (0: any handle will do), or the error.
struct KeyOrError {
  std::shared_ptr<RegistryKey> key;
  std::int32_t error = ERROR_SUCCESS;
};

KeyOrError Look(const Call& call, HKEY handle, std::uint32_t needed) {
  if (auto hive = call.machine().registry().Hive(handle)) return {std::move(hive)};
  const auto open = call.process().FindHandle<OpenKey>(static_cast<std::uint64_t>(handle));
  if (open == nullptr) return {nullptr, ERROR_INVALID_HANDLE};
  if ((open->access() & needed) != needed) return {nullptr, ERROR_ACCESS_DENIED};
  if (open->key()->isDeleted) return {nullptr, ERROR_KEY_DELETED};
  return {open->key()};
}

bool Grants(const RegistryKey& key, std::uint32_t access) {
  const bool writes = (access & (KEY_SET_VALUE | KEY_CREATE_SUB_KEY)) != 0;
  return !key.deniesReading && !(writes && key.deniesWriting);
}

// Follows `subKey` down as far as there are keys; the names that are left over have none.
struct Descent {
  std::shared_ptr<RegistryKey> key;
  std::vector<std::u16string_view> missing;
};

Descent Descend(std::shared_ptr<RegistryKey> from, const char16_t* subKey) {
  Descent way{std::move(from), RegistryNames(View(subKey))};
  auto name = way.missing.begin();
  for (; name != way.missing.end(); ++name) {
    auto next = way.key->SubKey(*name);
    if (next == nullptr) break;
    way.key = std::move(next);
  }
  way.missing.erase(way.missing.begin(), name);
  return way;
}

std::int32_t GiveHandle(const Call& call, std::shared_ptr<RegistryKey> key, std::uint32_t access,
                        HKEY* handle) {
  if (!Grants(*key, access)) return ERROR_ACCESS_DENIED;
  *handle = HKEY{call.process().AddHandle(std::make_shared<OpenKey>(std::move(key), access))};
  return ERROR_SUCCESS;
}

// Copies a name with its terminator into `*chars` characters.
std::int32_t GiveName(const std::u16string& source, char16_t* name, std::uint32_t* chars) {
  if (*chars <= source.size()) return ERROR_MORE_DATA;
  name[source.copy(name, source.size())] = u'\0';
  *chars = static_cast<std::uint32_t>(source.size());
  return ERROR_SUCCESS;
}

// No key here has a class.
std::int32_t GiveClass(char16_t* keyClass, std::uint32_t* chars) {
  if (chars == nullptr) return keyClass == nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
  if (keyClass != nullptr) return GiveName(u"", keyClass, chars);
  *chars = 0;
  return ERROR_SUCCESS;
}

std::int32_t GiveValue(const RegistryValue& value, std::uint32_t* type, void* data,
                       std::uint32_t* bytes) {
  if (type != nullptr) *type = value.type;
  if (bytes == nullptr) return ERROR_SUCCESS;
  const auto size = static_cast<std::uint32_t>(value.bytes.size());
  const std::uint32_t room = std::exchange(*bytes, size);
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < size) return ERROR_MORE_DATA;
  value.bytes.copy(static_cast<char*>(data), size);
  return ERROR_SUCCESS;
}

// Numbers and texts as they are meant, all else as its bytes, of which the first are told.
std::u16string InWords(const RegistryValue& value) {
  constexpr std::size_t kMostTold = 16;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(value.bytes[at]); };
  if (value.type == REG_DWORD && value.bytes.size() == 4)
    return Decimal(byte(0) | byte(1) << 8U | byte(2) << 16U | std::uint32_t{byte(3)} << 24U);
  if (value.type == REG_SZ) {
    std::u16string text;
    for (std::size_t at = 0; at + 1 < value.bytes.size(); at += 2)
      text.push_back(static_cast<char16_t>(byte(at) | byte(at + 1) << 8U));
    return u'"' + text.substr(0, text.find(u'\0')) + u'"';
  }
  std::u16string told = u"hex:";
  for (std::size_t at = 0; at < std::min(value.bytes.size(), kMostTold); ++at)
    told += (at == 0 ? u"" : u",") + Hex(byte(at), 2);
  return value.bytes.size() > kMostTold ? told + u",..." : told;
}

std::u16string ValuePath(const RegistryKey& key, const char16_t* name) {
  return key.path + u"\\" + (View(name).empty() ? u"(default)" : std::u16string(View(name)));
}

}  // namespace

std::int32_t RegistryCalls::RegOpenKeyExW(HKEY parent, const char16_t* subKey, std::uint32_t access,
                                          HKEY* key) {
  Call call("RegOpenKeyExW");
  *key = HKEY{};
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  const KeyOrError from = Look(call, parent, 0);
  if (from.error != ERROR_SUCCESS) return from.error;
  if (View(subKey).starts_with(u'\\')) return ERROR_BAD_PATHNAME;
  Descent way = Descend(from.key, subKey);
  if (!way.missing.empty()) return ERROR_FILE_NOT_FOUND;
  return GiveHandle(call, std::move(way.key), access, key);
}

std::int32_t RegistryCalls::RegCreateKeyExW(HKEY parent, const char16_t* subKey,
                                            std::uint32_t access, HKEY* key,
                                            std::uint32_t* disposition) {
  Call call("RegCreateKeyExW");
  *key = HKEY{};
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  const KeyOrError from = Look(call, parent, 0);
  if (from.error != ERROR_SUCCESS) return from.error;
  if (View(subKey).starts_with(u'\\')) return ERROR_BAD_PATHNAME;
  Descent way = Descend(from.key, subKey);
  if (!way.missing.empty() && !Grants(*way.key, KEY_CREATE_SUB_KEY)) return ERROR_ACCESS_DENIED;
  for (const std::u16string_view name : way.missing)
    if (name.size() > kLongestName) return ERROR_INVALID_PARAMETER;
  for (const std::u16string_view name : way.missing) {
    way.key = way.key->AddSubKey(name);
    m_machine.Trace(u"made key " + way.key->path);
  }
  const std::int32_t error = GiveHandle(call, std::move(way.key), access, key);
  if (error == ERROR_SUCCESS && disposition != nullptr)
    *disposition = way.missing.empty() ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
  return error;
}

std::int32_t RegistryCalls::RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t* type,
                                             void* data, std::uint32_t* bytes) {
  Call call("RegQueryValueExW");
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  if (data != nullptr && bytes == nullptr) return ERROR_INVALID_PARAMETER;
  const KeyOrError open = Look(call, key, KEY_QUERY_VALUE);
  if (open.error != ERROR_SUCCESS) return open.error;
  const RegistryValue* value = open.key->Value(View(name));
  return value == nullptr ? ERROR_FILE_NOT_FOUND : GiveValue(*value, type, data, bytes);
}

std::int32_t RegistryCalls::RegSetValueExW(HKEY key, const char16_t* name, std::uint32_t type,
                                           const void* data, std::uint32_t bytes) {
  Call call("RegSetValueExW");
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  if (data == nullptr && bytes != 0) return ERROR_INVALID_PARAMETER;
  const KeyOrError open = Look(call, key, KEY_SET_VALUE);
  if (open.error != ERROR_SUCCESS) return open.error;
  open.key->SetValue(View(name), type, {static_cast<const char*>(data), bytes});
  m_machine.Trace(u"set " + ValuePath(*open.key, name) + u" = " +
                  InWords(*open.key->Value(View(name))));
  return ERROR_SUCCESS;
}

std::int32_t RegistryCalls::RegDeleteValueW(HKEY key, const char16_t* name) {
  Call call("RegDeleteValueW");
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  const KeyOrError open = Look(call, key, KEY_SET_VALUE);
  if (open.error != ERROR_SUCCESS) return open.error;
  if (!open.key->RemoveValue(View(name))) return ERROR_FILE_NOT_FOUND;
  m_machine.Trace(u"deleted value " + ValuePath(*open.key, name));
  return ERROR_SUCCESS;
}

std::int32_t RegistryCalls::RegDeleteKeyW(HKEY parent, const char16_t* subKey) {
  Call call("RegDeleteKeyW");
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  if (subKey == nullptr) return ERROR_INVALID_PARAMETER;
  const KeyOrError from = Look(call, parent, 0);
  if (from.error != ERROR_SUCCESS) return from.error;
  if (View(subKey).starts_with(u'\\')) return ERROR_BAD_PATHNAME;
  const Descent way = Descend(from.key, subKey);
  if (!way.missing.empty()) return ERROR_FILE_NOT_FOUND;
  RegistryKey& key = *way.key;
  if (key.parent == nullptr || !key.subKeys.empty() || !Grants(key, KEY_SET_VALUE))
    return ERROR_ACCESS_DENIED;
  key.parent->RemoveSubKey(key.name);
  m_machine.Trace(u"deleted key " + key.path);
  return ERROR_SUCCESS;
}

std::int32_t RegistryCalls::RegEnumKeyExW(HKEY key, std::uint32_t index, char16_t* name,
                                          std::uint32_t* chars, char16_t* keyClass,
                                          std::uint32_t* classChars) {
  Call call("RegEnumKeyExW");
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  const KeyOrError open = Look(call, key, KEY_ENUMERATE_SUB_KEYS);
  if (open.error != ERROR_SUCCESS) return open.error;
  const auto& subKeys = open.key->subKeys;
  if (index >= subKeys.size()) return ERROR_NO_MORE_ITEMS;
  const auto subKey = std::next(subKeys.begin(), static_cast<std::ptrdiff_t>(index));
  const std::int32_t error = GiveName(subKey->second->name, name, chars);
  return error != ERROR_SUCCESS ? error : GiveClass(keyClass, classChars);
}

std::int32_t RegistryCalls::RegEnumValueW(HKEY key, std::uint32_t index, char16_t* name,
                                          std::uint32_t* chars, std::uint32_t* type, void* data,
                                          std::uint32_t* bytes) {
  Call call("RegEnumValueW");
  if (const std::int32_t error = call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return error;
  if (data != nullptr && bytes == nullptr) return ERROR_INVALID_PARAMETER;
  const KeyOrError open = Look(call, key, KEY_QUERY_VALUE);
  if (open.error != ERROR_SUCCESS) return open.error;
  if (index >= open.key->values.size()) return ERROR_NO_MORE_ITEMS;
  const RegistryValue& value = open.key->values[index];
  const std::int32_t error = GiveName(value.name, name, chars);
  return error != ERROR_SUCCESS ? error : GiveValue(value, type, data, bytes);
}

std::int32_t RegistryCalls::RegCloseKey(HKEY key) {
  Call call("RegCloseKey", Call::kRelease);
  if (call.Inert()) return ERROR_SUCCESS;
  if (const std::int32_t error = call.Failure(ERROR_INVALID_HANDLE)) return error;
  if (m_machine.registry().Hive(key) != nullptr) return ERROR_SUCCESS;
  const auto number = static_cast<std::uint64_t>(key);
  if (call.process().FindHandle<OpenKey>(number) == nullptr) return ERROR_INVALID_HANDLE;
  call.process().CloseHandle(number);
  return ERROR_SUCCESS;
}

}  // namespace sim
