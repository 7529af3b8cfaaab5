// The ends of lines: none is missed at any place, and no other byte is taken for one.
#include <gtest/gtest.h>

#include <string>

#include "platform/sim/machine.h"
#include "profile/dat_text_file.h"

namespace vgl {
namespace {

class DatScan : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  CDatTextFile file;

  std::u16string FirstRawLineOf(const std::string& bytes) {
    machine.files().WriteFile(u"C:\\x.sad", bytes);
    std::u16string line;
    EXPECT_EQ(file.Open(u"C:\\x.sad"), 1);
    EXPECT_EQ(file.ReadRawLine(line), 1);
    return line;
  }
};

TEST_F(DatScan, ALineMayEndAtAnyPlace) {
  for (std::size_t length = 0; length <= 40; ++length) {
    const std::string text(length, 'x');
    const std::u16string line(length, u'x');
    EXPECT_EQ(FirstRawLineOf(text + "\n;y\n"), line + u"\n") << length;
    EXPECT_EQ(FirstRawLineOf(text + ";y\nz\n"), line + u"\n") << length;
    EXPECT_EQ(FirstRawLineOf(text + ";"), line + u"\n") << length;
  }
  EXPECT_EQ(FirstRawLineOf("123456789"), u"123456789");  // or at the end of the file
}

TEST_F(DatScan, NoOtherByteEndsALine) {
  for (int byte = 0; byte <= 0xFF; ++byte) {
    if (byte == '\n' || byte == ';') continue;
    const auto character = static_cast<char16_t>(byte < 0x80 ? byte : 0xFF00 + byte);
    for (const std::size_t length : {1U, 7U, 8U, 9U, 24U}) {
      EXPECT_EQ(FirstRawLineOf(std::string(length, static_cast<char>(byte)) + "\n"),
                std::u16string(length, character) + u"\n")
          << byte;
    }
  }
}

}  // namespace
}  // namespace vgl
