#pragma once
// Whether a file is a scene file, judged by its first eight bytes alone: a four-byte
// variant tag, then the ident "ORY6". The engine is not involved, so the host may ask
// before the engine runs.
#include <cstddef>
#include <string>

constexpr size_t kSceneHeaderSize = 8;

// The judgement on bytes already read; `size` may be anything, shorter than a header is "no".
bool IsSceneFileHeader(const char* bytes, size_t size);

// Reads at most the header's bytes of the file; a file that cannot be read is "no".
bool IsSceneFile(const std::string& path);
