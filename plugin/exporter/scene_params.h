#pragma once
// Small steps on scene nodes that the exporter repeats everywhere: texts in and out of engine
// strings, names, whole parameters of one level, entries of a node's parameter container, and
// the few node kinds it makes besides objects.
#include <string>

#include "plugin/engine/engine_tables.h"

// An engine string that releases its reference when it goes.
class OwnedString {
 public:
  OwnedString();
  explicit OwnedString(const std::string& utf8);
  ~OwnedString();
  OwnedString(const OwnedString&) = delete;
  OwnedString& operator=(const OwnedString&) = delete;
  EngineString* get() { return &value_; }
  const EngineString* get() const { return &value_; }

 private:
  EngineString value_{nullptr};
};

std::string ToUtf8(const EngineString& text);
// The last component of a path, as UTF-8; empty for an empty path.
std::string LeafOf(const Filename& file);
bool IsFilled(const Filename& file);

void SetNodeName(SceneNode* node, const std::string& name);
std::string NodeName(SceneNode* node);

// Whole parameters, addressed by one level.
void SetInt32Param(SceneNode* node, int32_t id, int32_t value);
void SetFloatParam(SceneNode* node, int32_t id, double value);
void SetTimeParam(SceneNode* node, int32_t id, const BaseTime& value);
void SetVectorParam(SceneNode* node, int32_t id, const Vector& value);
void SetStringParam(SceneNode* node, int32_t id, const std::string& value);
// Any value, such as one of a custom kind that the caller filled.
void SetDataParam(SceneNode* node, int32_t id, const DataValue& value);
int32_t GetInt32Param(SceneNode* node, int32_t id, int32_t fallback);

// Entries of the node's own parameter container.
void SetContainerString(SceneNode* node, int32_t id, const std::string& value);
std::string GetContainerString(SceneNode* node, int32_t id);
void SetContainerInt32(SceneNode* node, int32_t id, int32_t value);
int32_t GetContainerInt32(SceneNode* node, int32_t id, int32_t fallback);

// Depth first from `first`, by display name.
SceneNode* FindByName(SceneNode* first, const std::string& name);

// A new tag of `type` on `object` behind `predecessor` (first with none); null when it can't
// be made.
BaseTag* MakeTag(BaseObject* object, int32_t type, BaseTag* predecessor);
