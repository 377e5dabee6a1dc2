// The identity of a node in a JSON scene description: "marker", 32 hex digits, and
// "unique_ids", [{"application": N, "text": "..."} or {"application": N, "hex": "..."}],
// so that update documents can be written by hand with the ids a client would send.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <json/json.h>

#include "quillon/model/identity.h"

namespace quillon::orytool {

// Adds "marker" and "unique_ids" to a node's JSON when the node has them.
void WriteIdentityJson(const NodeIdentity& identity, Json::Value& out);

// Lower-case hex digits of bytes, two a byte.
std::string HexOfBytes(const std::vector<uint8_t>& bytes);
// The bytes of an even number of hex digits (either case); none for anything else.
std::optional<std::vector<uint8_t>> BytesOfHex(const std::string& text);

}  // namespace quillon::orytool
