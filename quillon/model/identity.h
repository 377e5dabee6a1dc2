// What identifies a node beyond its place in a tree: a 16-byte marker that
// every node has, and the unique ids that client applications attach to the
// elements they send, one byte string for each application id. Both travel
// with copies and clones and are kept in the scene file, so that an element
// sent again later is recognised.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace quillon {

using Marker = std::array<uint8_t, 16>;

struct UniqueId {
  int32_t applicationId = 0;
  std::vector<uint8_t> bytes;
};

struct NodeIdentity {
  // Given on first use (MarkerOf), like a link id, so that nodes nobody asks
  // about cost nothing in memory or in the file.
  Marker marker{};
  bool hasMarker = false;
  // At most one entry for each application id.
  std::vector<UniqueId> uniqueIds;
};

// The node's marker; a node without one gets a new random one now.
const Marker& MarkerOf(NodeIdentity& identity);
// The unique id that applicationId gave, or null.
const UniqueId* FindUniqueIdOf(const NodeIdentity& identity, int32_t applicationId);
// Replaces the unique id of applicationId; empty bytes remove it.
void SetUniqueIdOf(NodeIdentity& identity, int32_t applicationId, std::vector<uint8_t> bytes);
// Whether there is anything to keep: a marker or a unique id.
bool HasIdentity(const NodeIdentity& identity);

}  // namespace quillon
