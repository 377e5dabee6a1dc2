// Writing a whole file so that readers see either the old content or the complete new one,
// and a failure or a signal leaves nothing behind but what was there before.
#pragma once

#include <string>
#include <string_view>

namespace qae::files {

// Writes `bytes` to a temporary file beside `path`, flushes it to the disk and renames it
// over `path`. Only a regular file or a missing path is replaced (a link is kept and the file
// it leads to replaced); an existing file keeps its permissions, a new one gets 0666 less the
// umask. On any failure the temporary file is removed, `path` keeps what it held, and
// `error` receives "<path>: <reason>" in the system's words where it gave one.
bool ReplaceFileContent(const std::string& path, std::string_view bytes, std::string* error);

// What ReplaceFileContent checks before it writes: that `path` is a regular file or a missing
// one in an existing folder. False with the reason, for a writer that opens its target early.
bool CheckReplaceable(const std::string& path, std::string* error);

}  // namespace qae::files
