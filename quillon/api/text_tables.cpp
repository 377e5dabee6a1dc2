// Tables St (texts, with the core framework's operations on them) and Fn (paths).
#include <algorithm>
#include <cstring>
#include <filesystem>

#include "quillon/api/handles.h"
#include "quillon/api/job_queue.h"
#include "quillon/api/session_operations.h"
#include "quillon/api/tables.h"

namespace quillon {
namespace {

std::u16string Decode(const char* text, int32_t length, int32_t encoding) {
  if (!text) return {};
  size_t size = length < 0 ? std::strlen(text) : static_cast<size_t>(length);
  if (encoding == kStringEncodingLatin1) {
    std::u16string out;
    for (size_t i = 0; i < size; ++i) out += static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    return out;
  }
  return FromUtf8(std::string(text, size));
}

std::string Encode(const std::u16string& text, int32_t encoding) {
  if (encoding != kStringEncodingLatin1) return ToUtf8(text);
  std::string out;
  for (char16_t unit : text) out += unit < 0x100 ? static_cast<char>(unit) : '?';
  return out;
}

// Clamps start and count to the text: a negative count means up to the end.
void Clamp(const std::u16string& text, int32_t& start, int32_t& count) {
  auto size = static_cast<int32_t>(text.size());
  start = std::clamp(start, 0, size);
  count = count < 0 ? size - start : std::min(count, size - start);
}

void SetCString(EngineString* string, const char* text, int32_t length, int32_t encoding) {
  if (string) AssignText(*string, Decode(text, length, encoding));
}

bool FindFirst(const EngineString* string, const EngineString* needle, int32_t* position, int32_t start) {
  if (!string || !needle || start < 0) return false;
  size_t found = TextOf(*string).find(TextOf(*needle), static_cast<size_t>(start));
  if (found == std::u16string::npos) return false;
  if (position) *position = static_cast<int32_t>(found);
  return true;
}

void Delete(EngineString* string, int32_t start, int32_t count) {
  if (!string) return;
  std::u16string text = TextOf(*string);
  Clamp(text, start, count);
  text.erase(static_cast<size_t>(start), static_cast<size_t>(count));
  AssignText(*string, text);
}

void Insert(EngineString* string, int32_t position, const EngineString* other, int32_t start, int32_t count) {
  if (!string || !other) return;
  std::u16string text = TextOf(*string);
  std::u16string piece = TextOf(*other);
  if (start < 0) start = 0;
  Clamp(piece, start, count);
  position = std::clamp(position, 0, static_cast<int32_t>(text.size()));
  text.insert(static_cast<size_t>(position), piece, static_cast<size_t>(start), static_cast<size_t>(count));
  AssignText(*string, text);
}

void SubString(const EngineString* string, EngineString* out, int32_t start, int32_t count) {
  if (!string || !out) return;
  std::u16string text = TextOf(*string);
  Clamp(text, start, count);
  AssignText(*out, text.substr(static_cast<size_t>(start), static_cast<size_t>(count)));
}

int32_t GetCStringLength(const EngineString* string, int32_t encoding) {
  return string ? static_cast<int32_t>(Encode(TextOf(*string), encoding).size()) : 0;
}

void GetCString(const EngineString* string, char* buffer, int32_t size, int32_t encoding) {
  if (!string || !buffer || size <= 0) return;
  std::string bytes = Encode(TextOf(*string), encoding);
  size_t n = std::min(bytes.size(), static_cast<size_t>(size - 1));
  std::memcpy(buffer, bytes.data(), n);
  buffer[n] = '\0';
}

int32_t Compare(const EngineString* a, const EngineString* b) {
  int result = TextOf(a ? *a : EngineString{}).compare(TextOf(b ? *b : EngineString{}));
  return result < 0 ? -1 : result > 0 ? 1 : 0;
}

bool FindChar(const EngineString* string, char16_t unit, int32_t* position, int32_t start) {
  if (!string || start < 0) return false;
  size_t found = TextOf(*string).find(unit, static_cast<size_t>(start));
  if (found == std::u16string::npos) return false;
  if (position) *position = static_cast<int32_t>(found);
  return true;
}

int32_t GetLength(const EngineString* string) {
  return string ? static_cast<int32_t>(TextOf(*string).size()) : 0;
}

void Retain(const EngineString* string) {
  if (string) RetainText(*string);
}

void Release(EngineString* string) {
  if (string) ReleaseText(*string);
}

char16_t GetUnit(const EngineString* string, int32_t index) {
  if (!string || index < 0) return 0;
  std::u16string text = TextOf(*string);
  return static_cast<size_t>(index) < text.size() ? text[static_cast<size_t>(index)] : char16_t{0};
}

void SetUnit(EngineString* string, int32_t index, char16_t unit) {
  if (!string || index < 0) return;
  std::u16string text = TextOf(*string);
  if (static_cast<size_t>(index) >= text.size()) return;
  text[static_cast<size_t>(index)] = unit;
  AssignText(*string, text);
}

void FromCString(EngineString* out, const char* text, int32_t encoding) {
  if (out) AssignText(*out, Decode(text, -1, encoding));
}

void FromUtf16(EngineString* out, const char16_t* units, int32_t count) {
  if (!out) return;
  if (!units) {
    AssignText(*out, {});
    return;
  }
  AssignText(*out, count < 0 ? std::u16string(units) : std::u16string(units, static_cast<size_t>(count)));
}

// --- Fn ---------------------------------------------------------------------

std::filesystem::path FsPath(const Filename* file) { return std::filesystem::path(file ? PathOf(*file) : ""); }

bool IsFilled(const Filename* file) { return file && !PathOf(*file).empty(); }

void FnGetString(EngineString* out, const Filename* file) {
  if (out && file) AssignText(*out, FromUtf8(PathOf(*file)));
}

void FnSetString(Filename* file, const EngineString* path) {
  if (file) AssignPath(*file, path ? ToUtf8(TextOf(*path)) : std::string());
}

// A trailing separator belongs to the folder, not to a last component.
std::filesystem::path Trimmed(const Filename* file) {
  std::string path = PathOf(*file);
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return std::filesystem::path(path);
}

void GetDirectory(Filename* out, const Filename* file) {
  if (out && file) AssignPath(*out, Trimmed(file).parent_path().string());
}

void GetFile(Filename* out, const Filename* file) {
  if (out && file) AssignPath(*out, Trimmed(file).filename().string());
}

void SetSuffix(Filename* file, const char* suffix) {
  if (!file || !suffix) return;
  std::filesystem::path path = FsPath(file);
  path.replace_extension(*suffix ? std::string(".") + suffix : std::string());
  AssignPath(*file, path.string());
}

bool CheckSuffix(const Filename* file, const char* suffix) {
  if (!file || !suffix) return false;
  std::string extension = FsPath(file).extension().string();
  std::string wanted = std::string(".") + suffix;
  return extension.size() == wanted.size() &&
         std::equal(extension.begin(), extension.end(), wanted.begin(),
                    [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) ==
                                                std::tolower(static_cast<unsigned char>(b)); });
}

void SetFile(Filename* file, const Filename* leaf) {
  if (!file || !leaf) return;
  std::filesystem::path path = FsPath(file);
  path.replace_filename(FsPath(leaf));
  AssignPath(*file, path.string());
}

bool FilenameEquals(const Filename* a, const Filename* b) { return a && b && PathOf(*a) == PathOf(*b); }

void FilenameInit(Filename* file) {
  if (file) file->impl = nullptr;
}

void FilenameFree(Filename* file) {
  if (file) ReleasePath(*file);
}

void FilenameCopy(const Filename* source, Filename* destination) {
  if (source && destination) CopyPath(*destination, *source);
}

void SetFromCString(Filename* file, const char* path) {
  if (file) AssignPath(*file, path ? path : "");
}

}  // namespace

