// libFuzzer target for update documents that arrive as bytes. The first byte chooses the
// name the rest is sent under (each update channel, a difference, a whole document); the
// render's document is a small scene with unique ids, made anew for each input. Nothing may
// crash, leak or hang, and an update never takes the render's document away: only a whole
// document that does not load leaves the render without one.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/document_update.h"
#include "plugin/session/render_thread.h"

namespace {

constexpr int32_t kApplication = 7;
const char* const kNames[] = {"__updc", "__upda", "__updd", "__updr", "__updt", "__updl", "__upds7", "scene.ory"};
constexpr std::size_t kNameCount = sizeof(kNames) / sizeof(kNames[0]);

void GiveId(SceneNode* node, const char* id) {
  t_ORYOS_At->SetUniqueId(node, kApplication, id, static_cast<int32_t>(std::char_traits<char>::length(id)));
}

// A camera looked through, and a plane with a material, each with a unique id.
BaseDocument* TargetDocument() {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  BaseObject* camera = t_ORYOS_Bo->AllocObject(ObjectType_Camera);
  GiveId(camera, "cam");
  t_ORYOS_Bd->InsertObject(document, camera, nullptr, nullptr, 0, 1);
  BaseObject* plane = t_ORYOS_Bo->AllocObject(ObjectType_Plane);
  GiveId(plane, "plane");
  t_ORYOS_Bd->InsertObject(document, plane, nullptr, camera, 0, 1);
  Material* material = t_ORYOS_Mt->AllocMaterial(MaterialType_Standard);
  GiveId(material, "red");
  t_ORYOS_Bd->InsertMaterial(document, material, nullptr, 0);
  LinkMaterialTag(plane, material);
  t_ORYOS_Br->SetSceneCamera(t_ORYOS_Bd->GetActiveView(document), camera, 0);
  return document;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::u16string path = u"" QAE_ENGINE_DIR "/";
  if (!StartEngine(path) || !WaitUntilQuillonIsRunning(60)) std::abort();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const bool whole = data[0] % kNameCount == kNameCount - 1;
  quillon::RenderThread render;
  render.document = TargetDocument();
  const OwnedFilename name(kNames[data[0] % kNameCount]);
  const bool open = quillon::SendUpdate(render, name.value, data + 1, static_cast<int64_t>(size - 1));
  if (!whole && !open) std::abort();
  render.DestroyContents();
  return 0;
}
