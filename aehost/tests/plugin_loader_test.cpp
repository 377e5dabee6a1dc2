#include <gtest/gtest.h>

#include <cstdlib>

#include "aehost/core/host.h"
#include "aehost/core/plugin_loader.h"

namespace aehost {
namespace {

TEST(PluginLoaderTest, ApplicationFolderFromOptionEnvironmentOrBinary) {
    unsetenv("AEHOST_APP_DIR");
    EXPECT_EQ(FindAppDir("", "/opt/tools/bin/aehost"), "/opt/tools/lib/quillon-ae/AfterEffects");
    setenv("AEHOST_APP_DIR", "/srv/ae", 1);
    EXPECT_EQ(FindAppDir("", "/opt/tools/bin/aehost"), "/srv/ae");
    EXPECT_EQ(FindAppDir("/home/me/ae", "/opt/tools/bin/aehost"), "/home/me/ae");
    unsetenv("AEHOST_APP_DIR");
}

TEST(PluginLoaderTest, LibrariesThatAreNoPluginAreRefusedByName) {
    ResetHost();
    LoadedPlugin plugin;
    std::string error;
    EXPECT_FALSE(LoadPlugin("/nonexistent/quillon_ae.so", &plugin, &error));
    EXPECT_EQ(error.rfind("cannot load plug-in /nonexistent/quillon_ae.so: ", 0), 0u) << error;
    // The C library loads but has no entry point.
    EXPECT_FALSE(LoadPlugin("libc.so.6", &plugin, &error));
    EXPECT_EQ(error, "plug-in libc.so.6 has no entry point EntryPointFunc");
    EXPECT_EQ(plugin.library, nullptr);
    EXPECT_TRUE(g_host.plugins.empty());
}

}  // namespace
}  // namespace aehost
