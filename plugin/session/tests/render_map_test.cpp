// The map of renders: the hash that spreads ids, chains of ids in one bucket, the growth
// past 20 of 32 entries, and the list of filled buckets after erasures.
#include <gtest/gtest.h>

#include <set>

#include "plugin/session/render_map.h"

namespace {

using quillon::EraseRender;
using quillon::FindOrInsertRender;
using quillon::FindRender;
using quillon::ForEachRender;
using quillon::RenderIdHash;
using quillon::RenderMap;
using quillon::RenderMapEntry;

struct HashCase {
  uint32_t id;
  uint32_t hash;  // worked out with the two mixing steps by hand
};

void PrintTo(const HashCase& c, std::ostream* out) { *out << "id " << c.id; }

class RenderIdHashTest : public testing::TestWithParam<HashCase> {};

TEST_P(RenderIdHashTest, MixesTheIdTwice) { EXPECT_EQ(RenderIdHash(GetParam().id), GetParam().hash); }

INSTANTIATE_TEST_SUITE_P(Ids, RenderIdHashTest,
                         testing::Values(HashCase{0, 0}, HashCase{1, 1}, HashCase{0x100, 0x112},
                                         HashCase{0x1000, 0x1121}, HashCase{0x12345678, 0x133249B7},
                                         HashCase{0xFFFFFFFE, 0xF1F0EF1E}, HashCase{1027408, 0xF482B}));

std::set<uint32_t> IdsOf(const RenderMap& map) {
  std::set<uint32_t> ids;
  ForEachRender(map, [&ids](const RenderMapEntry& entry) { ids.insert(entry.id); });
  return ids;
}

TEST(RenderMap, FirstInsertionMakes32BucketsAndFindsEveryIdOfAChain) {
  RenderMap map;
  EXPECT_EQ(FindRender(map, 1), nullptr);
  // 1, 35, 69 and 103 all fall into bucket 1 of 32.
  for (uint32_t id : {1u, 35u, 69u, 103u}) ASSERT_NE(FindOrInsertRender(map, id), nullptr);
  EXPECT_EQ(map.buckets.size(), 32u);
  EXPECT_EQ(map.filled.size(), 1u);
  for (uint32_t id : {1u, 35u, 69u, 103u}) {
    ASSERT_NE(FindRender(map, id), nullptr);
    EXPECT_EQ(FindRender(map, id)->id, id);
  }
  EXPECT_EQ(FindRender(map, 137), nullptr);
  // A second insertion of an id finds the entry it has.
  EXPECT_EQ(FindOrInsertRender(map, 35), FindRender(map, 35));
  EXPECT_EQ(map.count, 4u);
}

TEST(RenderMap, The21stEntryDoublesTheBucketsAndKeepsEveryEntry) {
  RenderMap map;
  for (uint32_t id = 100; id < 120; ++id) ASSERT_NE(FindOrInsertRender(map, id), nullptr);
  EXPECT_EQ(map.buckets.size(), 32u);
  ASSERT_NE(FindOrInsertRender(map, 120), nullptr);
  EXPECT_EQ(map.buckets.size(), 64u);
  EXPECT_EQ(map.count, 21u);
  for (uint32_t id = 100; id <= 120; ++id) EXPECT_NE(FindRender(map, id), nullptr) << id;
  std::set<uint32_t> expected;
  for (uint32_t id = 100; id <= 120; ++id) expected.insert(id);
  EXPECT_EQ(IdsOf(map), expected);
  // The next doubling comes with the 41st entry.
  for (uint32_t id = 121; id < 140; ++id) FindOrInsertRender(map, id);
  EXPECT_EQ(map.buckets.size(), 64u);
  FindOrInsertRender(map, 140);
  EXPECT_EQ(map.buckets.size(), 128u);
}

TEST(RenderMap, ErasingKeepsTheListOfFilledBucketsExact) {
  RenderMap map;
  for (uint32_t id : {1u, 35u, 2u, 3u, 34u}) FindOrInsertRender(map, id);  // buckets 1, 1, 2, 3, 0
  EXPECT_EQ(map.filled.size(), 4u);
  EraseRender(map, 2);
  EXPECT_EQ(map.filled.size(), 3u);
  EraseRender(map, 35);  // bucket 1 keeps id 1
  EXPECT_EQ(map.filled.size(), 3u);
  EraseRender(map, 999);  // absent: nothing happens
  EXPECT_EQ(IdsOf(map), (std::set<uint32_t>{1, 3, 34}));
  EraseRender(map, 1);
  EraseRender(map, 3);
  EXPECT_EQ(IdsOf(map), (std::set<uint32_t>{34}));
  EXPECT_EQ(map.filled.size(), 1u);
  EXPECT_EQ(map.count, 1u);
  ASSERT_NE(FindRender(map, 34), nullptr);
  FindOrInsertRender(map, 2);
  EXPECT_EQ(IdsOf(map), (std::set<uint32_t>{2, 34}));
}

}  // namespace
