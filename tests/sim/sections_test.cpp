// Sections of the simulated machine between processes, in the ledger, and past their ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

HANDLE MakeShared(std::uint32_t bytes, const SecurityAttributes* attributes = nullptr) {
  return Os().sections.CreateFileMappingW(INVALID_HANDLE_VALUE, attributes, PAGE_READWRITE, 0,
                                          bytes, u"Shared");
}

unsigned char* MapAll(HANDLE section) {
  return static_cast<unsigned char*>(Os().sections.MapViewOfFile(section, FILE_MAP_ALL_ACCESS, 0));
}

TEST(SimulatedSections, TwoProcessesSeeTheSameBytes) {
  Machine machine;
  machine.StartProcess(u"C:\\writer.exe", u"", [](const char16_t*) {
    unsigned char* view = MapAll(MakeShared(100));
    view[99] = 42;
    Os().process.Sleep(1000);
    return view[0];  // what the other one has answered
  });
  Process& reader = machine.StartProcess(u"C:\\reader.exe", u"", [](const char16_t*) {
    Os().process.Sleep(500);
    unsigned char* view = MapAll(Os().sections.OpenFileMappingW(FILE_MAP_ALL_ACCESS, u"Shared"));
    view[0] = 7;
    return view[99];
  });
  machine.RunFor(2000);
  EXPECT_EQ(machine.processes().front()->exitCode(), 7U);
  EXPECT_EQ(reader.exitCode(), 42U);
  EXPECT_FALSE(machine.objects().Exists(u"Shared"));
}

