// The project suite: the one open project, its file and root folder.
#include "aehost/core/memory_suite.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/utf16.h"

namespace aehost {

namespace {

A_Err GetNumProjects(A_long* num_projectsPL) {
    return GuardCall("AEGP_GetNumProjects", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetNumProjects", num_projectsPL);
        *num_projectsPL = g_host.project ? 1 : 0;
        return A_Err_NONE;
    });
}

A_Err GetProjectByIndex(A_long proj_index, AEGP_ProjectH* projPH) {
    return GuardCall("AEGP_GetProjectByIndex", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetProjectByIndex", projPH);
        *projPH = nullptr;
        Project* project = nullptr;
        if (A_Err err = OpenProject("AEGP_GetProjectByIndex", &project)) return err;
        if (proj_index != 0) return Refuse("AEGP_GetProjectByIndex", "project index out of range");
        *projPH = ProjectHandle();
        return A_Err_NONE;
    });
}

A_Err GetProjectPath(AEGP_ProjectH projH, AEGP_MemHandle* unicode_pathPH) {
    return GuardCall("AEGP_GetProjectPath", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetProjectPath", unicode_pathPH);
        *unicode_pathPH = nullptr;
        if (A_Err err = ResolveProject("AEGP_GetProjectPath", projH)) return err;
        const AEGP_PluginID owner = g_host.plugins.empty() ? 0 : g_host.plugins.back().id;
        *unicode_pathPH = NewTextHandle(owner, Utf8ToUtf16(g_host.project->path));
        return A_Err_NONE;
    });
}

A_Err GetProjectRootFolder(AEGP_ProjectH projH, AEGP_ItemH* root_folderPH) {
    return GuardCall("AEGP_GetProjectRootFolder", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetProjectRootFolder", root_folderPH);
        *root_folderPH = nullptr;
        if (A_Err err = ResolveProject("AEGP_GetProjectRootFolder", projH)) return err;
        *root_folderPH = ItemHandle(*g_host.project->items.front());
        return A_Err_NONE;
    });
}

const AEGP_ProjSuite9 g_projSuite = {GetNumProjects, GetProjectByIndex, GetProjectPath, GetProjectRootFolder};

}  // namespace

const AEGP_ProjSuite9* ProjSuite() { return &g_projSuite; }

}  // namespace aehost
