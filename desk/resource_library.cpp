#include "desk/resource_library.h"

#include <algorithm>
#include <utility>

namespace desk {

namespace {

// Types of resources, fixed by Windows.
constexpr std::uint16_t kBitmap = 2;
constexpr std::uint16_t kIcon = 3;
constexpr std::uint16_t kMenu = 4;
constexpr std::uint16_t kString = 6;
constexpr std::uint16_t kIconGroup = 14;

constexpr std::uint32_t kSectionAddress = 0x1000;  // in memory
constexpr std::uint32_t kSectionOffset = 0x200;    // in the file
constexpr std::uint32_t kHighBit = 0x80000000;
constexpr std::uint32_t kPictureSize = 16;

// Little-endian bytes, one number behind the other.
class Writer {
 public:
  Writer& Put8(std::uint32_t value) {
    m_bytes += static_cast<char>(value & 0xFF);
    return *this;
  }
  Writer& Put16(std::uint32_t value) { return Put8(value).Put8(value >> 8); }
  Writer& Put32(std::uint32_t value) { return Put16(value).Put16(value >> 16); }
  Writer& Put64(std::uint64_t value) {
    return Put32(static_cast<std::uint32_t>(value)).Put32(static_cast<std::uint32_t>(value >> 32));
  }
  Writer& PutText(const std::u16string& text) {
    for (const char16_t character : text) Put16(character);
    return *this;
  }
  Writer& PutBytes(const std::string& bytes) {
    m_bytes += bytes;
    return *this;
  }
  Writer& FillTo(std::size_t size) {
    m_bytes.resize(std::max(m_bytes.size(), size), '\0');
    return *this;
  }
  std::uint32_t size() const { return static_cast<std::uint32_t>(m_bytes.size()); }
  const std::string& bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

std::uint32_t RoundUp(std::uint32_t size, std::uint32_t step) {
  return (size + step - 1) / step * step;
}

// Bytes of each resource, by type and number.
using Resources = std::map<std::uint16_t, std::map<std::uint16_t, std::string>>;

void PutEntries(Writer& out, const std::vector<MenuEntry>& entries) {
  constexpr std::uint16_t kPopup = 0x10;
  constexpr std::uint16_t kLast = 0x80;
  for (const MenuEntry& entry : entries) {
    const std::uint16_t last = &entry == &entries.back() ? kLast : 0;
    out.Put16(last | (entry.popup.empty() ? 0 : kPopup));
    if (entry.popup.empty()) out.Put16(entry.id);
    out.PutText(entry.text).Put16(0);
    PutEntries(out, entry.popup);
  }
}

std::string MenuBytes(const std::vector<MenuEntry>& entries) {
  Writer out;
  out.Put16(0).Put16(0);
  PutEntries(out, entries);
  return out.bytes();
}

// Strings come in blocks of sixteen, of which each has its length in front.
std::map<std::uint16_t, std::string> StringBlocks(
    const std::map<std::uint16_t, std::u16string>& all) {
  std::map<std::uint16_t, std::string> blocks;
  for (const auto& [id, text] : all) {
    const auto block = static_cast<std::uint16_t>(id / 16 + 1);
    if (blocks.contains(block)) continue;
    Writer out;
    for (std::uint32_t i = 0; i < 16; ++i) {
      const auto found = all.find(static_cast<std::uint16_t>((block - 1) * 16 + i));
      const std::u16string member = found == all.end() ? std::u16string() : found->second;
      out.Put16(static_cast<std::uint32_t>(member.size())).PutText(member);
    }
    blocks[block] = out.bytes();
  }
  return blocks;
}

// A picture of 32 bits a pixel. An icon's has a second half of its height, the mask.
std::string PictureBytes(std::uint32_t colour, bool isIcon) {
  Writer out;
  out.Put32(40).Put32(kPictureSize).Put32(isIcon ? kPictureSize * 2 : kPictureSize);
  out.Put16(1).Put16(32).Put32(0).Put32(0).Put32(0).Put32(0).Put32(0).Put32(0);
  for (std::uint32_t i = 0; i < kPictureSize * kPictureSize; ++i) out.Put32(0xFF000000 | colour);
  if (isIcon) out.FillTo(out.size() + kPictureSize * 4);
  return out.bytes();
}

std::string IconGroupBytes(std::uint16_t picture, std::uint32_t pictureBytes) {
  Writer out;
  out.Put16(0).Put16(1).Put16(1);
  out.Put8(kPictureSize).Put8(kPictureSize).Put8(0).Put8(0).Put16(1).Put16(32);
  out.Put32(pictureBytes).Put16(picture);
  return out.bytes();
}

Resources ResourcesOf(const ResourceLibrary& library) {
  Resources all;
  for (const auto& [id, entries] : library.menus) all[kMenu][id] = MenuBytes(entries);
  if (!library.strings.empty()) all[kString] = StringBlocks(library.strings);
  for (const auto& [id, colour] : library.bitmaps) all[kBitmap][id] = PictureBytes(colour, false);
  std::uint16_t picture = 0;
  for (const auto& [id, colour] : library.icons) {
    const std::string bytes = PictureBytes(colour, true);
    all[kIcon][++picture] = bytes;
    all[kIconGroup][id] = IconGroupBytes(picture, static_cast<std::uint32_t>(bytes.size()));
  }
  return all;
}

constexpr std::uint32_t kDirectoryBytes = 16;
constexpr std::uint32_t kEntryBytes = 8;
constexpr std::uint32_t kDataEntryBytes = 16;

void PutDirectory(Writer& out, std::size_t entries) {
  out.Put32(0).Put32(0).Put16(0).Put16(0).Put16(0).Put16(static_cast<std::uint32_t>(entries));
}

// Three levels of directories (type, number, language), then where the data are, then the data.
std::string SectionBytes(const Resources& all, std::uint16_t language) {
  std::uint32_t count = 0;
  for (const auto& [type, members] : all) count += static_cast<std::uint32_t>(members.size());
  const auto types = static_cast<std::uint32_t>(all.size());
  const std::uint32_t languagesAt =
      kDirectoryBytes + types * (kEntryBytes + kDirectoryBytes) + count * kEntryBytes;
  const std::uint32_t dataEntriesAt = languagesAt + count * (kDirectoryBytes + kEntryBytes);
  std::uint32_t dataAt = dataEntriesAt + count * kDataEntryBytes;

  Writer top, numbers, languages, dataEntries, data;
  PutDirectory(top, types);
  std::uint32_t index = 0;
  const std::uint32_t numbersAt = kDirectoryBytes + types * kEntryBytes;
  for (const auto& [type, members] : all) {
    top.Put32(type).Put32(kHighBit | (numbersAt + numbers.size()));
    PutDirectory(numbers, members.size());
    for (const auto& [id, bytes] : members) {
      numbers.Put32(id).Put32(kHighBit | (languagesAt + index * (kDirectoryBytes + kEntryBytes)));
      PutDirectory(languages, 1);
      languages.Put32(language).Put32(dataEntriesAt + index * kDataEntryBytes);
      const auto size = static_cast<std::uint32_t>(bytes.size());
      dataEntries.Put32(kSectionAddress + dataAt).Put32(size).Put32(0).Put32(0);
      data.PutBytes(bytes).FillTo(RoundUp(data.size(), 8));
      dataAt = dataEntriesAt + count * kDataEntryBytes + data.size();
      ++index;
    }
  }
  return top.bytes() + numbers.bytes() + languages.bytes() + dataEntries.bytes() + data.bytes();
}

// The headers of a library of one section.
std::string HeaderBytes(std::uint32_t sectionBytes) {
  constexpr std::uint32_t kOptionalBytes = 240;
  constexpr std::uint32_t kDirectories = 16;
  constexpr std::uint32_t kResourceDirectory = 2;
  Writer out;
  out.PutBytes("MZ").FillTo(0x3C).Put32(0x40);
  out.PutBytes(std::string("PE\0\0", 4));
  // x64, one section, a library
  out.Put16(0x8664).Put16(1).Put32(0).Put32(0).Put32(0).Put16(kOptionalBytes).Put16(0x2022);
  out.Put16(0x20B).Put16(0).Put32(0).Put32(RoundUp(sectionBytes, 0x200)).Put32(0).Put32(0);
  out.Put32(0).Put64(0x180000000).Put32(0x1000).Put32(0x200);
  out.Put16(6).Put16(0).Put16(0).Put16(0).Put16(6).Put16(0).Put32(0);
  out.Put32(kSectionAddress + RoundUp(sectionBytes, 0x1000)).Put32(kSectionOffset).Put32(0);
  out.Put16(2).Put16(0x100);  // relocated as one likes: there is nothing to relocate
  out.Put64(0x100000).Put64(0x1000).Put64(0x100000).Put64(0x1000).Put32(0).Put32(kDirectories);
  for (std::uint32_t i = 0; i < kDirectories; ++i) {
    const bool isResources = i == kResourceDirectory;
    out.Put32(isResources ? kSectionAddress : 0).Put32(isResources ? sectionBytes : 0);
  }
  out.PutBytes(std::string(".rsrc\0\0\0", 8)).Put32(sectionBytes).Put32(kSectionAddress);
  out.Put32(RoundUp(sectionBytes, 0x200)).Put32(kSectionOffset);
  out.Put32(0).Put32(0).Put32(0).Put32(0x40000040);
  return out.FillTo(kSectionOffset).bytes();
}

}  // namespace

std::string BytesOf(const ResourceLibrary& library) {
  const std::string section = SectionBytes(ResourcesOf(library), library.language);
  const auto size = static_cast<std::uint32_t>(section.size());
  Writer out;
  out.PutBytes(HeaderBytes(size)).PutBytes(section);
  return out.FillTo(kSectionOffset + RoundUp(size, 0x200)).bytes();
}

ResourceLibrary PlainResourceLibrary() {
  ResourceLibrary library;
  library.menus[801] = {
      {u"Tray", 0, {{u"Printer", 900, {}}, {u"Monitoring Preferences...", 901, {}}}}};
  library.strings[1100] = u"Printer Status";
  library.strings[35277] = u"A printer driver is being installed. Try again later.";
  library.icons = {{700, 0x2060C0}, {701, 0xE0A020}, {702, 0x808080}};
  return library;
}

}  // namespace desk
