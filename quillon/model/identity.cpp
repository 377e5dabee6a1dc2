#include "quillon/model/identity.h"

#include <algorithm>
#include <random>

namespace quillon {
namespace {

// Markers must differ between documents made in different runs and machines,
// so they come from a generator seeded by the system's entropy, one a thread.
Marker NewMarker() {
  thread_local std::mt19937_64 generator{std::random_device{}()};
  Marker marker;
  for (size_t i = 0; i < marker.size(); i += 8) {
    uint64_t word = generator();
    for (size_t b = 0; b < 8; ++b) marker[i + b] = static_cast<uint8_t>(word >> (8 * b));
  }
  return marker;
}

}  // namespace

const Marker& MarkerOf(NodeIdentity& identity) {
  if (!identity.hasMarker) {
    identity.marker = NewMarker();
    identity.hasMarker = true;
  }
  return identity.marker;
}

const UniqueId* FindUniqueIdOf(const NodeIdentity& identity, int32_t applicationId) {
  for (const UniqueId& id : identity.uniqueIds) {
    if (id.applicationId == applicationId) return &id;
  }
  return nullptr;
}

void SetUniqueIdOf(NodeIdentity& identity, int32_t applicationId, std::vector<uint8_t> bytes) {
  auto& ids = identity.uniqueIds;
  ids.erase(std::remove_if(ids.begin(), ids.end(), [&](const UniqueId& id) { return id.applicationId == applicationId; }),
            ids.end());
  if (!bytes.empty()) ids.push_back(UniqueId{applicationId, std::move(bytes)});
}

bool HasIdentity(const NodeIdentity& identity) { return identity.hasMarker || !identity.uniqueIds.empty(); }

}  // namespace quillon
