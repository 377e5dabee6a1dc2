// One run of the host as the commands share it: the options every command
// takes, the project, the scripted user and the loaded plug-in, and the
// report at exit.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "aehost/cli/answers.h"
#include "aehost/core/plugin_loader.h"
#include "aehost/model/project.h"
#include "aehost/script/script_engine.h"

namespace aehost {

// Exit codes a pipeline can test.
enum ExitCode { kExitOk = 0, kExitFailed = 1, kExitBadInput = 2 };

struct HostOptions {
    std::string appDir;      // --app-dir
    std::string plugin;      // --plugin: a plug-in library instead of the installed one
    std::string answers;     // --answers
    std::string transcript;  // --transcript
    std::string prefs;       // --prefs: the preferences file, read at start and written at exit
    bool quiet = false;      // --quiet: no summary line and no progress
    bool verbose = false;    // --verbose: trace each step on standard error
    bool allowLeaks = false; // --allow-leaks: report what the plug-in left behind, but exit 0
};

void AddHostOptions(CLI::App& command, HostOptions& options);

// The check of a command-line argument that names an input file: a regular file, since a
// fifo would block the plug-in's reader and a device such as /dev/zero never end.
CLI::Validator RegularFile();

struct HostSession {
    Project project;
    UserAnswers answers;
    ScriptContext script;
    LoadedPlugin plugin;
};

// Reads the project description (or starts an empty project when `projectPath`
// is empty) and the answers, and installs both in the host. kExitOk, or
// kExitBadInput after a message.
int OpenProject(const HostOptions& options, const std::string& projectPath, HostSession& session);
// Reads a project description into `project`; a file that is missing or not a description is
// reported and gives the bad-input exit code, running out of memory the failure exit code.
int ReadProjectFile(const std::string& path, Project& project);

// Loads the plug-in and runs its entry point; kExitOk or kExitFailed after a message.
int StartPlugin(const HostOptions& options, const char* argv0, HostSession& session);

// The composition of that name, or null.
const Item* FindComp(const Project& project, const std::string& name);
// A layer by the name the timeline shows: its own, else its source's; the
// topmost of several; or null.
const Layer* FindLayerByName(const Project& project, const Item& comp, const std::string& name);

// Makes the named composition the active item; kExitBadInput when there is none.
int ActivateComp(HostSession& session, const std::string& compName);
// Selects the named layer of the active composition; kExitBadInput when there is none.
int ActivateLayer(HostSession& session, const std::string& layerName);

// The host quits: death hooks, unloading, and the report of what the plug-in
// left behind, which turns a successful `code` into kExitFailed unless leaks
// are allowed.
int CloseHost(const HostOptions& options, HostSession& session, int code);

// An error of the host itself, on standard error.
void HostError(const std::string& text);

}  // namespace aehost
