#include "menu/uty_call.h"

#include <algorithm>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "Common/CVglLog.h"
#include "Common/driver_data_file.h"
#include "Common/fatal_error.h"
#include "Common/kv_open_printer.h"
#include "Common/printer_lookup.h"
#include "Common/text_conversion.h"
#include "Common/tray_log.h"
#include "menu/utility_library_exports.h"
#include "platform/owned.h"
#include "profile/drv_info_reader.h"
#include "profile/field_values.h"
#include "profile/os_identification.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::u16string_view kNumberMarker = u" /U";

// All of them are looked up, but only those with a label are called.
struct UtilityExport {
  std::int32_t number;
  const char* name;
  const char16_t* logLabel = nullptr;
  std::optional<std::int32_t> counter = std::nullopt;  // of the usage log

  bool IsCalled() const { return logLabel != nullptr; }
};
constexpr UtilityExport kExports[] = {
    {1, "UtPrintNozzleTestPatternW", u"pfPrintNozzleW", kCountNozzleTest},
    {2, "UtCleanHeadW", u"pfCleaningW", kCountCleanHead},
    {3, "UtAlignGapW", u"pfAlignGapW", kCountAlignGap},
    {4, "WndInkReplacementW"},
    {5, "UtInkReplacementW"},
    {6, "UtSetupW"},
    {7, "UtAbsInkRepW"},
    {8, "UtSetupfromVglW"},
    {9, "UtAlignCutterW"},
    {10, "UtCleanCutterW"},
    {11, "UtAutoCleanHeadW", u"pfAutoCleanHeadW"},
    {12, "UtSetupAutoCleanHeadW"},
    {13, "WndMaintenanceTankReplacementW"},
};

// Gives a semaphore back at the end of its scope.
class SemaphoreTurn {
 public:
  explicit SemaphoreTurn(HANDLE taken) : m_taken(taken) {}
  ~SemaphoreTurn() { Os().objects.ReleaseSemaphore(m_taken, 1, nullptr); }
  SemaphoreTurn(const SemaphoreTurn&) = delete;
  SemaphoreTurn& operator=(const SemaphoreTurn&) = delete;

 private:
  HANDLE m_taken;
};

// A backslash would part the name's folders.
std::u16string SemaphoreName(const char16_t* printerName) {
  std::u16string name = u"VGL_UtyCall_OBJ_" + std::u16string(OrEmpty(printerName));
  std::replace(name.begin(), name.end(), u'\\', u'/');
  return name;
}

std::int32_t HoldsName(std::u16string_view param, std::u16string_view name) {
  return !name.empty() && param.find(name) != std::u16string_view::npos ? 1 : 0;
}

DriverFiles FilesOf(const char16_t* printerName) {
  CKvOpenPrinter open;
  HPRINTER handle{};
  if (open.KvOpenPrinter(printerName, &handle, nullptr) != CKvOpenPrinter::kOpened) return {};
  DriverFiles files = DriverFilesOf(handle);
  open.KvClosePrinter(handle);
  return files;
}

// A data file without a folder lies beside the driver. Empty when it can't be said where.
std::u16string DataFilePath(const DriverFiles& files) {
  if (files.dataFile.empty() || files.dataFile.find(u'\\') != std::u16string::npos)
    return files.dataFile;
  const std::size_t end = files.driverPath.rfind(u'\\');
  if (end == std::u16string::npos) return {};
  return files.driverPath.substr(0, end + 1) + files.dataFile;
}

std::u16string UtilityModuleOf(const char16_t* driverName, const char16_t* dataFile) {
  if (!IsBeforeVersion5()) return ReadUtilityModule(dataFile, PathText::capacity());
  const std::u16string list = ReadOldUtilityModule(driverName, dataFile, PathText::capacity());
  return list.substr(0, list.find(u",,"));
}

}  // namespace

// The thread would go on with what isn't there any more, where an agent leaves without WM_DESTROY.
// Not by the semaphore: that may be another program's.
CUtyCall::~CUtyCall() {
  if (hThread != HANDLE{}) Os().objects.WaitForSingleObject(hThread, INFINITE);
  if (hSemaphore != HANDLE{}) Os().objects.CloseHandle(hSemaphore);
}

