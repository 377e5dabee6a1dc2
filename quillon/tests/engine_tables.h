// The engine's tables as a caller sees them, taken from the API record that
// the engine hands over, and small helpers for the value objects.
#pragma once

#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/exporter/scene_ids.h"
#include "quillon/api/tables.h"

namespace quillon::testing {

template <typename Table>
const Table* TableAt(EngineTableIndex index) {
  return static_cast<const Table*>(ApiRecord().tables[index]);
}

inline const ORYOS_At* At() { return TableAt<ORYOS_At>(Table_At); }
inline const ORYOS_Bl* Bl() { return TableAt<ORYOS_Bl>(Table_Bl); }
inline const ORYOS_Bo* Bo() { return TableAt<ORYOS_Bo>(Table_Bo); }
inline const ORYOS_Bd* Bd() { return TableAt<ORYOS_Bd>(Table_Bd); }
inline const ORYOS_Bc* Bc() { return TableAt<ORYOS_Bc>(Table_Bc); }
inline const ORYOS_Gd* Gd() { return TableAt<ORYOS_Gd>(Table_Gd); }
inline const ORYOS_CA* CA() { return TableAt<ORYOS_CA>(Table_CA); }
inline const ORYOS_Tg* Tg() { return TableAt<ORYOS_Tg>(Table_Tg); }
inline const ORYOS_St* St() { return TableAt<ORYOS_St>(Table_St); }
inline const ORYOS_Fn* Fn() { return TableAt<ORYOS_Fn>(Table_Fn); }
inline const ORYOS_Ge* Ge() { return TableAt<ORYOS_Ge>(Table_Ge); }
inline const ORYOS_Hf* Hf() { return TableAt<ORYOS_Hf>(Table_Hf); }
inline const ORYOS_Br* Br() { return TableAt<ORYOS_Br>(Table_Br); }
inline const ORYOS_Ln* Ln() { return TableAt<ORYOS_Ln>(Table_Ln); }
inline const ORYOS_Mt* Mt() { return TableAt<ORYOS_Mt>(Table_Mt); }
inline const ORYOS_Ba* Ba() { return TableAt<ORYOS_Ba>(Table_Ba); }

// An extension library by id, as the program's look-up finds it.
template <typename Library>
const Library* Extension(int32_t id) {
  const ExtensionRecord* record = Ge()->FindExtension(id, kExtensionLookupLevel, nullptr);
  const void* table = nullptr;
  if (!record || !Ge()->GetExtensionTable(record, &table, nullptr, nullptr)) return nullptr;
  return static_cast<const Library*>(table);
}

// An EngineString that releases itself.
struct Text {
  EngineString value{nullptr};
  explicit Text(const char* utf8 = "") { St()->SetCString(&value, utf8, -1, kStringEncodingUtf8); }
  ~Text() { St()->Release(&value); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  std::string Utf8() const {
    std::string out(static_cast<size_t>(St()->GetCStringLength(&value, kStringEncodingUtf8)) + 1, '\0');
    St()->GetCString(&value, out.data(), static_cast<int32_t>(out.size()), kStringEncodingUtf8);
    out.pop_back();
    return out;
  }
};

// A DataValue that frees itself.
struct Data {
  DataValue value{};
  ~Data() { Gd()->Free(&value); }
};

// A constant one- or two-level parameter path.
struct Path {
  ParamLevel levels[2];
  ParamId id;
  Path(const Path&) = delete;
  Path& operator=(const Path&) = delete;
  explicit Path(int32_t first, int32_t kind = 0) : levels{{first, kind, 0}, {}}, id{levels, 1, 0} {}
  Path(int32_t first, int32_t firstKind, int32_t second, int32_t secondKind)
      : levels{{first, firstKind, 0}, {second, secondKind, 0}}, id{levels, 2, 0} {}
};

}  // namespace quillon::testing
