#include "Common/code_page.h"

#include <gtest/gtest.h>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

TEST(CodePage, TextsComeUpToTheirTerminator) {
  sim::Machine machine;
  const sim::Inside inside(machine);
  EXPECT_EQ(FromCodePage("K7200A01"), u"K7200A01");
  EXPECT_EQ(FromCodePage("Br\xFC\0cke"), u"Br\u00FC");
  EXPECT_EQ(FromCodePage("\x80"), u"\u20AC");
  EXPECT_EQ(FromCodePage(""), u"");
}

TEST(CodePage, ATextThatCantBeConvertedIsEmpty) {
  sim::Machine machine;
  sim::Inside inside(machine);
  inside.process().FailNext("MultiByteToWideChar", 87);
  EXPECT_EQ(FromCodePage("K7200A01"), u"");
  inside.process().FailNext("MultiByteToWideChar", 122, 1);
  EXPECT_EQ(FromCodePage("K7200A01"), u"");
}

}  // namespace
}  // namespace vgl
