#include "quillon/orytool/scene_json_identity.h"

#include <algorithm>

namespace quillon::orytool {
namespace {

int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Readable ids are written as text, so that a dump shows what a client sent.
bool IsPrintable(const std::vector<uint8_t>& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](uint8_t b) { return b >= 0x20 && b < 0x7F; });
}

}  // namespace

std::string HexOfBytes(const std::vector<uint8_t>& bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (uint8_t b : bytes) {
    text += kDigits[b >> 4];
    text += kDigits[b & 0xF];
  }
  return text;
}

std::optional<std::vector<uint8_t>> BytesOfHex(const std::string& text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::vector<uint8_t> bytes;
  for (size_t i = 0; i < text.size(); i += 2) {
    const int high = DigitValue(text[i]);
    const int low = DigitValue(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<uint8_t>(high * 16 + low));
  }
  return bytes;
}

void WriteIdentityJson(const NodeIdentity& identity, Json::Value& out) {
  if (identity.hasMarker) out["marker"] = HexOfBytes({identity.marker.begin(), identity.marker.end()});
  if (identity.uniqueIds.empty()) return;
  Json::Value& ids = out["unique_ids"] = Json::Value(Json::arrayValue);
  for (const UniqueId& id : identity.uniqueIds) {
    Json::Value entry(Json::objectValue);
    entry["application"] = id.applicationId;
    if (IsPrintable(id.bytes)) {
      entry["text"] = std::string(id.bytes.begin(), id.bytes.end());
    } else {
      entry["hex"] = HexOfBytes(id.bytes);
    }
    ids.append(entry);
  }
}

}  // namespace quillon::orytool
