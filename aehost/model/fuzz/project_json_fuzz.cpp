// Any text either is refused with ProjectFormatError or loads; what loads
// writes a canonical form that reads back and writes again unchanged, and
// evaluating every layer's matrix on it stays finite or at least terminates.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "aehost/model/project_json.h"
#include "aehost/model/transform.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  aehost::Project project;
  try {
    project = aehost::ReadProject(text, "fuzz");
  } catch (const aehost::ProjectFormatError&) {
    return 0;
  }
  const std::string written = aehost::WriteProject(project);
  if (aehost::WriteProject(aehost::ReadProject(written, "written")) != written) std::abort();
  for (const auto& item : project.items) {
    for (const auto& layer : item->comp.layers) {
      aehost::LayerToWorld(project, *item, *layer, 0.5);
    }
  }
  return 0;
}
