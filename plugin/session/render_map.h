#pragma once
// The renders of one command object: a chained hash map from a render id to its record.
// The hash mixes the id's bits down twice; the first insertion makes 32 buckets, and the
// table doubles once it holds more than 10/16 of its bucket count (the 21st of 32). Beside
// the buckets the map keeps the list of the non-empty ones, so that a walk over all
// renders costs the number of renders, not of buckets.
#include <cstdint>
#include <vector>

namespace quillon {

class RenderThread;

// The id that names no render.
constexpr uint32_t kNoRender = 0xFFFFFFFF;

struct RenderMapEntry {
  uint32_t hash = 0;
  uint32_t id = 0;
  RenderThread* render = nullptr;  // null when its record could not be made
  RenderMapEntry* next = nullptr;
};

struct RenderMapBucket {
  RenderMapEntry* head = nullptr;
  uint32_t listIndex = 0;  // its place in RenderMap::filled while it has entries
};

struct RenderMap {
  RenderMap() = default;
  ~RenderMap();
  RenderMap(const RenderMap&) = delete;
  RenderMap& operator=(const RenderMap&) = delete;

  std::vector<RenderMapBucket> buckets;
  std::vector<uint32_t> filled;  // indices of the buckets that hold entries
  uint32_t count = 0;
};

uint32_t RenderIdHash(uint32_t id);

// The entry of `id`, or null.
RenderMapEntry* FindRender(const RenderMap& map, uint32_t id);
// The entry of `id`, made with no record when it is absent; null when memory ran out.
RenderMapEntry* FindOrInsertRender(RenderMap& map, uint32_t id);
// Takes the entry of `id` out; the record it held is the caller's.
void EraseRender(RenderMap& map, uint32_t id);

// Calls `visit` with each entry; `visit` may not change the map.
template <class Visit>
void ForEachRender(const RenderMap& map, Visit visit) {
  for (uint32_t bucket : map.filled)
    for (RenderMapEntry* entry = map.buckets[bucket].head; entry; entry = entry->next) visit(*entry);
}

}  // namespace quillon
