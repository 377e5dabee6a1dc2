// The engine's main thread is a thread of the engine's own that the first job starts; it runs
// the jobs one at a time in the order they were queued. Since it runs them in order, a job is
// done once as many jobs have finished as had been queued up to it, so a waiter needs only
// its job's number.
#include "quillon/api/job_queue.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace quillon {
namespace {

struct Job {
  MainThreadJob function;
  void* data;
};

struct MainThreadQueue {
  std::mutex mutex;
  std::condition_variable wake;      // the main thread: a job came or the stop
  std::condition_variable finished;  // waiters: a job finished or the stop is over
  std::deque<Job> jobs;
  uint64_t queued = 0;
  uint64_t done = 0;
  std::thread thread;
  std::thread::id mainId;  // until the stop has joined it, so that its jobs still know it
  bool stopping = false;
  bool exited = false;  // the stopping main thread has left its loop
  std::mutex stopMutex;

  ~MainThreadQueue() { Stop(); }

  void Serve() {
    std::unique_lock lock(mutex);
    for (;;) {
      wake.wait(lock, [this] { return !jobs.empty() || stopping; });
      if (jobs.empty()) break;
      Job job = jobs.front();
      jobs.pop_front();
      lock.unlock();
      job.function(job.data);
      lock.lock();
      ++done;
      finished.notify_all();
    }
    exited = true;
  }

  // A job that comes while the stopping main thread has already left its loop waits for the
  // stop to end and starts the next main thread.
  uint64_t Queue(Job job, std::unique_lock<std::mutex>& lock) {
    finished.wait(lock, [this] { return !(stopping && exited); });
    if (!stopping && !thread.joinable()) {
      thread = std::thread(&MainThreadQueue::Serve, this);
      mainId = thread.get_id();
    }
    jobs.push_back(job);
    wake.notify_one();
    return ++queued;
  }

  bool Wait(uint64_t number, int32_t waitMilliseconds, std::unique_lock<std::mutex>& lock) {
    auto ran = [this, number] { return done >= number; };
    if (waitMilliseconds < 0) {
      finished.wait(lock, ran);
      return true;
    }
    return finished.wait_for(lock, std::chrono::milliseconds(waitMilliseconds), ran);
  }

  bool OnMainThread() {
    std::lock_guard lock(mutex);
    return mainId == std::this_thread::get_id();
  }

  void Stop() {
    if (OnMainThread()) return;  // it cannot wait for itself; its own stop comes later
    std::lock_guard stopLock(stopMutex);
    std::thread serving;
    {
      std::lock_guard lock(mutex);
      if (!thread.joinable()) return;
      stopping = true;
      serving = std::move(thread);
      wake.notify_one();
    }
    serving.join();
    std::lock_guard lock(mutex);
    stopping = false;
    exited = false;
    mainId = {};
    finished.notify_all();
  }
};

MainThreadQueue& Queue() {
  static MainThreadQueue queue;
  return queue;
}

}  // namespace

bool ExecuteOnMainThread(MainThreadJob job, void* data, int32_t waitMilliseconds) {
  if (!job) return false;
  MainThreadQueue& queue = Queue();
  if (waitMilliseconds != kJobNoWait && queue.OnMainThread()) {
    job(data);
    return true;
  }
  std::unique_lock lock(queue.mutex);
  const uint64_t number = queue.Queue({job, data}, lock);
  return waitMilliseconds == kJobNoWait || queue.Wait(number, waitMilliseconds, lock);
}

bool IsMainThread() { return Queue().OnMainThread(); }

void StopMainThread() { Queue().Stop(); }

}  // namespace quillon
