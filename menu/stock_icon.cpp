#include "menu/stock_icon.h"

#include "platform/platform.h"
#include "platform/stock_icon.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::int32_t kNotAvailable = -1;
// In pixels, from the picture's corner and of its size.
constexpr std::int32_t kInset = 5;
constexpr std::int32_t kShrink = 4;

// Looked up at run time, so that the program starts on a system that hasn't got it. Null there.
SHGetStockIconInfoProc FindStockIcons() {
  const HMODULE shell = Os().modules.GetModuleHandleW(u"Shell32.dll");
  if (shell == HMODULE{}) return nullptr;
  return reinterpret_cast<SHGetStockIconInfoProc>(
      Os().modules.GetProcAddress(shell, "SHGetStockIconInfo"));
}

}  // namespace

std::int32_t Kv_SHGetStockSmallIconInfo(HDC context, std::int32_t x, std::int32_t y,
                                        std::int32_t width, std::int32_t height) {
  const SHGetStockIconInfoProc getStockIcon = FindStockIcons();
  if (getStockIcon == nullptr) return kNotAvailable;
  StockIconInfo info;
  info.size = sizeof(info);
  const std::int32_t result = getStockIcon(SIID_SHIELD, SHGSI_ICON | SHGSI_SMALLICON, &info);
  // Also without an icon: drawing none fails, and that is all.
  Os().drawing.DrawIconEx(context, x + kInset, y + kInset, info.icon, width - kShrink,
                          height - kShrink, DI_NORMAL);
  // The icon isn't destroyed: the suite leaves stock icons to the system that they came from, so
  // each drawing leaves one more open until the process ends.
  return result;
}

}  // namespace vgl
