#include "Common/kv_open_printer.h"

#include <vector>

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kInstallerMutex[] = u"Global\\KavroPrinterInstaller";
constexpr char16_t kOpenMutex[] = u"Global\\KavroOmataseMutex";

bool InstallerHasItsMutex() {
  const HANDLE mutex = Os().objects.OpenMutexW(SYNCHRONIZE, kInstallerMutex);
  if (mutex == HANDLE{}) return false;
  Os().objects.CloseHandle(mutex);
  return true;
}

// Everybody may open the mutex: installer and agents run under different accounts.
HANDLE CreateOpenMutex() {
  SecurityDescriptor descriptor;
  const bool open =
      Os().security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) &&
      Os().security.SetSecurityDescriptorDacl(&descriptor, true, nullptr, false);
  const SecurityAttributes attributes{.descriptor = &descriptor, .inheritHandle = 1};
  return Os().objects.CreateMutexW(open ? &attributes : nullptr, false, kOpenMutex);
}

// Handles are logged as the suite's programs print them, by their low 32 bits.
std::int32_t LogNumber(std::uint64_t handle) { return static_cast<std::int32_t>(handle); }

}  // namespace

std::int32_t CKvOpenPrinter::KvOpenPrinter(const char16_t* name, HPRINTER* outHandle,
                                           const PrinterDefaults* defaults) {
  if (m_nMode == 0) return OpenGuarded(name, outHandle, defaults);
  return Os().spooler.OpenPrinterW(name, outHandle, defaults) ? kOpened : kFailed;
}

// An installer that starts between the test and the mutex isn't seen; that gap is part of the
// protocol.
std::int32_t CKvOpenPrinter::OpenGuarded(const char16_t* name, HPRINTER* outHandle,
                                         const PrinterDefaults* defaults) {
  if (InstallerHasItsMutex()) {
    m_Log.Print(u"OpenPrinter fail [Install Right Now] PrnName=[%s]\n", name);
    return kInstallerActive;
  }
  m_hMutex = CreateOpenMutex();
  if (m_hMutex == HANDLE{}) {
    m_Log.Print(u"OpenPrinter fail [Create Mutex Fail]\n");
    return kNoMutex;
  }
  if (!Os().spooler.OpenPrinterW(name, outHandle, defaults)) {
    m_Log.Print(u"OpenPrinter fail [API fail]\n");
    GiveUpMutex(u"!Close Mutex Fail hMutex=[%d] \n");
    return kFailed;
  }
  m_Log.Print(u"OpenPriner PrnName[%s] hPrn[%ld]\n", name,
              LogNumber(static_cast<std::uint64_t>(*outHandle)));
  return kOpened;
}

void CKvOpenPrinter::GiveUpMutex(std::u16string_view failure) {
  if (Os().objects.CloseHandle(m_hMutex))
    m_hMutex = HANDLE{};
  else
    m_Log.Print(failure, LogNumber(static_cast<std::uint64_t>(m_hMutex)));
}

bool CKvOpenPrinter::KvOpenPrinterBool(const char16_t* name, HPRINTER* outHandle,
                                       const PrinterDefaults* defaults) {
  return KvOpenPrinter(name, outHandle, defaults) == kOpened;
}

bool CKvOpenPrinter::KvOpenPrinterMode(const char16_t* name, HPRINTER* outHandle,
                                       const PrinterDefaults* defaults, std::int32_t mode) {
  m_nMode = mode;
  return KvOpenPrinterBool(name, outHandle, defaults);
}

bool CKvOpenPrinter::KvOpenPrinterA(const char* name, HPRINTER* outHandle) {
  return KvOpenPrinterAResult(name, outHandle) == kOpened;
}

std::int32_t CKvOpenPrinter::KvOpenPrinterAResult(const char* name, HPRINTER* outHandle) {
  constexpr std::int32_t kToTerminator = -1;
  const std::int32_t chars = Os().nls.MultiByteToWideChar(CP_ACP, name, kToTerminator, nullptr, 0);
  std::vector<char16_t> wide(static_cast<std::size_t>(chars) + 1);
  if (chars == 0 ||
      Os().nls.MultiByteToWideChar(CP_ACP, name, kToTerminator, wide.data(), chars) == 0)
    return kNoName;
  return KvOpenPrinter(wide.data(), outHandle, nullptr);
}

std::int32_t CKvOpenPrinter::KvClosePrinter(HPRINTER printer) {
  const bool closed = printer == HPRINTER{} || Os().spooler.ClosePrinter(printer);
  if (m_nMode != 0) return closed ? 1 : 0;
  if (closed && printer != HPRINTER{})
    m_Log.Print(u"ClosePriner hPrinter[%ld]\n", LogNumber(static_cast<std::uint64_t>(printer)));
  if (m_hMutex != HANDLE{}) GiveUpMutex(u"Close Mutex Fail hMutex=[%d] \n");
  return closed ? 1 : 0;
}

bool IsInstallerActive(const char16_t* name) {
  CKvOpenPrinter open;
  HPRINTER printer{};
  const std::int32_t answer = open.KvOpenPrinter(name, &printer, nullptr);
  if (answer == CKvOpenPrinter::kOpened) open.KvClosePrinter(printer);
  return answer == CKvOpenPrinter::kInstallerActive;
}

}  // namespace vgl
