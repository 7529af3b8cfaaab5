#include "platform/sim/pe_resources.h"

#include <algorithm>
#include <cstdlib>

#include "platform/sim/byte_reader.h"

namespace sim {

namespace {

constexpr std::size_t kPeHeaderPlace = 0x3C;
constexpr std::size_t kCoffHeaderSize = 24;  // with the signature in front of it
constexpr std::uint16_t kExecutable = 0x0002;
constexpr std::uint16_t kMagicPe32 = 0x10B;
constexpr std::uint16_t kMagicPe32Plus = 0x20B;
constexpr std::size_t kDirectorySize = 8;        // of an entry of the table of directories
constexpr std::uint32_t kResourceDirectory = 2;  // its number there

// A file may lack a part of its last sector; a whole one that is missing makes it no program file.
constexpr std::uint64_t kSector = 512;
std::uint64_t SectorsOf(std::size_t bytes) { return (bytes + kSector - 1) / kSector; }

// An entry of a resource directory points to another directory, or to data.
constexpr std::uint32_t kIsDirectory = 0x80000000;

constexpr std::uint16_t kEnglish = 0x0409;

}  // namespace

std::shared_ptr<const PeFile> PeFile::Read(std::string bytes) {
  std::shared_ptr<PeFile> file(new PeFile(std::move(bytes)));
  return file->ReadHeaders() ? file : nullptr;
}

bool PeFile::ReadHeaders() {
  if (!m_bytes.starts_with("MZ")) return false;
  const std::size_t header = ByteReader(m_bytes, kPeHeaderPlace).Dword();
  ByteReader coff(m_bytes, header);
  if (coff.Dword() != 0x4550) return false;  // "PE"
  coff.Word();                               // processor
  const std::uint16_t sections = coff.Word();
  coff.Skip(12);
  const std::uint16_t optionalSize = coff.Word();
  const std::uint16_t characteristics = coff.Word();
  const std::uint16_t magic = coff.Word();
  if (coff.failed() || (characteristics & kExecutable) == 0) return false;
  if (magic != kMagicPe32 && magic != kMagicPe32Plus) return false;

  const std::size_t optional = header + kCoffHeaderSize;
  const std::size_t directories = magic == kMagicPe32 ? 92 : 108;
  ByteReader table(m_bytes, optional + directories);
  const std::uint32_t count = table.Dword();
  table.Skip(kDirectorySize * kResourceDirectory);
  const std::size_t tableEnd = directories + 4 + kDirectorySize * (kResourceDirectory + 1);
  if (count > kResourceDirectory && optionalSize >= tableEnd) m_resources = table.Dword();

  ByteReader reader(m_bytes, optional + optionalSize);
  for (std::uint16_t i = 0; i < sections; ++i) {
    reader.Skip(12);  // name and size in memory
    Section section{};
    section.address = reader.Dword();
    section.size = reader.Dword();
    section.offset = reader.Dword();
    reader.Skip(16);
    const std::uint64_t end = std::uint64_t{section.offset} + section.size;
    if (reader.failed() || end > SectorsOf(m_bytes.size()) * kSector) return false;
    m_sections.push_back(section);
  }
  return !reader.failed();
}

std::string_view PeFile::From(std::uint32_t address) const {
  for (const Section& section : m_sections) {
    if (address < section.address || address - section.address >= section.size) continue;
    const std::uint64_t place = std::uint64_t{section.offset} + (address - section.address);
    if (place >= m_bytes.size()) return {};
    return std::string_view(m_bytes).substr(place, section.size - (address - section.address));
  }
  return {};
}

namespace {

// Calls `visit` with number and place of each entry of the directory at `place` that has a number,
// not a name.
template <class Visit>
void ForEachEntry(std::string_view resources, std::uint32_t place, const Visit& visit) {
  ByteReader reader(resources, place);
  reader.Skip(12);
  const std::uint16_t named = reader.Word();
  const std::uint16_t numbered = reader.Word();
  reader.Skip(std::size_t{8} * named);
  for (std::uint16_t i = 0; i < numbered; ++i) {
    const std::uint32_t number = reader.Dword();
    const std::uint32_t target = reader.Dword();
    if (reader.failed()) return;
    visit(number, target);
  }
}

// Where the directory below that entry is; nothing when there is none.
std::optional<std::uint32_t> FindBelow(std::string_view resources, std::uint32_t place,
                                       std::uint32_t wanted) {
  std::optional<std::uint32_t> found;
  ForEachEntry(resources, place, [&](std::uint32_t number, std::uint32_t target) {
    if (found || number != wanted || (target & kIsDirectory) == 0) return;
    found = target & ~kIsDirectory;
  });
  return found;
}

// How far a language is from what is wanted.
int Distance(std::uint32_t candidate, std::uint16_t language) {
  if (candidate == 0) return 0;
  if (candidate == language) return 1;
  if (candidate == (language & 0x3FFu)) return 2;
  return candidate == kEnglish ? 3 : 4;
}

}  // namespace

std::string_view FindResource(const PeFile& file, ResourceType type, std::uint16_t id,
                              std::uint16_t language) {
  const std::string_view resources = file.resources();
  const auto ofType = FindBelow(resources, 0, static_cast<std::uint32_t>(type));
  const auto languages = ofType ? FindBelow(resources, *ofType, id) : std::nullopt;
  if (!languages) return {};

  std::optional<std::uint32_t> entry;
  int nearest = 5;
  ForEachEntry(resources, *languages, [&](std::uint32_t candidate, std::uint32_t target) {
    const int distance = Distance(candidate, language);
    if (distance >= nearest || (target & kIsDirectory) != 0) return;
    nearest = distance;
    entry = target;
  });
  if (!entry) return {};

  ByteReader reader(resources, *entry);
  const std::uint32_t address = reader.Dword();
  const std::uint32_t size = reader.Dword();
  if (reader.failed()) return {};
  const std::string_view data = file.From(address);
  return size <= data.size() ? data.substr(0, size) : std::string_view{};
}

std::u16string FindString(const PeFile& file, std::uint16_t id, std::uint16_t language) {
  // A table holds the sixteen texts whose numbers differ in the last four bits.
  const auto table = static_cast<std::uint16_t>(id / 16 + 1);
  ByteReader reader(FindResource(file, ResourceType::kStringTable, table, language));
  for (int before = id % 16; before > 0; --before) reader.Skip(std::size_t{2} * reader.Word());
  const std::uint16_t length = reader.Word();
  return reader.Text(length);
}

namespace {

// --- Pictures

// The two parts of an icon stand in one bitmap that is twice as high, the upper one a mask.
enum class BitmapUse { kBitmap, kIcon };

struct BitmapHeader {
  std::uint32_t size = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;  // negative: from top to bottom
  std::uint16_t bits = 0;
  std::uint32_t compression = 0;
  std::uint32_t imageSize = 0;
  std::uint32_t colors = 0;
};

constexpr std::uint32_t kCoreHeaderSize = 12;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kBitFields = 3;
// Windows' drawing has no larger coordinates.
constexpr std::int64_t kMostPixelsASide = 0x7FFFFFF;

BitmapHeader ReadBitmapHeader(ByteReader& reader) {
  BitmapHeader header;
  header.size = reader.Dword();
  const bool isCore = header.size == kCoreHeaderSize;
  header.width = isCore ? reader.Word() : static_cast<std::int32_t>(reader.Dword());
  header.height = isCore ? reader.Word() : static_cast<std::int32_t>(reader.Dword());
  reader.Word();  // planes
  header.bits = reader.Word();
  if (isCore) return header;
  header.compression = reader.Dword();
  header.imageSize = reader.Dword();
  reader.Skip(8);
  header.colors = reader.Dword();
  return header;
}

bool IsKnownDepth(std::uint16_t bits) {
  return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::uint64_t RowBytes(std::int64_t width, std::uint16_t bits) {
  return (static_cast<std::uint64_t>(width) * bits + 31) / 32 * 4;
}

// What stands between header and rows.
std::uint64_t PaletteBytes(const BitmapHeader& header) {
  const bool hasPalette = header.bits <= 8;
  const std::uint64_t most = hasPalette ? std::uint64_t{1} << header.bits : 0;
  if (header.size == kCoreHeaderSize) return 3 * most;
  const std::uint64_t colors = header.colors != 0 ? header.colors : most;
  const bool hasMasks = header.compression == kBitFields && header.size == kInfoHeaderSize;
  return 4 * colors + (hasMasks ? 12 : 0);
}

std::optional<Picture> ReadBitmap(std::string_view bytes, BitmapUse use) {
  ByteReader reader(bytes);
  const BitmapHeader header = ReadBitmapHeader(reader);
  const bool isHeader = header.size == kCoreHeaderSize || header.size >= kInfoHeaderSize;
  if (reader.failed() || !isHeader || !IsKnownDepth(header.bits)) return std::nullopt;
  const std::int64_t rows = std::abs(header.height) / (use == BitmapUse::kIcon ? 2 : 1);
  if (header.width <= 0 || rows == 0) return std::nullopt;
  if (header.width > kMostPixelsASide || rows > kMostPixelsASide) return std::nullopt;

  std::uint64_t image = header.imageSize;
  if (header.compression == kUncompressed || header.compression == kBitFields) {
    image = RowBytes(header.width, header.bits) * static_cast<std::uint64_t>(rows);
  }
  if (use == BitmapUse::kIcon)
    image += RowBytes(header.width, 1) * static_cast<std::uint64_t>(rows);
  if (header.size + PaletteBytes(header) + image > bytes.size()) return std::nullopt;
  return Picture{.width = static_cast<std::uint32_t>(header.width),
                 .height = static_cast<std::uint32_t>(rows),
                 .bitsPerPixel = header.bits,
                 .bytes = std::string(bytes)};
}

constexpr std::string_view kPngStart("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);

std::uint32_t BigEndian(std::string_view bytes) {
  std::uint32_t number = 0;
  for (const char byte : bytes) number = number << 8 | static_cast<std::uint8_t>(byte);
  return number;
}

std::optional<Picture> ReadPng(std::string_view bytes) {
  if (bytes.size() < kPngStart.size() + 13) return std::nullopt;
  const std::string_view header = bytes.substr(kPngStart.size(), 13);
  constexpr std::uint8_t kChannels[] = {1, 0, 3, 1, 2, 0, 4};  // by the type of colours
  const auto colorType = static_cast<std::uint8_t>(header[9]);
  if (colorType >= std::size(kChannels)) return std::nullopt;
  Picture picture{.width = BigEndian(header.substr(0, 4)),
                  .height = BigEndian(header.substr(4, 4)),
                  .bitsPerPixel = static_cast<std::uint16_t>(static_cast<std::uint8_t>(header[8]) *
                                                             kChannels[colorType]),
                  .isPng = true,
                  .bytes = std::string(bytes)};
  if (picture.width == 0 || picture.height == 0 || picture.bitsPerPixel == 0) return std::nullopt;
  return picture;
}

struct IconEntry {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint16_t bits = 0;
  std::uint16_t id = 0;
};

// What a group tells of one of its pictures.
IconEntry ReadIconEntry(ByteReader& reader) {
  IconEntry entry;
  const std::uint8_t width = reader.Byte();
  const std::uint8_t height = reader.Byte();
  entry.width = width == 0 ? 256 : width;
  entry.height = height == 0 ? 256 : height;
  reader.Skip(4);  // colours, planes
  entry.bits = reader.Word();
  reader.Skip(4);  // bytes
  entry.id = reader.Word();
  return entry;
}

std::uint32_t Difference(std::uint32_t one, std::uint32_t other) {
  return one > other ? one - other : other - one;
}

}  // namespace

std::optional<Picture> FindBitmap(const PeFile& file, std::uint16_t id, std::uint16_t language) {
  return ReadBitmap(FindResource(file, ResourceType::kBitmap, id, language), BitmapUse::kBitmap);
}

std::optional<Picture> FindIcon(const PeFile& file, std::uint16_t id, std::uint32_t width,
                                std::uint32_t height, std::uint16_t language) {
  ByteReader reader(FindResource(file, ResourceType::kIconGroup, id, language));
  reader.Skip(4);
  const std::uint16_t count = reader.Word();
  std::optional<IconEntry> best;
  std::uint64_t bestDistance = 0;
  for (std::uint16_t i = 0; i < count; ++i) {
    const IconEntry entry = ReadIconEntry(reader);
    if (reader.failed()) break;
    const std::uint64_t distance =
        std::uint64_t{Difference(entry.width, width)} + Difference(entry.height, height);
    if (best &&
        (distance > bestDistance || (distance == bestDistance && entry.bits <= best->bits))) {
      continue;
    }
    best = entry;
    bestDistance = distance;
  }
  if (!best) return std::nullopt;
  const std::string_view bytes = FindResource(file, ResourceType::kIcon, best->id, language);
  return bytes.starts_with(kPngStart) ? ReadPng(bytes) : ReadBitmap(bytes, BitmapUse::kIcon);
}

}  // namespace sim
