#pragma once
// The operating system's side of the scene file lock: many readers or one writer. The lock
// is an open descriptor with an advisory lock on it (flock), so it goes when its holder goes,
// also when the holder is killed; there is no lock file to clean up. A single try never
// waits, so that the retry loop alone decides how long to wait.
#include <cstdint>
#include <string>

// No lock held.
inline constexpr int kNoFileHandle = -1;

// One try: opens `path` and takes a shared lock (read) or an exclusive one (write) without
// waiting. A writer creates a missing file. Gives the descriptor, or kNoFileHandle and in
// `errorText` "\nFailed to get read lock : " (or write) and the system's text.
int TryLockFile(const std::string& path, bool write, std::string* errorText);

// Tries at once, then every 500 ms while time is left, `seconds` in all; `sleep` waits the
// given milliseconds. On failure `errorText` ends with the last try's text and
// "\nFailed to get read lock on file PATH after SECONDS seconds. Gave up.".
int AcquireFileLock(const std::string& path, bool write, int32_t seconds, void (*sleep)(int32_t milliseconds),
                    std::string* errorText);

// Closes a descriptor of TryLockFile, which gives its lock up; false with the system's text.
bool ReleaseFileLock(int handle, std::string* errorText);
