#pragma once
// Starting a program that lives on after the plug-in: it is not a child of the host (so
// the host neither waits for it nor leaves a zombie behind), and each argument reaches it
// as one word, blanks and quotes included, since no shell takes the command line apart.
#include <string>
#include <vector>

// True once `program` runs with `arguments`; false, with the reason in `error`, when it
// could not be started (missing, not executable, out of processes).
bool StartDetachedProcess(const std::string& program, const std::vector<std::string>& arguments,
                          std::string* error);