std::int32_t CUtyCall::IsUtyCallMenu(const char16_t* driverName, const char16_t* printerName,
                                     const char16_t* modelId, const char16_t* param) {
  if (IsMissing(driverName) || IsMissing(modelId) || IsMissing(param)) return 0;
  const std::u16string profile =
      CDrvInfoReader().GetString(printerName, DriverKeyPath(driverName).c_str(), u"Profile");
  if (profile.size() >= PathText::capacity()) return 0;
  return HoldsName(param, ReadUtilityName(modelId, profile.c_str()));
}

std::int32_t CUtyCall::IsUtyCallMenu(const char16_t* printerName, const char16_t* param) {
  if (IsMissing(printerName)) return 0;
  const DriverFiles files = FilesOf(printerName);
  const std::u16string path = DataFilePath(files);
  if (path.empty()) return 0;
  return HoldsName(OrEmpty(param), UtilityModuleOf(files.name.c_str(), path.c_str()));
}

void CUtyCall::StartUtyCall(const char16_t* printerName, const char16_t* param) {
  if (hSemaphore == HANDLE{})
    hSemaphore = Os().objects.CreateSemaphoreW(1, 1, SemaphoreName(printerName).c_str());
  if (hSemaphore == HANDLE{}) return;
  if (Os().objects.WaitForSingleObject(hSemaphore, 0) == WAIT_TIMEOUT) return;
  if (!TakeCommand(printerName, param)) {
    Os().objects.ReleaseSemaphore(hSemaphore, 1, nullptr);
    return;
  }
  hThread = Os().process.CreateThread(UtyCallMain, this);
}

bool CUtyCall::TakeCommand(const char16_t* printerName, const char16_t* param) {
  if (!szPrinterName.Assign(OrEmpty(printerName))) return false;
  const std::u16string_view text = OrEmpty(param);
  const std::size_t marker = text.find(kNumberMarker);
  if (marker == std::u16string_view::npos) return false;
  if (!szModulePath.Assign(text.substr(0, marker))) return false;
  nFunction = ParseDecimal(text.substr(marker + kNumberMarker.size()));
  return true;
}

std::uint32_t CUtyCall::UtyCallMain(void* self) {
  try {
    if (!static_cast<CUtyCall*>(self)->CallAndRelease()) TrayLogText(u"Error LoadLibrary");
  } catch (const std::bad_alloc&) {
    FatalError();  // as without memory everywhere
  }
  return 0;
}

// False when there is no such library.
bool CUtyCall::CallAndRelease() {
  const SemaphoreTurn turn(hSemaphore);
  const OwnedModule library(Os().modules.LoadLibraryW(szModulePath.c_str()));
  if (!library) return false;
  CallFunction(library.get());
  return true;
}

void CUtyCall::CallFunction(HMODULE library) {
  const auto known =
      std::find_if(std::begin(kExports), std::end(kExports),
                   [this](const UtilityExport& each) { return each.number == nFunction; });
  const bool isKnown = known != std::end(kExports);
  const auto function =
      isKnown ? reinterpret_cast<UtilityFunction>(Os().modules.GetProcAddress(library, known->name))
              : nullptr;
  if (!isKnown || !known->IsCalled()) {
    TrayLogText(u"default");
    return;
  }
  if (function == nullptr) return;
  TrayLogText(known->logLabel);
  function(szPrinterName.c_str(), szArgument3.c_str(), szArgument1.c_str(), szArgument2.c_str());
  if (known->counter)
    g_VglLog.get().Increment(VGLLOG_TRAYICON, *known->counter, szPrinterName.c_str());
}

std::int32_t CUtyCall::CheckUtyCall(std::int32_t bWait) {
  if (hSemaphore == HANDLE{}) return 1;
  if (bWait == 1) {
    Os().objects.WaitForSingleObject(hSemaphore, INFINITE);
    return 1;
  }
  if (Os().objects.WaitForSingleObject(hSemaphore, 0) == WAIT_TIMEOUT) {
    TrayLogText(u"Utility executing");
    return 0;
  }
  Os().objects.ReleaseSemaphore(hSemaphore, 1, nullptr);
  TrayLogText(u"Utility not executing");
  return 1;
}

}  // namespace vgl
