#include "aehost/cli/summary.h"

#include <cmath>
#include <filesystem>

#include "aehost/core/trace.h"
#include "quillon/format/ory_format.h"
#include "quillon/orytool/scene_summary.h"

namespace aehost {

namespace {

std::string LayerKind(const Project& project, const Layer& layer) {
    switch (layer.objectType) {
        case LayerObjectType::Camera: return "camera";
        case LayerObjectType::Light: return "light";
        case LayerObjectType::Text: return "text";
        case LayerObjectType::Shape: return "shape";
        case LayerObjectType::AudioVideo: break;
    }
    if (layer.switches.nullLayer) return "null";
    const Item* source = layer.sourceId ? FindItem(project, layer.sourceId) : nullptr;
    if (!source) return "layer";
    if (source->kind == ItemKind::Composition) return "composition";
    return source->footage.kind == FootageKind::Solid ? "solid" : "footage";
}

std::string Count(long long count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string CompText(const Item& comp) {
    const long long frames = std::llround(comp.duration * comp.frameRate);
    return "composition " + Quoted(comp.name) + " " + std::to_string(comp.width) + "x" + std::to_string(comp.height) +
           ", " + ShortNumber(comp.frameRate) + " fps, " + ShortNumber(comp.duration) + " s (" +
           Count(frames, "frame") + ")";
}

// The layers that were added, in total and by kind: "3 layers (1 camera, 2 nulls)".
std::string LayersText(const ProjectCounts& now, const ProjectCounts& before) {
    int total = 0;
    std::string kinds;
    for (const auto& [kind, count] : now.layers) {
        const auto was = before.layers.find(kind);
        const int added = count - (was == before.layers.end() ? 0 : was->second);
        if (added == 0) continue;
        total += added;
        kinds += (kinds.empty() ? "" : ", ") + Count(added, kind);
    }
    return Count(total, "layer") + (kinds.empty() ? "" : " (" + kinds + ")");
}

}  // namespace

std::string ExportSummary(const std::string& compName, const std::string& path) {
    const std::string head = "exported " + Quoted(compName) + " to " + path + ": ";
    quillon::Document document;
    std::string error;
    if (quillon::format::ReadDocument(path, document, &error))
        return head + quillon::orytool::SummaryLine(quillon::orytool::Summarize(document));
    std::error_code ec;
    return head + Count(static_cast<long long>(std::filesystem::file_size(path, ec)), "byte") +
           ", not a scene file (" + error + ")";
}

ProjectCounts CountProject(const Project& project) {
    ProjectCounts counts;
    counts.items = project.items.size();
    for (const auto& item : project.items) {
        if (item->kind != ItemKind::Composition) continue;
        counts.markers += static_cast<long long>(item->comp.markers.size());
        for (const auto& layer : item->comp.layers) {
            ++counts.layers[LayerKind(project, *layer)];
            counts.markers += static_cast<long long>(layer->markers.size());
            for (const auto& [id, stream] : layer->streams)
                counts.keyframes += static_cast<long long>(stream.keys.size());
        }
    }
    return counts;
}

std::string ImportSummary(const std::string& file, const Project& project, const ProjectCounts& before) {
    std::string made;
    // Items keep their order of creation; ids do not tell new from old once they are reused.
    for (std::size_t i = before.items; i < project.items.size(); ++i) {
        const auto& item = project.items[i];
        if (item->kind == ItemKind::Folder) made += (made.empty() ? "" : ", ") + ("folder " + Quoted(item->name));
        if (item->kind == ItemKind::Composition) made += (made.empty() ? "" : ", ") + CompText(*item);
    }
    const ProjectCounts now = CountProject(project);
    return "imported " + file + ": " + (made.empty() ? std::string("no folder or composition") : made) + "; " +
           LayersText(now, before) + ", " + Count(now.keyframes - before.keyframes, "keyframe") + ", " +
           Count(now.markers - before.markers, "marker");
}

}  // namespace aehost
