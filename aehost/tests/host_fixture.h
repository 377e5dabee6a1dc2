// A host with a small project open and one plug-in registered, for tests
// that call the suites directly.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "aehost/core/host.h"
#include "aehost/core/memory_suite.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/suites.h"
#include "aehost/core/utf16.h"
#include "aehost/model/edit.h"

namespace aehost {

class HostTest : public ::testing::Test {
protected:
    static constexpr AEGP_PluginID kPlugin = 7;

    // "Main": 1920x1080, 25 fps, 10 s. Layers from the top: a 3D solid
    // "Card" (200x100) parented to a null "Rig", then the null.
    void SetUp() override {
        ResetHost();
        project = NewProject();
        g_host.project = &project;
        g_host.plugins.push_back({kPlugin, "test", nullptr});
        comp = &AddComp(project, "Main", 1920, 1080, 1.0, 10.0, 25.0);
        rig = &AddNullLayer(project, *comp, "Rig");
        card = &AddSolidLayer(project, *comp, "Card", 200, 100, MakeValue(1.0, 0.5, 0.25, 1.0));
        card->switches.threeD = true;
        card->parentId = rig->id;
    }

    void TearDown() override { ResetHost(); }

    // The UTF-8 text in a handle of UTF-16, freed.
    static std::string TakeText(AEGP_MemHandle handle) {
        void* data = nullptr;
        EXPECT_EQ(MemorySuite()->AEGP_LockMemHandle(handle, &data), A_Err_NONE);
        const std::string text = data ? Utf16zToUtf8(static_cast<const A_UTF16Char*>(data)) : std::string();
        MemorySuite()->AEGP_UnlockMemHandle(handle);
        MemorySuite()->AEGP_FreeMemHandle(handle);
        return text;
    }

    Project project;
    Item* comp = nullptr;
    Layer* rig = nullptr;
    Layer* card = nullptr;
};

}  // namespace aehost
