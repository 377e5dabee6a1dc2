// aehost import: the user imports a file; the flavor registered for its
// extension verifies and imports it, and the project is saved. On success
// the summary of what the import built goes to standard output.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <new>

#include "aehost/cli/commands.h"
#include "aehost/cli/summary.h"
#include "aehost/core/hooks.h"
#include "aehost/core/progress.h"
#include "aehost/core/trace.h"
#include "aehost/model/project_json.h"
#include "plugin/exporter/scene_ids.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/evaluate.h"
#include "files/same_file.h"

namespace aehost {

namespace {

// Why an import failed, as far as the host can tell from the file: the plug-in's importer
// fails silently by design and says why only in its debug log.
struct ImportFailure {
    std::string reason;  // empty: the file shows no reason
    int exitCode = kExitFailed;
};

// Another program holds the file for writing: the import waited its 5 seconds for it.
bool HeldByWriter(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    const bool held = flock(fd, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(fd);
    return held;
}

double Seconds(const quillon::Document& document, int32_t id) {
    const auto found = document.params.find(id);
    const BaseTime* time = found != document.params.end() ? quillon::AsTime(found->second.raw) : nullptr;
    return time && time->denominator != 0.0 ? time->numerator / time->denominator : 0.0;
}

double RenderFloat(const quillon::Document& document, int32_t id) {
    if (!document.activeSettings) return 0.0;
    const auto found = document.activeSettings->params.find(id);
    return found != document.activeSettings->params.end() ? quillon::AsFloat(found->second.raw) : 0.0;
}

// A size, aspect, rate or length that no composition of this host has.
std::string CompositionProblem(const quillon::Document& document) {
    const auto fps = document.params.find(DocParam_Fps);
    const double frame = fps != document.params.end() && quillon::AsInt32(fps->second.raw) > 0
                             ? 1.0 / quillon::AsInt32(fps->second.raw)
                             : 0.0;
    const double length = Seconds(document, DocParam_MaxTime) - Seconds(document, DocParam_MinTime) + frame;
    const double width = RenderFloat(document, RenderParam_Width), height = RenderFloat(document, RenderParam_Height);
    const double aspect = RenderFloat(document, RenderParam_PixelAspect);
    const double rate = RenderFloat(document, RenderParam_FrameRate);
    std::ostringstream text;
    if (!(width >= 1 && width < kMaxItemSize + 1 && height >= 1 && height < kMaxItemSize + 1)) {
        text << "the scene renders " << width << " x " << height << " pixels; a composition is 1 to " << kMaxItemSize
             << " pixels wide and high";
    } else if (!(aspect >= kMinPixelAspect && aspect <= kMaxPixelAspect)) {
        text << "the scene's pixel aspect is " << aspect << "; a composition's is " << kMinPixelAspect << " to "
             << kMaxPixelAspect;
    } else if (!(rate >= kMinCompFrameRate && rate <= kMaxCompFrameRate)) {
        text << "the scene runs at " << rate << " frames a second; a composition runs at " << kMinCompFrameRate
             << " to " << kMaxCompFrameRate << " frames a second";
    } else if (!(length <= kMaxCompDuration)) {
        text << "the scene is " << length << " seconds long; a composition is at most " << kMaxCompDuration
             << " seconds (three hours) long";
    }
    return text.str();
}

ImportFailure WhyImportFailed(const std::string& path) {
    if (HeldByWriter(path)) return {path + " is being written by another program (locked for 5 s)", kExitFailed};
    quillon::Document document;
    std::string error;
    if (!quillon::format::ReadDocument(path, document, &error)) return {error, kExitBadInput};
    const std::string composition = CompositionProblem(document);
    if (!composition.empty()) return {path + ": " + composition, kExitFailed};
    const std::string problem = quillon::EvaluateDocumentCaches(document);
    if (!problem.empty()) return {path + ": " + problem, kExitBadInput};
    return {};
}

}  // namespace

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
    const std::size_t refusedBefore = g_host.misuse.size();
    const A_Err err = RunImport(*flavor, path);
    EndImportProgress();
    if (err) {
        const ImportFailure failure = WhyImportFailed(path);
        HostError("\"" + flavor->name + "\" failed to import " + path + " (error " + std::to_string(err) + ")" +
                  (failure.reason.empty() ? "" : ": " + failure.reason));
        return failure.exitCode;
    }
    // A value the host refused (one that is not finite, say) is missing from what was built.
    if (g_host.misuse.size() > refusedBefore) {
        HostError("\"" + flavor->name + "\" imported " + path + " with calls the host refused; the project is not saved");
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
