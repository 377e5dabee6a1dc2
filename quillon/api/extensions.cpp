// The extension libraries found by id through table Ge: parameter paths,
// priorities, fonts, spline keys, instances and timeline markers.
#include "quillon/api/extensions.h"

#include <array>

#include "plugin/exporter/scene_ids.h"
#include "quillon/api/handles.h"
#include "quillon/api/session_operations.h"
#include "quillon/model/evaluate.h"
#include "quillon/model/links.h"

struct ExtensionRecord {
  int32_t id;
  const ExtensionHeader* table;
};

namespace quillon {
namespace {

// Entries of a priority value beyond this index are refused.
constexpr int32_t kMaxPriorityEntries = 64;

template <typename Library>
ExtensionHeader HeaderFor(int32_t id) {
  return ExtensionHeader{id, static_cast<int32_t>(sizeof(Library))};
}

void ParamIdInit(ParamId* id) {
  if (id) *id = ParamId{nullptr, 0, 0};
}

void ParamIdFree(ParamId* id) {
  if (!id) return;
  if (id->capacity > 0) delete[] id->levels;
  *id = ParamId{nullptr, 0, 0};
}

void ParamIdAssign(ParamId* id, const ParamLevel* levels, int32_t count) {
  if (!id) return;
  ParamIdFree(id);
  if (!levels || count <= 0) return;
  auto* copy = new ParamLevel[static_cast<size_t>(count)];
  std::copy(levels, levels + count, copy);
  *id = ParamId{copy, count, count};
}

bool SetPriorityEntry(void* payload, int32_t index, const DataValue* value) {
  if (!payload || !value || index < 0 || index >= kMaxPriorityEntries) return false;
  auto* priority = static_cast<PriorityData*>(payload);
  if (priority->entries.size() <= static_cast<size_t>(index)) priority->entries.resize(static_cast<size_t>(index) + 1);
  priority->entries[static_cast<size_t>(index)] = Value(*value);
  return true;
}

bool SetFontFromContainer(void* payload, const ParamContainer* description) {
  const ParamSet* set = SetOf(description);
  if (!payload || !set) return false;
  static_cast<FontData*>(payload)->description = *set;
  return true;
}

bool GetSplineKeyTags(void* payload, BaseTag** points, BaseTag** tangents) {
  if (!payload || !points || !tangents) return false;
  auto* key = static_cast<SplineKeyData*>(payload);
  *points = HandleOf<BaseTag>(key->points.get());
  *tangents = HandleOf<BaseTag>(key->tangents.get());
  return true;
}

void SetInstanceReference(BaseObject* object, bool* result, BaseObject* reference) {
  Object* instance = ObjectOf(object);
  Object* target = ObjectOf(reference);
  bool done = instance && target && instance != target && instance->type == ObjectType_Instance;
  if (done) SetLinkId(instance->params[InstanceParam_Reference].raw, LinkIdOf(target));
  if (result) *result = done;
}

TimelineMarker* GetFirstMarker(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  return model ? HandleOf<TimelineMarker>(model->markers->firstChild) : nullptr;
}

BaseTime MarkerTime(const Node& marker) {
  auto found = marker.params.find(MarkerParam_Time);
  const BaseTime* time = found == marker.params.end() ? nullptr : AsTime(found->second.raw);
  return time ? *time : BaseTime();
}

// Without a predecessor a marker goes behind the last one that is not later.
void PlaceMarker(Document& document, Node* marker, TimelineMarker* predecessor) {
  if (predecessor && NodeOf(predecessor)->parent == document.markers.get()) {
    InsertBehind(marker, NodeOf(predecessor));
    return;
  }
  BaseTime time = MarkerTime(*marker);
  Node* behind = nullptr;
  for (Node* at = document.markers->firstChild; at && !(time < MarkerTime(*at)); at = at->next) behind = at;
  if (behind) {
    InsertBehind(marker, behind);
  } else {
    InsertFirstUnder(marker, document.markers.get());
  }
}

TimelineMarker* AddMarker(BaseDocument* document, TimelineMarker* predecessor, const BaseTime* time,
                          const EngineString* name, const Vector* colour, const BaseTime* length, int32_t) {
  Document* model = DocumentOfHandle(document);
  if (!model) return nullptr;
  Node* marker = NewMarker().release();
  SetTime(marker->params[MarkerParam_Time].raw, time ? *time : BaseTime());
  SetTime(marker->params[MarkerParam_Length].raw, length ? *length : BaseTime());
  SetVector(marker->params[MarkerParam_Color].raw, colour ? *colour : Vector{});
  if (name) marker->name = TextOf(*name);
  PlaceMarker(*model, marker, predecessor);
  return HandleOf<TimelineMarker>(marker);
}

const ParamIdLibrary kParamIdLibrary{HeaderFor<ParamIdLibrary>(kExtensionParamId), ParamIdInit, ParamIdFree,
                                     ParamIdAssign};
const PriorityLibrary kPriorityLibrary{HeaderFor<PriorityLibrary>(kExtensionPriority), SetPriorityEntry};
const FontLibrary kFontLibrary{HeaderFor<FontLibrary>(kExtensionFont), {}, SetFontFromContainer};
const SplineKeyLibrary kSplineKeyLibrary{HeaderFor<SplineKeyLibrary>(kExtensionSplineKey), {}, GetSplineKeyTags};
const InstanceLibrary kInstanceLibrary{HeaderFor<InstanceLibrary>(kExtensionInstance), {}, SetInstanceReference};
const MarkerLibrary kMarkerLibrary{HeaderFor<MarkerLibrary>(kExtensionMarkers), GetFirstMarker, AddMarker};

const std::array<ExtensionRecord, 7> kExtensions{{
    {kExtensionParamId, &kParamIdLibrary.header},
    {kExtensionPriority, &kPriorityLibrary.header},
    {kExtensionFont, &kFontLibrary.header},
    {kExtensionSplineKey, &kSplineKeyLibrary.header},
    {kExtensionInstance, &kInstanceLibrary.header},
    {kExtensionMarkers, &kMarkerLibrary.header},
    {kExtensionSceneStates, &SceneStateLibraryHeader()},
}};

}  // namespace

const ExtensionRecord* FindExtensionRecord(int32_t id) {
  for (const ExtensionRecord& record : kExtensions) {
    if (record.id == id) return &record;
  }
  return nullptr;
}

bool ReadExtensionRecord(const ExtensionRecord* record, const void** table, int32_t* libraryId,
                         int32_t* tableSize) {
  if (!record) return false;
  if (table) *table = record->table;
  if (libraryId) *libraryId = record->table->id;
  if (tableSize) *tableSize = record->table->size;
  return true;
}

}  // namespace quillon
