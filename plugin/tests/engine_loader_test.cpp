#include <gtest/gtest.h>

#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_location.h"
#include "plugin/engine/engine_tables.h"

namespace {

TEST(EngineLocation, BesideTheApplicationFolderUnlessOverridden) {
  EXPECT_EQ(EngineFolderFor("/opt/x/lib/quillon-ae/AfterEffects", ""),
            "/opt/x/lib/quillon-ae/Vantor Orrery Studio 2024/");
  EXPECT_EQ(EngineFolderFor("/opt/x/lib/quillon-ae/AfterEffects/", ""),
            "/opt/x/lib/quillon-ae/Vantor Orrery Studio 2024/");
  EXPECT_EQ(EngineFolderFor("/opt/x/AfterEffects", "/srv/engine"), "/srv/engine/");
  EXPECT_EQ(EngineFolderFor("/opt/x/AfterEffects", "/srv/engine/"), "/srv/engine/");
}

TEST(EngineLoader, WithoutALibraryNothingRuns) {
  EXPECT_FALSE(IsQuillonRunning());
  EXPECT_FALSE(WaitUntilQuillonIsRunning(0));  // one test and one pause, then 100 > 0
  EXPECT_FALSE(UnloadQuillon(false));
  const char* items[] = {"a"};
  EXPECT_FALSE(LoadQuillon(u"/nonexistent/", nullptr, u"", {items, 1}));
  EXPECT_FALSE(LoadQuillon(u"/nonexistent/", "start", u"", {items, 1}));
  EXPECT_FALSE(IsQuillonRunning());
}

TEST(EngineLoader, OryMainCountsStartsAndEnds) {
  EXPECT_EQ(quillon::ory_main(kOryMainQuery, nullptr, nullptr, nullptr), 5);
  EXPECT_EQ(quillon::ory_main(5, nullptr, nullptr, nullptr), -1);
  EXPECT_EQ(quillon::ory_main(kOryMainPluginMessage, nullptr, nullptr, nullptr), -1);
  // An engine too old for the plug-in: its tables are taken, the start is refused.
  QuillonApi old{};
  old.version = kQuillonApiVersion - 1;
  EXPECT_EQ(quillon::ory_main(kOryMainStart, &old, nullptr, nullptr), -3);
  EXPECT_EQ(g_engineApi, &old);
  QuillonApi other{};
  other.version = kQuillonApiVersion;
  EXPECT_EQ(quillon::ory_main(kOryMainStart, &other, nullptr, nullptr), 1);  // a nested start only counts
  EXPECT_EQ(g_engineApi, &old);
  EXPECT_EQ(quillon::ory_main(kOryMainEnd, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(quillon::ory_main(kOryMainEnd, nullptr, nullptr, nullptr), 1);
  g_engineApi = nullptr;
}

}  // namespace
