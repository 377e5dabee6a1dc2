// aehost xform: the layer-to-world matrix of a layer at a frame, as the
// plug-in gets it from AEGP_GetLayerToWorldXform, printed as JSON.
#include <json/json.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <memory>

#include "aehost/cli/commands.h"
#include "aehost/core/host.h"
#include "aehost/core/host_time.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/script/expression_engine.h"

namespace aehost {

namespace {

void PrintMatrix(const XformOptions& options, double seconds, const A_Matrix4& m) {
    Json::Value out;
    out["comp"] = options.comp;
    out["layer"] = options.layer;
    out["frame"] = options.frame;
    out["time"] = seconds;
    Json::Value rows(Json::arrayValue);
    for (const auto& row : m.mat) {
        Json::Value r(Json::arrayValue);
        for (double v : row) r.append(v);
        rows.append(r);
    }
    out["matrix"] = rows;
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    builder["precision"] = 17;
    std::unique_ptr<Json::StreamWriter> writer(builder.newStreamWriter());
    writer->write(out, &std::cout);
    std::cout << '\n';
}

bool IsFinite(const A_Matrix4& m) {
    for (const auto& row : m.mat)
        for (double v : row)
            if (!std::isfinite(v)) return false;
    return true;
}

}  // namespace

// One frame is 100 units of a 32-bit count.
bool IsRepresentableFrame(double frame) {
    return std::isfinite(frame) && std::fabs(frame) * 100.0 <= std::numeric_limits<A_long>::max();
}

int ReadLayerAtFrame(const XformOptions& options, Project& project, const Item** comp, const Layer** layer) {
    if (int code = ReadProjectFile(options.project, project)) return code;
    const std::string& compName = options.comp;
    const std::string& layerName = options.layer;
    const double frame = options.frame;
    *comp = FindComp(project, compName);
    if (!*comp) {
        HostError("the project has no composition named \"" + compName + "\"");
        return kExitBadInput;
    }
    *layer = FindLayerByName(project, **comp, layerName);
    if (!*layer) {
        HostError("composition \"" + compName + "\" has no layer named \"" + layerName + "\"");
        return kExitBadInput;
    }
    if ((*comp)->frameRate <= 0.0) {
        HostError("composition \"" + compName + "\" has no frame rate");
        return kExitBadInput;
    }
    if (!IsRepresentableFrame(frame)) {
        const std::string last = std::to_string(std::numeric_limits<A_long>::max() / 100);
        HostError("--frame " + ShortNumber(frame) +
                  " is not a frame the host's time carries: give a finite frame between -" + last + " and " + last);
        return kExitBadInput;
    }
    return kExitOk;
}

CLI::App* AddLayerAtFrameCommand(CLI::App& app, const std::string& name, const std::string& description,
                                 XformOptions& options) {
    CLI::App* command = app.add_subcommand(name, description);
    command->add_option("project", options.project, "project description (JSON)")->required()->check(CLI::ExistingFile);
    command->add_option("--comp", options.comp, "the composition")->required();
    command->add_option("--layer", options.layer, "the layer, by the name the timeline shows (the topmost of several)")
        ->required();
    command->add_option("--frame", options.frame, "composition frame, from 0; may be fractional")->required();
    return command;
}

CLI::App* AddXformCommand(CLI::App& app, XformOptions& options) {
    return AddLayerAtFrameCommand(app, "xform", "print a layer's layer-to-world matrix at a frame as JSON", options);
}

int RunXform(const XformOptions& options) {
    Project project;
    const Item* comp = nullptr;
    const Layer* layer = nullptr;
    if (int code = ReadLayerAtFrame(options, project, &comp, &layer)) return code;
    g_host.project = &project;
    InstallExpressionEngine();
    const A_Time time = ToATime(options.frame / comp->frameRate, CompTimeScale(*comp));
    A_Matrix4 matrix{};
    const LookupScope lookups;
    const A_Err err = LayerSuite()->AEGP_GetLayerToWorldXform(LayerHandle(*layer), &time, &matrix);
    g_host.project = nullptr;
    if (err) return kExitFailed;
    // JSON has no form for an infinity or a NaN, and the output must stay JSON.
    if (!IsFinite(matrix)) {
        HostError("the matrix of layer \"" + options.layer + "\" at frame " + ShortNumber(options.frame) +
                  " is not finite: its transform overflows a double");
        return kExitFailed;
    }
    PrintMatrix(options, static_cast<double>(time.value) / time.scale, matrix);
    return kExitOk;
}

}  // namespace aehost
