#include "Common/reg_library.h"

#include <memory>
#include <new>

#include "profile/os_identification.h"

namespace vgl {

using namespace platform;

ProcessWideValue<std::int32_t> g_bRegLibraryMode;
ProcessWideValue<CRegLibrary*> g_pRegLibrary;

namespace {

// Behind g_pRegLibrary, so that the object goes with its process where nobody releases it.
ProcessWide<std::unique_ptr<CRegLibrary>> s_owner;

}  // namespace

std::int32_t LoadMonitorEnv(const char16_t* driverName) {
  if (g_bRegLibraryMode != 0) return 1;
  if (!IsWin2000OrLater()) return 0;
  if (CRegLibrary::LoadByDriver(driverName) == 0) return -1;
  g_bRegLibraryMode = 1;
  return 1;
}

void ReleaseRegLibrary() {
  s_owner.get().reset();
  g_pRegLibrary = nullptr;
  g_bRegLibraryMode = 0;
}

CRegLibrary* CRegLibrary::Make() {
  if (g_pRegLibrary == nullptr) {
    s_owner.get().reset(new (std::nothrow) CRegLibrary);
    g_pRegLibrary = s_owner.get().get();
  }
  return g_pRegLibrary;
}

std::int32_t CRegLibrary::Load(CRegLibrary* library, RegLibStart start, const char* input) {
  if (library == nullptr || !IsWin2000OrLater()) return 0;
  library->m_loaderA.Load(start, input);
  return library->m_loaderW.Load(start, nullptr);
}

std::int32_t CRegLibrary::Load(CRegLibrary* library, RegLibStart start, const char16_t* input) {
  if (library == nullptr || !IsWin2000OrLater()) return 0;
  library->m_loaderW.Load(start, input);
  return library->m_loaderA.Load(start, nullptr);
}

template <class Char>
std::int32_t CRegLibrary::LoadByPrinter(const Char* printer) {
  return Load(Make(), RegLibStart::Printer, printer);
}

template <class Char>
std::int32_t CRegLibrary::LoadByDriver(const Char* driver) {
  return Load(Make(), RegLibStart::Driver, driver);
}

template <class Char>
std::int32_t CRegLibrary::LoadByVif(const Char* vifPath) {
  return Load(Make(), RegLibStart::Vif, vifPath);
}

template <class Char>
std::int32_t CRegLibrary::LoadByPath(const Char* libraryPath) {
  return Load(Make(), RegLibStart::Library, libraryPath);
}

template <class Char>
std::int32_t CRegLibrary::ReloadByPrinter(const Char* printer) {
  return Load(g_pRegLibrary, RegLibStart::Printer, printer);
}

template <class Char>
std::int32_t CRegLibrary::ReloadByDriver(const Char* driver) {
  return Load(g_pRegLibrary, RegLibStart::Driver, driver);
}

template <class Char>
std::int32_t CRegLibrary::ReloadByVif(const Char* vifPath) {
  return Load(g_pRegLibrary, RegLibStart::Vif, vifPath);
}

template <class Char>
std::int32_t CRegLibrary::ReloadByPath(const Char* libraryPath) {
  return Load(g_pRegLibrary, RegLibStart::Library, libraryPath);
}

template std::int32_t CRegLibrary::LoadByPrinter(const char*);
template std::int32_t CRegLibrary::LoadByPrinter(const char16_t*);
template std::int32_t CRegLibrary::LoadByDriver(const char*);
template std::int32_t CRegLibrary::LoadByDriver(const char16_t*);
template std::int32_t CRegLibrary::LoadByVif(const char*);
template std::int32_t CRegLibrary::LoadByVif(const char16_t*);
template std::int32_t CRegLibrary::LoadByPath(const char*);
template std::int32_t CRegLibrary::LoadByPath(const char16_t*);
template std::int32_t CRegLibrary::ReloadByPrinter(const char*);
template std::int32_t CRegLibrary::ReloadByPrinter(const char16_t*);
template std::int32_t CRegLibrary::ReloadByDriver(const char*);
template std::int32_t CRegLibrary::ReloadByDriver(const char16_t*);
template std::int32_t CRegLibrary::ReloadByVif(const char*);
template std::int32_t CRegLibrary::ReloadByVif(const char16_t*);
template std::int32_t CRegLibrary::ReloadByPath(const char*);
template std::int32_t CRegLibrary::ReloadByPath(const char16_t*);

}  // namespace vgl
