// aehost roundtrip: a composition goes out through the plug-in's export and comes
// back through its import into a fresh project, in one run of the host; every layer
// that came back is compared with its original by the layer-to-world matrix at each
// frame where the original is active.
#include <stdlib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "aehost/cli/commands.h"
#include "aehost/core/host.h"
#include "aehost/model/transform.h"

namespace aehost {

namespace {

constexpr double kPi = 3.14159265358979323846;

struct LayerDifference {
    std::string name;
    int frames = 0;
    double position = 0.0;  // largest distance of the origins, composition pixels
    double rotation = 0.0;  // largest angle between the two frames' axes, degrees
    std::string missing;    // why the layer did not come back; empty when it did
};

std::string ShownName(const Project& project, const Layer& layer) {
    const Item* source = layer.sourceId ? FindItem(project, layer.sourceId) : nullptr;
    return layer.name.empty() && source ? source->name : layer.name;
}

// Why a layer did not come back. The exporter writes 3D layers only; the importer makes
// layers only of cameras, lights and objects that carry the compositing tag, which the
// exporter never writes, so 3D solids, nulls, footage, precompositions, text and shapes stay
// in the scene but make no layer.
std::string WhyNotBack(const Layer& layer) {
    const LayerObjectType type = layer.objectType;
    if (type == LayerObjectType::Camera || type == LayerObjectType::Light) return "not exported";
    if (!layer.switches.threeD) return "2D layer";
    return "no compositing tag";
}

// A layer is shown from its in point up to, not including, its out point. Times a
// nanosecond apart count as equal, so that a frame lying on the out point (1.68 s at
// 25 fps for a layer from 0.68 s lasting 1 s) is not taken as shown for a rounding.
bool ShownAt(const Layer& layer, double time) {
    constexpr double kSameTime = 1e-9;
    return time > layer.inPoint - kSameTime && time < layer.inPoint + layer.duration - kSameTime;
}

// Rows 0..2 of a layer-to-world matrix carry the scale; only their directions
// are the layer's rotation.
void UnitAxes(const Matrix4& m, double axes[3][3]) {
    for (int r = 0; r < 3; ++r) {
        const double length = std::hypot(m.m[r][0], m.m[r][1], m.m[r][2]);
        for (int c = 0; c < 3; ++c) axes[r][c] = length > 0.0 ? m.m[r][c] / length : 0.0;
    }
}

// The angle of the rotation that takes one frame's axes onto the other's:
// R = A Bᵀ, cos = (trace R - 1) / 2, sin = |axial vector of R| / 2. atan2 keeps
// small angles exact where acos of a cosine near 1 would not.
double RotationDifference(const Matrix4& a, const Matrix4& b) {
    double ua[3][3], ub[3][3], r[3][3];
    UnitAxes(a, ua);
    UnitAxes(b, ub);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) r[i][j] = ua[i][0] * ub[j][0] + ua[i][1] * ub[j][1] + ua[i][2] * ub[j][2];
    const double cosine = (r[0][0] + r[1][1] + r[2][2] - 1.0) / 2.0;
    const double sine = std::hypot(r[2][1] - r[1][2], r[0][2] - r[2][0], r[1][0] - r[0][1]) / 2.0;
    return std::atan2(sine, cosine) * 180.0 / kPi;
}

double PositionDifference(const Matrix4& a, const Matrix4& b) {
    return std::hypot(a.m[3][0] - b.m[3][0], a.m[3][1] - b.m[3][1], a.m[3][2] - b.m[3][2]);
}

LayerDifference CompareLayer(const Project& original, const Item& comp, const Layer& layer,
                             const Project& imported, const Item* importedComp) {
    LayerDifference difference;
    difference.name = ShownName(original, layer);
    const Layer* back = importedComp ? FindLayerByName(imported, *importedComp, difference.name) : nullptr;
    if (!back) {
        difference.missing = WhyNotBack(layer);
        return difference;
    }
    const int compFrames = static_cast<int>(std::lround(comp.duration * comp.frameRate));
    for (int frame = 0; frame < compFrames; ++frame) {
        const double time = frame / comp.frameRate;
        if (!ShownAt(layer, time)) continue;
        const Matrix4 a = LayerToWorld(original, comp, layer, time);
        const Matrix4 b = LayerToWorld(imported, *importedComp, *back, time);
        difference.position = std::max(difference.position, PositionDifference(a, b));
        difference.rotation = std::max(difference.rotation, RotationDifference(a, b));
        ++difference.frames;
    }
    return difference;
}

// The composition an import made in a fresh project: its only one.
const Item* ImportedComp(const Project& project) {
    for (const auto& item : project.items)
        if (item->kind == ItemKind::Composition) return item.get();
    return nullptr;
}

// Prints the table; true when every layer that came back is within tolerance.
bool PrintTable(const std::vector<LayerDifference>& rows, const RoundtripOptions& options) {
    std::printf("%-24s %6s %14s %14s  %s\n", "layer", "frames", "position (px)", "rotation (deg)", "verdict");
    bool within = true;
    for (const LayerDifference& row : rows) {
        if (!row.missing.empty()) {
            std::printf("%-24s %6s %14s %14s  not back: %s\n", row.name.c_str(), "-", "-", "-", row.missing.c_str());
            continue;
        }
        const bool ok = row.position <= options.tolerancePosition && row.rotation <= options.toleranceRotation;
        within = within && ok;
        std::printf("%-24s %6d %14.3e %14.3e  %s\n", row.name.c_str(), row.frames, row.position, row.rotation,
                    ok ? "ok" : "above tolerance");
    }
    return within;
}

// A private folder for the scene file, so that runs side by side never share one.
std::string MakeWorkDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "aehost-roundtrip-XXXXXX").string();
    return mkdtemp(pattern.data()) ? pattern : std::string();
}

