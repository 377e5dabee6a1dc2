#include "plugin/session/update_channel.h"

#include <limits>

namespace quillon {

namespace {

constexpr std::size_t kMaxNumberText = 10000;

struct NamedChannel {
  const char* name;
  UpdateChannel channel;
};

constexpr NamedChannel kExactNames[] = {
    {"__updc", UpdateChannel::kCamera},         {"__upda", UpdateChannel::kActiveCamera},
    {"__updd", UpdateChannel::kView},           {"__updr", UpdateChannel::kRenderSettings},
    {"__updt", UpdateChannel::kTime},           {"__updl", UpdateChannel::kLayers},
};

// The leading decimal number of `text` (an optional sign, then digits); 0 when there is
// none or it does not fit 32 bits.
int32_t LeadingNumber(const std::string& text) {
  std::size_t at = 0;
  const bool negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) at = 1;
  int64_t value = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    value = value * 10 + (text[at] - '0');
    if (value > int64_t{std::numeric_limits<int32_t>::max()} + 1) return 0;
  }
  if (negative) value = -value;
  if (value > std::numeric_limits<int32_t>::max()) return 0;
  return static_cast<int32_t>(value);
}

}  // namespace

ChannelOfUpdate ChannelOfName(const std::string& name) {
  for (const NamedChannel& named : kExactNames)
    if (name == named.name) return {named.channel, 0};
  static const std::string kDifferencePrefix = "__upds";
  if (name.compare(0, kDifferencePrefix.size(), kDifferencePrefix) != 0) return {};
  const int32_t applicationId = LeadingNumber(name.substr(kDifferencePrefix.size(), kMaxNumberText));
  if (applicationId == 0) return {};
  return {UpdateChannel::kDifference, applicationId};
}

}  // namespace quillon
