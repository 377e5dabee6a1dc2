// Whether two paths lead to one file, by device and inode: through links, hard links and
// any spelling of the path.
#pragma once

#include <string>

namespace qae::files {

// True when both paths exist and are the same file.
bool SameFile(const std::string& a, const std::string& b);

}  // namespace qae::files
