#include "platform/sim/registry_tree.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

// What keys are told apart and sorted by: a name in capitals.
std::u16string Capitals(std::u16string_view name) {
  std::u16string capitals = FoldCase(name);
  for (char16_t& c : capitals)
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 32);
  return capitals;
}

std::shared_ptr<RegistryKey> MakeHive(std::u16string name) {
  auto hive = std::make_shared<RegistryKey>();
  hive->name = name;
  hive->path = std::move(name);
  return hive;
}

void MarkDeleted(RegistryKey& key) {
  key.isDeleted = true;
  for (const auto& [name, subKey] : key.subKeys) MarkDeleted(*subKey);
  key.subKeys.clear();
  key.values.clear();
}

std::string BytesOf(std::u16string_view text) {
  std::string bytes(text.size() * sizeof(char16_t), '\0');
  std::memcpy(bytes.data(), text.data(), bytes.size());
  return bytes;
}

auto FindNamed(auto& values, std::u16string_view name) {
  const std::u16string folded = FoldCase(name);
  return std::find_if(values.begin(), values.end(),
                      [&](const RegistryValue& value) { return FoldCase(value.name) == folded; });
}

}  // namespace

std::shared_ptr<RegistryKey> RegistryKey::SubKey(std::u16string_view subKey) const {
  const auto found = subKeys.find(Capitals(subKey));
  return found == subKeys.end() ? nullptr : found->second;
}

std::shared_ptr<RegistryKey> RegistryKey::AddSubKey(std::u16string_view subKey) {
  auto key = std::make_shared<RegistryKey>();
  key->name = subKey;
  key->path = path + u"\\" + key->name;
  key->parent = this;
  subKeys.emplace(Capitals(subKey), key);
  return key;
}

void RegistryKey::RemoveSubKey(std::u16string_view subKey) {
  const auto found = subKeys.find(Capitals(subKey));
  MarkDeleted(*found->second);
  subKeys.erase(found);
}

const RegistryValue* RegistryKey::Value(std::u16string_view value) const {
  const auto found = FindNamed(values, value);
  return found == values.end() ? nullptr : &*found;
}

void RegistryKey::SetValue(std::u16string_view value, std::uint32_t type, std::string_view bytes) {
  auto found = FindNamed(values, value);
  if (found == values.end()) found = values.insert(found, {std::u16string(value), type, {}});
  found->type = type;
  found->bytes = bytes;
}

bool RegistryKey::RemoveValue(std::u16string_view value) {
  const auto found = FindNamed(values, value);
  if (found == values.end()) return false;
  values.erase(found);
  return true;
}

RegistryTree::RegistryTree() : m_currentUser(MakeHive(u"HKCU")), m_localMachine(MakeHive(u"HKLM")) {
  MakeKey(HKEY_LOCAL_MACHINE, u"Software");
  MakeKey(HKEY_CURRENT_USER, u"Software\\Microsoft\\Windows\\CurrentVersion\\Run");
}

void RegistryTree::MakeKey(HKEY hive, std::u16string_view path) { Make(hive, path); }

void RegistryTree::SetDword(HKEY hive, std::u16string_view path, std::u16string_view name,
                            std::uint32_t value) {
  std::string bytes(sizeof(value), '\0');
  std::memcpy(bytes.data(), &value, sizeof(value));
  SetBytes(hive, path, name, REG_DWORD, bytes);
}

void RegistryTree::SetString(HKEY hive, std::u16string_view path, std::u16string_view name,
                             std::u16string_view value) {
  SetBytes(hive, path, name, REG_SZ, BytesOf(std::u16string(value) + u'\0'));
}

void RegistryTree::SetBytes(HKEY hive, std::u16string_view path, std::u16string_view name,
                            std::uint32_t type, std::string_view bytes) {
  Make(hive, path).SetValue(name, type, bytes);
}

void RegistryTree::RemoveValue(HKEY hive, std::u16string_view path, std::u16string_view name) {
  if (const auto key = Find(hive, path)) key->RemoveValue(name);
}

