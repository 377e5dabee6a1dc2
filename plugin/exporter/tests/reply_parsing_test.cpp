// How the replies of the query scripts become values: the parse rule of each reader.
#include <gtest/gtest.h>

#include "plugin/exporter/text_shape/reply_parsing.h"

namespace {

TEST(ReplyParsing, OnlyTheExactWordTrueIsAFlag) {
  EXPECT_TRUE(ParseFlag("true"));
  for (const char* reply : {"", "false", "True", "true ", "1", "undefined"}) EXPECT_FALSE(ParseFlag(reply)) << reply;
}

struct NumberCase {
  const char* reply;
  int whole;
  double number;
  int count;
  double margin;
};

class NumberReplies : public ::testing::TestWithParam<NumberCase> {};

TEST_P(NumberReplies, ParseAsTheCLibraryDoes) {
  const NumberCase& c = GetParam();
  EXPECT_EQ(ParseWhole(c.reply), c.whole);
  EXPECT_EQ(ParseNumber(c.reply), c.number);
  EXPECT_EQ(ParseCount(c.reply), c.count);
  EXPECT_EQ(ParseMargin(c.reply), c.margin);
}

INSTANTIATE_TEST_SUITE_P(Cases, NumberReplies,
                         ::testing::Values(NumberCase{"36.5", 36, 36.5, 36, 36.5},  // a size loses its fraction
                                           NumberCase{"2.5", 2, 2.5, 2, 2.5},
                                           NumberCase{"-25", -25, -25.0, -25, -25.0},
                                           NumberCase{"7215", 7215, 7215.0, 7215, 7215.0},
                                           NumberCase{"", 0, 0.0, 0, 0.0},
                                           NumberCase{"undefined", 0, 0.0, 0, 0.0},
                                           NumberCase{"abc", 0, 0.0, 0, 0.0},
                                           NumberCase{"99999999999999", 2147483647, 99999999999999.0,
                                                      2147483647, 99999999999999.0}));

TEST(ReplyParsing, ThreeNumbersMakeAColourAndLeaveAlphaAlone) {
  TextColour colour;
  colour.alpha = 0.25;
  ASSERT_TRUE(ParseColour("1,0.5,0", &colour));
  EXPECT_EQ(colour.rgb[0], 1.0);
  EXPECT_EQ(colour.rgb[1], 0.5);
  EXPECT_EQ(colour.rgb[2], 0.0);
  EXPECT_EQ(colour.alpha, 0.25);
  ASSERT_TRUE(ParseColour("0.2,,0.4,0.6,,0.8", &colour));  // runs of commas make no empty parts
  EXPECT_EQ(colour.rgb[0], 0.2);
  EXPECT_EQ(colour.rgb[1], 0.4);
  EXPECT_EQ(colour.rgb[2], 0.6);
  EXPECT_EQ(colour.alpha, 0.8);
}

TEST(ReplyParsing, FewerThanThreeNumbersWriteNothing) {
  for (const char* reply : {"", "undefined", "1,0", ",,1,,0,,"}) {
    TextColour colour;
    colour.rgb[0] = 0.7;
    EXPECT_FALSE(ParseColour(reply, &colour)) << reply;
    EXPECT_EQ(colour.rgb[0], 0.7) << reply;
  }
}

TEST(ReplyParsing, TheMaskIndexOfATextOnAPath) {
  int index = 9;
  EXPECT_TRUE(ParseMaskIndex("2", &index));
  EXPECT_EQ(index, 2);
  for (const char* reply : {"", "undefined", "0"}) {
    index = 9;
    EXPECT_FALSE(ParseMaskIndex(reply, &index)) << reply;
    EXPECT_EQ(index, 0) << reply;
  }
}

}  // namespace
