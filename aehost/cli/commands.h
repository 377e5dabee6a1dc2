// The subcommands of aehost. Each adds itself to the command line and runs
// with the options it parsed, giving an exit code of session.h.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "aehost/cli/session.h"

namespace aehost {

struct ExportOptions {
    HostOptions host;
    std::string project;
    std::string comp;
    std::string output;
    std::string text;  // "live" or "planes": the answer to the text question
    bool cancelSave = false;
    int clicks = 1;    // how often the user clicks the command in this one run
};
CLI::App* AddExportCommand(CLI::App& app, ExportOptions& options);
int RunExport(const ExportOptions& options, const char* argv0);
// Clicks the plug-in's File > Export command on the active composition and checks
// that it wrote the scene file the user chose, whose path goes to `written`; kExitOk or
// kExitFailed after a message.
int ClickExport(const std::string& compName, const ScriptUser& user, std::string* written = nullptr);
// The file the plug-in writes when the user chose `chosen` in the save dialog: the name with
// the suffix ".ory" (in any case) as it is, else with ".ory" in place of its suffix or added.
std::string SceneFileFor(const std::string& chosen);

struct ImportOptions {
    HostOptions host;
    std::string file;
    std::string project;  // empty: an empty project
    std::string output;
    std::string comp;     // the active composition, if any
    std::string layer;    // the selected layer of it, if any
};
CLI::App* AddImportCommand(CLI::App& app, ImportOptions& options);
int RunImport(const ImportOptions& options, const char* argv0);
// Imports `file` into the host's project through the flavor registered for its
// extension; kExitOk or kExitFailed after a message.
int ImportThroughFlavor(const std::string& file);

struct XformOptions {
    std::string project;
    std::string comp;
    std::string layer;
    double frame = 0.0;
};
CLI::App* AddXformCommand(CLI::App& app, XformOptions& options);
int RunXform(const XformOptions& options);
// Whether the host's time can carry a composition frame.
bool IsRepresentableFrame(double frame);
// A command on one layer at one frame, with the options of xform.
CLI::App* AddLayerAtFrameCommand(CLI::App& app, const std::string& name, const std::string& description,
                                 XformOptions& options);
// The project, and the composition and layer named on the command line with a frame the
// host's time carries; kExitOk, or the exit code of a bad input after a message naming it.
int ReadLayerAtFrame(const XformOptions& options, Project& project, const Item** comp, const Layer** layer);

using OutlinesOptions = XformOptions;
CLI::App* AddOutlinesCommand(CLI::App& app, OutlinesOptions& options);
int RunOutlines(const OutlinesOptions& options);

struct EvalOptions {
    std::string project;
    std::string comp;    // made active before the script runs
    std::string script;  // a file of ExtendScript text
    int layerIndex = 0;  // put in for %d
};
constexpr int kMaxEvalLayerIndex = 1 << 20;
CLI::App* AddEvalCommand(CLI::App& app, EvalOptions& options);
int RunEval(const EvalOptions& options);

struct RoundtripOptions {
    HostOptions host;
    std::string project;
    std::string comp;
    double tolerancePosition = 1e-3;  // pixels
    double toleranceRotation = 1e-3;  // degrees
};
CLI::App* AddRoundtripCommand(CLI::App& app, RoundtripOptions& options);
int RunRoundtrip(const RoundtripOptions& options, const char* argv0);

struct MenuOptions {
    HostOptions host;
    std::string project;
    std::string comp;  // empty: nothing active
};
CLI::App* AddMenuCommand(CLI::App& app, MenuOptions& options);
int RunMenu(const MenuOptions& options, const char* argv0);

struct RenderSessionOptions {
    HostOptions host;    // --app-dir, --plugin and --allow-leaks only
    std::string script;  // the session script
};
CLI::App* AddRenderSessionCommand(CLI::App& app, RenderSessionOptions& options);
int RunRenderSession(const RenderSessionOptions& options, const char* argv0);

}  // namespace aehost