TEST(SimulatedSections, HandlesAndViewsStandInTheLedger) {
  Machine machine;
  Inside inside(machine);
  const HANDLE section = MakeShared(100);
  const void* view = MapAll(section);
  EXPECT_EQ(inside.process().Ledger(),
            (std::vector<std::u16string>{u"section Shared", u"view of Shared"}));
  EXPECT_TRUE(Os().objects.CloseHandle(section));
  EXPECT_TRUE(Os().sections.UnmapViewOfFile(view));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST(SimulatedSections, EachViewStandsInTheLedger) {
  Machine machine;
  Inside inside(machine);
  const HANDLE section = MakeShared(20000);
  std::vector<const void*> views;
  for (int i = 0; i < 5; ++i) views.push_back(MapAll(section));
  Os().sections.UnmapViewOfFile(views.front());
  const std::vector<std::u16string> ledger = inside.process().Ledger();
  EXPECT_EQ(std::count(ledger.begin(), ledger.end(), u"view of Shared"), 4);
}

TEST(SimulatedSections, WhatTheSimulationHasNotIsRefused) {
  Machine machine;
  Inside inside(machine);
  machine.files().WriteFile(u"C:\\x.bin", "bytes");
  const OwnedFile file(Os().files.CreateFileW(u"C:\\x.bin", GENERIC_READ, 0, OPEN_EXISTING, 0));
  ASSERT_TRUE(file);
  constexpr std::uint32_t kPageReadOnly = 2;
  struct Asked {
    HANDLE file;
    std::uint32_t protection, sizeHigh;
  };
  for (const Asked& asked :
       {Asked{file.get(), PAGE_READWRITE, 0}, Asked{HANDLE{}, PAGE_READWRITE, 0},
        Asked{INVALID_HANDLE_VALUE, kPageReadOnly, 0},
        Asked{INVALID_HANDLE_VALUE, PAGE_READWRITE, 1}}) {
    EXPECT_EQ(Os().sections.CreateFileMappingW(asked.file, nullptr, asked.protection,
                                               asked.sizeHigh, 100, u"Shared"),
              HANDLE{});
    EXPECT_EQ(Os().process.GetLastError(), ERROR_NOT_SUPPORTED);
  }
  EXPECT_FALSE(machine.objects().Exists(u"Shared"));
}

TEST(SimulatedSections, ASectionKeepsTheAccessListThatItWasMadeWith) {
  Machine machine;
  Inside inside(machine);
  alignas(4) std::uint8_t list[16];
  SecurityDescriptor descriptor;
  SecurityAttributes attributes;
  attributes.descriptor = &descriptor;
  ASSERT_TRUE(Os().security.InitializeAcl(list, 16, ACL_REVISION));
  ASSERT_TRUE(Os().security.InitializeSecurityDescriptor(&descriptor, 1));
  ASSERT_TRUE(Os().security.SetSecurityDescriptorDacl(&descriptor, true, list, false));
  const OwnedObject section(MakeShared(100, &attributes));
  const std::optional<std::string> kept = machine.objects().DaclOf(u"Shared");
  ASSERT_TRUE(kept.has_value());
  EXPECT_EQ(*kept, std::string("\2\0\20\0\0\0\0\0", 8) + std::string(list + 8, list + 16));

  // The one that it has stays when it is opened with another.
  ASSERT_TRUE(Os().security.InitializeAcl(list, 8, ACL_REVISION));
  const OwnedObject again(MakeShared(100, &attributes));
  EXPECT_EQ(machine.objects().DaclOf(u"Shared"), kept);
}

TEST(SimulatedSections, WithoutAnAccessListThereIsNone) {
  Machine machine;
  Inside inside(machine);
  const OwnedObject section(MakeShared(100));
  EXPECT_EQ(machine.objects().DaclOf(u"Shared"), std::nullopt);
  EXPECT_THROW(static_cast<void>(machine.objects().DaclOf(u"Missing")), std::invalid_argument);
}

TEST(SimulatedSections, AListOfADescriptorCanBeAbsentOrNull) {
  Machine machine;
  Inside inside(machine);
  SecurityDescriptor descriptor;
  SecurityAttributes attributes;
  {
    const OwnedObject section(MakeShared(100, &attributes));  // no descriptor
    EXPECT_EQ(machine.objects().DaclOf(u"Shared"), std::nullopt);
  }
  attributes.descriptor = &descriptor;
  ASSERT_TRUE(Os().security.InitializeSecurityDescriptor(&descriptor, 1));
  {
    const OwnedObject section(MakeShared(100, &attributes));  // no list in it
    EXPECT_EQ(machine.objects().DaclOf(u"Shared"), std::nullopt);
  }
  ASSERT_TRUE(Os().security.SetSecurityDescriptorDacl(&descriptor, true, nullptr, false));
  const OwnedObject section(MakeShared(100, &attributes));
  EXPECT_EQ(machine.objects().DaclOf(u"Shared"), "");
  const OwnedObject mutex(Os().objects.CreateMutexW(&attributes, false, u"Mutex"));
  EXPECT_EQ(machine.objects().DaclOf(u"Mutex"), "");
}

TEST(SimulatedSections, AViewOfAnotherProcessCannotBeGivenBack) {
  Machine machine;
  Inside inside(machine);
  unsigned char* view = MapAll(MakeShared(100));
  bool done = true;
  machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
    done = Os().sections.UnmapViewOfFile(view);
    return 0U;
  });
  Os().process.Sleep(1);
  EXPECT_FALSE(done);
  view[0] = 1;  // it is still there
}

TEST(SimulatedSections, WhatAProcessWritesAfterItsEndReachesNobody) {
  struct WritesWhenItGoes {
    unsigned char* view;
    ~WritesWhenItGoes() { *view = 99; }
  };
  Machine machine;
  Inside inside(machine);
  const unsigned char* here = MapAll(MakeShared(100));
  Process& other = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const WritesWhenItGoes writer{
        MapAll(Os().sections.OpenFileMappingW(FILE_MAP_ALL_ACCESS, u"Shared"))};
    *writer.view = 1;
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  Os().process.Sleep(1);
  ASSERT_EQ(*here, 1);
  other.BeginEnd(1);
  Os().process.Sleep(1);
  ASSERT_TRUE(other.ended());
  EXPECT_EQ(*here, 1);
}

TEST(SimulatedSectionsDeathTest, ALookPastAViewsLastPageEndsTheProgram) {
  GTEST_FLAG_SET(death_test_style, "fast");
  Machine machine;
  const Inside inside(machine);
  const HANDLE section = MakeShared(20000);
  const auto* view = static_cast<const volatile unsigned char*>(
      Os().sections.MapViewOfFile(section, FILE_MAP_ALL_ACCESS, 280));
  EXPECT_EQ(view[4095], 0);
  EXPECT_DEATH(static_cast<void>(view[4096]), "");
}

}  // namespace
}  // namespace sim
