#include "platform/sim/menu.h"

#include "platform/sim/byte_reader.h"

namespace sim {

using namespace platform;

namespace {

// Bits of a standard template's item; they stand for a place in the list, so an item never has
// them.
constexpr std::uint32_t kPopup = 0x10;
constexpr std::uint32_t kLast = 0x80;
// The same of an extended template's item.
constexpr std::uint32_t kExtendedPopup = 0x01;
constexpr std::uint32_t kExtendedLast = 0x80;

struct TemplateItem {
  MenuItem item;
  bool isPopup = false;
  bool isLast = false;
};

TemplateItem ReadStandardItem(ByteReader& reader) {
  TemplateItem read;
  const std::uint32_t flags = reader.Word();
  read.isPopup = (flags & kPopup) != 0;
  read.isLast = (flags & kLast) != 0;
  read.item.id = read.isPopup ? 0 : reader.Word();
  read.item.type = TypeOfFlags(flags);
  read.item.state = StateOfFlags(flags);
  read.item.text = reader.TextToTerminator();
  if (!read.isPopup && read.item.text.empty()) read.item.MakeSeparator();
  return read;
}

TemplateItem ReadExtendedItem(ByteReader& reader) {
  TemplateItem read;
  reader.Align();
  read.item.type = reader.Dword() & kMenuItemTypes;
  read.item.state = reader.Dword() & kMenuItemStates;
  read.item.id = reader.Dword();
  const std::uint32_t flags = reader.Word();
  read.isPopup = (flags & kExtendedPopup) != 0;
  read.isLast = (flags & kExtendedLast) != 0;
  read.item.text = reader.TextToTerminator();
  if (!read.isPopup && read.item.text.empty()) read.item.type |= MFT_SEPARATOR;
  if (read.isPopup) {
    reader.Align();
    reader.Dword();  // number of its help text
  }
  return read;
}

}  // namespace

std::optional<MenuLists> ReadMenuTemplate(std::string_view bytes) {
  ByteReader reader(bytes);
  const std::uint16_t version = reader.Word();
  reader.Skip(reader.Word());  // the rest of the header
  if (version > 1) return std::nullopt;

  MenuLists lists(1);
  lists[0].emplace();
  // The lists that are being read, each within the one before it, and whether the last of its items
  // has come.
  struct Reading {
    std::size_t list;
    bool isComplete;
  };
  std::vector<Reading> open{{0, false}};
  while (!open.empty()) {
    if (open.back().isComplete) {
      open.pop_back();
      continue;
    }
    TemplateItem read = version == 0 ? ReadStandardItem(reader) : ReadExtendedItem(reader);
    if (reader.failed()) return std::nullopt;
    open.back().isComplete = read.isLast;
    if (read.isPopup) read.item.popup = lists.size();
    lists[open.back().list]->push_back(std::move(read.item));
    if (read.isPopup) {
      open.push_back({lists.size(), false});
      lists.emplace_back(std::in_place);
    }
  }
  return lists;
}

}  // namespace sim
