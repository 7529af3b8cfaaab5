// What the simulated machine tells of itself and of its windows, and calls that are told to fail.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

std::int32_t LastError() { return Os().process.GetLastError(); }

TEST(SimulatedSystem, ItsFolderIsTheOneOfItsState) {
  Machine machine;
  const Inside inside(machine);
  char16_t path[MAX_PATH] = {};
  EXPECT_EQ(Os().system.GetSystemDirectoryW(path, MAX_PATH), 19U);
  EXPECT_EQ(std::u16string(path), u"C:\\Windows\\system32");
  machine.system().systemFolder = u"D:\\Sys";
  EXPECT_EQ(Os().system.GetSystemDirectoryW(path, 7), 6U);
  EXPECT_EQ(std::u16string(path), u"D:\\Sys");
  EXPECT_EQ(Os().system.GetSystemDirectoryW(path, 6), 7U);
}

TEST(SimulatedSystem, WithoutAFolderTheCallFails) {
  Machine machine;
  const Inside inside(machine);
  machine.system().systemFolder.clear();
  char16_t path[MAX_PATH] = {};
  EXPECT_EQ(Os().system.GetSystemDirectoryW(path, MAX_PATH), 0U);
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
}

TEST(SimulatedCaptions, TheCaptionOfAnotherProcesssWindowIsTold) {
  Machine machine;
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const WindowClass windowClass{
        .procedure =
            [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
              return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
            },
        .className = u"Other"};
    Os().windowing.RegisterClassW(windowClass);
    Os().windowing.CreateWindowExW(0, u"Other", u"Title", 0, HMODULE{});
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  machine.Settle();
  const Inside inside(machine);
  const HWND window = Os().windowing.FindWindowW(u"Other", nullptr);
  char16_t text[20] = {};
  EXPECT_EQ(Os().windowing.GetWindowTextW(window, text, 20), 5);
  EXPECT_EQ(std::u16string(text), u"Title");
  EXPECT_TRUE(Os().windowing.SetWindowTextW(window, u"New"));
  EXPECT_EQ(machine.desktop().Find(window)->title, u"New");
}

TEST(SimulatedFaults, CallsWithNarrowTextsFailUnderTheirOwnNames) {
  Machine machine;
  machine.files().WriteFile(u"C:\\x.ini", "[s]\r\nkey=value\r\n");
  machine.spooler().AddDriver({.name = u"Driver"});
  machine.spooler().AddPrinter({.name = u"Printer", .driver = u"Driver"});
  Inside inside(machine);

  FindDataA found;
  inside.process().FailNext("FindFirstFileA", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Os().files.FindFirstFileA("C:\\x.ini", &found), INVALID_FIND_HANDLE);
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);

  char value[10] = {};
  inside.process().FailNext("GetPrivateProfileStringA", ERROR_SHARING_VIOLATION);
  EXPECT_EQ(Os().profiles.GetPrivateProfileStringA("s", "key", "none", value, 10, "C:\\x.ini"), 4U);
  EXPECT_EQ(std::string(value), "none");
  EXPECT_EQ(LastError(), ERROR_SHARING_VIOLATION);

  std::uint64_t buffer[100];
  std::uint32_t needed = 0;
  std::uint32_t count = 0;
  HPRINTER printer{};
  ASSERT_TRUE(Os().spooler.OpenPrinterW(u"Printer", &printer, nullptr));
  inside.process().FailNext("GetPrinterDriverA", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(Os().spooler.GetPrinterDriverA(printer, 2, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Os().spooler.GetPrinterDriverA(printer, 2, buffer, sizeof(buffer), &needed));
  inside.process().FailNext("EnumPrinterDriversA", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(Os().spooler.EnumPrinterDriversA(2, buffer, sizeof(buffer), &needed, &count));
  EXPECT_TRUE(Os().spooler.EnumPrinterDriversA(2, buffer, sizeof(buffer), &needed, &count));
  EXPECT_TRUE(Os().spooler.ClosePrinter(printer));
}

TEST(SimulatedFaults, TheSystemFolderAndCaptionsCanFail) {
  Machine machine;
  Inside inside(machine);
  char16_t text[20] = u"untouched";
  inside.process().FailCall(1);
  EXPECT_EQ(Os().system.GetSystemDirectoryW(text, 20), 0U);
  EXPECT_EQ(inside.process().failedOperation(), "GetSystemDirectoryW");
  inside.process().FailNext("GetWindowTextW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Os().windowing.GetWindowTextW(HWND{1}, text, 20), 0);
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  inside.process().FailNext("SetWindowTextW", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(Os().windowing.SetWindowTextW(HWND{1}, u"x"));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(std::u16string(text), u"untouched");
}

}  // namespace
}  // namespace sim
