#include "aehost/script/script_guard.h"

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <new>
#include <sys/syscall.h>
#include <unistd.h>

namespace aehost {

struct alignas(std::max_align_t) HeapArena::Block {
    Block* prev;
    Block* next;
    std::size_t size;
};

namespace {

// A guarded run on this thread; runs nest when a native starts another heap.
struct Guard {
    sigjmp_buf jump;
    Guard* outer = nullptr;
    volatile sig_atomic_t expired = 0;
    volatile sig_atomic_t nativeDepth = 0;
};

constexpr int kFatalJump = 2;

thread_local Guard* g_guard = nullptr;
// Non-zero while this thread is inside the C library's allocator.
thread_local volatile sig_atomic_t g_inAllocator = 0;

// The jump is taken only for the innermost guard and only at a safe point.
void JumpIfDue() {
    Guard* guard = g_guard;
    if (guard && guard->expired && guard->nativeDepth == 0 && !g_inAllocator) {
        siglongjmp(guard->jump, 1);
    }
}

void OnTimer(int, siginfo_t* info, void*) {
    auto* guard = static_cast<Guard*>(info->si_value.sival_ptr);
    for (Guard* g = g_guard; g; g = g->outer) {
        if (g == guard) g->expired = 1;
    }
    JumpIfDue();
}

HeapArena::Block* Link(HeapArena& arena, HeapArena::Block* block, std::size_t size) {
    block->prev = nullptr;
    block->next = arena.blocks;
    block->size = size;
    if (arena.blocks) arena.blocks->prev = block;
    arena.blocks = block;
    arena.used += size;
    return block;
}

void Unlink(HeapArena& arena, HeapArena::Block* block) {
    if (block->prev) block->prev->next = block->next;
    else arena.blocks = block->next;
    if (block->next) block->next->prev = block->prev;
    arena.used -= block->size;
}

// Whether `more` bytes fit under the limit; a limit lowered below what is in use
// lets nothing more in.
bool Fits(const HeapArena& arena, std::size_t more) {
    return arena.used <= arena.limit && more <= arena.limit - arena.used;
}

HeapArena::Block* HeaderOf(void* ptr) { return static_cast<HeapArena::Block*>(ptr) - 1; }

// The handler stays installed once it is: a signal of a timer that was just
// deleted may still be pending, and it must not meet the default action, which
// ends the process. A signal for no running guard is ignored.
void InstallTimerHandler() {
    static const bool installed = [] {
        struct sigaction action {};
        action.sa_sigaction = OnTimer;
        action.sa_flags = SA_SIGINFO | SA_RESTART;
        sigemptyset(&action.sa_mask);
        return sigaction(SIGVTALRM, &action, nullptr) == 0;
    }();
    (void)installed;
}

// A timer on this thread's CPU time that signals this thread, again every few
// milliseconds after the first expiry in case the first one came at a moment
// when no jump was possible. Where the system gives no such timer, runs have
// no time limit.
struct CpuTimer {
    timer_t id{};
    bool created = false;

