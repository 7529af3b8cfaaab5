// A walk over fields that copies only what it has to.
#include <gtest/gtest.h>

#include "profile/field_values.h"

namespace vgl {
namespace {

TEST(FieldWalker, AFieldWithoutPairsOfQuotesIsAPartOfTheList) {
  const std::u16string list = u"A, \"b,c\",d";
  CFieldWalker fields(list);
  std::u16string room = u"before";
  for (const auto& [field, offset] : {std::pair{u"A", 0}, {u" \"b,c\"", 2}, {u"d", 9}}) {
    const std::u16string_view found = fields.Next(room);
    EXPECT_EQ(found, field);
    EXPECT_EQ(found.data(), list.data() + offset);
  }
  EXPECT_EQ(fields.Next(room), u"");
  EXPECT_EQ(room, u"before");
}

TEST(FieldWalker, AFieldWithPairsOfQuotesIsInTheRoom) {
  CFieldWalker fields(u"\"a\"\"b\"\"\"\"c\",\"\"\"\",x");
  std::u16string room = u"before";
  EXPECT_EQ(fields.Next(room), u"\"a\"b\"\"c\"");
  EXPECT_EQ(room, u"\"a\"b\"\"c\"");
  EXPECT_EQ(fields.Next(room), u"\"\"");
  EXPECT_EQ(fields.Next(room), u"x");
}

}  // namespace
}  // namespace vgl
