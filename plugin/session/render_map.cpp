#include "plugin/session/render_map.h"

#include <cstddef>
#include <new>

namespace quillon {

namespace {

constexpr uint32_t kFirstBucketCount = 32;

uint32_t BucketOf(const RenderMap& map, uint32_t hash) {
  return hash & static_cast<uint32_t>(map.buckets.size() - 1);
}

// Puts `entry` in front of its bucket's chain, listing the bucket when it was empty.
void Link(RenderMap& map, RenderMapEntry* entry) {
  RenderMapBucket& bucket = map.buckets[BucketOf(map, entry->hash)];
  if (!bucket.head) {
    bucket.listIndex = static_cast<uint32_t>(map.filled.size());
    map.filled.push_back(BucketOf(map, entry->hash));
  }
  entry->next = bucket.head;
  bucket.head = entry;
}

// Takes an emptied bucket off the list by moving the last listed bucket into its place.
void Unlist(RenderMap& map, uint32_t bucketIndex) {
  const uint32_t place = map.buckets[bucketIndex].listIndex;
  const uint32_t last = map.filled.back();
  map.filled[place] = last;
  map.buckets[last].listIndex = place;
  map.filled.pop_back();
}

// Rehashes every entry into `bucketCount` buckets. Memory that runs out leaves the map as
// it was: a full table is slower, not wrong.
void Rehash(RenderMap& map, std::size_t bucketCount) {
  std::vector<RenderMapEntry*> entries;
  try {
    entries.reserve(map.count);
    std::vector<RenderMapBucket> buckets(bucketCount);
    std::vector<uint32_t> filled;
    filled.reserve(bucketCount);
    ForEachRender(map, [&entries](RenderMapEntry& entry) { entries.push_back(&entry); });
    map.buckets.swap(buckets);
    map.filled.swap(filled);
  } catch (const std::bad_alloc&) {
    return;
  }
  for (RenderMapEntry* entry : entries) Link(map, entry);
}

}  // namespace

RenderMap::~RenderMap() {
  for (uint32_t bucket : filled) {
    for (RenderMapEntry* entry = buckets[bucket].head; entry;) {
      RenderMapEntry* next = entry->next;
      delete entry;
      entry = next;
    }
  }
}

uint32_t RenderIdHash(uint32_t id) {
  uint32_t h = (((id >> 8) ^ id) >> 12) ^ id;
  h = (((h >> 3) ^ h) >> 4) ^ h;
  return h;
}

RenderMapEntry* FindRender(const RenderMap& map, uint32_t id) {
  if (map.buckets.empty()) return nullptr;
  const uint32_t hash = RenderIdHash(id);
  for (RenderMapEntry* entry = map.buckets[BucketOf(map, hash)].head; entry; entry = entry->next)
    if (entry->hash == hash && entry->id == id) return entry;
  return nullptr;
}

RenderMapEntry* FindOrInsertRender(RenderMap& map, uint32_t id) {
  if (RenderMapEntry* entry = FindRender(map, id)) return entry;
  if (map.buckets.empty()) {
    Rehash(map, kFirstBucketCount);
    if (map.buckets.empty()) return nullptr;
  }
  auto* entry = new (std::nothrow) RenderMapEntry{RenderIdHash(id), id, nullptr, nullptr};
  if (!entry) return nullptr;
  Link(map, entry);  // `filled` has room for every bucket since the last rehash
  ++map.count;
  if (map.count > ((map.buckets.size() * 10) >> 4)) Rehash(map, map.buckets.size() * 2);
  return entry;
}

void EraseRender(RenderMap& map, uint32_t id) {
  if (map.buckets.empty()) return;
  const uint32_t hash = RenderIdHash(id);
  const uint32_t bucketIndex = BucketOf(map, hash);
  RenderMapEntry** link = &map.buckets[bucketIndex].head;
  while (*link && !((*link)->hash == hash && (*link)->id == id)) link = &(*link)->next;
  if (!*link) return;
  RenderMapEntry* entry = *link;
  *link = entry->next;
  delete entry;
  --map.count;
  if (!map.buckets[bucketIndex].head) Unlist(map, bucketIndex);
}

}  // namespace quillon
