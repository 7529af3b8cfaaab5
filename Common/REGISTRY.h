// One open key of the registry, read and written in the suite's way.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace vgl {

// What such an object holds, in the suite's order, behind the pointer to the virtual functions.
struct RegistryFields {
  RegistryFields() = default;
  RegistryFields(const RegistryFields&) = delete;
  RegistryFields& operator=(const RegistryFields&) = delete;
  virtual ~RegistryFields() = default;

  platform::HKEY m_hKey{};     // null when closed
  std::int32_t m_IsOpen = 0;   // 1 after a successful open or create
  std::uint32_t m_Access = 0;  // that the key was asked for with
};

// The operations, written once for both classes of the suite: each call goes to the registry that
// `Road` gives at that moment. None of them is virtual: the static type of an object decides.
//
// An object belongs to one thread. Access is a mask of the registry's rights, 0 asks for the
// default of the operation. A null or empty value name is the key's default value; a null or empty
// sub-key is the key itself. Sizes are in bytes. On a closed object a read gives its default, a
// write false, and the registry isn't asked. No failure throws, but where the memory for a text is
// missing: that ends the process, as everywhere in the agent.
template <platform::Registry& (*Road)(), class Base>
class RegistryOperations : public Base {
 public:
  using Base::m_Access;
  using Base::m_hKey;
  using Base::m_IsOpen;

  RegistryOperations() = default;
  // Creates the key (with all rights), or opens it (to read).
  RegistryOperations(platform::HKEY root, const char16_t* subKey, bool create,
                     std::uint32_t access = 0);
  // An access has no business in the flag's place.
  RegistryOperations(platform::HKEY root, const char16_t* subKey, std::uint32_t access,
                     std::uint32_t = 0) = delete;
  ~RegistryOperations() override { Close(); }

  // On an object that is open these two are a programming error and end the process.
  //
  // Create: by default with all rights. True only when the key is new; one that was there is open
  // all the same afterwards, which m_IsOpen tells.
  bool Create(platform::HKEY root, const char16_t* subKey, std::uint32_t access = 0);
  // By default to read.
  bool Open(platform::HKEY root, const char16_t* subKey, std::uint32_t access = 0);
  void Close();

  // The name of the sub-key at index 0, empty when there is none.
  std::u16string EnumKey() const;
  // Name and data of the value at `index`, the data as GetString takes them; empty on failure, and
  // that is where a name doesn't fit into 256 characters with its terminator, or data (if asked
  // for) not into 256 characters.
  std::u16string EnumValueName(std::uint32_t index) const;
  std::u16string EnumValueData(std::uint32_t index) const;
  std::u16string EnumValue(std::uint32_t index, std::u16string& outName) const;

  // Deletes a sub-key with all below it; what lies below is opened with this object's access. After
  // the first that can't be deleted only the keys above it are tried, which the registry refuses
  // while there is anything below them. What was deleted until then is gone.
  //
  // Beware of a null or empty sub-key, which is this object's own key: all keys below it go,
  // whatever the result, be it a whole branch. The key itself then goes too if the registry takes
  // such a name for it: the system's takes an empty one and refuses null, and the registry library
  // is handed null for either.
  bool DeleteKeyTree(const char16_t* subKey);
  bool DeleteValue(const char16_t* name);

  // The type of a value; 0, which is also a type, when it can't be read.
  std::uint32_t GetType(const char16_t* name) const;
  bool IsString(const char16_t* name) const;  // REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ
  bool IsDword(const char16_t* name) const;   // of either byte order
  bool IsBinary(const char16_t* name) const;

  // The value's bytes as text, whatever its type, up to the first U+0000: of a multi-string only
  // the first text. An odd last byte counts with a zero byte behind it. `fallback` when the value
  // isn't there or has more than `size` bytes; a size of 0 is that of the value.
  std::u16string GetString(const char16_t* name, std::u16string_view fallback = {},
                           std::uint32_t size = 0) const;
  // As REG_SZ with its terminator. A null text counts as empty.
  bool SetString(const char16_t* name, const char16_t* text);

  // The value's bytes over those of `fallback`, whatever its type: one that has less than four
  // leaves the upper ones. `fallback` when the value isn't there or has more.
  std::uint32_t GetDword(const char16_t* name, std::uint32_t fallback) const;
  std::uint32_t GetDwordOrMinus1(const char16_t* name) const;
  bool SetDword(const char16_t* name, std::uint32_t value);

  // The size of a value, 0 on failure.
  std::uint32_t GetSize(const char16_t* name) const;
  // A new buffer of GetSize bytes that holds the value; null when that is 0 or it can't be read.
  std::unique_ptr<std::uint8_t[]> GetBinaryAlloc(const char16_t* name) const;
  // Reads the whole value into `buffer`, which must have room for what it has at the time of this
  // call: another program may have made it longer than GetSize told before. False when it is null,
  // the size 0, or the value can't be read; what the buffer holds is undefined then.
  bool GetBinary(const char16_t* name, void* buffer) const;
  bool SetBinary(const char16_t* name, const void* data, std::uint32_t length);

 private:
  // Both set m_Access, and what Take does.
  bool OpenKey(platform::HKEY root, const char16_t* subKey, std::uint32_t access);
  bool CreateKey(platform::HKEY root, const char16_t* subKey, std::uint32_t access,
                 std::uint32_t* disposition);
  // Takes over a key that was opened without an error; otherwise leaves the object closed.
  bool Take(std::int32_t error, platform::HKEY key);
  // False when the value can't be read or has more than `*bytes` bytes; out: how many it has.
  bool Read(const char16_t* name, void* data, std::uint32_t* bytes) const;
};

// The system's own registry.
platform::Registry& SystemRegistry();

// Straight to the system.
using CRegistry = RegistryOperations<SystemRegistry, RegistryFields>;
extern template class RegistryOperations<SystemRegistry, RegistryFields>;

}  // namespace vgl
