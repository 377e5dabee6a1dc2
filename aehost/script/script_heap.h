// What the parts of the script engine share: the heap record, the way natives are
// declared, and the preludes that build the dialect's objects in JavaScript over a
// few natives.
#pragma once

#include "aehost/script/script_engine.h"
#include "aehost/script/script_guard.h"

#include <duktape.h>

#include <vector>
#include <stdexcept>
#include <string>

namespace aehost {

struct ScriptHeap {
    HeapArena arena;
    duk_context* ctx = nullptr;
};

// The context whose heap `ctx` is.
ScriptContext& ContextOf(duk_context* ctx);

// A native's body: sees its arguments at 0.., leaves its one result on top and
// returns 1. A problem is thrown as a C++ exception; it becomes a script Error
// with its text once the body's own objects are gone.
using NativeBody = duk_ret_t (*)(duk_context* ctx);

duk_ret_t ThrowPending(duk_context* ctx);

template <NativeBody Body>
duk_ret_t Native(duk_context* ctx) {
    return GuardedNative(ctx, [](duk_context* c, void*) -> duk_ret_t {
        try {
            return Body(c);
        } catch (const std::exception& e) {
            duk_push_error_object(c, DUK_ERR_ERROR, "%s", e.what());
        }
        return ThrowPending(c);
    });
}

struct NativeEntry {
    const char* name;
    duk_c_function function;
    duk_idx_t nargs;
};

// Evaluates `source`, a JavaScript function expression `function (host, global)`,
// and calls it with an object that holds the given natives and the global object.
// A prelude is ours, so a failure is a programming error and throws.
void RunPrelude(duk_context* ctx, const char* name, const char* source,
                const std::vector<NativeEntry>& natives);

// The argument as UTF-8 text; anything but a string or a number gives "".
std::string ArgText(duk_context* ctx, duk_idx_t index);
// Pushes UTF-8 text as a script string.
void PushText(duk_context* ctx, const std::string& text);
// A script string (Duktape's own form, surrogate pairs as two units) as UTF-8.
std::string ToUtf8(const char* text, std::size_t length);

// report(text): one line to the context's report.
duk_ret_t ReportLine(duk_context* ctx);

// The bytes of a file; false when it cannot be read.
bool ReadFileBytes(const std::string& path, std::string* bytes);

// Reads a script file named by an #include or $.evalFile: an absolute path, or one
// relative to the context's include folder.
bool ReadScriptFile(const ScriptContext& context, const std::string& name, std::string* text,
                    std::string* error);

// The parts of the dialect, each installed into a fresh heap.
void InstallConsole(duk_context* ctx);
void InstallFileObjects(duk_context* ctx);
void InstallWindow(duk_context* ctx);
void InstallProject(duk_context* ctx);

}  // namespace aehost
