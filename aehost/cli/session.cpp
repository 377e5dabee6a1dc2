#include "aehost/cli/session.h"

#include <unistd.h>

#include <fstream>
#include <iostream>
#include <new>

#include "aehost/cli/preferences_file.h"
#include "aehost/core/exit_report.h"
#include "aehost/core/hooks.h"
#include "aehost/core/host.h"
#include "aehost/core/trace.h"
#include "aehost/model/project_json.h"
#include "aehost/script/expression_engine.h"
#include "files/read_file.h"

namespace aehost {

namespace {

std::string AnswerText(const DialogAnswer& answer) {
    if (answer.cancel) return "closed with Escape";
    std::string text;
    for (const std::string& name : answer.choose) text += (text.empty() ? "chose " : ", ") + Quoted(name);
    const std::string button = answer.press.empty() ? "the default button" : Quoted(answer.press);
    return text + (text.empty() ? "" : ", ") + "pressed " + button;
}

// Traces the dialogs that a script answered: the first of those `waiting`
// before it ran, all but the `left` that remain.
void TraceDialogsAnswered(const std::deque<DialogAnswer>& waiting, std::size_t left) {
    for (std::size_t i = 0; i + left < waiting.size(); ++i) Trace("dialog answered: " + AnswerText(waiting[i]));
}

}  // namespace

void HostError(const std::string& text) { std::cerr << "aehost: " << text << '\n'; }

void AddHostOptions(CLI::App& command, HostOptions& options) {
    command.add_option("--app-dir", options.appDir,
                       "host application folder (default: $AEHOST_APP_DIR, else lib/quillon-ae/AfterEffects "
                       "beside the aehost binary's folder)");
    command.add_option("--plugin", options.plugin, "plug-in library to load instead of the installed one");
    command.add_option("--answers", options.answers, "JSON file with the user's answers to dialogs");
    command.add_option("--transcript", options.transcript, "write every message the plug-in showed to this file");
    command.add_option("--prefs", options.prefs,
                       "the host's preferences file: read at start when it exists, written back at exit");
    CLI::Option* quiet =
        command.add_flag("--quiet", options.quiet, "print no summary line and no progress; errors still go to stderr");
    command
        .add_flag("--verbose", options.verbose,
                  "trace each step on stderr: commands, scripts, dialogs, files, layers walked, items made")
        ->excludes(quiet);
    command.add_flag("--allow-leaks", options.allowLeaks,
                     "report handles the plug-in left open, but do not fail because of them");
}

CLI::Validator RegularFile() {
    return CLI::Validator(
        [](std::string& path) {
            std::string error;
            return qae::files::CheckRegularFile(path, &error) ? std::string() : error;
        },
        "FILE");
}

int ReadProjectFile(const std::string& path, Project& project) {
    try {
        project = LoadProjectFile(path);
    } catch (const std::bad_alloc&) {
        HostError("out of memory while reading the project description " + path);
        return kExitFailed;
    } catch (const std::exception& e) {
        HostError(e.what());
        return kExitBadInput;
    }
    return kExitOk;
}

int OpenProject(const HostOptions& options, const std::string& projectPath, HostSession& session) {
    if (projectPath.empty()) {
        session.project = NewProject();
    } else if (int code = ReadProjectFile(projectPath, session.project)) {
        return code;
    }
    std::string error;
    if (!options.answers.empty() && !ReadAnswersFile(options.answers, &session.answers, &error)) {
        HostError(error);
        return kExitBadInput;
    }
    if (!options.prefs.empty() && !ReadPreferencesFile(options.prefs, &error)) {
        HostError(error);
        return kExitBadInput;
    }
    g_host.project = &session.project;
    g_host.quiet = options.quiet;
    g_host.verbose = options.verbose;
    g_host.progressBar = isatty(STDERR_FILENO) != 0;
    g_host.cancelProgressAt = session.answers.cancelProgressAt;
    InstallExpressionEngine();
    Trace(projectPath.empty() ? "an empty project" : "project " + projectPath + " read");
    if (!options.answers.empty()) Trace("answers " + options.answers + " read");
    session.script.user = &session.answers.user;
    session.script.project = &session.project;
    session.script.activeItem = [] { return g_host.activeItemId; };
    session.script.report = [](std::string_view line) { ShowMessage(std::string(line)); };
    g_host.runScript = [&session](const std::string& source, std::string* result, std::string* scriptError) {
        session.script.currentTime = g_host.currentTime;
        if (!Tracing()) return RunScript(session.script, source, result, scriptError);
        const std::deque<DialogAnswer> waiting = session.answers.user.dialogs;
        const bool ok = RunScript(session.script, source, result, scriptError);
        TraceDialogsAnswered(waiting, session.answers.user.dialogs.size());
        return ok;
    };
    return kExitOk;
}

int StartPlugin(const HostOptions& options, const char* argv0, HostSession& session) {
    g_host.appDir = FindAppDir(options.appDir, argv0);
    const std::string library = options.plugin.empty() ? g_host.appDir + "/" + kPluginSubPath : options.plugin;
    Trace("loading plug-in " + library);
    std::string error;
    if (!LoadPlugin(library, &session.plugin, &error)) {
        HostError(error);
        return kExitFailed;
    }
    Trace("entry point of the plug-in ran");
    return kExitOk;
}

const Item* FindComp(const Project& project, const std::string& name) {
    for (const auto& item : project.items)
        if (item->kind == ItemKind::Composition && item->name == name) return item.get();
    return nullptr;
}

const Layer* FindLayerByName(const Project& project, const Item& comp, const std::string& name) {
    for (const auto& layer : comp.comp.layers) {
        const Item* source = layer->sourceId ? FindItem(project, layer->sourceId) : nullptr;
        const std::string& shown = layer->name.empty() && source ? source->name : layer->name;
        if (shown == name) return layer.get();
    }
    return nullptr;
}

int ActivateComp(HostSession& session, const std::string& compName) {
    const Item* comp = FindComp(session.project, compName);
    if (!comp) {
        HostError("the project has no composition named \"" + compName + "\"");
        return kExitBadInput;
    }
    g_host.activeItemId = comp->id;
    Trace("composition " + Quoted(compName) + " made active");
    return kExitOk;
}

int ActivateLayer(HostSession& session, const std::string& layerName) {
    const Item* comp = FindItem(session.project, g_host.activeItemId);
    const Layer* layer = comp ? FindLayerByName(session.project, *comp, layerName) : nullptr;
    if (!layer) {
        HostError("the active composition has no layer named \"" + layerName + "\"");
        return kExitBadInput;
    }
    g_host.activeLayerId = layer->id;
    Trace("layer " + Quoted(layerName) + " selected");
    return kExitOk;
}

namespace {

bool WriteTranscript(const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    for (const std::string& line : g_host.transcript) out << line << '\n';
    if (!out) HostError("cannot write the transcript " + path);
    return static_cast<bool>(out);
}

bool WritePreferences(const std::string& path) {
    std::string error;
    if (WritePreferencesFile(path, &error)) return true;
    HostError("cannot write the preferences: " + error);
    return false;
}

}  // namespace

int CloseHost(const HostOptions& options, HostSession& session, int code) {
    // What a death hook returns changes nothing: the host quits either way.
    Trace("quitting: death hooks run, the plug-in is unloaded");
    RunDeathHooks();
    const std::vector<std::string> problems = ExitProblems();
    for (const std::string& line : problems) HostError("at exit: " + line);
    UnloadPlugin(session.plugin);
    if (!options.transcript.empty() && !WriteTranscript(options.transcript) && code == kExitOk) code = kExitFailed;
    if (!options.prefs.empty() && !WritePreferences(options.prefs) && code == kExitOk) code = kExitFailed;
    g_host.runScript = nullptr;
    g_host.project = nullptr;
    if (code == kExitOk && !problems.empty() && !options.allowLeaks) return kExitFailed;
    return code;
}

}  // namespace aehost
