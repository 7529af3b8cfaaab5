// Our types and Windows' own, turned into each other. Everything under platform/win32 gets
// <windows.h> from here: it has to stand behind our headers, because its macros carry the names of
// our constants. Behind it those names mean Windows' values (constants.cpp proves them equal).
#pragma once

#include <cstdint>
#include <type_traits>

#include "platform/platform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

namespace platform {

static_assert(sizeof(void*) == sizeof(std::uint64_t), "handles are kept in 64 bits");
static_assert(sizeof(wchar_t) == sizeof(char16_t));
static_assert(sizeof(DWORD) == sizeof(std::uint32_t));

// A handle of ours as Windows' pointer, or the other way round.
template <class To, class From>
To handle_cast(From handle) {
  if constexpr (std::is_pointer_v<To>) {
    return reinterpret_cast<To>(static_cast<std::uintptr_t>(handle));
  } else {
    return To{reinterpret_cast<std::uintptr_t>(handle)};
  }
}

// Text and numbers that Windows reads or writes behind a pointer. The types differ in name only,
// and nothing on our side looks through the result.
inline const wchar_t* text_cast(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* text_cast(char16_t* text) { return reinterpret_cast<wchar_t*>(text); }
inline DWORD* dword_cast(std::uint32_t* number) { return reinterpret_cast<DWORD*>(number); }
inline LONG* long_cast(std::int32_t* number) { return reinterpret_cast<LONG*>(number); }

// Windows only reads them; the layouts are the same (constants.cpp).
inline SECURITY_ATTRIBUTES* attributes_cast(const SecurityAttributes* attributes) {
  return reinterpret_cast<SECURITY_ATTRIBUTES*>(const_cast<SecurityAttributes*>(attributes));
}

}  // namespace platform
