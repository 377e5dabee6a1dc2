// aehost: a headless host that loads the plug-in and drives it from the
// command line over a JSON project description.
#include <CLI/CLI.hpp>

#include <new>

#include "aehost/cli/commands.h"
#include "aehost/cli/session.h"

int main(int argc, char** argv) {
    CLI::App app{"aehost: a headless host for general plug-ins, driven from the command line"};
    app.require_subcommand(1);
    aehost::ExportOptions exportOptions;
    aehost::ImportOptions importOptions;
    aehost::XformOptions xformOptions;
    aehost::MenuOptions menuOptions;
    aehost::RoundtripOptions roundtripOptions;
    aehost::EvalOptions evalOptions;
    aehost::OutlinesOptions outlinesOptions;
    aehost::RenderSessionOptions sessionOptions;
    CLI::App* exportCommand = aehost::AddExportCommand(app, exportOptions);
    CLI::App* importCommand = aehost::AddImportCommand(app, importOptions);
    CLI::App* xformCommand = aehost::AddXformCommand(app, xformOptions);
    CLI::App* menuCommand = aehost::AddMenuCommand(app, menuOptions);
    CLI::App* roundtripCommand = aehost::AddRoundtripCommand(app, roundtripOptions);
    CLI::App* evalCommand = aehost::AddEvalCommand(app, evalOptions);
    CLI::App* outlinesCommand = aehost::AddOutlinesCommand(app, outlinesOptions);
    CLI::App* sessionCommand = aehost::AddRenderSessionCommand(app, sessionOptions);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ExcludesError&) {
        // The only options that exclude each other: say what each is for.
        aehost::HostError("--verbose and --quiet cannot be used together: --verbose traces every step, --quiet "
                          "prints nothing but errors");
        return aehost::kExitBadInput;
    } catch (const CLI::ParseError& e) {
        // A mistyped command is left over as an extra word; name it rather than only
        // saying that a command is missing.
        if (app.get_subcommands().empty() && !app.remaining().empty()) {
            aehost::HostError("unknown command \"" + app.remaining().front() +
                              "\"; the commands are export, import, xform, menu, roundtrip, eval, outlines "
                              "and session");
            return aehost::kExitBadInput;
        }
        const int code = app.exit(e);
        return code == 0 ? aehost::kExitOk : aehost::kExitBadInput;
    }
    // Out of memory is no fault of the input: the same command may succeed with more.
    try {
        if (exportCommand->parsed()) return aehost::RunExport(exportOptions, argv[0]);
        if (importCommand->parsed()) return aehost::RunImport(importOptions, argv[0]);
        if (xformCommand->parsed()) return aehost::RunXform(xformOptions);
        if (menuCommand->parsed()) return aehost::RunMenu(menuOptions, argv[0]);
        if (roundtripCommand->parsed()) return aehost::RunRoundtrip(roundtripOptions, argv[0]);
        if (evalCommand->parsed()) return aehost::RunEval(evalOptions);
        if (outlinesCommand->parsed()) return aehost::RunOutlines(outlinesOptions);
        if (sessionCommand->parsed()) return aehost::RunRenderSession(sessionOptions, argv[0]);
    } catch (const std::bad_alloc&) {
        aehost::HostError("out of memory while running " + app.get_subcommands().front()->get_name());
        return aehost::kExitFailed;
    }
    return aehost::kExitBadInput;
}
