#include "desk/menu_lines.h"

#include "platform/menus.h"

namespace desk {

namespace {

std::string InWords(const MenuLine& entry) {
  if (entry.IsSeparator()) return "----";
  std::string line = std::to_string(entry.id) + " " + entry.label;
  if ((entry.state & platform::MFS_DEFAULT) != 0) line += " (default)";
  if ((entry.type & platform::MFT_RIGHTORDER) != 0) line += " (right to left)";
  if ((entry.state & platform::MFS_GRAYED) != 0) line += " (disabled)";
  return line;
}

}  // namespace

bool MenuLine::IsSeparator() const { return (type & platform::MFT_SEPARATOR) != 0; }
bool MenuLine::CanBeChosen() const { return !IsSeparator() && (state & platform::MFS_GRAYED) == 0; }

std::vector<std::string> MenuInWords(const std::vector<MenuLine>& entries) {
  std::vector<std::string> lines;
  lines.reserve(entries.size());
  for (const MenuLine& entry : entries) lines.push_back(InWords(entry));
  return lines;
}

}  // namespace desk