// Export, then import into a fresh project with the plug-in still loaded (the
// engine the export started stays up for the import).
int ExportAndImport(HostSession& session, const std::string& compName, const std::string& scene) {
    session.answers.user.save.path = scene;
    if (const int code = ClickExport(compName, session.answers.user)) return code;
    session.project = NewProject();
    g_host.activeItemId = -1;
    g_host.activeLayerId = 0;
    return ImportThroughFlavor(scene);
}

int Compare(const RoundtripOptions& options, const Project& imported) {
    Project original;
    if (int code = ReadProjectFile(options.project, original)) return code;
    const Item* comp = FindComp(original, options.comp);
    const Item* importedComp = ImportedComp(imported);
    if (!importedComp) HostError("the import made no composition");
    std::vector<LayerDifference> rows;
    for (const auto& layer : comp->comp.layers)
        rows.push_back(CompareLayer(original, *comp, *layer, imported, importedComp));
    return PrintTable(rows, options) && importedComp ? kExitOk : kExitFailed;
}

int CheckComp(const Project& project, const std::string& name) {
    const Item* comp = FindComp(project, name);
    if (!comp) {
        HostError("the project has no composition named \"" + name + "\"");
        return kExitBadInput;
    }
    if (comp->frameRate <= 0.0) {
        HostError("composition \"" + name + "\" has no frame rate");
        return kExitBadInput;
    }
    return kExitOk;
}

}  // namespace

// A tolerance is a number of 0 or more; the message says so without printing the largest double.
const CLI::Validator kToleranceValue(
    [](const std::string& text) -> std::string {
      double value = 0.0;
      if (!CLI::detail::lexical_cast(text, value) || !(value >= 0.0)) return "\"" + text + "\" is not a number of 0 or more";
      return "";
    },
    "NUMBER >= 0");

CLI::App* AddRoundtripCommand(CLI::App& app, RoundtripOptions& options) {
    CLI::App* command = app.add_subcommand(
        "roundtrip", "export a composition, import the scene into a fresh project, and compare the layers' world matrices");
    command->add_option("project", options.project, "project description (JSON)")->required()->check(RegularFile());
    command->add_option("--comp", options.comp, "the composition to carry out and back")->required();
    command->add_option("--tolerance-position", options.tolerancePosition,
                        "largest position difference still within tolerance, pixels (default 1e-3)")
        ->check(kToleranceValue);
    command->add_option("--tolerance-rotation", options.toleranceRotation,
                        "largest rotation difference still within tolerance, degrees (default 1e-3)")
        ->check(kToleranceValue);
    AddHostOptions(*command, options.host);
    return command;
}

int RunRoundtrip(const RoundtripOptions& options, const char* argv0) {
    HostSession session;
    if (const int code = OpenProject(options.host, options.project, session)) return code;
    if (const int code = CheckComp(session.project, options.comp)) return code;
    if (const int code = ActivateComp(session, options.comp)) return code;
    const std::string workDir = MakeWorkDir();
    if (workDir.empty()) {
        HostError("cannot make a folder for the scene file under " + std::filesystem::temp_directory_path().string());
        return kExitFailed;
    }
    int code = StartPlugin(options.host, argv0, session);
    if (code == kExitOk) code = ExportAndImport(session, options.comp, workDir + "/scene.ory");
    if (code == kExitOk) code = Compare(options, session.project);
    std::error_code ignored;
    std::filesystem::remove_all(workDir, ignored);
    return CloseHost(options.host, session, code);
}

}  // namespace aehost
