// The registry of the simulated machine.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace sim {

struct RegistryValue {
  std::u16string name;
  std::uint32_t type = platform::REG_NONE;
  std::string bytes;
};

// A key. It lives while it is in the tree or open; of one that was deleted only the name is left.
struct RegistryKey {
  std::u16string name;            // in the case that it was made with
  std::u16string path;            // "HKCU\Software\..."
  RegistryKey* parent = nullptr;  // null for a hive, and meaningless once the key is deleted
  bool isDeleted = false;
  bool deniesReading = false;
  bool deniesWriting = false;
  std::map<std::u16string, std::shared_ptr<RegistryKey>> subKeys;  // in the order of a listing
  std::vector<RegistryValue> values;                               // in the order of their making

  // Null when there is none.
  std::shared_ptr<RegistryKey> SubKey(std::u16string_view subKey) const;
  std::shared_ptr<RegistryKey> AddSubKey(std::u16string_view subKey);
  void RemoveSubKey(std::u16string_view subKey);
  const RegistryValue* Value(std::u16string_view value) const;
  void SetValue(std::u16string_view value, std::uint32_t type, std::string_view bytes);
  // False when there is none.
  bool RemoveValue(std::u16string_view value);
};

class RegistryTree {
 public:
  RegistryTree();
  RegistryTree(const RegistryTree&) = delete;
  RegistryTree& operator=(const RegistryTree&) = delete;

  // Keys are named by hive and path; setting a value makes the keys above it.
  void MakeKey(platform::HKEY hive, std::u16string_view path);
  void SetDword(platform::HKEY hive, std::u16string_view path, std::u16string_view name,
                std::uint32_t value);
  // REG_SZ with its terminator.
  void SetString(platform::HKEY hive, std::u16string_view path, std::u16string_view name,
                 std::u16string_view value);
  void SetBytes(platform::HKEY hive, std::u16string_view path, std::u16string_view name,
                std::uint32_t type, std::string_view bytes);
  void RemoveValue(platform::HKEY hive, std::u16string_view path, std::u16string_view name);
  void RemoveKey(platform::HKEY hive, std::u16string_view path);  // with all below it
  // From now on opening the key for writing (any KEY_SET_VALUE or KEY_CREATE_SUB_KEY) is denied,
  // and so is deleting it; with `reading` any opening is. The key is made when it isn't there.
  void Deny(platform::HKEY hive, std::u16string_view path, bool reading);

  bool HasKey(platform::HKEY hive, std::u16string_view path) const;
  // Nothing when the value isn't there or is of another type.
  std::optional<std::uint32_t> Dword(platform::HKEY hive, std::u16string_view path,
                                     std::u16string_view name) const;
  // Without its terminator.
  std::optional<std::u16string> String(platform::HKEY hive, std::u16string_view path,
                                       std::u16string_view name) const;
  // Of any type.
  std::optional<std::string> Bytes(platform::HKEY hive, std::u16string_view path,
                                   std::u16string_view name) const;
  std::vector<std::u16string> SubKeys(platform::HKEY hive, std::u16string_view path) const;
  std::vector<std::u16string> ValueNames(platform::HKEY hive, std::u16string_view path) const;

  // --- for the simulation ---

  // The key of a predefined handle; null for any other.
  std::shared_ptr<RegistryKey> Hive(platform::HKEY hive) const;

 private:
  std::shared_ptr<RegistryKey> Find(platform::HKEY hive, std::u16string_view path) const;
  RegistryKey& Make(platform::HKEY hive, std::u16string_view path);
  const RegistryValue* FindValue(platform::HKEY hive, std::u16string_view path,
                                 std::u16string_view name) const;

  std::shared_ptr<RegistryKey> m_currentUser;
  std::shared_ptr<RegistryKey> m_localMachine;
};

// The names of a key's path, "\" between them; empty ones don't count.
std::vector<std::u16string_view> RegistryNames(std::u16string_view path);

}  // namespace sim
