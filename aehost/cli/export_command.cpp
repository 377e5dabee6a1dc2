// aehost export: the user opens a composition and clicks the plug-in's
// command under File > Export; the save dialog is answered with --output.
// On success the summary of the scene file goes to standard output.
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <optional>

#include "aehost/cli/commands.h"
#include "aehost/cli/summary.h"
#include "aehost/core/hooks.h"
#include "aehost/core/trace.h"
#include "files/same_file.h"

namespace aehost {

namespace {

const MenuCommand* ExportMenuCommand() {
    for (const MenuCommand& command : g_host.commands)
        if (command.inserted && command.menu == AEGP_Menu_EXPORT) return &command;
    return nullptr;
}

// What identifies one version of a file: a replacement through a new file and a rename
// gets a new inode, even within the clock's resolution.
struct FileStamp {
    dev_t device;
    ino_t inode;
    timespec modified;
    off_t size;
};

std::optional<FileStamp> StampOf(const std::string& path) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
    return FileStamp{info.st_dev, info.st_ino, info.st_mtim, info.st_size};
}

bool Replaced(const std::optional<FileStamp>& before, const std::optional<FileStamp>& after) {
    if (!after) return false;
    if (!before) return true;
    return before->device != after->device || before->inode != after->inode || before->size != after->size ||
           before->modified.tv_sec != after->modified.tv_sec || before->modified.tv_nsec != after->modified.tv_nsec;
}

bool EqualsIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

}  // namespace

std::string SceneFileFor(const std::string& chosen) {
    std::filesystem::path path(chosen);
    if (!EqualsIgnoringCase(path.extension().string(), ".ory")) path.replace_extension(".ory");
    return path.string();
}

int ClickExport(const std::string& compName, const ScriptUser& user, std::string* written) {
    RunUpdateMenuHooks(AEGP_WindType_COMP);
    const MenuCommand* command = ExportMenuCommand();
    if (!command) {
        HostError("the plug-in put no command under File > Export");
        return kExitFailed;
    }
    if (!command->enabled) {
        HostError("\"" + command->text + "\" is disabled for composition \"" + compName + "\"");
        return kExitFailed;
    }
    // The host sees which file changed: the scene file the plug-in makes of the chosen name,
    // or the chosen name itself for a plug-in that writes what it was given.
    const std::string scene = SceneFileFor(user.save.path);
    const std::string chosen = user.save.path;
    const auto sceneBefore = StampOf(scene);
    const auto chosenBefore = StampOf(chosen);
    Trace("the user clicks File > Export > " + Quoted(command->text) + " (command " + std::to_string(command->id) +
          ")");
    bool handled = false;
    if (const A_Err err = RunCommand(command->id, &handled)) {
        HostError("the command hook returned error " + std::to_string(err));
        return kExitFailed;
    }
    if (!handled) {
        HostError("no plug-in handled \"" + command->text + "\"");
        return kExitFailed;
    }
    if (user.save.cancel) return kExitOk;
    const std::string target = Replaced(sceneBefore, StampOf(scene))     ? scene
                               : Replaced(chosenBefore, StampOf(chosen)) ? chosen
                                                                         : std::string();
    // The reason, when the engine knew one, is on its console line above this message.
    if (target.empty()) {
        HostError("the export wrote no scene file to " + scene + (scene == chosen ? "" : " nor to " + chosen));
        return kExitFailed;
    }
    if (written) *written = target;
    std::error_code ec;
    Trace("scene file written: " + target + " (" + std::to_string(std::filesystem::file_size(target, ec)) + " bytes)");
    return kExitOk;
}

namespace {

// The summary line of a finished export.
void PrintExportSummary(const ExportOptions& options, const ScriptUser& user, const std::string& written) {
    if (user.save.cancel)
        std::cout << "export of " << Quoted(options.comp) << " cancelled in the save dialog: nothing written\n";
    else
        std::cout << ExportSummary(options.comp, written) << '\n';
}

}  // namespace

CLI::App* AddExportCommand(CLI::App& app, ExportOptions& options) {
    CLI::App* command = app.add_subcommand("export", "export a composition through the plug-in's File > Export command");
    command->add_option("project", options.project, "project description (JSON)")->required()->check(RegularFile());
    command->add_option("--comp", options.comp, "the composition to export (made the active item)")->required();
    command->add_option("--output", options.output, "the scene file to choose in the save dialog");
    command->add_option("--text", options.text, "answer to the text question: live objects or planes")
        ->check(CLI::IsMember({"live", "planes"}));
    command->add_flag("--cancel-save", options.cancelSave, "press Cancel in the save dialog");
    command->add_option("--clicks", options.clicks, "click the command this many times in one run, as a user exporting again")
        ->check(CLI::Range(1, 100));
    AddHostOptions(*command, options.host);
    return command;
}

int RunExport(const ExportOptions& options, const char* argv0) {
    HostSession session;
    if (const int code = OpenProject(options.host, options.project, session)) return code;
    ScriptUser& user = session.answers.user;
    if (!options.output.empty()) user.save.path = options.output;
    // As the host's File object spells it, so that the file the plug-in writes can be found.
    if (!user.save.path.empty()) user.save.path = std::filesystem::absolute(user.save.path).lexically_normal().string();
    if (options.cancelSave) user.save.cancel = true;
    // Each click asks the text question anew, so each one gets the same answer.
    if (!options.text.empty())
        for (int i = 0; i < options.clicks; ++i) user.dialogs.push_front(DialogAnswer{{options.text}, "", false});
    if (user.save.path.empty() && !user.save.cancel) {
        HostError("export needs --output, --cancel-save or a save answer in --answers");
        return kExitBadInput;
    }
    if (!user.save.cancel && qae::files::SameFile(SceneFileFor(user.save.path), options.project)) {
        HostError("the scene file " + SceneFileFor(user.save.path) + " would replace the project " + options.project +
                  "; nothing was written");
        return kExitBadInput;
    }
    Trace(user.save.cancel ? std::string("the save dialog will be cancelled")
                           : "the save dialog will be answered with " + user.save.path);
    if (!options.text.empty()) Trace("the text question will be answered with " + Quoted(options.text));
    if (const int code = ActivateComp(session, options.comp)) return code;
    if (const int code = StartPlugin(options.host, argv0, session)) return CloseHost(options.host, session, code);
    // Every click runs; the run's result is the first failure, as a user would remember it.
    int result = kExitOk;
    std::string written;
    for (int i = 0; i < options.clicks; ++i) {
        const int code = ClickExport(options.comp, user, &written);
        if (result == kExitOk) result = code;
    }
    // The summary comes last, so that it stands only when the whole run succeeded.
    result = CloseHost(options.host, session, result);
    if (result == kExitOk && !options.host.quiet) PrintExportSummary(options, user, written);
    return result;
}

}  // namespace aehost
