// Bounds on a running script: memory and time.
//
// The packaged Duktape has no execution-timeout hook, so a script that never ends
// is stopped from outside: a timer on the CPU time of the running thread raises a
// signal, and the handler jumps back to where the run began. The heap that was
// running is then in an unknown state; it is abandoned, and every block it had is
// freed through its own arena. A jump may only be taken where no other state is
// half-changed: never inside the C library's allocator (the arena marks those
// moments) and never inside a native function of ours (GuardedNative marks those;
// the jump is taken as the native returns). While a native is running, a nested
// run of another heap (an expression evaluated for a script) has its own guard and
// can still be stopped.
#pragma once

#include <duktape.h>

#include <csetjmp>
#include <cstddef>

namespace aehost {

// Every block a heap holds, so that an abandoned heap can be freed as a whole.
struct HeapArena {
    struct Block;
    Block* blocks = nullptr;
    std::size_t used = 0;
    std::size_t limit = 0;  // a request beyond it fails as an out-of-memory error
};

void* ArenaAlloc(void* arena, duk_size_t size);
void* ArenaRealloc(void* arena, void* ptr, duk_size_t size);
void ArenaFree(void* arena, void* ptr);
void ReleaseArena(HeapArena& arena);

// TimedOut and Fatal both mean that the heap must be abandoned.
enum class GuardOutcome { Finished, TimedOut, Fatal };

// Calls `call(ctx, udata)` (which must not throw: a duk_safe_call or a pcall
// sequence) with a limit on the CPU time of this thread.
GuardOutcome RunGuarded(duk_context* ctx, unsigned timeLimitMs,
                        void (*call)(duk_context* ctx, void* udata), void* udata);

// Runs a native function's body in a protected call, so that no Duktape error
// leaves it with its C++ state half done, and so that a time-out waits until the
// body has returned. The body sees the native's arguments and leaves one result.
duk_ret_t GuardedNative(duk_context* ctx, duk_ret_t (*body)(duk_context* ctx, void* udata));

// The handler Duktape calls for an error no protected call caught: it ends the
// guarded run as a time-out does, since the heap cannot be used after it.
void OnFatalScriptError(void* udata, const char* message);

}  // namespace aehost
