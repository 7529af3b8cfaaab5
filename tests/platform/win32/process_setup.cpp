// Programs to start: copies of this one, which do what is asked before anything of a test happens.
#include <gtest/gtest.h>

#include <cwchar>

#include "tests/platform/process_fixture.h"

#include <windows.h>

namespace platform {
namespace {

const wchar_t* Native(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}

// Static, so that it comes before the tests.
struct Child {
  Child() {
    const wchar_t* told = std::wcsstr(GetCommandLineW(), L"/child");
    if (told == nullptr) return;
    wchar_t path[MAX_PATH + 4] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    CreateWindowExW(0, L"STATIC", path, WS_OVERLAPPEDWINDOW, 0, 0, 9, 9, nullptr, nullptr, nullptr,
                    nullptr);
    std::wcscat(path, L".txt");
    const ::HANDLE file = ::CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    ::WriteFile(file, told, static_cast<DWORD>(std::wcslen(told) * sizeof(wchar_t)), &written,
                nullptr);
    ::CloseHandle(file);
    const wchar_t* number = told + std::wcslen(L"/child");
    ::Sleep(std::wcstoul(number, nullptr, 10));
    ::ExitProcess(0);
  }
};
const Child kChild;

}  // namespace

void MakeProgram(const std::u16string& path) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  EXPECT_TRUE(CopyFileW(program, Native(path), FALSE)) << "error " << GetLastError();
}

std::u16string SystemCommand() { return u"cmd.exe /c exit"; }

}  // namespace platform
