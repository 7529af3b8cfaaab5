// Libraries that are built beside the program (tests/windows/stubs).
#include "tests/platform/library_fixture.h"

namespace platform {
namespace {

std::u16string BesideTheProgram(std::u16string_view name) {
  char16_t program[MAX_PATH] = {};
  Os().modules.GetModuleFileNameW(HMODULE{}, program, MAX_PATH);
  const std::u16string path = program;
  return path.substr(0, path.rfind(u'\\') + 1) + std::u16string(name);
}

}  // namespace

std::u16string TestLibrary() { return BesideTheProgram(u"KVTEST.DLL"); }
std::u16string RegistryLibrary() { return BesideTheProgram(u"K_WRDEF1.DLL"); }
std::u16string ResourceLibrary() { return BesideTheProgram(u"KVRES.DLL"); }

}  // namespace platform