const ORYOS_St& StTable() {
  static const ORYOS_St table{.SetCString = SetCString,
                              .FindFirst = FindFirst,
                              .Delete = Delete,
                              .Insert = Insert,
                              .SubString = SubString,
                              .GetCStringLength = GetCStringLength,
                              .GetCString = GetCString,
                              .Compare = Compare,
                              .FindChar = FindChar,
                              .GetLength = GetLength,
                              .Retain = Retain,
                              .Release = Release,
                              .GetUnit = GetUnit,
                              .SetUnit = SetUnit,
                              .FromCString = FromCString,
                              .FromUtf16 = FromUtf16,
                              .ExecuteOnMainThread = ExecuteOnMainThread,
                              .IsMainThread = IsMainThread};
  return table;
}

const ORYOS_Fn& FnTable() {
  static const ORYOS_Fn table{.IsFilled = IsFilled,
                              .GetString = FnGetString,
                              .SetString = FnSetString,
                              .GetDirectory = GetDirectory,
                              .GetFile = GetFile,
                              .SetSuffix = SetSuffix,
                              .CheckSuffix = CheckSuffix,
                              .SetFile = SetFile,
                              .FilenameEquals = FilenameEquals,
                              .FilenameInit = FilenameInit,
                              .FilenameFree = FilenameFree,
                              .FilenameCopy = FilenameCopy,
                              .SetFromCString = SetFromCString,
                              .SetMemoryRead = SetMemoryRead,
                              .SetMemoryWrite = SetMemoryWrite,
                              .AllocMemoryFile = AllocMemoryFile,
                              .FreeMemoryFile = FreeMemoryFile,
                              .GetMemoryFileData = GetMemoryFileData};
  return table;
}

}  // namespace quillon