void RegistryTree::RemoveKey(HKEY hive, std::u16string_view path) {
  const std::shared_ptr<RegistryKey> key = Find(hive, path);
  if (key == nullptr) return;
  if (key->parent == nullptr) throw std::invalid_argument("a hive can't be removed");
  key->parent->RemoveSubKey(key->name);
}

void RegistryTree::Deny(HKEY hive, std::u16string_view path, bool reading) {
  RegistryKey& key = Make(hive, path);
  key.deniesWriting = true;
  key.deniesReading = reading;
}

bool RegistryTree::HasKey(HKEY hive, std::u16string_view path) const {
  return Find(hive, path) != nullptr;
}

std::optional<std::uint32_t> RegistryTree::Dword(HKEY hive, std::u16string_view path,
                                                 std::u16string_view name) const {
  const RegistryValue* value = FindValue(hive, path, name);
  std::uint32_t number = 0;
  if (value == nullptr || value->type != REG_DWORD || value->bytes.size() != sizeof(number))
    return std::nullopt;
  std::memcpy(&number, value->bytes.data(), sizeof(number));
  return number;
}

std::optional<std::u16string> RegistryTree::String(HKEY hive, std::u16string_view path,
                                                   std::u16string_view name) const {
  const RegistryValue* value = FindValue(hive, path, name);
  if (value == nullptr || value->type != REG_SZ) return std::nullopt;
  std::u16string text(value->bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), value->bytes.data(), text.size() * sizeof(char16_t));
  return text.substr(0, text.find(u'\0'));
}

std::optional<std::string> RegistryTree::Bytes(HKEY hive, std::u16string_view path,
                                               std::u16string_view name) const {
  const RegistryValue* value = FindValue(hive, path, name);
  if (value == nullptr) return std::nullopt;
  return value->bytes;
}

std::vector<std::u16string> RegistryTree::SubKeys(HKEY hive, std::u16string_view path) const {
  std::vector<std::u16string> names;
  if (const auto key = Find(hive, path))
    for (const auto& [capitals, subKey] : key->subKeys) names.push_back(subKey->name);
  return names;
}

std::vector<std::u16string> RegistryTree::ValueNames(HKEY hive, std::u16string_view path) const {
  std::vector<std::u16string> names;
  if (const auto key = Find(hive, path))
    for (const RegistryValue& value : key->values) names.push_back(value.name);
  return names;
}

std::shared_ptr<RegistryKey> RegistryTree::Hive(HKEY hive) const {
  if (hive == HKEY_CURRENT_USER) return m_currentUser;
  return hive == HKEY_LOCAL_MACHINE ? m_localMachine : nullptr;
}

std::shared_ptr<RegistryKey> RegistryTree::Find(HKEY hive, std::u16string_view path) const {
  std::shared_ptr<RegistryKey> key = Hive(hive);
  if (key == nullptr) throw std::invalid_argument("not a hive of the simulated machine");
  for (const std::u16string_view name : RegistryNames(path)) {
    key = key->SubKey(name);
    if (key == nullptr) break;
  }
  return key;
}

RegistryKey& RegistryTree::Make(HKEY hive, std::u16string_view path) {
  std::shared_ptr<RegistryKey> key = Hive(hive);
  if (key == nullptr) throw std::invalid_argument("not a hive of the simulated machine");
  for (const std::u16string_view name : RegistryNames(path)) {
    const std::shared_ptr<RegistryKey> subKey = key->SubKey(name);
    key = subKey == nullptr ? key->AddSubKey(name) : subKey;
  }
  return *key;
}

const RegistryValue* RegistryTree::FindValue(HKEY hive, std::u16string_view path,
                                             std::u16string_view name) const {
  const auto key = Find(hive, path);
  return key == nullptr ? nullptr : key->Value(name);
}

std::vector<std::u16string_view> RegistryNames(std::u16string_view path) {
  std::vector<std::u16string_view> names;
  while (!path.empty()) {
    const std::size_t length = std::min(path.find(u'\\'), path.size());
    if (length != 0) names.push_back(path.substr(0, length));
    path.remove_prefix(std::min(length + 1, path.size()));
  }
  return names;
}

}  // namespace sim
