// aehost outlines: the contours of each character of a text layer at a frame, read through
// the text layer and path data suites exactly as the plug-in receives them, so that a user
// can see what the host laid out.
#include <charconv>
#include <iostream>

#include "aehost/cli/commands.h"
#include "aehost/core/host.h"
#include "aehost/core/host_time.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/model/text_characters.h"
#include "aehost/model/transform.h"
#include "aehost/script/expression_engine.h"

namespace aehost {

namespace {

// The shortest text that reads back as the same double.
std::string Exact(double value) {
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

std::string Point(double x, double y) { return "(" + Exact(x) + ", " + Exact(y) + ")"; }

A_Err PrintContour(A_long index, PF_PathOutlinePtr path) {
    PF_Boolean open = 0;
    A_long vertices = 0;
    if (A_Err err = PathDataSuite()->PF_PathIsOpen(nullptr, path, &open)) return err;
    if (A_Err err = PathDataSuite()->PF_PathNumSegments(nullptr, path, &vertices)) return err;
    std::cout << "  contour " << index << ": " << (open ? "open" : "closed") << ", " << vertices << " vertices\n";
    for (A_long i = 0; i < vertices; ++i) {
        PF_PathVertex v{};
        if (A_Err err = PathDataSuite()->PF_PathVertexInfo(nullptr, path, i, &v)) return err;
        std::cout << "    " << Point(v.x, v.y) << " in " << Point(v.tan_in_x, v.tan_in_y) << " out "
                  << Point(v.tan_out_x, v.tan_out_y) << '\n';
    }
    return A_Err_NONE;
}

A_Err PrintCharacter(AEGP_LayerH layerH, const A_Time& time, A_long index, const std::string& text) {
    const AEGP_TextLayerSuite2* suite = TextLayerSuite();
    AEGP_TextOutlinesH outlines = nullptr;
    if (A_Err err = suite->GetCharacterOutlines(layerH, &time, index, &outlines)) return err;
    A_long contours = 0;
    A_Err err = suite->AEGP_GetNumTextOutlines(outlines, &contours);
    if (!err)
        std::cout << "character " << index << " \"" << text << "\": " << contours << (contours == 1 ? " contour\n" : " contours\n");
    for (A_long j = 0; !err && j < contours; ++j) {
        PF_PathOutlinePtr path = nullptr;
        err = suite->AEGP_GetIndexedTextOutline(outlines, j, &path);
        if (!err) err = PrintContour(j, path);
    }
    const A_Err disposed = suite->AEGP_DisposeTextOutlines(outlines);
    return err ? err : disposed;
}

}  // namespace

CLI::App* AddOutlinesCommand(CLI::App& app, OutlinesOptions& options) {
    return AddLayerAtFrameCommand(
        app, "outlines", "print the contours of each character of a text layer at a frame, as the plug-in receives them",
        options);
}

int RunOutlines(const OutlinesOptions& options) {
    Project project;
    const Item* comp = nullptr;
    const Layer* layer = nullptr;
    if (int code = ReadLayerAtFrame(options, project, &comp, &layer)) return code;
    if (layer->objectType != LayerObjectType::Text) {
        HostError("layer \"" + options.layer + "\" of composition \"" + options.comp + "\" is no text layer");
        return kExitBadInput;
    }
    g_host.project = &project;
    InstallExpressionEngine();
    const LookupScope lookups;
    const double layerTime = CompTimeToLayerTime(*layer, options.frame / comp->frameRate);
    const A_Time time = ToATime(layerTime, CompTimeScale(*comp));
    // The characters' texts for the headings; their contours come through the suites.
    std::vector<TextCharacter> characters;
    std::string error;
    if (!TextCharactersAt(project, *comp, *layer, layerTime, &characters, &error)) {
        g_host.project = nullptr;
        HostError("the text of layer \"" + options.layer + "\" cannot be laid out: " + error);
        return kExitFailed;
    }
    A_long count = 0;
    A_Err err = TextLayerSuite()->GetCharacterCount(LayerHandle(*layer), &time, &count);
    for (A_long c = 0; !err && c < count && static_cast<std::size_t>(c) < characters.size(); ++c) {
        const std::string& text = characters[static_cast<std::size_t>(c)].text;
        err = PrintCharacter(LayerHandle(*layer), time, c, text == "\r" ? "\\r" : text);
    }
    g_host.project = nullptr;
    return err ? kExitFailed : kExitOk;
}

}  // namespace aehost
