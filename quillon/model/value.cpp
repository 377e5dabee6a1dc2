#include "quillon/model/value.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/tag.h"

namespace quillon {
namespace {

template <typename T>
T* PayloadAs(const DataValue& value, int32_t kind) {
  return value.kind == kind ? static_cast<T*>(value.payload.object) : nullptr;
}

void SetObject(DataValue& value, int32_t kind, void* object) {
  FreeData(value);
  value.kind = kind;
  value.payload.object = object;
}

void* ClonePayload(const DataValue& source) {
  switch (source.kind) {
    case DataKind_Vector: return new Vector(*AsVector(source));
    case DataKind_Time: return new BaseTime(*AsTime(source));
    case DataKind_String: {
      auto* copy = new EngineString{AsString(source)->impl};
      RetainText(*copy);
      return copy;
    }
    case DataKind_Filename:
    case DataKind_TextureFile: {  // a memory file's copy shares its bytes
      auto* copy = new Filename{nullptr};
      CopyPath(*copy, *AsFilename(source));
      return copy;
    }
    case DataKind_Link: return new LinkData(*AsLink(source));
    case DataKind_Priority: return new PriorityData(*AsPriority(source));
    case DataKind_Font: return new FontData(*AsFont(source));
    case DataKind_Container: return new ContainerData(*AsContainer(source));
    case DataKind_SplineKey: return new SplineKeyData(*AsSplineKey(source));
    default: return nullptr;
  }
}

bool HasObjectPayload(int32_t kind) {
  switch (kind) {
    case DataKind_Vector:
    case DataKind_Time:
    case DataKind_String:
    case DataKind_Filename:
    case DataKind_TextureFile:
    case DataKind_Link:
    case DataKind_Priority:
    case DataKind_Font:
    case DataKind_Container:
    case DataKind_SplineKey: return true;
    default: return false;
  }
}

bool TagsEqual(const Tag* a, const Tag* b) {
  if (!a || !b) return a == b;
  return a->count == b->count && a->data == b->data;
}

}  // namespace

Value::Value(const DataValue& source) { CopyData(raw, source); }
Value::Value(const Value& other) { CopyData(raw, other.raw); }
Value::Value(Value&& other) noexcept : raw(other.raw) { other.raw = DataValue{}; }

Value& Value::operator=(const Value& other) {
  if (this != &other) CopyData(raw, other.raw);
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  if (this != &other) {
    FreeData(raw);
    raw = other.raw;
    other.raw = DataValue{};
  }
  return *this;
}

Value::~Value() { FreeData(raw); }
bool Value::operator==(const Value& other) const { return DataEquals(raw, other.raw); }

SplineKeyData::SplineKeyData()
    : points(std::make_unique<Tag>(TagType_Points)), tangents(std::make_unique<Tag>(TagType_Tangents)) {}
SplineKeyData::SplineKeyData(const SplineKeyData& other)
    : points(CloneTag(*other.points)), tangents(CloneTag(*other.tangents)) {}

SplineKeyData& SplineKeyData::operator=(const SplineKeyData& other) {
  if (this != &other) {
    points = CloneTag(*other.points);
    tangents = CloneTag(*other.tangents);
  }
  return *this;
}

SplineKeyData::~SplineKeyData() = default;

void FreeData(DataValue& value) {
  switch (value.kind) {
    case DataKind_Vector: delete AsVector(value); break;
    case DataKind_Time: delete AsTime(value); break;
    case DataKind_String: {
      auto* string = static_cast<EngineString*>(value.payload.object);
      ReleaseText(*string);
      delete string;
      break;
    }
    case DataKind_Filename:
    case DataKind_TextureFile: {
      auto* file = static_cast<Filename*>(value.payload.object);
      ReleasePath(*file);
      delete file;
      break;
    }
    case DataKind_Link: delete AsLink(value); break;
    case DataKind_Priority: delete AsPriority(value); break;
    case DataKind_Font: delete AsFont(value); break;
    case DataKind_Container: delete AsContainer(value); break;
    case DataKind_SplineKey: delete AsSplineKey(value); break;
    default: break;
  }
  value = DataValue{};
}

void CopyData(DataValue& destination, const DataValue& source) {
  if (&destination == &source) return;
  DataValue copy = source;
  if (HasObjectPayload(source.kind)) copy.payload.object = source.payload.object ? ClonePayload(source) : nullptr;
  FreeData(destination);
  destination = copy;
}

bool DataEquals(const DataValue& a, const DataValue& b) {
  if (a.kind != b.kind) return false;
  switch (a.kind) {
    case DataKind_Empty: return true;
    case DataKind_Int32: return a.payload.int32 == b.payload.int32;
    case DataKind_Float: return a.payload.float64 == b.payload.float64;
    case DataKind_Vector: return *AsVector(a) == *AsVector(b);
    case DataKind_Time: return *AsTime(a) == *AsTime(b);
    case DataKind_String: return AsText(a) == AsText(b);
    case DataKind_Filename:
    case DataKind_TextureFile: return PathOf(*AsFilename(a)) == PathOf(*AsFilename(b));
    case DataKind_Link: return AsLink(a)->targetId == AsLink(b)->targetId;
    case DataKind_Priority: return AsPriority(a)->entries == AsPriority(b)->entries;
    case DataKind_Font: return AsFont(a)->description == AsFont(b)->description;
    case DataKind_Container: return AsContainer(a)->entries == AsContainer(b)->entries;
    case DataKind_SplineKey: {
      const SplineKeyData* x = AsSplineKey(a);
      const SplineKeyData* y = AsSplineKey(b);
      return TagsEqual(x->points.get(), y->points.get()) && TagsEqual(x->tangents.get(), y->tangents.get());
    }
    default: return a.payload.int64 == b.payload.int64;
  }
}

void SetInt32(DataValue& value, int32_t number) {
  FreeData(value);
  value.kind = DataKind_Int32;
  value.payload.int64 = number;
}

void SetFloat(DataValue& value, double number) {
  FreeData(value);
  value.kind = DataKind_Float;
  value.payload.float64 = number;
}

void SetBool(DataValue& value, bool flag) {
  FreeData(value);
  value.kind = DataKind_Bool;
  value.payload.int64 = flag ? 1 : 0;
}

void SetInt64(DataValue& value, int64_t number) {
  FreeData(value);
  value.kind = DataKind_Int64;
  value.payload.int64 = number;
}

void SetVector(DataValue& value, const Vector& vector) { SetObject(value, DataKind_Vector, new Vector(vector)); }

void SetText(DataValue& value, const std::u16string& text) {
  auto* string = new EngineString{nullptr};
  AssignText(*string, text);
  SetObject(value, DataKind_String, string);
}

void SetPath(DataValue& value, const std::string& path) {
  SetObject(value, DataKind_Filename, new Filename{new FilenameData{path, nullptr}});
}

void SetTextureFile(DataValue& value, const std::string& path) {
  SetObject(value, DataKind_TextureFile, new Filename{new FilenameData{path, nullptr}});
}

void SetTime(DataValue& value, const BaseTime& time) { SetObject(value, DataKind_Time, new BaseTime(time)); }
void SetLinkId(DataValue& value, uint64_t targetId) { SetObject(value, DataKind_Link, new LinkData{targetId}); }

bool InitCustom(DataValue& value, int32_t kind) {
  switch (kind) {
    case DataKind_Priority: SetObject(value, kind, new PriorityData()); return true;
    case DataKind_Font: SetObject(value, kind, new FontData()); return true;
    case DataKind_Container: SetObject(value, kind, new ContainerData()); return true;
    case DataKind_SplineKey: SetObject(value, kind, new SplineKeyData()); return true;
    default: return false;
  }
}

int32_t AsInt32(const DataValue& value) {
  switch (value.kind) {
    case DataKind_Int32: return value.payload.int32;
    case DataKind_Bool:
    case DataKind_Int64: return static_cast<int32_t>(value.payload.int64);
    case DataKind_Float: return static_cast<int32_t>(value.payload.float64);
    default: return 0;
  }
}

double AsFloat(const DataValue& value) {
  switch (value.kind) {
    case DataKind_Float: return value.payload.float64;
    case DataKind_Int32: return value.payload.int32;
    case DataKind_Bool:
    case DataKind_Int64: return static_cast<double>(value.payload.int64);
    default: return 0.0;
  }
}

const Vector* AsVector(const DataValue& value) { return PayloadAs<Vector>(value, DataKind_Vector); }
const EngineString* AsString(const DataValue& value) { return PayloadAs<EngineString>(value, DataKind_String); }

std::u16string AsText(const DataValue& value) {
  const EngineString* string = AsString(value);
  return string ? TextOf(*string) : std::u16string();
}

const BaseTime* AsTime(const DataValue& value) { return PayloadAs<BaseTime>(value, DataKind_Time); }
const Filename* AsFilename(const DataValue& value) {
  if (value.kind == DataKind_TextureFile) return PayloadAs<Filename>(value, DataKind_TextureFile);
  return PayloadAs<Filename>(value, DataKind_Filename);
}
const LinkData* AsLink(const DataValue& value) { return PayloadAs<LinkData>(value, DataKind_Link); }
PriorityData* AsPriority(const DataValue& value) { return PayloadAs<PriorityData>(value, DataKind_Priority); }
FontData* AsFont(const DataValue& value) { return PayloadAs<FontData>(value, DataKind_Font); }
ContainerData* AsContainer(const DataValue& value) { return PayloadAs<ContainerData>(value, DataKind_Container); }
SplineKeyData* AsSplineKey(const DataValue& value) { return PayloadAs<SplineKeyData>(value, DataKind_SplineKey); }

std::u16string TextOf(const EngineString& string) {
  auto* data = static_cast<const StringData*>(string.impl);
  return data ? data->text : std::u16string();
}

void AssignText(EngineString& string, std::u16string text) {
  ReleaseText(string);
  auto* data = new StringData();
  data->text = std::move(text);
  string.impl = data;
}

void RetainText(const EngineString& string) {
  if (auto* data = static_cast<StringData*>(string.impl)) data->references.fetch_add(1);
}

void ReleaseText(EngineString& string) {
  auto* data = static_cast<StringData*>(string.impl);
  if (data && data->references.fetch_sub(1) == 1) delete data;
  string.impl = nullptr;
}

std::string PathOf(const Filename& file) {
  auto* data = static_cast<const FilenameData*>(file.impl);
  return data ? data->path : std::string();
}

void AssignPath(Filename& file, std::string path) {
  std::shared_ptr<MemoryBuffer> memory;
  auto* data = static_cast<FilenameData*>(file.impl);
  if (data && path.rfind(kMemoryFileScheme, 0) == 0) memory = data->memory;
  ReleasePath(file);
  file.impl = new FilenameData{std::move(path), std::move(memory)};
}

void CopyPath(Filename& destination, const Filename& source) {
  if (&destination == &source) return;
  auto* data = static_cast<const FilenameData*>(source.impl);
  ReleasePath(destination);
  if (data) destination.impl = new FilenameData(*data);
}

void ReleasePath(Filename& file) {
  delete static_cast<FilenameData*>(file.impl);
  file.impl = nullptr;
}

std::string ToUtf8(const std::u16string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    uint32_t c = text[i];
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
      ++i;
    }
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

std::u16string FromUtf8(const std::string& text) {
  std::u16string out;
  size_t i = 0;
  while (i < text.size()) {
    auto byte = static_cast<unsigned char>(text[i]);
    int extra = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
    uint32_t c = extra == 0 ? byte : byte & (0x3F >> extra);
    if (byte >= 0x80 && byte < 0xC0) c = 0xFFFD;  // a stray continuation byte
    size_t end = i + 1 + extra;
    if (end > text.size()) {
      out += u'\uFFFD';
      break;
    }
    for (size_t k = i + 1; k < end; ++k) c = (c << 6) | (static_cast<unsigned char>(text[k]) & 0x3F);
    if (c >= 0x10000) {
      c -= 0x10000;
      out += static_cast<char16_t>(0xD800 + (c >> 10));
      out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    } else {
      out += static_cast<char16_t>(c);
    }
    i = end;
  }
  return out;
}

}  // namespace quillon
