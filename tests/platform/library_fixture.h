// Libraries in the program's folder, for the tests of modules.
#pragma once

#include <string>

#include "tests/platform/platform_test.h"

namespace platform {

// What only a backend can do; sim/library_setup.cpp and win32/library_setup.cpp give it. Each puts
// its library where it belongs, if it isn't there, and gives its whole path.

// KVTEST.DLL: export 3, "Doubled", and export 7 without a name, which triples; both take and give
// an int32_t.
std::u16string TestLibrary();
// K_WRDEF1.DLL, the registry library.
std::u16string RegistryLibrary();
// KVRES.DLL, which holds nothing but resources (tests/platform/resources/KVRES.rc).
std::u16string ResourceLibrary();

class LibraryContract : public PlatformTest {
 protected:
  // Loads what must be there.
  OwnedModule Load(const std::u16string& path) {
    OwnedModule library(modules.LoadLibraryW(path.c_str()));
    EXPECT_TRUE(library) << "error " << LastError();
    return library;
  }

  Modules& modules = os.modules;
};

}  // namespace platform
