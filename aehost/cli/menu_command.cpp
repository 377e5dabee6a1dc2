// aehost menu: the commands plug-ins put into the host's menus, and whether
// each is enabled with the given composition open. One line a command:
// menu id, "enabled" or "disabled", menu text, separated by tabs.
#include <iostream>

#include "aehost/cli/commands.h"
#include "aehost/core/hooks.h"

namespace aehost {

CLI::App* AddMenuCommand(CLI::App& app, MenuOptions& options) {
    CLI::App* command = app.add_subcommand("menu", "list the plug-ins' menu commands and whether they are enabled");
    command->add_option("project", options.project, "project description (JSON)")->required()->check(RegularFile());
    command->add_option("--comp", options.comp, "the composition to make active (default: nothing active)");
    AddHostOptions(*command, options.host);
    return command;
}

int RunMenu(const MenuOptions& options, const char* argv0) {
    HostSession session;
    if (const int code = OpenProject(options.host, options.project, session)) return code;
    if (!options.comp.empty())
        if (const int code = ActivateComp(session, options.comp)) return code;
    if (const int code = StartPlugin(options.host, argv0, session)) return CloseHost(options.host, session, code);
    const A_Err err = RunUpdateMenuHooks(options.comp.empty() ? AEGP_WindType_PROJECT : AEGP_WindType_COMP);
    if (err) HostError("an update-menu hook returned error " + std::to_string(err));
    for (const MenuCommand& command : g_host.commands)
        if (command.inserted)
            std::cout << command.menu << '\t' << (command.enabled ? "enabled" : "disabled") << '\t' << command.text
                      << '\n';
    return CloseHost(options.host, session, err ? kExitFailed : kExitOk);
}

}  // namespace aehost
