// The line that `aehost export` and `aehost import` print on standard output
// when they succeed, for a person to read at a glance: what was written or
// built. Progress, the trace and messages go to standard error, so standard
// output holds only this line.
#pragma once

#include <map>
#include <string>

#include "aehost/model/project.h"

namespace aehost {

// "exported \"Rig\" to /tmp/rig.ory: 7 objects, 1 camera, ..., frames 0..49 at 25 fps":
// the counts of the scene file as `orytool dump --summary` gives them. The host
// serves any plug-in, so a file that is not a scene is told by its size and why
// it does not read as one.
std::string ExportSummary(const std::string& compName, const std::string& path);

// What a project holds, for telling what an import added to it.
struct ProjectCounts {
    std::size_t items = 0;                // items in the project, the root folder included
    std::map<std::string, int> layers;    // by kind: "camera", "light", "solid", "null", ...
    long long keyframes = 0;              // over every stream of every layer
    long long markers = 0;                // of compositions and of layers
};
ProjectCounts CountProject(const Project& project);

// "imported rig.ory: folder \"rig.ory\", composition \"Rig\" 640x360, 25 fps, 2 s (50 frames);
// 3 layers (1 camera, 1 light, 1 null), 150 keyframes, 2 markers": the folders and
// compositions made since `before` was counted, and what the counts grew by.
std::string ImportSummary(const std::string& file, const Project& project, const ProjectCounts& before);

}  // namespace aehost
