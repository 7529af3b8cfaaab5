#include "desk/default_machine.h"

#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/tray_app.h"
#include "desk/printer_library.h"
#include "desk/resource_library.h"
#include "desk/script.h"
#include "desk/usage_log_library.h"
#include "platform/sim/registry_library.h"

namespace desk {

using platform::HKEY_CURRENT_USER;

namespace {

constexpr char kVif[] =
    "[CommonDrvInfo]\r\nSADat=KS7200.DAT\r\nKVRDEF01=K_WRDEF1.DLL\r\n"
    "[User Mode Printer Driver Information]\r\nAppLogModule=K_APLOG.DLL\r\n";

constexpr char kInstallDescription[] =
    "[Install]\r\n"
    "REGPATH=DRV,\"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\"\r\n"
    "REGENTER=DRV,\"ModelID\",\"S7200\"\r\n"
    "REGENTER=DRV,\"InstallPath\",DRIVERDIR\r\n"
    "REGENTER=DRV,\"Profile\",DRIVERDIR+\"\\KS7200.INI\"\r\n"
    "REGENTER=DRV,\"K_QRX\",DRIVERDIR+\"\\K_QD21RX.EXE\"\r\n";

constexpr char kProfile[] =
    "[S7200]\r\nTrayIconEnable=1\r\nTrayIconSelected=0\r\nPrnDll=K_S72PR.DLL\r\nVGL_LOG=1\r\n"
    "[Language]\r\nENU=09,01\r\n"
    "[ENU]\r\nResDll=K_S72EN.DLL\r\n";

std::u16string InDriverFolder(std::u16string_view name) {
  return std::u16string(kDriverFolder) + u"\\" + std::u16string(name);
}

void PutDriverSet(sim::Machine& machine) {
  machine.files().WriteFile(InDriverFolder(u"KS7200.VIF"), kVif);
  machine.files().WriteFile(InDriverFolder(u"KS7200.DAT"), kInstallDescription);
  machine.files().WriteFile(kProfilePath, kProfile);
  machine.files().WriteFile(kResourceLibraryPath, BytesOf(PlainResourceLibrary()));
  machine.files().WriteFile(kRunHelperPath, "MZ");
  sim::AddRegistryLibrary(machine, InDriverFolder(u"K_WRDEF1.DLL"));
  AddPrinterLibrary(machine, InDriverFolder(u"K_S72PR.DLL"));
  AddUsageLogLibrary(machine, InDriverFolder(u"K_APLOG.DLL"));
}

}  // namespace

void SetUpSuite(sim::Machine& machine) {
  machine.files().WriteFile(kAgentPath, "");
  machine.files().MakeFolder(kLogFolder);
  for (const NamedNumber& known : KnownMessages())
    machine.desktop().NameMessage(known.number, vgl::TextFromUtf8(known.name));
  for (const NamedNumber& known : KnownTimers())
    machine.desktop().NameTimer(known.number, vgl::TextFromUtf8(known.name));
}

void SetUpDefaultMachine(sim::Machine& machine) {
  SetUpSuite(machine);
  PutDriverSet(machine);
  machine.spooler().AddDriver({.name = kDriverName,
                               .driverPath = InDriverFolder(u"KS7200.DLL"),
                               .dataFile = InDriverFolder(u"KS7200.VIF")});
  AddPrinterOfDefaultDriver(machine, kPrinterName, kPortName);
  machine.registry().SetString(HKEY_CURRENT_USER, kRecordPath, u"Name", kPrinterName);
  machine.registry().SetDword(HKEY_CURRENT_USER, kRecordPath, u"TrayIconEnable", 1);
  machine.registry().SetDword(HKEY_CURRENT_USER, kRecordPath, u"TrayIconSelected", 0);
}

void AddPrinterOfDefaultDriver(sim::Machine& machine, const std::u16string& name,
                               const std::u16string& port) {
  machine.spooler().AddPrinter({.name = name, .port = port, .driver = kDriverName});
  // The model's id is what its usage log knows a printer by.
  const std::u16string deviceId(kModelId, std::size(kModelId));
  machine.spooler().SetData(name, u"PrinterDriverData", u"DeviceID", platform::REG_SZ,
                            vgl::Utf16LeFromText(deviceId));
}

void EnableTrayLog(sim::Machine& machine) {
  machine.registry().SetDword(HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3", u"K_QTR", 1);
}

sim::Process& StartAgent(sim::Machine& machine, std::u16string commandLine) {
  return machine.StartProcess(kAgentPath, std::move(commandLine), [](const char16_t* text) {
    return static_cast<std::uint32_t>(vgl::TrayAgentMain(text));
  });
}

std::u16string OptionsOfDefaultPrinter() {
  return vgl::WideFormat(u"/P \"%s\" /D \"%s\" /O \"%s\" /M \"%s\"", kPrinterName, kDriverName,
                         kPortName, kModelId);
}

}  // namespace desk
