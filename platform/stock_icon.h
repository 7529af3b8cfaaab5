// SHGetStockIconInfo of Shell32.dll, which isn't on every system and so is looked up at run time.
// Numbers and layout are Windows'.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t SIID_SHIELD = 77;
inline constexpr std::uint32_t SHGSI_ICON = 0x100;
inline constexpr std::uint32_t SHGSI_SMALLICON = 1;

struct StockIconInfo {
  std::uint32_t size = 0;  // in bytes, set by the caller
  HICON icon{};            // with SHGSI_ICON: a new one, which is the caller's to destroy
  std::int32_t systemImage = 0;
  std::int32_t index = 0;
  char16_t path[MAX_PATH] = {};
};

// 0 on success, negative on failure (an HRESULT).
using SHGetStockIconInfoProc = std::int32_t (*)(std::uint32_t id, std::uint32_t flags,
                                                StockIconInfo* info);

}  // namespace platform
