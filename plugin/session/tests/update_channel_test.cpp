// The channel of an update by its name, and the hash of unique ids.
#include <gtest/gtest.h>

#include <string>

#include "plugin/session/unique_id_map.h"
#include "plugin/session/update_channel.h"

namespace {

using quillon::ChannelOfName;
using quillon::UpdateChannel;

struct NamedCase {
  std::string name;
  UpdateChannel channel;
  int32_t applicationId;
};

class UpdateChannelName : public testing::TestWithParam<NamedCase> {};

TEST_P(UpdateChannelName, ChoosesTheChannel) {
  const quillon::ChannelOfUpdate chosen = ChannelOfName(GetParam().name);
  EXPECT_EQ(chosen.channel, GetParam().channel) << GetParam().name;
  EXPECT_EQ(chosen.applicationId, GetParam().applicationId) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(
    Names, UpdateChannelName,
    testing::Values(NamedCase{"__updc", UpdateChannel::kCamera, 0}, NamedCase{"__upda", UpdateChannel::kActiveCamera, 0},
                    NamedCase{"__updd", UpdateChannel::kView, 0}, NamedCase{"__updr", UpdateChannel::kRenderSettings, 0},
                    NamedCase{"__updt", UpdateChannel::kTime, 0}, NamedCase{"__updl", UpdateChannel::kLayers, 0},
                    NamedCase{"__upds7", UpdateChannel::kDifference, 7},
                    NamedCase{"__upds1234567", UpdateChannel::kDifference, 1234567},
                    // The number is read as far as it goes.
                    NamedCase{"__upds12.ory", UpdateChannel::kDifference, 12},
                    NamedCase{"__upds-3", UpdateChannel::kDifference, -3},
                    NamedCase{"__upds2147483647", UpdateChannel::kDifference, 2147483647},
                    // No number, 0, or one beyond 32 bits: a whole document.
                    NamedCase{"__upds", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__upds0", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__updsx", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__upds2147483648", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__upds99999999999999999999", UpdateChannel::kFullDocument, 0},
                    // Only the digits within the first 10000 characters count.
                    NamedCase{"__upds" + std::string(10000, '0') + "5", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__upds" + std::string(9999, '0') + "5", UpdateChannel::kDifference, 5},
                    // The names are exact: no folder, no suffix, no other case.
                    NamedCase{"/tmp/__updc", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__updc.ory", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__UPDC", UpdateChannel::kFullDocument, 0},
                    NamedCase{"__upd", UpdateChannel::kFullDocument, 0},
                    NamedCase{"", UpdateChannel::kFullDocument, 0},
                    NamedCase{"scene.ory", UpdateChannel::kFullDocument, 0}));

TEST(UniqueIdHash, MultipliesAndAddsOnePlusEachByteAsUnsigned) {
  EXPECT_EQ(quillon::UniqueIdHash(""), 0u);
  EXPECT_EQ(quillon::UniqueIdHash("a"), 98u);
  EXPECT_EQ(quillon::UniqueIdHash("ab"), 0x3fcb57c50f9ff135u);
  EXPECT_EQ(quillon::UniqueIdHash(std::string("\xff\x00", 2)), 0x58476d1ce4e5b901u);
}

}  // namespace
