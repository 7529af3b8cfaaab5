#include "desk/map_reader.h"

#include <algorithm>

#include "Common/text_conversion.h"
#include "platform/owned.h"

namespace desk {

namespace {

constexpr std::size_t kNameChars = 520;
constexpr char16_t kFree = 0x0000;
constexpr char16_t kEnd = 0x00FF;

struct WindowField {
  const char* name;  // the agent's own goes without one
  std::size_t offset;
};
constexpr WindowField kWindows[] = {{"", 1058}, {"Sel0 ", 1050}, {"Sel12 ", 1042}};
constexpr WindowField kSel5 = {"Sel5 ", 1066};

class Slot {
 public:
  explicit Slot(std::span<const unsigned char> bytes) : m_bytes(bytes) {}

  char16_t Character(std::size_t index) const {
    return static_cast<char16_t>(Number(2 * index, 2));
  }
  std::uint64_t Number(std::size_t offset, std::size_t bytes) const {
    std::uint64_t number = 0;
    for (std::size_t i = bytes; i-- > 0;)
      number = number << 8 | (offset + i < m_bytes.size() ? m_bytes[offset + i] : 0U);
    return number;
  }
  std::u16string Name() const {
    std::u16string name;
    for (std::size_t i = 0; i < kNameChars && Character(i) != u'\0'; ++i)
      name.push_back(Character(i));
    return name;
  }

 private:
  std::span<const unsigned char> m_bytes;
};

std::string SlotText(const MapForm& form, const Slot& slot,
                     const std::function<std::string(std::uint64_t)>& nameWindow) {
  if (slot.Character(0) == kFree) return "free";
  std::string text = vgl::Utf8FromText(slot.Name());
  const auto add = [&](const WindowField& field) {
    const std::uint64_t window = slot.Number(field.offset, 8);
    if (window == 0) return;
    text += std::string(", ") + field.name +
            (window == ~std::uint64_t{0} ? std::string("starting") : nameWindow(window));
  };
  for (const WindowField& field : kWindows) add(field);
  if (form.hasSel5) add(kSel5);
  return text;
}

}  // namespace

std::vector<std::string> MapLines(const MapForm& form, std::span<const unsigned char> bytes,
                                  const std::function<std::string(std::uint64_t)>& nameWindow) {
  std::vector<std::string> lines;
  for (std::size_t index = 0; index < kSlotsOfMap; ++index) {
    const std::size_t begin = std::min(index * form.slotBytes, bytes.size());
    const Slot slot(bytes.subspan(begin, std::min(form.slotBytes, bytes.size() - begin)));
    const std::string start =
        vgl::Utf8FromText(form.sectionName) + " " + std::to_string(index) + ": ";
    if (slot.Character(0) == kEnd) {
      lines.push_back(start + "end");
      return lines;
    }
    lines.push_back(start + SlotText(form, slot, nameWindow));
  }
  return lines;
}

std::vector<std::string> ReadMap(const MapForm& form,
                                 const std::function<std::string(std::uint64_t)>& nameWindow) {
  platform::Sections& sections = platform::Os().sections;
  const auto refused = [&](const std::string& what) {
    return std::vector{vgl::Utf8FromText(form.sectionName) + " " + what + ", error " +
                       std::to_string(platform::Os().process.GetLastError())};
  };
  const platform::OwnedObject section(
      sections.OpenFileMappingW(platform::FILE_MAP_ALL_ACCESS, form.sectionName));
  if (!section) {
    const bool isMissing = platform::Os().process.GetLastError() == platform::ERROR_FILE_NOT_FOUND;
    return isMissing ? std::vector<std::string>{} : refused("can't be opened");
  }
  const std::size_t bytes = form.slotBytes * kSlotsOfMap;
  const void* view = sections.MapViewOfFile(section.get(), platform::FILE_MAP_ALL_ACCESS, bytes);
  if (view == nullptr) return refused("can't be seen");
  std::vector<std::string> lines =
      MapLines(form, {static_cast<const unsigned char*>(view), bytes}, nameWindow);
  sections.UnmapViewOfFile(view);
  return lines;
}

std::vector<std::string> ReadMaps(const std::function<std::string(std::uint64_t)>& nameWindow) {
  std::vector<std::string> lines;
  for (const MapForm& form : kMapForms)
    for (std::string& line : ReadMap(form, nameWindow)) lines.push_back(std::move(line));
  if (lines.empty()) lines.emplace_back("no map");
  return lines;
}

}  // namespace desk
