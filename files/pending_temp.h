// The temporary file that a replacement is written to before it takes the target's place:
// its name, the clean-up of those that killed runs left, and its removal when a signal ends
// the process while it is being written.
#pragma once

#include <csignal>
#include <string>

namespace qae::files {

// ".<16 hex digits of a hash of the target's name>.<pid>.tmp" in the target's folder: at
// most 33 characters whatever the target's own name, so any name that is legal can be written.
std::string TempPathFor(const std::string& target, long pid);

// Removes the temporaries of `target` whose process no longer runs (or is this one: a
// process writes one file at a time), which a run killed by SIGKILL or a power cut left.
void RemoveStaleTemps(const std::string& target);

// While it lives, SIGINT, SIGTERM and SIGHUP remove `tempPath` and then end the process as
// they would have, and SIGXFSZ is ignored, so that writing past the file size limit fails
// with EFBIG and a message instead of killing the process. One at a time in a process.
struct PendingTemp {
  explicit PendingTemp(const std::string& tempPath);
  ~PendingTemp();
  PendingTemp(const PendingTemp&) = delete;
  PendingTemp& operator=(const PendingTemp&) = delete;

  struct sigaction before[4];  // of SIGINT, SIGTERM, SIGHUP and SIGXFSZ
};

}  // namespace qae::files
