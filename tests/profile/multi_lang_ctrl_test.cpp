#include "profile/multi_lang_ctrl.h"

#include <cstring>
#include <string>

#include "tests/profile/lmw_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class MultiLangCtrl : public LmwTest {
 protected:
  using Request = desk::LanguageManager::Request;
  using Requests = std::vector<Request>;

  std::uint32_t size = 260;

  CMultiLangCtrl Make() { return CMultiLangCtrl(kPrinter, kDriver, kModel); }
  // Two numbers of 64 bits as the library finds them.
  static std::string Numbers(std::uint64_t first, std::uint64_t second) {
    std::string bytes(16, '\0');
    std::memcpy(bytes.data(), &first, 8);
    std::memcpy(bytes.data() + 8, &second, 8);
    return bytes;
  }
  std::int32_t Url(std::uint32_t capacity) {
    EXPECT_TRUE(path.Assign(u"before"));
    return Make().GetUrl(1, 2, path.buffer(), capacity);
  }
};

using MultiLangUrl = MultiLangCtrl;

TEST_F(MultiLangCtrl, WithoutALibraryEveryQuestionGives0) {
  CMultiLangCtrl control(kPrinter, kDriver, kModel);
  EXPECT_FALSE(control.IsInitialized());
  EXPECT_EQ(control.GetUiResourcePath(path.buffer(), &size), 0);
  EXPECT_EQ(control.GetHelpPath(u"HELP", path.buffer(), &size), 0);
  EXPECT_EQ(control.GetInkCode(u"cyan", path.buffer(), &size), 0);
  EXPECT_EQ(control.GetUrl(1, 2, path.buffer(), 260), 0);
  EXPECT_EQ(control.GetRID(path.buffer(), &size), 0);
  EXPECT_EQ(control.GetREGION(path.buffer(), &size), 0);
  EXPECT_EQ(path.view(), u"before");
  EXPECT_EQ(size, 260U);
}

TEST_F(MultiLangCtrl, ALibraryThatRefusesBothModesIsntAsked) {
  AddManager();
  Manager().takesPrinterMode = false;
  Manager().takesFileMode = false;
  CMultiLangCtrl control(kPrinter, kDriver, kModel);
  EXPECT_FALSE(control.IsInitialized());
  EXPECT_EQ(control.GetUiResourcePath(path.buffer(), &size), 0);
  EXPECT_EQ(control.GetRID(path.buffer(), &size), 0);
  EXPECT_EQ(Library().Calls(kLMWGetLibraryPath), 0U);
  EXPECT_EQ(Library().Calls(kLMWGetInformation), 0U);
}

TEST_F(MultiLangCtrl, TheResourcePathStandsUnderItsKey) {
  AddManager();
  Manager().paths[u"VGLUIRESModule"] = u"C:\\res.dll";
  EXPECT_EQ(Make().GetUiResourcePath(path.buffer(), &size), 1);
  EXPECT_EQ(path.view(), u"C:\\res.dll");
  EXPECT_EQ(size, 11U);
  EXPECT_EQ(Manager().keys, std::vector<std::u16string>{u"CommonDrvInfo/VGLUIRESModule"});
}

TEST_F(MultiLangCtrl, AHelpPathStandsUnderTheCallersKey) {
  AddManager();
  Manager().paths[u"HELP"] = u"C:\\help.chm";
  EXPECT_EQ(Make().GetHelpPath(u"HELP", path.buffer(), &size), 1);
  EXPECT_EQ(path.view(), u"C:\\help.chm");
}

TEST_F(MultiLangCtrl, APathIsThereOnlyWhenTheLibraryAnswered1) {
  AddManager();
  for (const std::int32_t answer : {0, 2, -1, -6}) {
    Manager().pathResult = answer;
    EXPECT_EQ(Make().GetUiResourcePath(path.buffer(), &size), 0);
    EXPECT_EQ(Make().GetHelpPath(u"HELP", path.buffer(), &size), 0);
  }
  Manager().pathResult = 1;
  EXPECT_EQ(Make().GetUiResourcePath(path.buffer(), &size), 1);
  EXPECT_EQ(Make().GetUiResourcePath(path.buffer(), nullptr), 0);
}

TEST_F(MultiLangCtrl, AnInksNameGoesInWithItsLengthInCharacters) {
  AddManager();
  Manager().texts[2] = u"C01";
  EXPECT_EQ(Make().GetInkCode(u"cyan", path.buffer(), &size), 1);
  EXPECT_EQ(path.view(), u"C01");
  const std::string cyan("c\0y\0a\0n\0", 8);  // the stand-in reads two bytes a character
  EXPECT_EQ(Manager().requests, (Requests{{2, cyan, true, true, 260}}));
}

