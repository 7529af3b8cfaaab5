#include "profile/lmw.h"

#include "Common/driver_data_file.h"
#include "Common/path_lookup.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "profile/operation_log.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::int32_t kNotCalled = -1;

template <class Function>
bool Bind(HMODULE library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(Os().modules.GetProcAddress(library, name));
  return function != nullptr;
}

}  // namespace

CLmw::CLmw(const char16_t* printer, const char16_t* driver, const char16_t* modelId)
    : m_csPrinterName(OrEmpty(printer)),
      m_csDriverName(OrEmpty(driver)),
      m_csModelId(OrEmpty(modelId)) {
  LogOperation(u"CLmw::CLmw", [this] {
    OpenPrinter(m_csPrinterName.c_str());
    m_csVifName = GetVifName(m_csPrinterName.c_str());
    const bool ready =
        !m_csVifName.empty() && FindLibrary() && BindLibrary() && InitializeInEitherMode();
    m_fInitialized = ready ? 1 : 0;
  });
}

CLmw::~CLmw() {
  LMWUnInitialize();
  m_hModule.Reset();
  m_PrinterGuard.KvClosePrinter(m_hPrinter);
}

void CLmw::OpenPrinter(const char16_t* printer) {
  m_PrinterGuard.KvOpenPrinter(printer, &m_hPrinter, nullptr);
}

std::u16string CLmw::GetVifName(const char16_t* printer) {
  return LogOperation(u"CLmw::GetVifName", [&] {
    if (m_hPrinter == HPRINTER{}) OpenPrinter(OrEmpty(printer));
    return DataFileOfDriver(m_hPrinter);
  });
}

std::u16string CLmw::GetVifDriverDataStr(const char16_t* section, const char16_t* key,
                                         const char16_t* vifPath) const {
  return LogOperation(u"CLmw::GetVifDriverDataStr", [&] {
    return ReadVifKey({section, key, PathText::capacity()}, vifPath);
  });
}

// A set whose folder isn't there leaves the library's bare name.
bool CLmw::FindLibrary() {
  const std::u16string name =
      GetVifDriverDataStr(kVifLmwLibrary.section, kVifLmwLibrary.key, m_csVifName.c_str());
  if (name.empty()) return false;
  PathText folder;
  GetProcPath(&folder, m_csDriverName.c_str(), m_csModelId.c_str(), m_csPrinterName.c_str());
  m_csLibraryPath = WideFormat(u"%s%s", folder, name);
  return FileExists(m_csLibraryPath.c_str());
}

bool CLmw::BindLibrary() {
  *m_hModule.Out() = Os().modules.LoadLibraryW(m_csLibraryPath.c_str());
  return m_hModule && Bind(m_hModule.get(), kLMWInitialize, m_pInitialize) &&
         Bind(m_hModule.get(), kLMWUnInitialize, m_pUnInitialize) &&
         Bind(m_hModule.get(), kLMWGetLibraryPath, m_pGetLibraryPath) &&
         Bind(m_hModule.get(), kLMWGetInformation, m_pGetInformation);
}

bool CLmw::InitializeInEitherMode() {
  return LMWInitialize(kLmwModePrinter) == kLmwSuccess ||
         LMWInitialize(kLmwModeFile) == kLmwSuccess;
}

std::int32_t CLmw::LMWInitialize(std::uint32_t mode) {
  return LogOperation(u"CLmw::LMWInitialize", [&] {
    const LMWParamFile file{.driverName = m_csDriverName.c_str(),
                            .vifName = m_csVifName.c_str(),
                            .mark = kLmwParamMark,
                            .unused = {}};
    const LMWParamPrinter printer{.driverName = m_csDriverName.c_str(),
                                  .vifName = m_csVifName.c_str(),
                                  .mark = kLmwParamMark,
                                  .printerName = m_csPrinterName.c_str(),
                                  .printer = m_hPrinter};
    const void* block = nullptr;
    if (mode == kLmwModeFile) block = &file;
    if (mode == kLmwModePrinter && m_hPrinter != HPRINTER{}) block = &printer;
    if (m_pInitialize == nullptr || block == nullptr) return kNotCalled;
    // What a refusal leaves there is no context.
    std::uint64_t context = 0;
    const std::int32_t result = m_pInitialize(mode, block, &context);
    if (result == kLmwSuccess) m_hContext = context;
    return result;
  });
}

std::int32_t CLmw::LMWUnInitialize() {
  return LogOperation(u"CLmw::LMWUnInitialize", [this] {
    if (m_pUnInitialize == nullptr || m_hContext == 0) return kNotCalled;
    const std::int32_t result = m_pUnInitialize(m_hContext);
    m_hContext = 0;
    return result;
  });
}

std::int32_t CLmw::LMWGetLibraryPath(const char16_t* key, char16_t* path, std::uint32_t* chars) {
  return LogOperation(u"CLmw::LMWGetLibraryPath", [&] {
    if (m_pGetLibraryPath == nullptr || m_hContext == 0 || chars == nullptr) return kNotCalled;
    return m_pGetLibraryPath(m_hContext, u"CommonDrvInfo", key, path, chars);
  });
}

std::int32_t CLmw::LMWGetInformation(std::uint32_t code, const void* input, std::uint32_t inputSize,
                                     void* out, std::uint32_t* size) {
  return LogOperation(u"CLmw::LMWGetInformation", [&] {
    if (m_pGetInformation == nullptr || m_hContext == 0 || size == nullptr) return kNotCalled;
    return m_pGetInformation(m_hContext, code, input, inputSize, out, size);
  });
}

}  // namespace vgl
