// Table Fl: files that the engine writes for a caller. What is written is
// kept until the file is freed and then replaces the target whole, so that a
// failed or interrupted write leaves the old file in place.
#include <cstdio>
#include <new>
#include <string>

#include "files/replace_file.h"
#include "quillon/api/tables.h"
#include "quillon/model/value.h"

struct DiskFile {
  std::string path;
  std::string bytes;
  bool open = false;
  bool failed = false;
};

namespace quillon {
namespace {

DiskFile* AllocFile() { return new (std::nothrow) DiskFile(); }

// A file that cannot replace its target says why on the engine's console.
void FreeFile(DiskFile* file) {
  if (!file) return;
  std::string error;
  if (file->open && !file->failed && !qae::files::ReplaceFileContent(file->path, file->bytes, &error))
    std::fprintf(stderr, "quillon: %s\n", error.c_str());
  delete file;
}

// Only writing is offered: the target is checked now, so that a path that can
// never be written fails at once rather than when the file is freed.
bool OpenFile(DiskFile* file, const Filename* path, int32_t mode, int32_t, int32_t, int32_t, int32_t) {
  if (!file || !path || file->open || mode != kDiskFileWrite) return false;
  file->path = PathOf(*path);
  std::string error;
  if (file->path.empty() || !qae::files::CheckReplaceable(file->path, &error)) return false;
  file->open = true;
  return true;
}

bool WriteFile(DiskFile* file, const void* data, int64_t size) {
  if (!file || !file->open || file->failed || size < 0 || (size > 0 && !data)) return false;
  try {
    file->bytes.append(static_cast<const char*>(data), static_cast<size_t>(size));
  } catch (const std::bad_alloc&) {
    file->failed = true;
  }
  return !file->failed;
}

}  // namespace

const ORYOS_Fl& FlTable() {
  static const ORYOS_Fl table{
      .AllocFile = AllocFile, .FreeFile = FreeFile, .OpenFile = OpenFile, .WriteFile = WriteFile};
  return table;
}

}  // namespace quillon
