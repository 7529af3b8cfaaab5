// The resources in the bytes of a program file (PE32 or PE32+, of any processor), as resource
// compilers and linkers make them. Nothing outside the bytes is ever read, whatever stands in them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// Types of resources; the numbers are Windows'.
enum class ResourceType : std::uint16_t {
  kBitmap = 2,
  kIcon = 3,
  kMenu = 4,
  kStringTable = 6,
  kIconGroup = 14,
};

// The sections of a program file, where it is to be found what an address in the loaded program
// holds.
class PeFile {
 public:
  // Null when the bytes are no program file, or not a whole one.
  static std::shared_ptr<const PeFile> Read(std::string bytes);

  // What the file has for the addresses from `address` on, to the end of their section; empty when
  // no section has them.
  std::string_view From(std::uint32_t address) const;
  // The directory of resources; empty when there is none.
  std::string_view resources() const { return From(m_resources); }

 private:
  struct Section {
    std::uint32_t address;
    std::uint32_t offset;
    std::uint32_t size;
  };

  explicit PeFile(std::string bytes) : m_bytes(std::move(bytes)) {}
  bool ReadHeaders();

  std::string m_bytes;
  std::vector<Section> m_sections;
  std::uint32_t m_resources = 0;
};

// The bytes of one resource: the neutral one of its languages, else the one of `language`, of its
// main language, English, or the first. Empty when there is none.
std::string_view FindResource(const PeFile& file, ResourceType type, std::uint16_t id,
                              std::uint16_t language);

// Text `id` of the string tables; empty when there is none.
std::u16string FindString(const PeFile& file, std::uint16_t id, std::uint16_t language);

// A picture as the resource has it: a bitmap without file header (an icon's has the rows of its
// mask behind it), or a PNG file.
struct Picture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint16_t bitsPerPixel = 0;
  bool isPng = false;
  std::string bytes;
};

std::optional<Picture> FindBitmap(const PeFile& file, std::uint16_t id, std::uint16_t language);
// Of the pictures of icon group `id` the one whose size is nearest, and of those of one size the
// one with the most colours. Nothing when there is no such group or that picture is malformed.
std::optional<Picture> FindIcon(const PeFile& file, std::uint16_t id, std::uint32_t width,
                                std::uint32_t height, std::uint16_t language);

}  // namespace sim
