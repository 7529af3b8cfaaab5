// The registry: a tree of keys with typed values.
//
// Every call returns an error number (ERROR_SUCCESS = 0), never through GetLastError. Key and value
// names ignore case. Sizes of data are in bytes, sizes of names in characters.
#pragma once

#include "platform/types.h"

namespace platform {

// The predefined keys; they are always open and never closed.
inline constexpr HKEY HKEY_CURRENT_USER{0xFFFFFFFF80000001};
inline constexpr HKEY HKEY_LOCAL_MACHINE{0xFFFFFFFF80000002};

inline constexpr std::uint32_t KEY_QUERY_VALUE = 0x0001;
inline constexpr std::uint32_t KEY_SET_VALUE = 0x0002;
inline constexpr std::uint32_t KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr std::uint32_t KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr std::uint32_t KEY_READ = 0x20019;
inline constexpr std::uint32_t KEY_WRITE = 0x20006;
inline constexpr std::uint32_t KEY_ALL_ACCESS = 0xF003F;

inline constexpr std::uint32_t REG_NONE = 0;
inline constexpr std::uint32_t REG_SZ = 1;
inline constexpr std::uint32_t REG_EXPAND_SZ = 2;
inline constexpr std::uint32_t REG_BINARY = 3;
inline constexpr std::uint32_t REG_DWORD = 4;
inline constexpr std::uint32_t REG_DWORD_BIG_ENDIAN = 5;
inline constexpr std::uint32_t REG_MULTI_SZ = 7;

inline constexpr std::uint32_t REG_CREATED_NEW_KEY = 1;
inline constexpr std::uint32_t REG_OPENED_EXISTING_KEY = 2;

class Registry {
 public:
  virtual ~Registry() = default;

  // Opens `subKey` (may name several levels, may be empty or null for `parent` itself). On success
  // `*key` is owned by the caller, to be closed by RegCloseKey. On failure `*key` is HKEY{}.
  // 2 when the key isn't there, 5 when `access` isn't granted.
  virtual std::int32_t RegOpenKeyExW(HKEY parent, const char16_t* subKey, std::uint32_t access,
                                     HKEY* key) = 0;

  // As RegOpenKeyExW, but makes every missing level, whatever the rights of `parent`.
  // `*disposition` (may be null) tells which.
  virtual std::int32_t RegCreateKeyExW(HKEY parent, const char16_t* subKey, std::uint32_t access,
                                       HKEY* key, std::uint32_t* disposition) = 0;

  // Reads a value; a null or empty `name` is the key's default value. `type`, `data` and `bytes`
  // may be null (`data` without `bytes` is 87). In: `*bytes` is the room at `data`; out: the size
  // of the value. Without `data` only the size is told. 234 when the room is too small: `*bytes` is
  // then the needed size, and what `data` holds is undefined. 2 when there is no such value;
  // `*bytes` is then undefined. Stored text comes back as it was written, with or without a
  // terminator.
  virtual std::int32_t RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t* type,
                                        void* data, std::uint32_t* bytes) = 0;

  // Writes `bytes` bytes as they are, replacing a value of any type. Windows makes one exception:
  // text handed over without its terminator gets it when a zero happens to follow in memory; so
  // count the terminator, or put something else behind.
  virtual std::int32_t RegSetValueExW(HKEY key, const char16_t* name, std::uint32_t type,
                                      const void* data, std::uint32_t bytes) = 0;

  // 2 when there is no such value.
  virtual std::int32_t RegDeleteValueW(HKEY key, const char16_t* name) = 0;

  // Removes a key without sub-keys, with all its values. 5 when it has sub-keys, 2 when it isn't
  // there. `subKey` may name several levels, of which the last one goes. Beware: when it is empty,
  // `parent` itself goes. Null is refused with 87. The rights of `parent` don't matter.
  virtual std::int32_t RegDeleteKeyW(HKEY parent, const char16_t* subKey) = 0;

  // The name of the sub-key at `index`, and its class: that of a key which was made through this
  // interface is empty. In: `*chars` and `*classChars` are the rooms with the terminator; out: the
  // lengths without it. `keyClass` may be null, and then `classChars` may be, too. 259 behind the
  // last, 234 when either room is too small.
  virtual std::int32_t RegEnumKeyExW(HKEY key, std::uint32_t index, char16_t* name,
                                     std::uint32_t* chars, char16_t* keyClass,
                                     std::uint32_t* classChars) = 0;

  // The value at `index`: its name as in RegEnumKeyExW, its type and data as in RegQueryValueExW.
  // `type`, `data` and `bytes` may be null.
  virtual std::int32_t RegEnumValueW(HKEY key, std::uint32_t index, char16_t* name,
                                     std::uint32_t* chars, std::uint32_t* type, void* data,
                                     std::uint32_t* bytes) = 0;

  // 6 for what isn't an open key; a predefined key is accepted and stays open.
  virtual std::int32_t RegCloseKey(HKEY key) = 0;
};

}  // namespace platform
