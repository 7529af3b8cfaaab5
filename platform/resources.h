// What a loaded module has in its resource section: texts, menus, icons, bitmaps.
//
// HMODULE{} is the running program. A module that isn't loaded (any more) has nothing. Of a
// resource that is there in several languages the neutral one is taken, else the one of the user's
// language, else another. What is loaded stays good when its module goes.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t IMAGE_ICON = 1;
inline constexpr std::uint32_t LR_DEFAULTCOLOR = 0;
inline constexpr std::int32_t ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr std::int32_t ERROR_INVALID_ICON_HANDLE = 1414;

class Resources {
 public:
  virtual ~Resources() = default;

  // The text of that number, cut to `chars` characters (2 or more) with its terminator. The length
  // written without terminator; 0 when there is no such text or it is empty, `text` is then
  // undefined. Only the low 16 bits of `id` count.
  virtual std::int32_t LoadStringW(HMODULE module, std::uint32_t id, char16_t* text,
                                   std::int32_t chars) = 0;

  // A new menu from the template of that number, the caller's to destroy (Menus::DestroyMenu).
  // HMENU{} when there is none or it is malformed.
  virtual HMENU LoadMenuW(HMODULE module, std::uint16_t id) = 0;

  // A new icon of `width` by `height` pixels from the icon group of that number: of the group's
  // pictures the one whose size is nearest, scaled. The caller's to destroy (DestroyIcon). Only
  // `type` IMAGE_ICON with `flags` LR_DEFAULTCOLOR and a size above 0 is supported. HICON{} when
  // there is no such group or its picture is malformed.
  virtual HICON LoadImageW(HMODULE module, std::uint16_t id, std::uint32_t type, std::int32_t width,
                           std::int32_t height, std::uint32_t flags) = 0;
  // False with 1414 (Wine: 1402) for what is no icon.
  virtual bool DestroyIcon(HICON icon) = 0;

  // A new bitmap from the resource of that number, the caller's to delete (Drawing::DeleteObject).
  // HBITMAP{} when there is none or it is malformed.
  virtual HBITMAP LoadBitmapW(HMODULE module, std::uint16_t id) = 0;
};

}  // namespace platform
