// Typed values of the scene model. A value is the caller-visible DataValue
// (kind and payload) and owns what its payload points to: the payload types
// below, one per kind. Parameter sets map ids to such values.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "plugin/engine/engine_ops.h"

namespace quillon {

class Tag;

// The shared text behind an EngineString.
struct StringData {
  std::atomic<int32_t> references{1};
  std::u16string text;
};

// The bytes of a memory file (memory_file.h), and the scheme of its text.
struct MemoryBuffer;
inline constexpr char kMemoryFileScheme[] = "mfs:";

// The path behind a Filename, in the platform's form (UTF-8 here). A memory
// file has the text "mfs:/" and a name, and its bytes in memory.
struct FilenameData {
  std::string path;
  std::shared_ptr<MemoryBuffer> memory;
};

// A link to a node by the node's link id (see links.h); 0 links to nothing.
struct LinkData {
  uint64_t targetId = 0;
};

class Value;
using ParamSet = std::map<int32_t, Value>;

// Owns one DataValue. The raw value stays the first member, so that a
// DataValue* handed out by the tables points into the set that holds it.
class Value {
 public:
  DataValue raw{};

  Value() = default;
  explicit Value(const DataValue& source);
  Value(const Value& other);
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value();

  int32_t kind() const { return raw.kind; }
  bool operator==(const Value& other) const;
};

// Payload of DataKind_Priority: entries by index.
struct PriorityData {
  std::vector<Value> entries;
};

// Payload of DataKind_Font: the description entries of the font.
struct FontData {
  ParamSet description;
};

// Payload of DataKind_Container: a nested parameter set.
struct ContainerData {
  ParamSet entries;
};

// Payload of DataKind_SplineKey: full copies of a spline's point and tangent
// arrays, held in tags like those of the spline itself.
struct SplineKeyData {
  std::unique_ptr<Tag> points;
  std::unique_ptr<Tag> tangents;
  SplineKeyData();
  SplineKeyData(const SplineKeyData& other);
  SplineKeyData& operator=(const SplineKeyData& other);
  ~SplineKeyData();
};

// Operations on raw values; every one leaves the previous payload released.
void FreeData(DataValue& value);
void CopyData(DataValue& destination, const DataValue& source);
bool DataEquals(const DataValue& a, const DataValue& b);
void SetInt32(DataValue& value, int32_t number);
void SetFloat(DataValue& value, double number);
void SetBool(DataValue& value, bool flag);
void SetInt64(DataValue& value, int64_t number);
void SetVector(DataValue& value, const Vector& vector);
void SetText(DataValue& value, const std::u16string& text);
void SetPath(DataValue& value, const std::string& path);
// An entry of a document's texture list (GetTextureList): a path of kind DataKind_TextureFile.
void SetTextureFile(DataValue& value, const std::string& path);
void SetTime(DataValue& value, const BaseTime& time);
void SetLinkId(DataValue& value, uint64_t targetId);
// A new empty payload of a custom kind (priority, font, spline key); false for
// a kind that has no payload type.
bool InitCustom(DataValue& value, int32_t kind);

// Readers by kind; a value of another kind gives nothing (null or 0).
int32_t AsInt32(const DataValue& value);
double AsFloat(const DataValue& value);
const Vector* AsVector(const DataValue& value);
const EngineString* AsString(const DataValue& value);
std::u16string AsText(const DataValue& value);
const BaseTime* AsTime(const DataValue& value);
// Also the path of a texture list entry.
const Filename* AsFilename(const DataValue& value);
const LinkData* AsLink(const DataValue& value);
PriorityData* AsPriority(const DataValue& value);
FontData* AsFont(const DataValue& value);
ContainerData* AsContainer(const DataValue& value);
SplineKeyData* AsSplineKey(const DataValue& value);

// EngineString and Filename values.
std::u16string TextOf(const EngineString& string);
void AssignText(EngineString& string, std::u16string text);
void RetainText(const EngineString& string);
void ReleaseText(EngineString& string);
std::string PathOf(const Filename& file);
// Keeps the bytes of a memory file while the new text keeps its scheme.
void AssignPath(Filename& file, std::string path);
// A copy of the path and, of a memory file, a share of its bytes.
void CopyPath(Filename& destination, const Filename& source);
void ReleasePath(Filename& file);

std::string ToUtf8(const std::u16string& text);
std::u16string FromUtf8(const std::string& text);

}  // namespace quillon
