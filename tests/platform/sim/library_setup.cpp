// Libraries of the simulated machine.
#include <fstream>
#include <iterator>
#include <string>

#include "platform/sim/machine.h"
#include "platform/sim/registry_library.h"
#include "tests/platform/library_fixture.h"

namespace platform {
namespace {

std::int32_t Doubled(std::int32_t number) { return 2 * number; }
std::int32_t Tripled(std::int32_t number) { return 3 * number; }

std::u16string InProgramFolder(std::u16string_view name) {
  const std::u16string& program = sim::RunningProcess().imagePath();
  return program.substr(0, program.rfind(u'\\') + 1) + std::u16string(name);
}

}  // namespace

std::u16string TestLibrary() {
  std::u16string path = InProgramFolder(u"KVTEST.DLL");
  sim::Libraries& libraries = sim::RunningProcess().machine().libraries();
  if (libraries.Find(path) == nullptr) {
    sim::Library& library = libraries.Add(path);
    library.Export<&Doubled>(3, "Doubled");
    library.Export<&Tripled>(7, nullptr);
  }
  return path;
}

std::u16string RegistryLibrary() {
  std::u16string path = InProgramFolder(u"K_WRDEF1.DLL");
  sim::Machine& machine = sim::RunningProcess().machine();
  if (machine.libraries().Find(path) == nullptr) sim::AddRegistryLibrary(machine, path);
  return path;
}

std::u16string ResourceLibrary() {
  std::u16string path = InProgramFolder(u"KVRES.DLL");
  sim::FileTree& files = sim::RunningProcess().machine().files();
  if (!files.Exists(path)) {
    std::ifstream file("tests/platform/resources/KVRES.DLL", std::ios::binary);
    EXPECT_TRUE(file) << "the tests are to be run in the root of the tree";
    files.WriteFile(path, std::string(std::istreambuf_iterator<char>(file), {}));
  }
  return path;
}

}  // namespace platform
