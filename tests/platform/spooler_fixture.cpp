#include "tests/platform/spooler_fixture.h"

#include <algorithm>

namespace platform {
namespace {

constexpr std::uint64_t kUntouched = 0xA5A5A5A5A5A5A5A5;

}  // namespace

void SpoolerContract::SetUp() {
  // Runs on the simulation and on Wine, whose spooler reads its registry records at each call.
  // Windows' own reads them when it starts: there these tests would need real drivers, installed on
  // the machine that runs them, and say so instead of failing for want of them.
  if (machine.backend() == Backend::kWindows)
    GTEST_SKIP() << "needs a spooler that reads its registry records at each call";
}

SpoolerContract::~SpoolerContract() {
  for (const HPRINTER printer : m_open) spooler.ClosePrinter(printer);
  for (const std::u16string& printer : m_printers) UninstallPrinter(printer);
  for (const std::u16string& driver : m_drivers) UninstallDriver(driver);
}

void SpoolerContract::AddDriver(const TestDriver& driver) {
  m_drivers.insert(driver.name);
  InstallDriver(driver);
}

void SpoolerContract::AddPrinter(const TestPrinter& printer) {
  m_printers.insert(printer.name);
  InstallPrinter(printer);
}

HPRINTER SpoolerContract::Open(const char16_t* name) {
  HPRINTER printer{};
  EXPECT_TRUE(spooler.OpenPrinterW(name, &printer, nullptr)) << "error " << LastError();
  if (printer != HPRINTER{}) m_open.push_back(printer);
  return printer;
}

std::vector<std::uint64_t> SpoolerContract::Filled(const Ask& ask) {
  std::vector<std::uint64_t> buffer(1024);
  std::uint32_t needed = 0;
  if (!ask(buffer.data(), static_cast<std::uint32_t>(buffer.size() * 8), &needed)) {
    ADD_FAILURE() << "error " << LastError();
    return {};
  }
  return buffer;
}

void SpoolerContract::ExpectSizesAreTold(const Ask& ask, std::size_t atLeast) {
  std::uint32_t needed = 0;
  EXPECT_FALSE(ask(nullptr, 0, &needed));
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_GE(needed, atLeast);
  const std::uint32_t told = needed;

  std::vector<std::uint64_t> buffer(told / 8 + 2, kUntouched);
  needed = 0;
  EXPECT_FALSE(ask(buffer.data(), told - 1, &needed));
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(needed, told);

  std::fill(buffer.begin(), buffer.end(), kUntouched);
  needed = 0;
  EXPECT_TRUE(ask(buffer.data(), told, &needed));
  EXPECT_EQ(needed, told);
  EXPECT_EQ(buffer.back(), kUntouched) << "written past the end";
}

std::optional<std::u16string> TextOf(const char16_t* field) {
  if (field == nullptr) return std::nullopt;
  return std::u16string(field);
}

std::optional<std::string> TextOf(const char* field) {
  if (field == nullptr) return std::nullopt;
  return std::string(field);
}

}  // namespace platform
