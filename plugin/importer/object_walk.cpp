#include "plugin/importer/object_walk.h"

#include "plugin/exporter/scene_ids.h"
#include "plugin/importer/camera_light_conversion.h"
#include "plugin/importer/import_session.h"
#include "plugin/importer/object_conversion.h"

namespace {

bool FromCache(const SceneNode* node) { return (t_ORYOS_Bl->GetInfoBits(node) & kInfoBitFromCache) != 0; }

// A generator whose caches are all generated objects down to the last one.
bool GeneratorChainHolds(BaseObject* object) {
  for (BaseObject* o = object;;) {
    BaseObject* cache = t_ORYOS_Bo->GetGeneratorCache(o);
    if (!cache) return FromCache(o);
    if (!FromCache(cache)) return false;
    if (!t_ORYOS_Bo->GetGeneratorCache(cache) && !t_ORYOS_Bo->GetDeformCache(cache)) return true;
    o = cache;
  }
}

bool IsLookThroughGenerator(BaseObject* object) {
  const int32_t type = t_ORYOS_Bl->GetNodeType(object);
  return FromCache(object) && (type == ObjectType_ChainGeneratorA || type == ObjectType_ChainGeneratorB) &&
         GeneratorChainHolds(object);
}

void WalkChildren(BaseObject* object) {
  for (SceneNode* child = t_ORYOS_At->GetDown(object); child; child = t_ORYOS_At->GetNext(child))
    WalkObject(static_cast<BaseObject*>(child));
}

}  // namespace

bool WalkDocument(BaseDocument* document) {
  // The engine refuses a document whose caches would pass its limits; nothing is walked then.
  if (!t_ORYOS_Bd->EvaluateDocument(document, 0, 1, 1, 1, 4)) return false;
  for (SceneNode* object = t_ORYOS_Bd->GetFirstObject(document); object; object = t_ORYOS_At->GetNext(object))
    WalkObject(static_cast<BaseObject*>(object));
  return true;
}

void WalkObject(BaseObject* object) {
  if (BaseObject* deformed = t_ORYOS_Bo->GetDeformCache(object)) {
    WalkObject(deformed);
  } else if (IsLookThroughGenerator(object)) {
    BaseObject* cache = t_ORYOS_Bo->GetGeneratorCache(object);
    if (cache && t_ORYOS_Bo->GetDeformCache(cache)) WalkObject(cache);
  } else if (!ConvertObject(object)) {
    if (BaseObject* cache = t_ORYOS_Bo->GetGeneratorCache(object)) WalkObject(cache);
  }
  WalkChildren(object);
}

bool ConvertObject(BaseObject* object) {
  if (!object) return false;
  switch (t_ORYOS_At->GetType(object)) {
    case ObjectType_Light:
    case ObjectType_KvLight:
      ConvertLight(object);
      return true;
    case ObjectType_Camera:
    case ObjectType_KvCamera:
      ConvertCamera(object);
      return true;
    case ObjectType_Duplicator:
      return false;
    default:
      if (g_importSession.pica) {
        ObjectConversion conversion;
        ConvertBaseObject(object, &conversion);
      }
      return true;
  }
}
