// Sections of the simulated machine between processes, in the ledger, and past their ends.
#include <gtest/gtest.h>

#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

unsigned char* MapAll(HANDLE section) {
  return static_cast<unsigned char*>(Os().sections.MapViewOfFile(section, FILE_MAP_ALL_ACCESS, 0));
}

TEST(SimulatedSections, TwoProcessesSeeTheSameBytes) {
  Machine machine;
  machine.StartProcess(u"C:\\writer.exe", u"", [](const char16_t*) {
    unsigned char* view = MapAll(Os().sections.CreateFileMappingW(100, u"Shared"));
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
  const HANDLE section = Os().sections.CreateFileMappingW(100, u"Shared");
  const void* view = MapAll(section);
  EXPECT_EQ(inside.process().Ledger(),
            (std::vector<std::u16string>{u"section Shared", u"view of Shared"}));
  EXPECT_TRUE(Os().objects.CloseHandle(section));
  EXPECT_TRUE(Os().sections.UnmapViewOfFile(view));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST(SimulatedSections, AViewOfAnotherProcessCannotBeGivenBack) {
  Machine machine;
  Inside inside(machine);
  unsigned char* view = MapAll(Os().sections.CreateFileMappingW(100, u"Shared"));
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
  const unsigned char* here = MapAll(Os().sections.CreateFileMappingW(100, u"Shared"));
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
  const HANDLE section = Os().sections.CreateFileMappingW(20000, u"Shared");
  const auto* view = static_cast<const volatile unsigned char*>(
      Os().sections.MapViewOfFile(section, FILE_MAP_ALL_ACCESS, 280));
  EXPECT_EQ(view[4095], 0);
  EXPECT_DEATH(static_cast<void>(view[4096]), "");
}

}  // namespace
}  // namespace sim
