// Menus: their items, and showing one.
//
// An item is named by its position from 0 (MF_BYPOSITION, `byPosition`), or by its command id,
// which is looked for in sub-menus, too; the first that has it counts. Where an operation takes a
// menu, what is none fails with 1401.
#pragma once

#include "platform/types.h"

namespace platform {

// Flags of an item that is added or changed: where it is, and what it is.
inline constexpr std::uint32_t MF_BYCOMMAND = 0;
inline constexpr std::uint32_t MF_BYPOSITION = 0x400;
inline constexpr std::uint32_t MF_STRING = 0;
inline constexpr std::uint32_t MF_GRAYED = 1;
inline constexpr std::uint32_t MF_DISABLED = 2;
inline constexpr std::uint32_t MF_CHECKED = 8;
inline constexpr std::uint32_t MF_OWNERDRAW = 0x100;
inline constexpr std::uint32_t MF_SEPARATOR = 0x800;

// MenuItemInfo::mask
inline constexpr std::uint32_t MIIM_STATE = 1;
inline constexpr std::uint32_t MIIM_ID = 2;
inline constexpr std::uint32_t MIIM_SUBMENU = 4;  // only told
inline constexpr std::uint32_t MIIM_TYPE = 0x10;  // type and text; not with the two below
inline constexpr std::uint32_t MIIM_DATA = 0x20;
inline constexpr std::uint32_t MIIM_STRING = 0x40;
inline constexpr std::uint32_t MIIM_FTYPE = 0x100;

// MenuItemInfo::type
inline constexpr std::uint32_t MFT_STRING = 0;
inline constexpr std::uint32_t MFT_OWNERDRAW = 0x100;
inline constexpr std::uint32_t MFT_SEPARATOR = 0x800;
inline constexpr std::uint32_t MFT_RIGHTORDER = 0x2000;
inline constexpr std::uint32_t MFT_RIGHTJUSTIFY = 0x4000;

// MenuItemInfo::state
inline constexpr std::uint32_t MFS_ENABLED = 0;
inline constexpr std::uint32_t MFS_GRAYED = 3;
inline constexpr std::uint32_t MFS_CHECKED = 8;
inline constexpr std::uint32_t MFS_DEFAULT = 0x1000;

inline constexpr std::uint32_t TPM_LEFTBUTTON = 0;
inline constexpr std::uint32_t TPM_RIGHTBUTTON = 2;

inline constexpr std::uint32_t WM_CANCELMODE = 31;

inline constexpr std::int32_t ERROR_INVALID_MENU_HANDLE = 1401;
inline constexpr std::int32_t ERROR_POPUP_ALREADY_ACTIVE = 1446;
inline constexpr std::int32_t ERROR_MENU_ITEM_NOT_FOUND = 1456;

struct MenuItemInfo {
  std::uint32_t mask = 0;  // MIIM_...: which of the others count
  std::uint32_t type = 0;
  std::uint32_t state = 0;
  std::uint32_t id = 0;
  HMENU subMenu{};  // HMENU{}: none
  std::uint64_t itemData = 0;
  char16_t* typeData = nullptr;  // the text's buffer
  std::uint32_t cch = 0;         // the buffer's size in characters
};

class Menus {
 public:
  virtual ~Menus() = default;

  // The menu that opens from the item at `position`, counted from 0; it stays a part of `menu`.
  // HMENU{} when there is no such item or it opens none.
  virtual HMENU GetSubMenu(HMENU menu, std::int32_t position) = 0;

  // Makes another item of one that is there: its id, its text (copied), its state and type as
  // `flags` has them, all the rest as new. With MF_OWNERDRAW `text` isn't looked at but kept as the
  // item's data; with MF_SEPARATOR it is ignored; a null text makes a separator, too. False when
  // there is no such item.
  virtual bool ModifyMenuW(HMENU menu, std::uint32_t item, std::uint32_t flags, std::uint64_t newId,
                           const char16_t* text) = 0;
  // Adds such an item at the end.
  virtual bool AppendMenuW(HMENU menu, std::uint32_t flags, std::uint64_t id,
                           const char16_t* text) = 0;

  // Tells what `info->mask` asks for of an item. For the text `typeData` has room for `cch`
  // characters with the terminator; it is cut to that, and `cch` becomes the length written. With a
  // null `typeData` nothing is written and `cch` becomes the length of the whole text. False, with
  // `*info` untouched, when there is no such item, or with MIIM_TYPE beside MIIM_STRING or
  // MIIM_FTYPE (87).
  virtual bool GetMenuItemInfoW(HMENU menu, std::uint32_t item, bool byPosition,
                                MenuItemInfo* info) = 0;
  // Sets what `info->mask` names and nothing else; the text is `typeData` up to its terminator.
  // MIIM_TYPE sets type and text, a null text is none then. False as above.
  virtual bool SetMenuItemInfoW(HMENU menu, std::uint32_t item, bool byPosition,
                                const MenuItemInfo* info) = 0;

  // Destroys a menu and the menus that open from it.
  virtual bool DestroyMenu(HMENU menu) = 0;

  // Draws a window's menu bar anew. False with 1400 for no window.
  virtual bool DrawMenuBar(HWND window) = 0;

  // Shows a menu at a place on the screen and waits until something is chosen or it is closed;
  // messages and timers of the thread are dispatched meanwhile, and the owner is asked for sizes
  // and looks of the items that it draws (owner_draw.h). A choice is posted to the owner, a
  // window of the calling thread, as WM_COMMAND with the item's id in wParam and 0 in lParam. True
  // when it was shown, chosen from or not; false with 1400 for no window, with 1446 while a menu of
  // the thread is shown. It closes without a choice when its owner goes or gets WM_CANCELMODE, and
  // with WM_QUIT, which stays for the loop outside.
  virtual bool TrackPopupMenu(HMENU menu, std::uint32_t flags, std::int32_t x, std::int32_t y,
                              HWND owner) = 0;
};

}  // namespace platform
