// The host's ExtendScript engine: the dialect of After Effects' scripts over an
// embedded Duktape heap. One ScriptContext is one scripting environment of the
// host; like the host's own engine it keeps its globals from one script to the
// next, so a function defined by one script may be called by a later one.
#pragma once

#include "aehost/script/script_user.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace aehost {

struct Project;  // aehost/model/project.h

// Bounds on one run. A script that exceeds them is stopped with an error and the
// scripting environment is thrown away (a fresh one is made for the next run);
// the host itself goes on. The time bound counts the CPU time of the thread that
// runs the script, so a busy machine does not cut a script short; how a running
// script is stopped is told in script_guard.h. Memory counts every block of the
// scripting environment; a request beyond the bound is the script's
// "alloc failed" error, which it may catch.
struct ScriptLimits {
    unsigned timeLimitMs = 10000;
    std::size_t memoryLimitBytes = std::size_t{512} << 20;
};

struct ScriptHeap;  // the Duktape heap and its bindings, made on first use

// What the global object of a scripting environment holds besides plain JavaScript.
enum class ScriptGlobals {
    // The host's scripts: alert and the console `$` (with $.evalFile), File and Folder,
    // ScriptUI windows, and `app` with the project's object model.
    Script,
    // Expressions: the project's object model alone. Nothing that reaches the file
    // system, the user or other scripts is made, so no expression text can get at it.
    Expression,
};

struct ScriptContext {
    ScriptContext();
    ~ScriptContext();
    ScriptContext(const ScriptContext&) = delete;
    ScriptContext& operator=(const ScriptContext&) = delete;

    ScriptUser* user = nullptr;  // answers the dialogs; null: every dialog is cancelled
    // Every line that the script shows the user (alert) or writes to the console
    // ($.writeln); the default writes it to standard error.
    std::function<void(std::string_view line)> report;
    // The project that app.project shows; null: app.project has no items.
    Project* project = nullptr;
    // The id of the active item (what app.project.activeItem is), negative for none.
    std::function<int()> activeItem;
    // The composition time, in seconds, at which a property's `value` is read;
    // the time marker of a headless host stands at 0.
    double currentTime = 0.0;
    // Scripts may read the project but not change it (expressions run so).
    bool readOnly = false;
    // Read when the environment is made, at the first run and after a run was stopped.
    ScriptGlobals globals = ScriptGlobals::Script;
    // Set by every run: true when it was stopped at its time bound (or broke the
    // engine) rather than ending or failing on its own.
    bool stopped = false;
    // Where `#include` and $.evalFile look for a relative path; empty: the working folder.
    std::string includeFolder;
    ScriptLimits limits;

    std::unique_ptr<ScriptHeap> heap;
};

// Runs ExtendScript text. On success `result` gets the value of the script's last
// expression as text (undefined gives "undefined", an array its elements joined by
// commas, as the host prints them) and true is returned. On failure `error` gets
// the message with its line ("Error: ... (line 3)"), `result` is emptied and false
// is returned. Either output may be null.
bool RunScript(ScriptContext& context, const std::string& source, std::string* result,
               std::string* error);

}  // namespace aehost
