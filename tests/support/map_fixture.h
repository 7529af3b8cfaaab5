// The instance map as another program of the suite sees it: bytes at offsets that are written down
// here anew, so that a test doesn't ask the code under test where things are.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace vgl {

// A whole view of a map, held open as long as it lives. Made inside a simulated process.
class MapBytes {
 public:
  // Makes the section, or opens the one that is there.
  MapBytes(const char16_t* name, std::uint32_t bytes);
  ~MapBytes();
  MapBytes(const MapBytes&) = delete;
  MapBytes& operator=(const MapBytes&) = delete;

  std::string Read(std::size_t offset, std::size_t bytes) const {
    return {reinterpret_cast<const char*>(m_bytes) + offset, bytes};
  }
  void Write(std::size_t offset, std::string_view bytes) {
    std::memcpy(m_bytes + offset, bytes.data(), bytes.size());
  }
  std::uint16_t Read16(std::size_t offset) const;
  std::uint64_t Read64(std::size_t offset) const;
  void Write16(std::size_t offset, std::uint16_t value);
  void Write64(std::size_t offset, std::uint64_t value);
  // With its terminator.
  void WriteName(std::size_t offset, std::u16string_view name);
  // Up to its terminator, of at most 520 characters.
  std::u16string ReadName(std::size_t offset) const;

 private:
  platform::OwnedObject m_section;
  unsigned char* m_bytes;
};

struct V5Map : MapBytes {
  V5Map() : MapBytes(u"VglV5MapFile_Ink", 533000) {}
  static std::size_t Slot(std::size_t index) { return index * 1066; }
};

struct V7Map : MapBytes {
  V7Map() : MapBytes(u"VglV7MapFile_Ink", 547000) {}
  static std::size_t Slot(std::size_t index) { return index * 1094; }
};

// Offsets in a slot.
inline constexpr std::size_t kReservedAt = 1040;
inline constexpr std::size_t kSel12At = 1042;
inline constexpr std::size_t kSel0At = 1050;
inline constexpr std::size_t kSel3At = 1058;
inline constexpr std::size_t kSel5At = 1066;

inline constexpr std::uint64_t kClaimed = 0xFFFFFFFFFFFFFFFF;

// Puts printers on the machine: "V7 Studio" is in the V7 map by its driver's install description,
// "V5 Studio" names V5's, "Odd Studio" a map that nobody knows, "Plain Studio" names none.
void AddPrintersOfBothMaps(sim::Machine& machine);

// A process with a map open, in which the code under test is called.
class InstanceMapTest : public testing::Test {
 protected:
  InstanceMapTest() { AddPrintersOfBothMaps(machine); }
  // A window of this process, which notes when it is closed.
  platform::HWND MakeWindow();
  // Those that were closed, in order.
  static std::vector<platform::HWND>& ClosedWindows();

  sim::Machine machine;
  sim::Inside inside{machine};
};

}  // namespace vgl
