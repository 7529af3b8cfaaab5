// What the fuzzer throws bytes at. Each target takes any input of any length, and ends the program
// when what came out of it is not among what may come out.
//
// tools/fuzz lets the fuzzer loose on them; the tests run them on the inputs that were kept
// (tests/fuzz/corpus).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace vgl::fuzz {

// A data file of the driver set, through every operation of its reader and the value helpers.
void DatTextFile(const std::uint8_t* data, std::size_t size);
// A SADat file with its install description, asked by way of a printer, a VIF and a driver.
void InstallDescription(const std::uint8_t* data, std::size_t size);
// An option text, as the command line and as a parameter file, held against the passes that define
// it.
void CommandLine(const std::uint8_t* data, std::size_t size);
// The instance map: the first bytes choose map, printer and slots; the rest fills the section.
void InstanceMap(const std::uint8_t* data, std::size_t size);
// A resource library, through the simulated machine's calls on its resources; and a menu's
// template.
void PeResources(const std::uint8_t* data, std::size_t size);

// For the targets: ends the program where `holds` is false.
#define VGL_FUZZ_REQUIRE(holds)                                                \
  do {                                                                         \
    if (!(holds)) {                                                            \
      std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #holds); \
      std::abort();                                                            \
    }                                                                          \
  } while (false)

}  // namespace vgl::fuzz
