#include "aehost/script/script_engine.h"

#include "aehost/script/dialect.h"
#include "aehost/script/script_heap.h"

#include <cstring>
#include <iostream>
#include <stdexcept>

namespace aehost {
namespace {

constexpr const char* kContextKey = "\xff" "context";

void AbandonHeap(ScriptContext& context) {
    // The heap may be in the middle of anything: its memory is given back block by
    // block through the arena, and Duktape is not asked to tidy up.
    ReleaseArena(context.heap->arena);
    context.heap.reset();
}

void DestroyHeap(ScriptContext& context) {
    if (!context.heap) return;
    duk_destroy_heap(context.heap->ctx);
    ReleaseArena(context.heap->arena);
    context.heap.reset();
}

bool MakeHeap(ScriptContext& context, std::string* error) {
    auto heap = std::make_unique<ScriptHeap>();
    heap->arena.limit = context.limits.memoryLimitBytes;
    heap->ctx = duk_create_heap(ArenaAlloc, ArenaRealloc, ArenaFree, &heap->arena,
                                OnFatalScriptError);
    if (!heap->ctx) {
        ReleaseArena(heap->arena);
        *error = "the script engine could not start: out of memory";
        return false;
    }
    duk_context* ctx = heap->ctx;
    context.heap = std::move(heap);
    duk_push_global_stash(ctx);
    duk_push_pointer(ctx, &context);
    duk_put_prop_string(ctx, -2, kContextKey);
    duk_pop(ctx);
    try {
        if (context.globals == ScriptGlobals::Script) {
            InstallConsole(ctx);
            InstallFileObjects(ctx);
            InstallWindow(ctx);
        }
        InstallProject(ctx);
    } catch (const std::exception& e) {
        DestroyHeap(context);
        *error = std::string("the script engine could not start: ") + e.what();
        return false;
    }
    return true;
}

// Leaves on the stack the text of the result, and sets `failed` when it is an error.
struct ProgramRun {
    const std::string* source;
    bool failed = false;
};

// An error's text with the line it happened on, unless the message has it already.
// Runs inside the guard, so it allocates only on the script heap.
void ErrorText(duk_context* ctx) {
    const bool hasLine = duk_is_error(ctx, -1) && duk_get_prop_string(ctx, -1, "lineNumber") &&
                         duk_is_number(ctx, -1);
    const int line = hasLine ? duk_get_int(ctx, -1) : 0;
    duk_pop(ctx);
    const char* message = duk_safe_to_string(ctx, -1);
    if (hasLine && !std::strstr(message, "(line ")) {
        duk_push_sprintf(ctx, "%s (line %d)", message, line);
        duk_remove(ctx, -2);
    }
}

void RunProgram(duk_context* ctx, void* udata) {
    auto& run = *static_cast<ProgramRun*>(udata);
    duk_push_string(ctx, "script");
    if (duk_pcompile_lstring_filename(ctx, 0, run.source->data(), run.source->size()) != 0 ||
        duk_pcall(ctx, 0) != DUK_EXEC_SUCCESS) {
        run.failed = true;
        ErrorText(ctx);
        return;
    }
    duk_safe_to_string(ctx, -1);
}

}  // namespace

ScriptContext::ScriptContext()
    : report([](std::string_view line) { std::cerr << line << '\n'; }) {}

ScriptContext::~ScriptContext() { DestroyHeap(*this); }

bool ReadScriptFile(const ScriptContext& context, const std::string& name, std::string* text,
                  std::string* error) {
    const std::string path =
        name.starts_with('/') || context.includeFolder.empty() ? name : context.includeFolder + "/" + name;
    if (ReadFileBytes(path, text)) return true;
    *error = "no such file " + path;
    return false;
}

ScriptContext& ContextOf(duk_context* ctx) {
    duk_push_global_stash(ctx);
    duk_get_prop_string(ctx, -1, kContextKey);
    auto* context = static_cast<ScriptContext*>(duk_get_pointer(ctx, -1));
    duk_pop_2(ctx);
    return *context;
}

bool RunScript(ScriptContext& context, const std::string& source, std::string* result,
               std::string* error) {
    std::string why;
    std::string text;
    if (result) result->clear();
    context.stopped = false;
    const auto include = [&context](const std::string& name, std::string* included,
                                    std::string* problem) {
        return ReadScriptFile(context, name, included, problem);
    };
    if (!TranslateDialect(source, include, &text, &why) ||
        (!context.heap && !MakeHeap(context, &why))) {
        if (error) *error = why;
        return false;
    }
    context.heap->arena.limit = context.limits.memoryLimitBytes;
    duk_context* ctx = context.heap->ctx;
    const duk_idx_t base = duk_get_top(ctx);
    ProgramRun run{&text};
    const GuardOutcome outcome = RunGuarded(ctx, context.limits.timeLimitMs, RunProgram, &run);
    if (outcome != GuardOutcome::Finished) {
        AbandonHeap(context);
        context.stopped = true;
        if (error) {
            *error = outcome == GuardOutcome::TimedOut
                         ? "Error: the script was stopped after " +
                               std::to_string(context.limits.timeLimitMs) + " ms"
                         : std::string("Error: the script engine failed");
        }
        return false;
    }
    duk_size_t length = 0;
    const char* reply = duk_get_lstring(ctx, -1, &length);
    const std::string replyText = reply ? ToUtf8(reply, length) : std::string();
    duk_set_top(ctx, base);
    if (run.failed) {
        if (error) *error = replyText;
        return false;
    }
    if (result) *result = replyText;
    return true;
}

}  // namespace aehost
