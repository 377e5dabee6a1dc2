// Tables Gd (typed values), Bc (parameter sets) and Ln (link holders).
#include "plugin/exporter/scene_ids.h"
#include "quillon/api/handles.h"
#include "quillon/api/session_operations.h"
#include "quillon/api/tables.h"
#include "quillon/model/links.h"

namespace quillon {
namespace {

// --- Gd ---------------------------------------------------------------------

void Free(DataValue* value) {
  if (value) FreeData(*value);
}

bool Equals(const DataValue* a, const DataValue* b) { return a && b && DataEquals(*a, *b); }
int32_t GetKind(const DataValue* value) { return value ? value->kind : DataKind_Empty; }

void Copy(DataValue* destination, const DataValue* source, int32_t) {
  if (destination && source) CopyData(*destination, *source);
}

void GdSetInt32(DataValue* value, int32_t number) {
  if (value) SetInt32(*value, number);
}

void GdSetFloat(DataValue* value, double number) {
  if (value) SetFloat(*value, number);
}

void GdSetVector(DataValue* value, const Vector* vector) {
  if (value && vector) SetVector(*value, *vector);
}

void GdSetString(DataValue* value, const EngineString* string) {
  if (value) SetText(*value, string ? TextOf(*string) : std::u16string());
}

// A memory file stays one in the value, sharing its bytes, so that a material
// can show a picture that a caller sent.
void GdSetFilename(DataValue* value, const Filename* file) {
  if (!value) return;
  SetPath(*value, std::string());
  if (file) CopyPath(*const_cast<Filename*>(AsFilename(*value)), *file);
}

void GdSetTime(DataValue* value, const BaseTime* time) {
  if (value && time) SetTime(*value, *time);
}

void SetLinkHolder(DataValue* value, const LinkHolder* holder) {
  if (value) SetLinkId(*value, holder ? LinkOf(holder)->targetId : 0);
}

int32_t GdGetInt32(const DataValue* value) { return value ? AsInt32(*value) : 0; }
double GdGetFloat(const DataValue* value) { return value ? AsFloat(*value) : 0.0; }
const Vector* GdGetVector(const DataValue* value) { return value ? AsVector(*value) : nullptr; }
const EngineString* GdGetString(const DataValue* value) { return value ? AsString(*value) : nullptr; }
const BaseTime* GdGetTime(const DataValue* value) { return value ? AsTime(*value) : nullptr; }

const LinkHolder* GetLinkHolder(const DataValue* value) {
  return value ? HandleOfLink(const_cast<LinkData*>(AsLink(*value))) : nullptr;
}

bool IsCustomKind(int32_t kind) {
  return kind == DataKind_Priority || kind == DataKind_Font || kind == DataKind_SplineKey;
}

void* GetCustomData(DataValue* value, int32_t kind) {
  if (!value || value->kind != kind || !IsCustomKind(kind)) return nullptr;
  return value->payload.object;
}

const void* GetCustomDataConst(const DataValue* value, int32_t kind) {
  return GetCustomData(const_cast<DataValue*>(value), kind);
}

void InitCustomData(DataValue* value, int32_t kind) {
  if (value) InitCustom(*value, kind);
}

bool IsEmpty(const DataValue* value) { return !value || value->kind == DataKind_Empty; }

void GdSetBool(DataValue* value, bool flag) {
  if (value) SetBool(*value, flag);
}

bool GdGetBool(const DataValue* value) { return value && AsInt32(*value) != 0; }

void GdSetInt64(DataValue* value, int64_t number) {
  if (value) SetInt64(*value, number);
}

int64_t GdGetInt64(const DataValue* value) {
  if (!value) return 0;
  return value->kind == DataKind_Int64 ? value->payload.int64 : AsInt32(*value);
}

const Filename* GetFilename(const DataValue* value) { return value ? AsFilename(*value) : nullptr; }

// --- Bc ---------------------------------------------------------------------

// A container made by InitContainer owns its set; the one of a node does not.
constexpr int32_t kOwnedSet = 1;

const Value* Find(const ParamContainer* container, int32_t id) {
  ParamSet* set = SetOf(container);
  if (!set) return nullptr;
  auto found = set->find(id);
  return found == set->end() ? nullptr : &found->second;
}

DataValue* Slot(ParamContainer* container, int32_t id) {
  ParamSet* set = SetOf(container);
  return set ? &(*set)[id].raw : nullptr;
}

void InitContainer(ParamContainer* container, int32_t id, int32_t) {
  if (!container) return;
  container->impl = new ParamSet();
  container->id = id;
  container->reserved = kOwnedSet;
}

void FreeContainer(ParamContainer* container) {
  if (!container) return;
  if (container->reserved == kOwnedSet) delete SetOf(container);
  container->impl = nullptr;
  container->reserved = 0;
}

void BcSetBool(ParamContainer* container, int32_t id, bool value) {
  if (DataValue* slot = Slot(container, id)) SetBool(*slot, value);
}

void BcSetInt32(ParamContainer* container, int32_t id, int32_t value) {
  if (DataValue* slot = Slot(container, id)) SetInt32(*slot, value);
}

void BcSetString(ParamContainer* container, int32_t id, const EngineString* value) {
  if (DataValue* slot = Slot(container, id)) SetText(*slot, value ? TextOf(*value) : std::u16string());
}

int32_t FindIndex(const ParamContainer* container, int32_t id, int32_t) {
  ParamSet* set = SetOf(container);
  if (!set) return -1;
  auto found = set->find(id);
  return found == set->end() ? -1 : static_cast<int32_t>(std::distance(set->begin(), found));
}

SceneNode* GetLink(const ParamContainer* container, int32_t id, const BaseDocument* document, int32_t) {
  const Value* value = Find(container, id);
  const LinkData* link = value ? AsLink(value->raw) : nullptr;
  if (!link) return nullptr;
  Node* target = document ? ResolveLinkIn(link->targetId, DocumentOfHandle(document)) : ResolveLink(link->targetId);
  return HandleOf<SceneNode>(target);
}

void SetLink(ParamContainer* container, int32_t id, SceneNode* target) {
  if (DataValue* slot = Slot(container, id)) SetLinkId(*slot, target ? LinkIdOf(NodeOf(target)) : 0);
}

DataValue* GetData(ParamContainer* container, int32_t id) {
  const Value* value = Find(container, id);
  return value ? const_cast<DataValue*>(&value->raw) : nullptr;
}

void StoreData(ParamContainer* container, int32_t id, const DataValue* value) {
  if (!value) return;
  if (DataValue* slot = Slot(container, id)) CopyData(*slot, *value);
}

void BcSetInt64(ParamContainer* container, int32_t id, int64_t value) {
  if (DataValue* slot = Slot(container, id)) SetInt64(*slot, value);
}

int64_t BcGetInt64(const ParamContainer* container, int32_t id, int64_t fallback) {
  const Value* value = Find(container, id);
  return value ? GdGetInt64(&value->raw) : fallback;
}

double BcGetFloat(const ParamContainer* container, int32_t id, double fallback) {
  const Value* value = Find(container, id);
  return value ? AsFloat(value->raw) : fallback;
}

bool BcGetBool(const ParamContainer* container, int32_t id, bool fallback) {
  const Value* value = Find(container, id);
  return value ? AsInt32(value->raw) != 0 : fallback;
}

int32_t BcGetInt32(const ParamContainer* container, int32_t id, int32_t fallback) {
  const Value* value = Find(container, id);
  return value ? AsInt32(value->raw) : fallback;
}

EngineString* BcGetString(const ParamContainer* container, EngineString* out, int32_t id,
                          const EngineString* fallback) {
  if (!out) return nullptr;
  const Value* value = Find(container, id);
  if (value && AsString(value->raw)) {
    AssignText(*out, AsText(value->raw));
  } else {
    AssignText(*out, fallback ? TextOf(*fallback) : std::u16string());
  }
  return out;
}

BaseTime* BcGetTime(const ParamContainer* container, BaseTime* out, int32_t id, const BaseTime* fallback) {
  if (!out) return nullptr;
  const Value* value = Find(container, id);
  const BaseTime* time = value ? AsTime(value->raw) : nullptr;
  *out = time ? *time : fallback ? *fallback : BaseTime();
  return out;
}

// --- Ln ---------------------------------------------------------------------

LinkHolder* AllocLinkHolder() { return HandleOfLink(new LinkData()); }
void FreeLinkHolder(LinkHolder* holder) { delete LinkOf(holder); }

void SetLinkTarget(LinkHolder* holder, SceneNode* target) {
  if (holder) LinkOf(holder)->targetId = target ? LinkIdOf(NodeOf(target)) : 0;
}

SceneNode* GetLinkTarget(const LinkHolder* holder) {
  return holder ? HandleOf<SceneNode>(ResolveLink(LinkOf(holder)->targetId)) : nullptr;
}

SceneNode* GetLinkTargetIn(const LinkHolder* holder, const BaseDocument* document, int32_t) {
  if (!holder) return nullptr;
  return HandleOf<SceneNode>(ResolveLinkIn(LinkOf(holder)->targetId, DocumentOfHandle(document)));
}

}  // namespace

const ORYOS_Gd& GdTable() {
  static const ORYOS_Gd table{.Free = Free,
                              .Equals = Equals,
                              .GetKind = GetKind,
                              .Copy = Copy,
                              .SetInt32 = GdSetInt32,
                              .SetFloat = GdSetFloat,
                              .SetVector = GdSetVector,
                              .SetString = GdSetString,
                              .SetFilename = GdSetFilename,
                              .SetTime = GdSetTime,
                              .SetLinkHolder = SetLinkHolder,
                              .GetInt32 = GdGetInt32,
                              .GetFloat = GdGetFloat,
                              .GetVector = GdGetVector,
                              .GetString = GdGetString,
                              .GetTime = GdGetTime,
                              .GetLinkHolder = GetLinkHolder,
                              .GetCustomData = GetCustomData,
                              .GetCustomDataConst = GetCustomDataConst,
                              .InitCustomData = InitCustomData,
                              .IsEmpty = IsEmpty,
                              .SetBool = GdSetBool,
                              .GetBool = GdGetBool,
                              .SetInt64 = GdSetInt64,
                              .GetInt64 = GdGetInt64,
                              .GetFilename = GetFilename};
  return table;
}

const ORYOS_Bc& BcTable() {
  static const ORYOS_Bc table{.InitContainer = InitContainer,
                              .FreeContainer = FreeContainer,
                              .SetBool = BcSetBool,
                              .SetInt32 = BcSetInt32,
                              .SetString = BcSetString,
                              .FindIndex = FindIndex,
                              .GetLink = GetLink,
                              .SetLink = SetLink,
                              .GetData = GetData,
                              .InsertData = StoreData,
                              .SetDataAt = StoreData,
                              .SetCustomData = StoreData,
                              .SetInt64 = BcSetInt64,
                              .GetInt64 = BcGetInt64,
                              .GetFloat = BcGetFloat,
                              .GetBool = BcGetBool,
                              .GetInt32 = BcGetInt32,
                              .GetString = BcGetString,
                              .GetTime = BcGetTime,
                              .ContainersEqual = ContainersEqual,
                              .SetFilename = BcSetFilename,
                              .GetFilename = BcGetFilename,
                              .SetContainer = SetContainer,
                              .GetContainer = GetContainer};
  return table;
}

const ORYOS_Ln& LnTable() {
  static const ORYOS_Ln table{.AllocLinkHolder = AllocLinkHolder,
                              .FreeLinkHolder = FreeLinkHolder,
                              .SetLinkTarget = SetLinkTarget,
                              .GetLinkTarget = GetLinkTarget,
                              .GetLinkTargetIn = GetLinkTargetIn,
                              .SetLinkDocument = SetLinkDocument,
                              .SetLinkMode = SetLinkMode,
                              .GetLinkTargetOfKind = GetLinkTargetOfKind};
  return table;
}

}  // namespace quillon
