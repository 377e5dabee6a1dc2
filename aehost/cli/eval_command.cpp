// aehost eval: runs a query script in the host as the plug-in runs it (the
// layer index put in for `%d`) and prints the reply, so that a user can see
// exactly what the plug-in's script bridge gets.
#include <iostream>

#include "aehost/cli/commands.h"
#include "aehost/core/host.h"
#include "aehost/script/script_heap.h"

namespace aehost {

namespace {

// Each "%d" becomes the index, as the plug-in's formatter fills its templates.
std::string FillLayerIndex(const std::string& script, int layerIndex) {
    std::string filled;
    const std::string index = std::to_string(layerIndex);
    for (std::size_t at = 0; at < script.size();) {
        if (script.compare(at, 2, "%d") == 0) {
            filled += index;
            at += 2;
        } else {
            filled += script[at++];
        }
    }
    return filled;
}

}  // namespace

CLI::App* AddEvalCommand(CLI::App& app, EvalOptions& options) {
    CLI::App* command = app.add_subcommand(
        "eval", "run a query script with the composition active, as the plug-in runs it, and print its reply");
    command->add_option("project", options.project, "project description (JSON)")->required()->check(RegularFile());
    command->add_option("--comp", options.comp, "the active composition")->required();
    command->add_option("--script", options.script, "the script; each %d in it becomes the layer index")
        ->required()
        ->check(RegularFile());
    command->add_option("--layer-index", options.layerIndex,
                        "the zero-based layer index put in for %d, as the host's AEGP_GetLayerIndex gives it")
        ->check(CLI::Range(0, kMaxEvalLayerIndex));
    return command;
}

int RunEval(const EvalOptions& options) {
    std::string script;
    if (!ReadFileBytes(options.script, &script)) {
        HostError("cannot read the script " + options.script);
        return kExitBadInput;
    }
    HostSession session;
    if (int code = OpenProject(HostOptions{}, options.project, session)) return code;
    int code = ActivateComp(session, options.comp);
    if (code == kExitOk) {
        std::string reply, error;
        if (g_host.runScript(FillLayerIndex(script, options.layerIndex), &reply, &error)) {
            std::cout << reply << '\n';
        } else {
            HostError("the script " + options.script + " failed: " + error);
            code = kExitFailed;
        }
    }
    g_host.runScript = nullptr;
    g_host.project = nullptr;
    return code;
}

}  // namespace aehost
