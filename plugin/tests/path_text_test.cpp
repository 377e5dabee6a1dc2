#include "plugin/text/path_text.h"

#include <gtest/gtest.h>

namespace {

TEST(LocalPath, DropsOneTrailingSeparatorAndTrailingBlanks) {
  EXPECT_EQ(NormalizeLocalPath(u"preset://Looks/"), u"preset://Looks");
  EXPECT_EQ(NormalizeLocalPath(u"/home/user/projects/"), u"/home/user/projects");
  EXPECT_EQ(NormalizeLocalPath(u"/home/user/a b  "), u"/home/user/a b");
  EXPECT_EQ(NormalizeLocalPath(u"/a//"), u"/a/");
  EXPECT_TRUE(IsPresetPath(u"preset://x"));
  EXPECT_FALSE(IsPresetPath(u"/preset://x"));
}

TEST(ScriptPath, RewritesDrivesAndBackslashes) {
  EXPECT_EQ(ToScriptPath(u"C:\\Projects\\shot.ory"), u"/C/Projects/shot.ory");
  EXPECT_EQ(ToScriptPath(u"\\\\server\\share\\shot.ory"), u"//server/share/shot.ory");
  EXPECT_EQ(ToScriptPath(u"/home/user/shot.ory"), u"/home/user/shot.ory");
  EXPECT_EQ(ToScriptPath(u"dir\\"), u"dir\\");  // the last character keeps its backslash
}

TEST(PathPieces, SplitsWithoutEmptyPieces) {
  EXPECT_EQ(SplitAtChars(u"", u"/"), std::vector<std::u16string>{});
  EXPECT_EQ(SplitAtChars(u"//a//b/", u"/"), (std::vector<std::u16string>{u"a", u"b"}));
  EXPECT_EQ(SplitAtChars(u"a;b,c", u";,"), (std::vector<std::u16string>{u"a", u"b", u"c"}));
  EXPECT_EQ(LastPathComponent(u"/x/y/project.aep"), u"project.aep");
  EXPECT_EQ(LastPathComponent(u"C:\\x\\p.aep"), u"p.aep");
  EXPECT_EQ(LastPathComponent(u"plain"), u"plain");
  EXPECT_EQ(ReplaceChar(u"a\\b\\c", u'\\', u'/'), u"a/b/c");
}

}  // namespace

#include "plugin/text/cubic_bezier.h"

namespace {

TEST(CubicBezier, PassesThroughItsEndsAndWeighsTheMiddle) {
  const Vector points[4] = {{0, 0, 9}, {0, 10, 9}, {10, 10, 9}, {10, 0, 9}};
  const Vector start = CubicBezierPoint(points, 0.0f);
  const Vector end = CubicBezierPoint(points, 1.0f);
  const Vector middle = CubicBezierPoint(points, 0.5f);
  EXPECT_EQ(start.x, 0.0);
  EXPECT_EQ(end.x, 10.0);
  EXPECT_EQ(end.y, 0.0);
  // At t = 1/2 the weights are 1/8, 3/8, 3/8, 1/8: x = (0 + 0 + 30 + 10) / 8, y = (0 + 30 + 30 + 0) / 8.
  EXPECT_DOUBLE_EQ(middle.x, 5.0);
  EXPECT_DOUBLE_EQ(middle.y, 7.5);
  EXPECT_EQ(middle.z, 0.0);
}

}  // namespace
