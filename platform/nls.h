// National language support: character types, case-blind comparison, the system's code page.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t CP_ACP = 0;
inline constexpr std::uint32_t CT_CTYPE2 = 2;
inline constexpr std::uint16_t C2_RIGHTTOLEFT = 2;

class NationalLanguage {
 public:
  virtual ~NationalLanguage() = default;

  virtual std::uint32_t GetSystemDefaultLCID() = 0;

  // The user's language: its primary identifier in the low 10 bits, the sublanguage in the high 6.
  virtual std::uint16_t GetUserDefaultLangID() = 0;

  // One type word of the kind `infoType` for each of `chars` characters. False on failure.
  virtual bool GetStringTypeExW(std::uint32_t locale, std::uint32_t infoType, const char16_t* text,
                                std::int32_t chars, std::uint16_t* types) = 0;

  // Compares two texts without regard to case by the user's language: negative, 0 or positive.
  // A null text stands before every other.
  virtual std::int32_t lstrcmpiW(const char16_t* left, const char16_t* right) = 0;

  // `chars` characters as bytes of the code page into room for `bytes` bytes (0: only tell the
  // size). The number of bytes, 0 on failure (122 when the room is too small). No terminator is
  // added. A character that the code page lacks becomes its default character.
  virtual std::int32_t WideCharToMultiByte(std::uint32_t codePage, const char16_t* text,
                                           std::int32_t chars, char* out, std::int32_t bytes) = 0;

  // `bytes` bytes of the code page as characters into room for `chars` characters (0: only tell the
  // number); -1 bytes: up to and with the terminator. The number of characters, 0 on failure (122
  // when the room is too small, 87 for no bytes).
  virtual std::int32_t MultiByteToWideChar(std::uint32_t codePage, const char* text,
                                           std::int32_t bytes, char16_t* out,
                                           std::int32_t chars) = 0;
};

}  // namespace platform
