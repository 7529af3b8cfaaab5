#include "desk/whole_set.h"

#include <string_view>

#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "desk/invitation_library.h"
#include "desk/resource_library.h"
#include "desk/started_program.h"
#include "desk/utility_library.h"

namespace desk {

namespace {

constexpr std::string_view kFolder = "C:\\Windows\\system32\\spool\\drivers\\x64\\3";

constexpr const char* kVifLines =
    "[InkChg]\r\nINKCHGEXE=K_S72IC.EXE\r\n"
    "[Download]\r\nUPPILOTEXE=K_NPILOT.EXE\r\n";

constexpr const char* kDriverValues =
    "REGENTER=DRV,\"DepExe\",DRIVERDIR+\"\\K_S72DEP.EXE\"\r\n"
    "REGENTER=DRV,\"DriverUpdateName\",DRIVERDIR+\"\\K_DRVUP.EXE\"\r\n"
    "REGENTER=DRV,\"SMRT_PARLOS\",DRIVERDIR+\"\\K_PARLOS.DLL\"\r\n"
    "REGPATH=MNU,\"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu\"\r\n"
    "REGENTER=MNU,\"Separators\",\"3,5,8\"\r\n";

std::u16string InDriverFolder(std::u16string_view name) {
  return std::u16string(kDriverFolder) + u"\\" + std::u16string(name);
}

// With its separator.
std::u16string_view FolderOf(std::u16string_view path) {
  return path.substr(0, path.rfind(u'\\') + 1);
}

// The text with the driver's folder in place of {}.
std::string WithFolder(std::string_view command) {
  std::string text(command);
  if (const std::size_t at = text.find("{}"); at != std::string::npos) text.replace(at, 2, kFolder);
  return text;
}

void Append(sim::FileTree& files, const std::u16string& path, const std::string& text) {
  files.WriteFile(path, files.ReadFile(path).value() + text);
}

ResourceLibrary LibraryOfWholeSet() {
  ResourceLibrary library = PlainResourceLibrary();
  for (const WholeSetEntry& entry : EntriesOfWholeSet()) {
    library.strings[entry.id] = entry.label;
    // Some have pictures.
    if (entry.id % 2 == 0) library.bitmaps[entry.id] = 0x3080D0;
  }
  return library;
}

void SetNumber(sim::Machine& machine, const std::u16string& printer, std::u16string_view name,
               std::uint32_t number) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8)
    bytes += static_cast<char>(static_cast<std::uint8_t>(number >> shift));
  machine.spooler().SetData(printer, u"PrinterDriverData", name, platform::REG_DWORD, bytes);
}

}  // namespace

const std::vector<WholeSetEntry>& EntriesOfWholeSet() {
  static const std::vector<WholeSetEntry> entries = {
      {920, "{}\\K_S72UT.DLL /U1", u"Nozzle Check"},
      {921, "{}\\K_S72UT.DLL /U11", u"Automatic Cleaning"},
      {925, "{}\\K_S72DEP.EXE /MENU", u"Order Ink"},
      {926, "{}\\ /CISSVALID", u"Change Ink"},
      {930, "%sK_DRVUP.EXE /CHECK", u"Update Driver"},
      {931, "{}\\ /DRVUPDATE", u"Check for Updates"},
      {932, "{}\\ /UPPILOT", u"Set up NetPilot"},
      {935, "{}\\K_S72LM.EXE /LM", u"Language"},
      {936, "{}\\K_S72DEP.EXE /DP /Q", u"Offers"},
      {937, "{}\\K_S72DEP.EXE /ASMRT", u"Promotion"},
      {938, "{}\\K_S72MAN.EXE /HELP", u"Help"},
      {939, "{}\\K_S72MAN.EXE", u"Manual"},
      {950, "{}\\K_S72MAN.EXE|/INDEX /TOP", u"Index"},
  };
  return entries;
}

void MakeDriverSetWhole(sim::Machine& machine) {
  sim::FileTree& files = machine.files();
  std::string menu = kDriverValues;
  for (const WholeSetEntry& entry : EntriesOfWholeSet())
    menu += "REGENTER=MNU,\"" + std::to_string(entry.id) + "\",\"" + WithFolder(entry.command) +
            "\"\r\n";
  Append(files, InDriverFolder(u"KS7200.DAT"), menu);
  Append(files, InDriverFolder(u"KS7200.VIF"), kVifLines);
  std::string profile = files.ReadFile(kProfilePath).value();
  constexpr std::string_view kSection = "[S7200]\r\n";
  profile.insert(profile.find(kSection) + kSection.size(), "UTILITY=K_S72UT.DLL\r\n");
  files.WriteFile(kProfilePath, profile);
  files.WriteFile(kResourceLibraryPath, BytesOf(LibraryOfWholeSet()));
  machine.registry().MakeKey(platform::HKEY_LOCAL_MACHINE,
                             u"Software\\KAVRO\\KAVRO Studio 7200 IO_URL");
  AddUtilityLibrary(machine, InDriverFolder(u"K_S72UT.DLL"));
  AddInvitationLibrary(machine, InDriverFolder(u"K_PARLOS.DLL"));
  for (const char16_t* program : {u"K_S72DEP.EXE", u"K_DRVUP.EXE", u"K_S72IC.EXE", u"K_NPILOT.EXE",
                                  u"K_S72LM.EXE", u"K_S72MAN.EXE"})
    machine.programs().Add(InDriverFolder(program), StartedProgramMain);
  // Invitations name it without a folder.
  machine.programs().Add(std::u16string(FolderOf(kAgentPath)) + u"K_S72DEP.EXE",
                         StartedProgramMain);
}

void SetUpPrinterOfWholeSet(sim::Machine& machine, const std::u16string& printer,
                            std::uint32_t utilityMilliseconds, std::uint32_t invitationPeriod,
                            std::uint32_t invitationLevel) {
  SetNumber(machine, printer, u"UtilityMilliseconds", utilityMilliseconds);
  SetNumber(machine, printer, u"InvitationPeriod", invitationPeriod);
  SetNumber(machine, printer, u"InvitationLevel", invitationLevel);
}

}  // namespace desk
