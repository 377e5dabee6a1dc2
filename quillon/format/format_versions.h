#pragma once
// Which version of the scene file a writer produces. Version 2 added the identity of
// nodes (markers and unique ids); the 3D application's file versions before
// kSceneFileVersionCurrent get version 1, which has none, so that a document copied
// through an older version comes back as such a file gives it.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "quillon/format/file_frame.h"
#include "quillon/model/document.h"

namespace quillon::format {

inline constexpr std::uint32_t kFormatVersionWithoutIdentity = 1;  // the oldest, which readers still take

// The format version for a file version of the 3D application.
std::uint32_t FormatVersionFor(std::int32_t applicationVersion);
// The whole file of `doc` in format `version`, in memory. Lets std::bad_alloc through.
bool EncodeDocumentAs(const Document& doc, std::uint32_t version, std::vector<std::uint8_t>& bytes,
                      std::string* error);
// The format version a whole file states; 0 when it is too short to say.
std::uint32_t FormatVersionOf(const std::uint8_t* data, std::size_t size);

}  // namespace quillon::format
