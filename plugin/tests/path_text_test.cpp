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
