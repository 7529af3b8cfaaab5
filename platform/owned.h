// Owners of platform handles: each closes its handle at the end of its scope. The invalid value
// lives in the type; an owner tests true while it holds a handle that is valid for its kind.
#pragma once

#include <utility>

#include "platform/platform.h"

namespace platform {

template <class Traits>
class Owned {
 public:
  using Handle = typename Traits::Handle;

  Owned() = default;
  explicit Owned(Handle handle) : m_handle(handle) {}
  Owned(Owned&& other) noexcept : m_handle(other.Release()) {}
  Owned& operator=(Owned&& other) noexcept {
    if (this != &other) {
      Reset();
      m_handle = other.Release();
    }
    return *this;
  }
  ~Owned() { Reset(); }

  explicit operator bool() const { return m_handle != Traits::kInvalid; }
  Handle get() const { return m_handle; }

  // Closes what is held and gives the address for a call that stores a new handle there.
  Handle* Out() {
    Reset();
    return &m_handle;
  }
  void Reset() {
    if (*this) Traits::Close(Release());
  }
  // Gives the handle to the caller, who closes it.
  Handle Release() { return std::exchange(m_handle, Traits::kInvalid); }

 private:
  Handle m_handle = Traits::kInvalid;
};

struct FileTraits {
  using Handle = HANDLE;
  static constexpr Handle kInvalid = INVALID_HANDLE_VALUE;
  static void Close(Handle file) { Os().objects.CloseHandle(file); }
};
struct ObjectTraits {
  using Handle = HANDLE;
  static constexpr Handle kInvalid{};
  static void Close(Handle object) { Os().objects.CloseHandle(object); }
};
struct KeyTraits {
  using Handle = HKEY;
  static constexpr Handle kInvalid{};
  static void Close(Handle key) { Os().registry.RegCloseKey(key); }
};
struct FindTraits {
  using Handle = HFIND;
  static constexpr Handle kInvalid = INVALID_FIND_HANDLE;
  static void Close(Handle search) { Os().files.FindClose(search); }
};

struct ModuleTraits {
  using Handle = HMODULE;
  static constexpr Handle kInvalid{};
  static void Close(Handle library) { Os().modules.FreeLibrary(library); }
};

struct MenuTraits {
  using Handle = HMENU;
  static constexpr Handle kInvalid{};
  static void Close(Handle menu) { Os().menus.DestroyMenu(menu); }
};
struct IconTraits {
  using Handle = HICON;
  static constexpr Handle kInvalid{};
  static void Close(Handle icon) { Os().resources.DestroyIcon(icon); }
};
// A font, brush or bitmap.
template <class T>
struct DrawingObjectTraits {
  using Handle = T;
  static constexpr Handle kInvalid{};
  static void Close(Handle object) { Os().drawing.DeleteObject(AsObject(object)); }
};
struct DeviceContextTraits {
  using Handle = HDC;
  static constexpr Handle kInvalid{};
  static void Close(Handle context) { Os().drawing.DeleteDC(context); }
};

using OwnedFile = Owned<FileTraits>;
using OwnedObject = Owned<ObjectTraits>;
using OwnedKey = Owned<KeyTraits>;
using OwnedFind = Owned<FindTraits>;
using OwnedModule = Owned<ModuleTraits>;
using OwnedMenu = Owned<MenuTraits>;
using OwnedIcon = Owned<IconTraits>;
using OwnedBitmap = Owned<DrawingObjectTraits<HBITMAP>>;
using OwnedFont = Owned<DrawingObjectTraits<HFONT>>;
using OwnedBrush = Owned<DrawingObjectTraits<HBRUSH>>;
using OwnedDC = Owned<DeviceContextTraits>;

}  // namespace platform
