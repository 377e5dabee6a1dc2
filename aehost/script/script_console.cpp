// The ways a script talks to the person at the host: alert and the other modal
// message boxes, and the console object `$`. Headless, a message is one line of
// the context's report; a question gets the answer a user who agrees would give.
#include "aehost/script/dialect.h"
#include "aehost/script/script_heap.h"

#include <stdexcept>

namespace aehost {
namespace {

// The text of a script file for $.evalFile, in plain JavaScript.
duk_ret_t ReadScript(duk_context* ctx) {
    const ScriptContext& context = ContextOf(ctx);
    const std::string name = ArgText(ctx, 0);
    const auto read = [&context](const std::string& file, std::string* text, std::string* why) {
        return ReadScriptFile(context, file, text, why);
    };
    std::string source;
    std::string translated;
    std::string why;
    if (!read(name, &source, &why) || !TranslateDialect(source, read, &translated, &why)) {
        throw std::runtime_error("$.evalFile(\"" + name + "\"): " + why);
    }
    PushText(ctx, translated);
    return 1;
}

constexpr const char* kConsole = R"JS(function (host, global) {
    function text(v) { return v === undefined ? "" : String(v); }
    global.alert = function (message, title) {
        host.report((title ? text(title) + ": " : "") + text(message));
    };
    global.confirm = function (message) {
        host.report(text(message) + " [yes]");
        return true;
    };
    global.prompt = function (message, preset) {
        host.report(text(message) + " [" + text(preset) + "]");
        return preset === undefined ? "" : text(preset);
    };
    global.$ = {
        os: "Linux",
        version: "4.5",
        global: global,
        writeln: function () {
            host.report(Array.prototype.map.call(arguments, text).join(""));
        },
        write: function () {
            host.report(Array.prototype.map.call(arguments, text).join(""));
        },
        sleep: function () {},
        evalFile: function (path) {
            var source = host.readScript(path instanceof File ? path.fsName : text(path));
            return (0, eval)(source);
        }
    };
})JS";

}  // namespace

void InstallConsole(duk_context* ctx) {
    RunPrelude(ctx, "console", kConsole,
               {{"report", Native<ReportLine>, 1}, {"readScript", Native<ReadScript>, 1}});
}

}  // namespace aehost
