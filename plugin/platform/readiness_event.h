#pragma once
// A named event by which another process says it is ready, as a POSIX named semaphore:
// the other process opens the semaphore by its name and posts it once.
//
// A manual-reset event stays set once set, for every wait that follows; an auto-reset one
// lets one wait through and is then clear again. A semaphore is auto-reset by nature
// (a wait takes the post); a manual-reset event posts again after each wait it let through.
#include <semaphore.h>

#include <string>

enum class EventReset { kManual, kAuto };

struct ReadinessEvent {
  sem_t* semaphore = nullptr;
  std::string name;
  EventReset reset = EventReset::kAuto;
};

// Opens the event `name` (a POSIX semaphore name, "/" and a word), making it, not set, when
// it does not exist yet: an application that was quicker has made it already, and its
// signal counts. False when the system refuses the semaphore.
bool CreateReadinessEvent(const std::string& name, EventReset reset, ReadinessEvent* event);

// Waits up to `milliseconds` for the event to be set; true when it is.
bool WaitForReadiness(ReadinessEvent& event, int milliseconds);

// Closes the event and removes its name, so that the next wait begins with the event not
// set (a Windows event ends with its last handle; a POSIX semaphore would stay).
void CloseReadinessEvent(ReadinessEvent& event);
