// Sections and their views.
#include <algorithm>
#include <memory>

#include "tests/platform/platform_test.h"

namespace platform {
namespace {

class SectionsContract : public PlatformTest {
 protected:
  struct Unmap {
    void operator()(unsigned char* view) const { Os().sections.UnmapViewOfFile(view); }
  };
  using View = std::unique_ptr<unsigned char, Unmap>;

  OwnedObject Make(std::uint32_t bytes, const char16_t* name = u"PlatformTest") {
    OwnedObject section(TryMake(bytes, name));
    EXPECT_TRUE(section) << "error " << LastError();
    return section;
  }
  // Backed by the page file, with default security.
  HANDLE TryMake(std::uint32_t bytes, const char16_t* name = u"PlatformTest") {
    return sections.CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, bytes,
                                       name);
  }
  View Map(const OwnedObject& section, std::uint64_t bytes = 0) {
    return View(static_cast<unsigned char*>(
        sections.MapViewOfFile(section.get(), FILE_MAP_ALL_ACCESS, bytes)));
  }
  HANDLE TryOpen(const char16_t* name = u"PlatformTest") {
    return sections.OpenFileMappingW(FILE_MAP_ALL_ACCESS, name);
  }

  Sections& sections = os.sections;
};

using SectionNames = SectionsContract;
using SectionViews = SectionsContract;

// --- Sections and their names

TEST_F(SectionNames, MakingOneTellsWhetherItExisted) {
  os.process.SetLastError(7777);
  const OwnedObject first = Make(100);
  EXPECT_EQ(LastError(), 0);
  const OwnedObject second = Make(100);
  EXPECT_EQ(LastError(), ERROR_ALREADY_EXISTS);
}

TEST_F(SectionNames, OneThatIsNotThereCannotBeOpened) {
  EXPECT_EQ(TryOpen(u"PlatformTestMissing"), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(SectionNames, AGlobalNameIsAnotherNameThanTheSessionsOwn) {
  const OwnedObject section = Make(100, u"Global\\PlatformTest");
  EXPECT_EQ(TryOpen(), HANDLE{});
  EXPECT_TRUE(OwnedObject(TryOpen(u"Global\\PlatformTest")));
}

TEST_F(SectionNames, NamesAreToldApartByCase) {
  const OwnedObject section = Make(100);
  EXPECT_EQ(TryOpen(u"PLATFORMTEST"), HANDLE{});
}

TEST_F(SectionNames, OnesWithoutANameAreNeverTheSame) {
  const OwnedObject first = Make(100, nullptr);
  const OwnedObject second = Make(100, nullptr);
  EXPECT_EQ(LastError(), 0);
  const View one = Map(first);
  const View other = Map(second);
  *one = 7;
  EXPECT_EQ(*other, 0);
}

TEST_F(SectionNames, ANameOfAnotherKindOfObjectIsRefused) {
  const OwnedObject mutex(os.objects.CreateMutexW(nullptr, false, u"PlatformTest"));
  EXPECT_EQ(TryMake(100), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_EQ(TryOpen(), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(SectionNames, TheNameOfASectionIsRefusedToOtherKinds) {
  const OwnedObject section = Make(100);
  EXPECT_EQ(os.objects.CreateMutexW(nullptr, false, u"PlatformTest"), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(SectionNames, ASectionHasBytes) {
  EXPECT_EQ(TryMake(0), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
}

TEST_F(SectionNames, ASectionCannotBeWaitedFor) {
  const OwnedObject section = Make(100);
  EXPECT_EQ(os.objects.WaitForSingleObject(section.get(), 0), WAIT_FAILED);
}

TEST_F(SectionNames, TheBytesStayWhileAnotherHandleIsOpen) {
  OwnedObject first = Make(100);
  *Map(first) = 42;  // the view goes at once
  const OwnedObject second(TryOpen());
  ASSERT_TRUE(second);
  first.Reset();
  EXPECT_EQ(*Map(second), 42);
}

TEST_F(SectionNames, TheBytesGoWithTheLastHandle) {
  OwnedObject first = Make(100);
  *Map(first) = 42;
  first.Reset();
  EXPECT_EQ(TryOpen(), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  const OwnedObject next = Make(100);
  EXPECT_EQ(LastError(), 0);
  EXPECT_EQ(*Map(next), 0);
}

TEST_F(SectionNames, AViewKeepsItsBytesButNotTheName) {
  OwnedObject section = Make(100);
  const View view = Map(section);
  *view = 42;
  section.Reset();
  EXPECT_EQ(*view, 42);
  EXPECT_EQ(TryOpen(), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
}

// --- Views

TEST_F(SectionViews, ANewSectionIsAllZeros) {
  constexpr std::uint32_t kBytes = 533000;
  const OwnedObject section = Make(kBytes);
  const View view = Map(section, kBytes);
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(std::count(view.get(), view.get() + kBytes, 0), kBytes);
}

TEST_F(SectionViews, ViewsOfOneSectionShowTheSameBytes) {
  const OwnedObject first = Make(8000);
  const OwnedObject second(TryOpen());
  const View one = Map(first, 8000);
  const View other = Map(second, 8000);
  ASSERT_NE(one, nullptr);
  ASSERT_NE(other, nullptr);
  EXPECT_NE(one.get(), other.get());
  one.get()[7999] = 5;
  EXPECT_EQ(other.get()[7999], 5);
  other.get()[0] = 6;
  EXPECT_EQ(one.get()[0], 6);
}

TEST_F(SectionViews, APartCanBeShown) {
  const OwnedObject section = Make(533000);
  const View all = Map(section);
  const View part = Map(section, 280);
  ASSERT_NE(all, nullptr);
  ASSERT_NE(part, nullptr);
  all.get()[279] = 9;
  EXPECT_EQ(part.get()[279], 9);
}

TEST_F(SectionViews, AViewLargerThanTheSectionIsDenied) {
  const OwnedObject section = Make(5000);
  EXPECT_NE(Map(section, 5000), nullptr);
  EXPECT_NE(Map(section, 8192), nullptr);  // up to whole pages
  EXPECT_EQ(Map(section, 8193), nullptr);
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
}

TEST_F(SectionViews, OneThatExistedKeepsItsSize) {
  const OwnedObject first = Make(100);
  const OwnedObject second = Make(20000);
  EXPECT_EQ(LastError(), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(Map(second, 20000), nullptr);
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_NE(Map(second, 100), nullptr);
}

TEST_F(SectionViews, OnlyASectionHasViews) {
  const OwnedObject mutex(os.objects.CreateMutexW(nullptr, false, nullptr));
  for (const HANDLE none : {HANDLE{}, HANDLE{0x12345678}, mutex.get()}) {
    EXPECT_EQ(sections.MapViewOfFile(none, FILE_MAP_ALL_ACCESS, 100), nullptr);
    EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  }
}

TEST_F(SectionViews, AViewIsGivenBackOnce) {
  const OwnedObject section = Make(100);
  void* view = Map(section).release();
  ASSERT_NE(view, nullptr);
  EXPECT_TRUE(sections.UnmapViewOfFile(view));
  EXPECT_FALSE(sections.UnmapViewOfFile(view));
  EXPECT_EQ(LastError(), ERROR_INVALID_ADDRESS);
}

TEST_F(SectionViews, WhatIsNoViewCannotBeGivenBack) {
  const int local = 0;
  for (const void* none : {static_cast<const void*>(nullptr), static_cast<const void*>(&local)}) {
    EXPECT_FALSE(sections.UnmapViewOfFile(none));
    EXPECT_EQ(LastError(), ERROR_INVALID_ADDRESS);
  }
}

TEST_F(SectionViews, AHandleThatIsClosedLeavesOtherViewsAlone) {
  OwnedObject first = Make(100);
  const OwnedObject second = Make(100);
  const View one = Map(first);
  const View other = Map(second);
  first.Reset();
  *one = 3;
  EXPECT_EQ(*other, 3);
}

}  // namespace
}  // namespace platform
