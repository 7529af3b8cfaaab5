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

void CRegLibrary::Make() {
  if (g_pRegLibrary != nullptr) return;
  s_owner.get().reset(new (std::nothrow) CRegLibrary);
  g_pRegLibrary = s_owner.get().get();
}

std::int32_t CRegLibrary::LoadExisting(RegLibStart start, const char* input) {
  if (g_pRegLibrary == nullptr || !IsWin2000OrLater()) return 0;
  g_pRegLibrary->m_loaderA.Load(start, input);
  return g_pRegLibrary->m_loaderW.Load(start, nullptr);
}

std::int32_t CRegLibrary::LoadExisting(RegLibStart start, const char16_t* input) {
  if (g_pRegLibrary == nullptr || !IsWin2000OrLater()) return 0;
  g_pRegLibrary->m_loaderW.Load(start, input);
  return g_pRegLibrary->m_loaderA.Load(start, nullptr);
}

}  // namespace vgl
