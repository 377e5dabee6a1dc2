// Table Hf and the file side of tables Ge and Bl. The bytes of a scene file
// are the file format's; this is the engine's handle on an open file.
#include "quillon/api/scene_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

#include "files/file_error.h"
#include "files/pending_temp.h"
#include "files/read_file.h"
#include "files/replace_file.h"
#include "quillon/api/handles.h"
#include "quillon/api/tables.h"
#include "quillon/format/format_versions.h"
#include "quillon/format/ory_format.h"

namespace quillon {
namespace {

// The engine's console: why a scene file could not be written, which the interface's
// true-or-false results cannot say. A host shows it beside its own messages.
void ConsoleLine(const std::string& text) { std::fprintf(stderr, "quillon: %s\n", text.c_str()); }

// The file the bytes will really go to: the one a link leads to, else the path itself.
std::string WrittenFileOf(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real ? std::string(real.get()) : path;
}

// Opening for writing creates a file where the scene will go, as the writer's temporary one
// is created there later, so that a folder that takes no new file (read-only, or a system
// folder such as /proc) is told at Open and not only once the whole document is encoded.
bool CanCreateBeside(const std::string& path, std::string* problem) {
  const std::string probe = qae::files::TempPathFor(WrittenFileOf(path), ::getpid());
  const int fd = ::open(probe.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) return qae::files::Fail(problem, path, "cannot write: " + qae::files::SystemReason(errno));
  ::close(fd);
  ::unlink(probe.c_str());
  return true;
}

bool Usable(const std::string& path, int32_t mode) {
  std::string problem;
  if (mode == kSceneFileModeRead) return qae::files::CheckRegularFile(path, &problem);
  if (mode != kSceneFileModeWrite) return false;
  if (qae::files::CheckReplaceable(path, &problem) && CanCreateBeside(path, &problem)) return true;
  ConsoleLine(problem);
  return false;
}

bool Open(SceneFile* file, int32_t ident, const Filename* path, int32_t mode, int32_t) {
  if (!file || !path || file->open || ident != kSceneFileIdent) return false;
  std::string target = PathOf(*path);
  std::shared_ptr<MemoryBuffer> memory = MemoryOf(*path);
  if (target.empty() || (!memory && !Usable(target, mode))) return false;
  file->path = target;
  file->memory = std::move(memory);
  file->mode = mode;
  file->open = true;
  file->failed = false;
  file->error.clear();
  return true;
}

bool Close(SceneFile* file) {
  if (!file || !file->open) return false;
  file->open = false;
  return !file->failed;
}

SceneFile* AllocSceneFile() { return new SceneFile(); }
void FreeSceneFile(SceneFile* file) { delete file; }

int32_t GetFileError(const SceneFile* file) { return file && !file->failed ? 0 : 1; }

void SetWriterVersion(SceneFile* file, int32_t version) {
  if (file && !file->open) file->writerVersion = version;
}

// A memory file, and a file of an older version, are encoded whole before they are written.
bool WriteEncoded(SceneFile& file, const Document& document) {
  std::vector<std::uint8_t> bytes;
  std::string problem;
  if (!format::EncodeDocumentAs(document, format::FormatVersionFor(file.writerVersion), bytes, &problem)) {
    file.error = file.path + ": " + problem;
    return false;
  }
  if (file.memory) {
    file.memory->bytes = std::move(bytes);
    return true;
  }
  return qae::files::ReplaceFileContent(
      file.path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()), &file.error);
}

}  // namespace

bool WriteSceneFile(SceneFile& file, const Document& document) {
  if (!file.open || file.mode != kSceneFileModeWrite) return false;
  bool written = false;
  try {
    written = file.memory || format::FormatVersionFor(file.writerVersion) != format::kFormatVersion
                  ? WriteEncoded(file, document)
                  : format::WriteDocument(document, file.path, &file.error);
  } catch (const std::bad_alloc&) {
    file.error = file.path + ": out of memory while writing the scene";
  }
  if (!written) ConsoleLine(file.error);
  file.failed = file.failed || !written;
  return written;
}

bool ReadSceneFile(const std::string& path, Document& document, std::string* error) {
  try {
    return format::ReadDocument(path, document, error);
  } catch (const std::bad_alloc&) {
    if (error) *error = path + ": out of memory while reading the scene";
    return false;
  }
}

bool ReadSceneFileFrom(const Filename& file, Document& document, std::string* error) {
  const std::shared_ptr<MemoryBuffer> memory = MemoryOf(file);
  if (!memory) return ReadSceneFile(PathOf(file), document, error);
  std::string problem;
  try {
    if (format::DecodeDocument(memory->bytes.data(), memory->bytes.size(), document, &problem)) return true;
  } catch (const std::bad_alloc&) {
    problem = "out of memory while reading the scene";
  }
  if (error) *error = PathOf(file) + ": " + problem;
  return false;
}

const ORYOS_Hf& HfTable() {
  static const ORYOS_Hf table{Open, Close, AllocSceneFile, FreeSceneFile, GetFileError, SetWriterVersion};
  return table;
}

}  // namespace quillon
