#include "platform/sim/system_libraries.h"

#include "platform/sim/machine.h"
#include "platform/sim/resource_calls.h"
#include "platform/sim/text.h"
#include "platform/stock_icon.h"

namespace sim {

using namespace platform;

namespace {

constexpr std::int32_t kDone = 0;
constexpr auto kInvalidArgument = static_cast<std::int32_t>(0x80070057);
constexpr std::uint32_t kSmallSize = 16;

std::int32_t TellStockIcon(std::uint32_t id, std::uint32_t flags, StockIconInfo* info) {
  if (info == nullptr || info->size != sizeof(*info)) return kInvalidArgument;
  if ((flags & SHGSI_ICON) != 0) {
    info->icon = HICON{RunningProcess().AddHandle(std::make_shared<LoadedIcon>(
        Picture{}, u"stock icon " + Decimal(id), kSmallSize, kSmallSize))};
  }
  return kDone;
}

}  // namespace

void AddSystemLibraries(Libraries& libraries) {
  constexpr std::uint16_t kOrdinal = 1;  // nobody asks by it
  libraries.AddResident(kShell32).Export<&TellStockIcon>(kOrdinal, "SHGetStockIconInfo");
}

}  // namespace sim
