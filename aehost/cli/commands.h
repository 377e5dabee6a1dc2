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

struct XformOptions {
    std::string project;
    std::string comp;
    std::string layer;
    double frame = 0.0;
};
CLI::App* AddXformCommand(CLI::App& app, XformOptions& options);
int RunXform(const XformOptions& options);

struct MenuOptions {
    HostOptions host;
    std::string project;
    std::string comp;  // empty: nothing active
};
CLI::App* AddMenuCommand(CLI::App& app, MenuOptions& options);
int RunMenu(const MenuOptions& options, const char* argv0);

}  // namespace aehost
