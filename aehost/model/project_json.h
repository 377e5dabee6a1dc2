// The JSON project description: reading and writing (see aehost/PROJECT_FORMAT.md).
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "aehost/model/json_writer.h"
#include "aehost/model/project.h"

namespace aehost {

constexpr int kProjectFormatVersion = 1;
// A project description larger than this is refused unread.
constexpr std::size_t kMaxProjectFileBytes = std::size_t{256} << 20;

// A description that is refused: `what()` names the file, the JSON path
// (e.g. "comps[0].layers[2].transform.position.keys[1].time") and the problem.
class ProjectFormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

Project ReadProject(const std::string& jsonText, const std::string& sourceName);
// Reads a regular file of at most kMaxProjectFileBytes; std::bad_alloc is the caller's.
Project LoadProjectFile(const std::string& path);

// The canonical form: two-space indentation, keys sorted, values
// that equal their defaults left out, numbers as short as they read back.
// A project holding a number that is not finite is refused with
// ProjectFormatError: JSON has no form for it.
std::string WriteProject(const Project& project);
// The same description as a series of values, for a writer that streams it or builds a tree.
// A number that is not finite throws std::domain_error when the text writer meets it.
void WriteProject(JsonOut& out, const Project& project);
// Replaces `path` whole (see files/replace_file.h); ProjectFormatError names the reason.
void SaveProjectFile(const Project& project, const std::string& path);

}  // namespace aehost
