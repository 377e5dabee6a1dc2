#pragma once
// The elements of a document by the unique ids that one application gave them, for the
// lookups of a merge: one walk and one insertion an element instead of a search for each
// changed element. The map also keeps the nodes a merge took out of the document, and frees
// them with itself.
#include <cstdint>
#include <string>
#include <unordered_map>

#include "plugin/engine/engine_ops.h"

namespace quillon {

// The hash of the bytes of a unique id: from 0, h * 0xBF58476D1CE4E5B9 + 1 + byte for each
// byte, in 64 bits.
uint64_t UniqueIdHash(const std::string& bytes);

struct UniqueIdHasher {
  std::size_t operator()(const std::string& bytes) const { return static_cast<std::size_t>(UniqueIdHash(bytes)); }
};

struct UniqueIdEntry {
  SceneNode* node = nullptr;     // the element of the target document
  SceneNode* removed = nullptr;  // taken out of the document by the merge; freed with the map
};

class UniqueIdMap {
 public:
  UniqueIdMap() = default;
  ~UniqueIdMap();
  UniqueIdMap(const UniqueIdMap&) = delete;
  UniqueIdMap& operator=(const UniqueIdMap&) = delete;

  // A later element with the same id takes the place of the earlier one. False when
  // memory ran out.
  bool Put(const std::string& id, SceneNode* node);
  // Null when the id is not in the map.
  UniqueIdEntry* Find(const std::string& id);

 private:
  std::unordered_map<std::string, UniqueIdEntry, UniqueIdHasher> entries_;
};

// The bytes that application `applicationId` gave `node`; false when it gave none.
bool UniqueIdOf(const SceneNode* node, int32_t applicationId, std::string* id);

// Puts the elements below `node` into `map`. A document gives the objects and materials
// of each of its lists with everything below them; any other node gives itself and what
// lies below it, and unless `single` its next siblings too. False when memory ran out.
bool BuildUniqueIdMap(UniqueIdMap& map, int32_t applicationId, SceneNode* node, bool single);

}  // namespace quillon
