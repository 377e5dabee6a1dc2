#include "plugin/importer/scene_file_header.h"

#include <array>
#include <cstring>
#include <fstream>

namespace {

constexpr std::array<const char*, 6> kVariantTags = {"XORY", "6ORY", "AORY", "8ORY", "QORY", "YORY"};

}  // namespace

bool IsSceneFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return false;
  char header[8] = {};
  file.read(header, sizeof header);
  if (file.gcount() != static_cast<std::streamsize>(sizeof header)) return false;
  if (std::memcmp(header + 4, "ORY6", 4) != 0) return false;
  for (const char* tag : kVariantTags)
    if (std::memcmp(header, tag, 4) == 0) return true;
  return false;
}
