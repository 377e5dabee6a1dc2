#include "plugin/platform/readiness_event.h"

#include <fcntl.h>

#include <cerrno>
#include <ctime>

namespace {

timespec DeadlineAfter(int milliseconds) {
  timespec deadline{};
  clock_gettime(CLOCK_REALTIME, &deadline);
  deadline.tv_sec += milliseconds / 1000;
  deadline.tv_nsec += static_cast<long>(milliseconds % 1000) * 1000000L;
  if (deadline.tv_nsec >= 1000000000L) {
    deadline.tv_sec += 1;
    deadline.tv_nsec -= 1000000000L;
  }
  return deadline;
}

}  // namespace

bool CreateReadinessEvent(const std::string& name, EventReset reset, ReadinessEvent* event) {
  sem_t* semaphore = sem_open(name.c_str(), O_CREAT, 0600, 0);
  if (semaphore == SEM_FAILED) return false;
  *event = {semaphore, name, reset};
  return true;
}

bool WaitForReadiness(ReadinessEvent& event, int milliseconds) {
  const timespec deadline = DeadlineAfter(milliseconds);
  int result;
  do {
    result = sem_timedwait(event.semaphore, &deadline);
  } while (result != 0 && errno == EINTR);
  if (result != 0) return false;
  if (event.reset == EventReset::kManual) sem_post(event.semaphore);
  return true;
}

void CloseReadinessEvent(ReadinessEvent& event) {
  if (!event.semaphore) return;
  sem_close(event.semaphore);
  sem_unlink(event.name.c_str());
  event.semaphore = nullptr;
}
