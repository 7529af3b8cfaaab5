// The two widths of text in which the registry library can be looked for and spoken to. What is
// done is written once, over the type of a character; here is where the system's functions differ.
#pragma once

#include <string>

#include "Common/kv_open_printer.h"
#include "platform/platform.h"

namespace vgl {

template <class Char>
struct RegLibText;

// In the system's code page.
template <>
struct RegLibText<char> {
  using DriverInfo2 = platform::DriverInfo2A;
  using DriverInfo3 = platform::DriverInfo3A;
  static constexpr const char* kDefaultName = "K_WRDEF1.DLL";

  static bool OpenPrinter(CKvOpenPrinter& open, const char* name, platform::HPRINTER* printer);
  static bool GetDriver(platform::HPRINTER printer, std::uint32_t level, void* buffer,
                        std::uint32_t bytes, std::uint32_t* needed);
  static bool EnumDrivers(std::uint32_t level, void* buffer, std::uint32_t bytes,
                          std::uint32_t* needed, std::uint32_t* count);
  // Whether the names are the same but for their case.
  static bool IsSameName(const char* left, const char* right);
  // The library's file name that a VIF gives; empty when it gives none.
  static std::string ReadLibraryName(const char* vifPath);
  static bool FileExists(const char* path);
  static platform::HMODULE Load(const char* path);
};

template <>
struct RegLibText<char16_t> {
  using DriverInfo2 = platform::DriverInfo2;
  using DriverInfo3 = platform::DriverInfo3;
  static constexpr const char16_t* kDefaultName = u"K_WRDEF1.DLL";

  static bool OpenPrinter(CKvOpenPrinter& open, const char16_t* name, platform::HPRINTER* printer);
  static bool GetDriver(platform::HPRINTER printer, std::uint32_t level, void* buffer,
                        std::uint32_t bytes, std::uint32_t* needed);
  static bool EnumDrivers(std::uint32_t level, void* buffer, std::uint32_t bytes,
                          std::uint32_t* needed, std::uint32_t* count);
  static bool IsSameName(const char16_t* left, const char16_t* right);
  static std::u16string ReadLibraryName(const char16_t* vifPath);
  static bool FileExists(const char16_t* path);
  static platform::HMODULE Load(const char16_t* path);
};

}  // namespace vgl
