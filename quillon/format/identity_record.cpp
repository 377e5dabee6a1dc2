#include "quillon/format/identity_record.h"

#include <string>

namespace quillon::format {
namespace {

constexpr std::size_t kMinUniqueIdBytes = 4 + 4 + 1;  // application id, size, one byte

}  // namespace

void WriteIdentity(ByteWriter& w, const NodeIdentity& identity) {
  w.U8(identity.hasMarker ? 1 : 0);
  if (identity.hasMarker) w.Raw(identity.marker.data(), identity.marker.size());
  w.U32(static_cast<std::uint32_t>(identity.uniqueIds.size()));
  for (const UniqueId& id : identity.uniqueIds) {
    w.I32(id.applicationId);
    w.U32(static_cast<std::uint32_t>(id.bytes.size()));
    w.Raw(id.bytes.data(), id.bytes.size());
  }
}

NodeIdentity ReadIdentity(ByteReader& r, std::size_t partsAt) {
  if (r.Remaining() == 0) r.Fail(partsAt, "node part flags name an identity, but the file ends before it");
  NodeIdentity identity;
  const std::size_t flagAt = r.Offset();
  const std::uint8_t hasMarker = r.U8();
  if (hasMarker > 1) r.Fail(flagAt, "marker flag " + std::to_string(hasMarker) + " is neither 0 nor 1");
  if (hasMarker) {
    r.Bytes(identity.marker.data(), identity.marker.size(), "node marker");
    identity.hasMarker = true;
  }
  const std::uint32_t count = r.Count("unique id", kMinUniqueIdBytes);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::size_t at = r.Offset();
    const std::int32_t application = r.I32();
    const std::uint32_t size = r.Count("unique id byte", 1);
    if (size == 0) r.Fail(at, "unique id of application " + std::to_string(application) + " is empty");
    if (FindUniqueIdOf(identity, application))
      r.Fail(at, "application " + std::to_string(application) + " gives the node a second unique id");
    std::vector<std::uint8_t> bytes(size);
    r.Bytes(bytes.data(), size, "unique id");
    identity.uniqueIds.push_back(UniqueId{application, std::move(bytes)});
  }
  return identity;
}

}  // namespace quillon::format
