#include "tests/support/map_fixture.h"

#include "platform/process_wide.h"

namespace vgl {

using namespace platform;

MapBytes::MapBytes(const char16_t* name, std::uint32_t bytes)
    : m_section(Os().sections.CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                 bytes, name)),
      m_bytes(static_cast<unsigned char*>(
          Os().sections.MapViewOfFile(m_section.get(), FILE_MAP_ALL_ACCESS, 0))) {}

MapBytes::~MapBytes() { Os().sections.UnmapViewOfFile(m_bytes); }

std::uint16_t MapBytes::Read16(std::size_t offset) const {
  return static_cast<std::uint16_t>(m_bytes[offset] | m_bytes[offset + 1] << 8);
}

std::uint64_t MapBytes::Read64(std::size_t offset) const {
  std::uint64_t value = 0;
  for (std::size_t i = 8; i-- > 0;) value = value << 8 | m_bytes[offset + i];
  return value;
}

void MapBytes::Write16(std::size_t offset, std::uint16_t value) {
  m_bytes[offset] = static_cast<unsigned char>(value);
  m_bytes[offset + 1] = static_cast<unsigned char>(value >> 8);
}

void MapBytes::Write64(std::size_t offset, std::uint64_t value) {
  for (std::size_t i = 0; i < 8; ++i)
    m_bytes[offset + i] = static_cast<unsigned char>(value >> 8 * i);
}

void MapBytes::WriteName(std::size_t offset, std::u16string_view name) {
  for (std::size_t i = 0; i < name.size(); ++i) Write16(offset + 2 * i, name[i]);
  Write16(offset + 2 * name.size(), 0);
}

std::u16string MapBytes::ReadName(std::size_t offset) const {
  std::u16string name;
  for (std::size_t i = 0; i < 520 && Read16(offset + 2 * i) != 0; ++i)
    name.push_back(Read16(offset + 2 * i));
  return name;
}

namespace {

void AddPrinter(sim::Machine& machine, const std::u16string& printer,
                const std::string& description) {
  const std::u16string driver = u"KAVRO " + printer;
  const std::u16string folder = u"C:\\Drivers\\" + printer;
  machine.files().WriteFile(folder + u"\\A.VIF", "[CommonDrvInfo]\r\nSADat=A.DAT\r\n");
  machine.files().WriteFile(folder + u"\\A.DAT", description);
  machine.spooler().AddDriver(
      {.name = driver, .driverPath = folder + u"\\A.DLL", .dataFile = u"A.VIF"});
  machine.spooler().AddPrinter({.name = printer, .port = u"USB001", .driver = driver});
}

std::string DescriptionOf(const std::string& driver, const std::string& mapName) {
  return "[Install]\r\n"
         "REGPATH = D, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\" +
         driver + "\"\r\nREGENTER = D, \"ModelID\", \"S1\"\r\n" + mapName;
}

}  // namespace

void AddPrintersOfBothMaps(sim::Machine& machine) {
  AddPrinter(
      machine, u"V7 Studio",
      DescriptionOf("KAVRO V7 Studio", "REGENTER = D, \"MapFileName\", \"VglV7MapFile_Ink\"\r\n"));
  AddPrinter(
      machine, u"V5 Studio",
      DescriptionOf("KAVRO V5 Studio", "REGENTER = D, \"MapFileName\", \"VglV5MapFile_Ink\"\r\n"));
  AddPrinter(
      machine, u"Odd Studio",
      DescriptionOf("KAVRO Odd Studio", "REGENTER = D, \"MapFileName\", \"VglV6MapFile_Ink\"\r\n"));
  AddPrinter(machine, u"Plain Studio", DescriptionOf("KAVRO Plain Studio", ""));
}

namespace {

platform::ProcessWide<std::vector<HWND>> g_closedWindows;

LRESULT NoteClosing(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CLOSE) {
    g_closedWindows.get().push_back(window);
    EXPECT_EQ(wParam, 0U);
    EXPECT_EQ(lParam, 0);
  }
  return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

std::vector<HWND>& InstanceMapTest::ClosedWindows() { return g_closedWindows.get(); }

HWND InstanceMapTest::MakeWindow() {
  WindowClass windowClass;
  windowClass.procedure = NoteClosing;
  windowClass.className = u"MapTestWindow";
  Os().windowing.RegisterClassW(windowClass);
  return Os().windowing.CreateWindowExW(0, u"MapTestWindow", u"", WS_OVERLAPPEDWINDOW, HMODULE{});
}

}  // namespace vgl
