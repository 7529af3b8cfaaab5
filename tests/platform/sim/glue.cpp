// The contract tests on the simulated machine: each on a new one.
#include <memory>
#include <utility>

#include "platform/sim/machine.h"
#include "tests/platform/platform_test.h"

namespace platform {

struct TestMachine::Inside {
  sim::Machine machine;
  sim::Inside inside{machine};
};

TestMachine::TestMachine() : m_inside(std::make_unique<Inside>()) {}

TestMachine::~TestMachine() {
  for (const std::u16string& held : m_inside->inside.process().Ledger()) {
    ADD_FAILURE() << "the test has not given back: " << testing::PrintToString(held);
  }
}

Backend TestMachine::backend() const { return Backend::kSimulation; }
int TestMachine::wineVersion() const { return 0; }

void TestMachine::MakeFolder(const std::u16string& path) {
  m_inside->machine.files().MakeFolder(path);
}

void TestMachine::RemoveFolder(const std::u16string& path) {
  m_inside->machine.files().Remove(path);
}

std::function<void()> TestMachine::StartThread(std::function<void()> body) {
  auto ended = std::make_shared<bool>(false);
  m_inside->machine.StartThread(m_inside->inside.process(), [body = std::move(body), ended] {
    body();
    *ended = true;
  });
  return [ended] {
    while (!*ended) Os().process.Sleep(1);
  };
}

}  // namespace platform
