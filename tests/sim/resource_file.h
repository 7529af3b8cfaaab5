// The bytes of tests/platform/resources/KVRES.DLL, and of one that was tampered with.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace sim {

inline std::string ResourceFile() {
  std::ifstream file("tests/platform/resources/KVRES.DLL", std::ios::binary);
  EXPECT_TRUE(file) << "the tests are to be run in the root of the tree";
  return {std::istreambuf_iterator<char>(file), {}};
}

// The file with `bytes` at that place.
inline std::string With(std::string file, std::size_t place, std::string_view bytes) {
  EXPECT_LE(place + bytes.size(), file.size());
  return file.replace(place, bytes.size(), bytes);
}

// A little-endian number as the file has it.
inline std::string Bytes(std::uint32_t number, std::size_t count = 4) {
  std::string bytes;
  for (; bytes.size() < count; number >>= 8) bytes += static_cast<char>(number & 0xFF);
  return bytes;
}

// Where `bytes` are in the file, which must be in one place only.
inline std::size_t PlaceOf(const std::string& file, std::string_view bytes) {
  const std::size_t place = file.find(bytes);
  EXPECT_NE(place, std::string::npos);
  EXPECT_EQ(file.rfind(bytes), place);
  return place;
}

}  // namespace sim
