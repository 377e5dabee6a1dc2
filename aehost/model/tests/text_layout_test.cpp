// Text laid out from DejaVu Sans (2048 units per em), against the font's own points: at size
// 64 a font unit is 1/32 pixel exactly. "I" is the rectangle x 201..403, y 0..1493 with an
// advance of 604; "H" advances 1540, "i" 569, the space 651; "o" starts on (627, 991) with the
// quadratic control (479, 991) and its next on-curve point implied at (393, 875): FreeType puts
// an implied point on whole font units.
#include <gtest/gtest.h>

#include "aehost/model/text_layout.h"

namespace aehost {
namespace {

constexpr double kUnit = 1.0 / 32.0;

std::vector<LaidOutCharacter> LayOut(const std::string& text, int tracking = 0,
                                     Justification justification = Justification::Left) {
  TextDocument document;
  document.text = text;
  document.font = "DejaVuSans";
  document.fontSize = 64.0;
  document.tracking = tracking;
  document.justification = justification;
  std::vector<LaidOutCharacter> characters;
  std::string error;
  EXPECT_TRUE(LayOutText(document, &characters, &error)) << error;
  return characters;
}

TEST(TextLayout, TheLetterIIsTheFontsRectangleWithStraightEdges) {
  const std::vector<LaidOutCharacter> characters = LayOut("I");
  ASSERT_EQ(characters.size(), 1u);
  ASSERT_EQ(characters[0].contours.size(), 1u);
  const PathShape& rectangle = characters[0].contours[0];
  EXPECT_TRUE(rectangle.closed);
  const std::vector<PathVertex> expected = {{201 * kUnit, -1493 * kUnit, 0, 0, 0, 0},
                                            {403 * kUnit, -1493 * kUnit, 0, 0, 0, 0},
                                            {403 * kUnit, 0, 0, 0, 0, 0},
                                            {201 * kUnit, 0, 0, 0, 0, 0}};
  EXPECT_EQ(rectangle.vertices, expected);
}

TEST(TextLayout, AQuadraticCurveGetsHandlesAtTwoThirdsOfItsControlPoint) {
  const std::vector<LaidOutCharacter> characters = LayOut("o");
  ASSERT_EQ(characters[0].contours.size(), 2u);
  const std::vector<PathVertex>& outer = characters[0].contours[0].vertices;
  ASSERT_GE(outer.size(), 2u);
  EXPECT_DOUBLE_EQ(outer[0].x, 627 * kUnit);
  EXPECT_DOUBLE_EQ(outer[0].y, -991 * kUnit);
  EXPECT_DOUBLE_EQ(outer[0].outX, 2.0 / 3.0 * (479 - 627) * kUnit);
  EXPECT_DOUBLE_EQ(outer[0].outY, 0.0);
  EXPECT_DOUBLE_EQ(outer[1].x, 393 * kUnit);
  EXPECT_DOUBLE_EQ(outer[1].y, -875 * kUnit);
  EXPECT_DOUBLE_EQ(outer[1].inX, 2.0 / 3.0 * (479 - 393) * kUnit);
  EXPECT_DOUBLE_EQ(outer[1].inY, 2.0 / 3.0 * (875 - 991) * kUnit);
}

TEST(TextLayout, CharactersAdvanceByTheGlyphAdvancePlusTracking) {
  const std::vector<LaidOutCharacter> characters = LayOut("Hi I", 100);
  ASSERT_EQ(characters.size(), 4u);
  const double tracking = 0.1 * 64.0;
  EXPECT_EQ(characters[0].originX, 0.0);
  EXPECT_DOUBLE_EQ(characters[1].originX, 1540 * kUnit + tracking);
  EXPECT_DOUBLE_EQ(characters[2].originX, (1540 + 569) * kUnit + 2 * tracking);
  EXPECT_DOUBLE_EQ(characters[3].originX, (1540 + 569 + 651) * kUnit + 3 * tracking);
  EXPECT_EQ(characters[1].contours.size(), 2u);
  EXPECT_TRUE(characters[2].contours.empty()) << "a space has no contours";
}

TEST(TextLayout, JustificationPlacesEachLineAndBreaksGoOneLeadingDown) {
  const std::vector<LaidOutCharacter> right = LayOut("I\rII", 0, Justification::Right);
  ASSERT_EQ(right.size(), 4u);
  EXPECT_DOUBLE_EQ(right[0].originX, -604 * kUnit);
  EXPECT_EQ(right[0].originY, 0.0);
  EXPECT_TRUE(right[1].contours.empty()) << "a line break has no contours";
  EXPECT_DOUBLE_EQ(right[2].originX, -2 * 604 * kUnit);
  EXPECT_DOUBLE_EQ(right[2].originY, 1.2 * 64.0);
  const std::vector<LaidOutCharacter> centred = LayOut("II", 0, Justification::Center);
  EXPECT_DOUBLE_EQ(centred[0].originX, -604 * kUnit);
  EXPECT_DOUBLE_EQ(centred[1].originX, 0.0);
}

TEST(TextLayout, AFontThatIsNotInstalledIsReplacedByTheDefaultFace) {
  TextDocument document;
  document.text = "Hi";
  document.font = "NoSuchFontPS";
  std::vector<LaidOutCharacter> characters;
  std::string error;
  ASSERT_TRUE(LayOutText(document, &characters, &error)) << error;
  ASSERT_EQ(characters.size(), 2u);
  EXPECT_FALSE(characters[0].contours.empty());
  EXPECT_GT(characters[1].originX, 0.0);
}

}  // namespace
}  // namespace aehost