TEST_F(MultiLangCtrl, AnInkCodeIsThereOnlyWhenTheLibraryAnswered1) {
  AddManager();
  EXPECT_EQ(Make().GetInkCode(u"cyan", path.buffer(), &size), 0);
  Manager().texts[2] = u"C01";
  EXPECT_EQ(Make().GetInkCode(nullptr, path.buffer(), &size), 1);
  EXPECT_EQ(Manager().requests.back(), (Request{2, "", false, true, 260}));
  EXPECT_EQ(Make().GetInkCode(u"cyan", path.buffer(), nullptr), 0);
  size = 3;
  EXPECT_EQ(Make().GetInkCode(u"cyan", path.buffer(), &size), 0);
  EXPECT_EQ(size, 4U);
}

TEST_F(MultiLangCtrl, RidAndRegionAreTheLibrarysAnswersUnchanged) {
  AddManager();
  for (const std::int32_t answer : {0, 1, 2, -1, -6, 1000}) {
    Manager().informationResult = answer;
    EXPECT_EQ(Make().GetRID(path.buffer(), &size), answer);
    EXPECT_EQ(Make().GetREGION(path.buffer(), &size), answer);
  }
  EXPECT_EQ(Make().GetRID(path.buffer(), nullptr), -1);
  EXPECT_EQ(Make().GetREGION(path.buffer(), nullptr), -1);
}

TEST_F(MultiLangCtrl, RidAndRegionHaveNoInput) {
  AddManager();
  Manager().texts[6] = u"rid";
  Manager().texts[7] = u"region";
  EXPECT_EQ(Make().GetRID(path.buffer(), &size), 1);
  EXPECT_EQ(path.view(), u"rid");
  size = 260;
  EXPECT_EQ(Make().GetREGION(path.buffer(), &size), 1);
  EXPECT_EQ(path.view(), u"region");
  EXPECT_EQ(Manager().requests, (Requests{{6, "", false, true, 260}, {7, "", false, true, 260}}));
}

TEST_F(MultiLangCtrl, EachQuestionIsLoggedAroundWhatItCalls) {
  AddManager();
  CMultiLangCtrl control(kPrinter, kDriver, kModel);
  EXPECT_EQ(TrayLogOf([&] { control.GetUiResourcePath(path.buffer(), &size); }),
            (std::vector<std::string>{
                "CMultiLangCtrl::GetUiResourcePath Start", "CLmw::LMWGetLibraryPath Start",
                "CLmw::LMWGetLibraryPath End", "CMultiLangCtrl::GetUiResourcePath End"}));
}

// --- GetUrl

TEST_F(MultiLangUrl, IsAskedForItsSizeFirst) {
  AddManager();
  Manager().texts[3] = u"https://kavro.example";  // 21 characters
  EXPECT_EQ(Make().GetUrl(0x1122334455667788, 9, path.buffer(), 260), 1);
  EXPECT_EQ(path.view(), u"https://kavro.example");
  const std::string numbers = Numbers(0x1122334455667788, 9);
  EXPECT_EQ(Manager().requests,
            (Requests{{3, numbers, true, false, 0}, {3, numbers, true, true, 22}}));
}

TEST_F(MultiLangUrl, ThatDoesntFitGives0) {
  AddManager();
  Manager().texts[3] = u"12345";
  EXPECT_EQ(Url(6), 1);
  EXPECT_EQ(path.view(), u"12345");
  EXPECT_EQ(Url(5), 0);
  EXPECT_EQ(path.view(), u"");
  EXPECT_EQ(Url(0), 0);
  EXPECT_EQ(path.view(), u"before");
  EXPECT_EQ(Make().GetUrl(1, 2, nullptr, 260), 0);
}

TEST_F(MultiLangUrl, IsNotAskedForAgainWhenTheFirstAnswerIsNoSize) {
  AddManager();
  for (const std::int32_t answer : {1, 0, -1, 2}) {
    Manager().requests.clear();
    Manager().informationResult = answer;
    EXPECT_EQ(Url(260), answer == 1 ? 1 : 0);
    EXPECT_EQ(path.view(), u"");
    EXPECT_EQ(Manager().requests.size(), 1U);
  }
}

TEST_F(MultiLangUrl, OfSize0IsNotAskedForAgain) {
  AddManager();
  Manager().informationResult = -6;  // and the size stays 0
  EXPECT_EQ(Url(260), 0);
  EXPECT_EQ(Manager().requests.size(), 1U);
}

TEST_F(MultiLangUrl, ThatTheSecondAnswerRefusesGives0) {
  AddManager();
  Manager().texts[3] = u"12345";
  for (const std::int32_t answer : {0, -6, 2}) {
    Manager().requests.clear();
    Manager().informationResultWithRoom = answer;
    EXPECT_EQ(Url(260), 0);
    EXPECT_EQ(path.view(), u"");
    EXPECT_EQ(Manager().requests.size(), 2U);
  }
  Manager().informationResultWithRoom = 1;  // without writing anything
  EXPECT_EQ(Url(260), 1);
  EXPECT_EQ(path.view(), u"");
}

}  // namespace
}  // namespace vgl
