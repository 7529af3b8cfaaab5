#include "tests/support/vgl_log_fixture.h"

#include <algorithm>

#include "Common/nest_log.h"

namespace vgl {

namespace {

constexpr char16_t kNestLogFile[] = u"C:\\ProgramData\\KAVRO\\VGL3\\VGL4.LOG";

}  // namespace

VglLogTest::VglLogTest() {
  SetDriver(u"C:\\Set\\sample.dll", kVif);
  WriteVif(
      "[User Mode Printer Driver Information]\nAppLogModule=K_APLOG.DLL\n"
      "[CommonDrvInfo]\nSADat=sample.sad\n");
  Describe(
      "REGPATH = DRV, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\Sample\"\n"
      "REGENTER = DRV, \"InstallPath\", \"C:\\Set\"\n"
      "REGENTER = DRV, \"Profile\", \"C:\\Set\\MODEL.INI\"\n");
  WriteProfile("VGL_LOG=1\n");
  desk::AddUsageLogLibrary(machine, kLogLibrary);
  desk::AddPrinterLibrary(machine, kPrinterLibrary);
  PrinterLibrary().serial = "K12";
  SetDeviceId(u"M1");
}

void VglLogTest::WriteProfile(std::string_view lines) {
  machine.files().WriteFile(u"C:\\Set\\MODEL.INI", "[M1]\nPrnDll=KVPRN.DLL\n" + std::string(lines));
}

void VglLogTest::SetDeviceId(std::u16string_view id) {
  constexpr std::uint32_t kText = 1;
  std::string bytes;
  for (const char16_t character : std::u16string(id) + u'\0') {
    bytes += static_cast<char>(character & 0xFF);
    bytes += static_cast<char>(character >> 8);
  }
  machine.spooler().SetData(kPrinter, u"PrinterDriverData", u"DeviceID", kText, bytes);
}

std::vector<std::string> VglLogTest::CalledExports() {
  std::vector<std::string> names;
  for (const desk::UsageLogCall& call : LogCalls().calls) names.push_back(call.name);
  return names;
}

desk::UsageLog VglLogTest::LogOf(std::u16string version, std::vector<std::uint32_t> first,
                                 std::size_t count) {
  first.resize(count);
  return {.deviceId = u"M1", .version = std::move(version), .counters = std::move(first)};
}

std::optional<desk::UsageLog> VglLogTest::LogFile(const char16_t* path) {
  const std::optional<std::string> bytes = machine.files().ReadFile(path);
  return bytes ? desk::ParseUsageLog(*bytes) : std::nullopt;
}

std::vector<std::uint32_t> VglLogTest::StoredCounters() {
  const std::optional<desk::UsageLog> stored = LogFile();
  return stored ? stored->counters : std::vector<std::uint32_t>();
}

void VglLogTest::SwitchNestLogOn() {
  machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
  SetNestLogEnabled(1);
}

std::vector<std::string> VglLogTest::NestLines() {
  const std::string bytes = machine.files().ReadFile(kNestLogFile).value_or("");
  machine.files().Remove(kNestLogFile);
  std::string text;  // the log's texts are in ASCII here
  for (std::size_t i = 2; i < bytes.size(); i += 2) text += bytes[i];
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    std::string line = text.substr(begin, end - begin);
    begin = end + 1;
    // "1000;2000;   10:00.000; "
    constexpr std::size_t kHeader = 24;
    if (line.size() < kHeader || line[4] != ';' || line[9] != ';') continue;
    line.erase(0, kHeader);
    const std::size_t start = line.find_first_not_of(' ');
    if (start != std::string::npos && line.substr(start) != "---") lines.push_back(line);
  }
  return lines;
}

bool VglLogTest::HasLogged(std::string_view text) {
  const std::vector<std::string> lines = NestLines();
  return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.ends_with(text) &&
           line.find_first_not_of(' ') == line.size() - text.size() + text.find_first_not_of(' ');
  });
}

}  // namespace vgl
