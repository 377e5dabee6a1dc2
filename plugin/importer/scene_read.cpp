#include "plugin/importer/scene_read.h"

#include <algorithm>
#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/track_ops.h"

namespace {

// A value that the engine fills; freed with its scope.
struct FilledValue {
  FilledValue() : value{DataKind_Empty, 0, {0}} {}
  ~FilledValue() { t_ORYOS_Gd->Free(&value); }
  FilledValue(const FilledValue&) = delete;
  FilledValue& operator=(const FilledValue&) = delete;
  DataValue value;
};

bool ReadParam(SceneNode* node, int32_t id, FilledValue* out) {
  const ParamLevel level{id, 0, 0};
  const ParamId path{&level, 1, 0};
  return node && t_ORYOS_At->GetParameter(node, &path, &out->value, 0);
}

}  // namespace

double ContainerFloat(SceneNode* node, int32_t id, double fallback) {
  const ParamContainer* data = node ? t_ORYOS_Bl->GetDataInstance(node) : nullptr;
  return data ? t_ORYOS_Bc->GetFloat(data, id, fallback) : fallback;
}

int32_t ContainerInt32(SceneNode* node, int32_t id, int32_t fallback) {
  const ParamContainer* data = node ? t_ORYOS_Bl->GetDataInstance(node) : nullptr;
  return data ? t_ORYOS_Bc->GetInt32(data, id, fallback) : fallback;
}

bool ContainerBool(SceneNode* node, int32_t id, bool fallback) {
  const ParamContainer* data = node ? t_ORYOS_Bl->GetDataInstance(node) : nullptr;
  return data ? t_ORYOS_Bc->GetBool(data, id, fallback) : fallback;
}

BaseTime ContainerTime(SceneNode* node, int32_t id) {
  BaseTime time;
  const ParamContainer* data = node ? t_ORYOS_Bl->GetDataInstance(node) : nullptr;
  if (data) {
    const BaseTime fallback;
    t_ORYOS_Bc->GetTime(data, &time, id, &fallback);
  }
  return time;
}

bool ContainerHas(SceneNode* node, int32_t id) {
  const ParamContainer* data = node ? t_ORYOS_Bl->GetDataInstance(node) : nullptr;
  return data && t_ORYOS_Bc->FindIndex(data, id, 0) != -1;
}

Vector ParamVector(SceneNode* node, int32_t id, const Vector& fallback) {
  FilledValue value;
  if (!ReadParam(node, id, &value) || t_ORYOS_Gd->GetKind(&value.value) != DataKind_Vector) return fallback;
  const Vector* vector = t_ORYOS_Gd->GetVector(&value.value);
  return vector ? *vector : fallback;
}

double ParamFloatOrFirst(SceneNode* node, int32_t id, double fallback) {
  FilledValue value;
  if (!ReadParam(node, id, &value)) return fallback;
  switch (t_ORYOS_Gd->GetKind(&value.value)) {
    case DataKind_Float:
      return t_ORYOS_Gd->GetFloat(&value.value);
    case DataKind_Vector: {
      const Vector* vector = t_ORYOS_Gd->GetVector(&value.value);
      return vector ? vector->x : fallback;
    }
    default:
      return fallback;
  }
}

int32_t SceneFrame(const BaseTime& time, double rate) {
  const double frame = std::trunc(std::floor(rate * time.numerator) / std::floor(time.denominator));
  // A damaged or hostile file may hold any time; out of range saturates rather than wraps.
  if (std::isnan(frame)) return 0;
  return static_cast<int32_t>(std::clamp(frame, double{INT32_MIN}, double{INT32_MAX}));
}

AnimTrack* FindComponentTrack(const SceneNode* node, int32_t parameter, int32_t component) {
  if (!node) return nullptr;
  if (component == 0) {
    const ParamLevel level{parameter, DataKind_Float, 0};
    const ParamId path{&level, 1, 0};
    return t_ORYOS_Bl->FindTrack(node, &path);
  }
  const ComponentParamId path(parameter, component);
  return t_ORYOS_Bl->FindTrack(node, &path.id);
}
