// A stand-in for the language manager of a driver set, for tests on Windows. A library that it is
// asked for is named by the driver's VIF, under the section and key of the question; a bare name
// there lies in this library's own folder. Information it has none.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <cwchar>

namespace {

constexpr std::int32_t kDone = 1;
constexpr std::int32_t kRefused = 0;
constexpr std::int32_t kNoRoom = -6;

struct Context {
  wchar_t vif[MAX_PATH];
};

Context* FromHandle(std::uint64_t context) {
  return reinterpret_cast<Context*>(static_cast<std::uintptr_t>(context));
}

// This library's folder with its closing backslash; empty when the system doesn't tell.
void OwnFolder(wchar_t (&folder)[MAX_PATH]) {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&OwnFolder), &module);
  folder[0] = L'\0';
  GetModuleFileNameW(module, folder, MAX_PATH);
  wchar_t* const last = wcsrchr(folder, L'\\');
  folder[last == nullptr ? 0 : last + 1 - folder] = L'\0';
}

}  // namespace

extern "C" {

// Mode 1 or 2. Blocks of both begin with the driver's name and the VIF's.
std::int32_t LMWInitialize(std::uint32_t mode, const void* block, std::uint64_t* context) {
  if (mode != 1 && mode != 2) return kRefused;
  const wchar_t* vif = nullptr;
  std::memcpy(&vif, static_cast<const char*>(block) + 8, sizeof vif);
  if (vif == nullptr || std::wcslen(vif) >= MAX_PATH) return kRefused;
  auto* const made = static_cast<Context*>(HeapAlloc(GetProcessHeap(), 0, sizeof(Context)));
  if (made == nullptr) return kRefused;
  lstrcpyW(made->vif, vif);
  *context = reinterpret_cast<std::uintptr_t>(made);
  return kDone;
}

std::int32_t LMWUnInitialize(std::uint64_t context) {
  return HeapFree(GetProcessHeap(), 0, FromHandle(context)) != FALSE ? kDone : kRefused;
}

std::int32_t LMWGetLibraryPath(std::uint64_t context, const wchar_t* section, const wchar_t* key,
                               wchar_t* path, std::uint32_t* chars) {
  wchar_t name[MAX_PATH];
  wchar_t folder[MAX_PATH] = L"";
  const DWORD length =
      GetPrivateProfileStringW(section, key, L"", name, MAX_PATH, FromHandle(context)->vif);
  if (length == 0) return kRefused;
  if (wcschr(name, L'\\') == nullptr) OwnFolder(folder);
  const auto needed = static_cast<std::uint32_t>(std::wcslen(folder) + length + 1);
  const bool fits = path != nullptr && *chars >= needed;
  *chars = needed;
  if (!fits) return kNoRoom;
  lstrcpyW(path, folder);
  lstrcatW(path, name);
  return kDone;
}

std::int32_t LMWGetInformation(std::uint64_t /*context*/, std::uint32_t /*code*/,
                               const void* /*input*/, std::uint32_t /*inputSize*/, void* /*out*/,
                               std::uint32_t* /*size*/) {
  return kRefused;
}

}  // extern "C"