    CpuTimer(Guard* guard, unsigned ms) {
        InstallTimerHandler();
        sigevent event{};
        event.sigev_notify = SIGEV_THREAD_ID;
        event.sigev_signo = SIGVTALRM;
        event.sigev_value.sival_ptr = guard;
        event._sigev_un._tid = static_cast<pid_t>(syscall(SYS_gettid));
        created = timer_create(CLOCK_THREAD_CPUTIME_ID, &event, &id) == 0;
        if (!created) return;
        itimerspec spec{};
        spec.it_value.tv_sec = ms / 1000;
        spec.it_value.tv_nsec = static_cast<long>(ms % 1000) * 1000000L + 1;
        spec.it_interval.tv_nsec = 5 * 1000000L;
        timer_settime(id, 0, &spec, nullptr);
    }
    ~CpuTimer() {
        if (created) timer_delete(id);
    }
    CpuTimer(const CpuTimer&) = delete;
    CpuTimer& operator=(const CpuTimer&) = delete;
};

GuardOutcome Jumped(Guard& guard, int how) {
    g_guard = guard.outer;
    return how == kFatalJump ? GuardOutcome::Fatal : GuardOutcome::TimedOut;
}

}  // namespace

void* ArenaAlloc(void* udata, duk_size_t size) {
    auto& arena = *static_cast<HeapArena*>(udata);
    if (!Fits(arena, size)) return nullptr;
    g_inAllocator = 1;
    void* raw = std::malloc(sizeof(HeapArena::Block) + size);
    void* result = raw ? Link(arena, static_cast<HeapArena::Block*>(raw), size) + 1 : nullptr;
    g_inAllocator = 0;
    JumpIfDue();
    return result;
}

void* ArenaRealloc(void* udata, void* ptr, duk_size_t size) {
    if (!ptr) return ArenaAlloc(udata, size);
    auto& arena = *static_cast<HeapArena*>(udata);
    if (size == 0) {
        ArenaFree(udata, ptr);
        return nullptr;
    }
    HeapArena::Block* block = HeaderOf(ptr);
    if (size > block->size && !Fits(arena, size - block->size)) return nullptr;
    g_inAllocator = 1;
    const std::size_t oldSize = block->size;
    Unlink(arena, block);
    auto* moved = static_cast<HeapArena::Block*>(std::realloc(block, sizeof(HeapArena::Block) + size));
    void* result = nullptr;
    if (moved) result = Link(arena, moved, size) + 1;
    else Link(arena, block, oldSize);
    g_inAllocator = 0;
    JumpIfDue();
    return result;
}

void ArenaFree(void* udata, void* ptr) {
    if (!ptr) return;
    auto& arena = *static_cast<HeapArena*>(udata);
    g_inAllocator = 1;
    HeapArena::Block* block = HeaderOf(ptr);
    Unlink(arena, block);
    std::free(block);
    g_inAllocator = 0;
    JumpIfDue();
}

void ReleaseArena(HeapArena& arena) {
    while (arena.blocks) {
        HeapArena::Block* block = arena.blocks;
        Unlink(arena, block);
        std::free(block);
    }
}

GuardOutcome RunGuarded(duk_context* ctx, unsigned timeLimitMs,
                        void (*call)(duk_context* ctx, void* udata), void* udata) {
    Guard guard;
    guard.outer = g_guard;
    CpuTimer timer(&guard, timeLimitMs);
    const int jumped = sigsetjmp(guard.jump, 1);
    if (jumped != 0) return Jumped(guard, jumped);
    g_guard = &guard;
    call(ctx, udata);
    g_guard = guard.outer;
    return GuardOutcome::Finished;
}

namespace {

struct NativeCall {
    duk_ret_t (*body)(duk_context* ctx, void* udata);
};

duk_ret_t CallBody(duk_context* ctx, void* udata) {
    return static_cast<NativeCall*>(udata)->body(ctx, nullptr);
}

}  // namespace

duk_ret_t GuardedNative(duk_context* ctx, duk_ret_t (*body)(duk_context* ctx, void* udata)) {
    Guard* guard = g_guard;
    if (guard) guard->nativeDepth = guard->nativeDepth + 1;
    NativeCall call{body};
    const duk_int_t rc = duk_safe_call(ctx, CallBody, &call, duk_get_top(ctx), 1);
    if (guard) guard->nativeDepth = guard->nativeDepth - 1;
    JumpIfDue();
    if (rc != DUK_EXEC_SUCCESS) return duk_throw(ctx);
    return 1;
}

void OnFatalScriptError(void*, const char*) {
    if (Guard* guard = g_guard) {
        guard->expired = 1;
        guard->nativeDepth = 0;
        siglongjmp(guard->jump, kFatalJump);
    }
    std::abort();
}

}  // namespace aehost
