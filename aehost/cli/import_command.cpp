// aehost import: the user imports a file; the flavor registered for its
// extension verifies and imports it, and the project is saved. On success
// the summary of what the import built goes to standard output.
#include <filesystem>
#include <iostream>
#include <new>

#include "aehost/cli/commands.h"
#include "aehost/cli/summary.h"
#include "aehost/core/hooks.h"
#include "aehost/core/progress.h"
#include "aehost/core/trace.h"
#include "aehost/model/project_json.h"
#include "files/same_file.h"

namespace aehost {

int ImportThroughFlavor(const std::string& file) {
    const std::string path = std::filesystem::absolute(file).string();
    const ImportFlavor* flavor = FlavorForFile(path);
    if (!flavor) {
        HostError("no plug-in imports files like " + path);
        return kExitFailed;
    }
    Trace("import flavor " + Quoted(flavor->name) + " verifies " + path);
    if (const A_Err err = VerifyImport(*flavor, path)) {
        HostError("\"" + flavor->name + "\" cannot import " + path + " (error " + std::to_string(err) + ")");
        return kExitFailed;
    }
    Trace("import flavor " + Quoted(flavor->name) + " imports " + path);
    BeginImportProgress(std::filesystem::path(path).filename().string());
    const A_Err err = RunImport(*flavor, path);
    EndImportProgress();
    if (err) {
        HostError("\"" + flavor->name + "\" failed to import " + path + " (error " + std::to_string(err) + ")");
        return kExitFailed;
    }
    return kExitOk;
}

namespace {

// Saving the project over an input would lose that input: the scene or the project imported into.
int RefuseOutputOverInput(const ImportOptions& options) {
    for (const std::string& input : {options.file, options.project}) {
        if (input.empty() || !qae::files::SameFile(options.output, input)) continue;
        HostError("--output " + options.output + " is the same file as the input " + input + "; nothing was written");
        return kExitBadInput;
    }
    return kExitOk;
}

int ImportFile(const ImportOptions& options, HostSession& session) {
    if (const int code = ImportThroughFlavor(options.file)) return code;
    try {
        SaveProjectFile(session.project, options.output);
    } catch (const std::bad_alloc&) {
        HostError("out of memory while saving the project to " + options.output);
        return kExitFailed;
    } catch (const std::exception& e) {
        HostError(e.what());
        return kExitFailed;
    }
    Trace("project saved to " + options.output);
    return kExitOk;
}

}  // namespace

CLI::App* AddImportCommand(CLI::App& app, ImportOptions& options) {
    CLI::App* command = app.add_subcommand("import", "import a file through the plug-in's import flavor and save the project");
    command->add_option("file", options.file, "the file to import")->required()->check(RegularFile());
    command->add_option("--project", options.project, "project description to import into (default: an empty project)")
        ->check(RegularFile());
    command->add_option("--output", options.output, "where to save the project description")->required();
    CLI::Option* comp = command->add_option("--comp", options.comp, "the composition open while importing");
    command->add_option("--layer", options.layer, "the layer selected in it (where scene markers go)")->needs(comp);
    AddHostOptions(*command, options.host);
    return command;
}

int RunImport(const ImportOptions& options, const char* argv0) {
    if (const int code = RefuseOutputOverInput(options)) return code;
    HostSession session;
    if (const int code = OpenProject(options.host, options.project, session)) return code;
    if (!options.comp.empty())
        if (const int code = ActivateComp(session, options.comp)) return code;
    if (!options.layer.empty())
        if (const int code = ActivateLayer(session, options.layer)) return code;
    if (const int code = StartPlugin(options.host, argv0, session)) return CloseHost(options.host, session, code);
    const ProjectCounts before = CountProject(session.project);
    // The summary comes last, so that it stands only when the whole run succeeded.
    const int code = CloseHost(options.host, session, ImportFile(options, session));
    if (code == kExitOk && !options.host.quiet)
        std::cout << ImportSummary(options.file, session.project, before) << '\n';
    return code;
}

}  // namespace aehost
