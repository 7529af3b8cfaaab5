// The menus of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

static_assert(sizeof(MENUITEMINFOW) == 80);

MENUITEMINFOW NativeInfo(const MenuItemInfo& info) {
  MENUITEMINFOW native{};
  native.cbSize = sizeof(native);
  native.fMask = info.mask;
  native.fType = info.type;
  native.fState = info.state;
  native.wID = info.id;
  native.hSubMenu = handle_cast<::HMENU>(info.subMenu);
  native.dwItemData = info.itemData;
  native.dwTypeData = text_cast(info.typeData);
  native.cch = info.cch;
  return native;
}

class MenusOfWindows final : public Menus {
 public:
  HMENU GetSubMenu(HMENU menu, std::int32_t position) override {
    return handle_cast<HMENU>(::GetSubMenu(handle_cast<::HMENU>(menu), position));
  }

  bool ModifyMenuW(HMENU menu, std::uint32_t item, std::uint32_t flags, std::uint64_t newId,
                   const char16_t* text) override {
    return ::ModifyMenuW(handle_cast<::HMENU>(menu), item, flags, newId, text_cast(text)) != FALSE;
  }

  bool AppendMenuW(HMENU menu, std::uint32_t flags, std::uint64_t id,
                   const char16_t* text) override {
    return ::AppendMenuW(handle_cast<::HMENU>(menu), flags, id, text_cast(text)) != FALSE;
  }

  bool GetMenuItemInfoW(HMENU menu, std::uint32_t item, bool byPosition,
                        MenuItemInfo* info) override {
    MENUITEMINFOW native = NativeInfo(*info);
    if (!::GetMenuItemInfoW(handle_cast<::HMENU>(menu), item, byPosition, &native)) return false;
    info->type = native.fType;
    info->state = native.fState;
    info->id = native.wID;
    info->subMenu = handle_cast<HMENU>(native.hSubMenu);
    info->itemData = native.dwItemData;
    info->cch = native.cch;
    return true;
  }

  bool SetMenuItemInfoW(HMENU menu, std::uint32_t item, bool byPosition,
                        const MenuItemInfo* info) override {
    const MENUITEMINFOW native = NativeInfo(*info);
    return ::SetMenuItemInfoW(handle_cast<::HMENU>(menu), item, byPosition, &native) != FALSE;
  }

  bool DestroyMenu(HMENU menu) override {
    return ::DestroyMenu(handle_cast<::HMENU>(menu)) != FALSE;
  }

  bool DrawMenuBar(HWND window) override {
    return ::DrawMenuBar(handle_cast<::HWND>(window)) != FALSE;
  }

  bool TrackPopupMenu(HMENU menu, std::uint32_t flags, std::int32_t x, std::int32_t y,
                      HWND owner) override {
    return ::TrackPopupMenu(handle_cast<::HMENU>(menu), flags, x, y, 0, handle_cast<::HWND>(owner),
                            nullptr) != FALSE;
  }
};

}  // namespace

Menus& Win32Menus() { return *new MenusOfWindows; }

}  // namespace platform
