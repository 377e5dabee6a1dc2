#include "aehost/core/window_system.h"

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

#include "sdk/window_system.h"

namespace aehost {
namespace {

// The main window's number: any number the process keeps for its life will do; this one
// tells windows of different runs apart in a trace.
constexpr uint64_t kMainWindowBase = 0x10000;

struct MainThreadQueue {
    std::mutex mutex;
    std::condition_variable posted;
    std::deque<std::function<void()>> pending;
};

MainThreadQueue& Queue() {
    static MainThreadQueue queue;
    return queue;
}

// Takes the next piece of work, or an empty function when nothing is pending.
std::function<void()> TakeNext() {
    MainThreadQueue& queue = Queue();
    std::lock_guard lock(queue.mutex);
    if (queue.pending.empty()) return {};
    std::function<void()> work = std::move(queue.pending.front());
    queue.pending.pop_front();
    return work;
}

int32_t ListTopLevelWindows(QaeWindowInfo* windows, int32_t capacity) {
    if (windows && capacity > 0) windows[0] = {MainWindowNumber(), ::getpid(), 0, 1};
    return 1;
}

int32_t WaitForInput(int32_t milliseconds) {
    MainThreadQueue& queue = Queue();
    std::unique_lock lock(queue.mutex);
    return queue.posted.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                 [&queue] { return !queue.pending.empty(); })
               ? 1
               : 0;
}

int32_t DispatchOne() {
    const std::function<void()> work = TakeNext();
    if (!work) return 0;
    work();
    return 1;
}

}  // namespace

uint64_t MainWindowNumber() { return kMainWindowBase + static_cast<uint64_t>(::getpid()); }

void PostMainThreadWork(std::function<void()> work) {
    MainThreadQueue& queue = Queue();
    {
        std::lock_guard lock(queue.mutex);
        queue.pending.push_back(std::move(work));
    }
    queue.posted.notify_all();
}

void RunPendingMainThreadWork() {
    while (const std::function<void()> work = TakeNext()) work();
}

}  // namespace aehost

// Exported from the host's executable, where the plug-in's platform layer looks it up.
extern "C" {
__attribute__((visibility("default"))) extern const QaeWindowSystemRecord QaeWindowSystem;
const QaeWindowSystemRecord QaeWindowSystem = {aehost::ListTopLevelWindows, aehost::WaitForInput,
                                               aehost::DispatchOne};
}
