// The way to a printer's language manager (profile/lmw_exports.h): found by its driver's VIF,
// loaded, and spoken to in one context.
#pragma once

#include <cstdint>
#include <string>

#include "Common/kv_open_printer.h"
#include "platform/owned.h"
#include "profile/lmw_exports.h"

namespace vgl {

// A stack object for as long as answers are needed, of one thread. Each has the printer open, a
// load of the library and a context of its own, and gives them back at its end.
//
// No failure is told but by m_fInitialized. The tray log has two lines for each operation, as
// "CLmw::GetVifName Start" and "CLmw::GetVifName End".
class CLmw {
 public:
  // Opens the printer, finds the driver's VIF, and in it the library's name (LMWModule), which is
  // in the driver's folder; loads it and begins a context, for the printer (mode 2) or, where the
  // library doesn't take that, for the driver (mode 1). The first of these that fails is the last
  // one. Texts may be null, which counts as empty.
  CLmw(const char16_t* printer, const char16_t* driver, const char16_t* modelId);
  virtual ~CLmw();
  CLmw(const CLmw&) = delete;
  CLmw& operator=(const CLmw&) = delete;

  // The data file of the driver of the open printer, with or without its folder; where none is
  // open, of `printer`, which is opened first and stays so. Empty when it can't be found.
  std::u16string GetVifName(const char16_t* printer);
  // Any key of a VIF; at most 259 characters, empty when it is missing.
  std::u16string GetVifDriverDataStr(const char16_t* section, const char16_t* key,
                                     const char16_t* vifPath) const;

  // The library's exports in this context. Each gives what the export gave, or -1: it is missing,
  // there is no context (where one is needed), or `chars` or `size` is null.
  //
  // Begins the context; mode 2 gives -1 without an open printer, and so does any mode but 1 and 2.
  std::int32_t LMWInitialize(std::uint32_t mode);
  // Ends it. After that there is none.
  std::int32_t LMWUnInitialize();
  // `*chars` is the room at `path`; the section of the VIF is always CommonDrvInfo.
  std::int32_t LMWGetLibraryPath(const char16_t* key, char16_t* path, std::uint32_t* chars);
  std::int32_t LMWGetInformation(std::uint32_t code, const void* input, std::uint32_t inputSize,
                                 void* out, std::uint32_t* size);

 protected:
  // Mode 2, then mode 1. Whether the library took one of them.
  bool InitializeInEitherMode();

  // In the suite's order.
  CKvOpenPrinter m_PrinterGuard;
  platform::HPRINTER m_hPrinter{};  // open by the guard, or null
  std::int32_t m_fInitialized = 0;  // 1 once the library has taken a mode
  platform::OwnedModule m_hModule;
  std::uint64_t m_hContext = 0;
  std::u16string m_csPrinterName;
  std::u16string m_csDriverName;
  std::u16string m_csModelId;
  std::u16string m_csVifName;
  std::u16string m_csLibraryPath;
  LMWInitializeFunction m_pInitialize = nullptr;
  LMWUnInitializeFunction m_pUnInitialize = nullptr;
  LMWGetLibraryPathFunction m_pGetLibraryPath = nullptr;
  LMWGetInformationFunction m_pGetInformation = nullptr;

 private:
  void OpenPrinter(const char16_t* printer);
  // The steps of the constructor. Each gives whether the next one is to follow.
  bool FindLibrary();
  bool BindLibrary();
};

}  // namespace vgl
