#include "plugin/exporter/origin_key.h"

#include <gtest/gtest.h>

namespace {

TEST(OriginKey, FootageLayer) {
  OriginKeyLayer layer{7, 0, OriginKeySource{12, 4}};
  EXPECT_EQ(BuildOriginKeyText("shot.aep", "shot.ory", layer), "AFX:shot.aep.ORY:shot.ory.12-4.7-0");
}

TEST(OriginKey, LayerWithoutSource) {
  OriginKeyLayer camera{3, 2, std::nullopt};
  EXPECT_EQ(BuildOriginKeyText("p.aep", "out.ory", camera), "AFX:p.aep.ORY:out.ory.3-2");
}

TEST(OriginKey, NoLayer) {
  EXPECT_EQ(BuildOriginKeyText("p.aep", "", std::nullopt), "AFX:p.aep.ORY:");
}

TEST(LayerName, SourceNameStandsInForAnEmptyName) {
  EXPECT_EQ(BuildLayerNameText("Rig", "Solid 1"), "AE Rig");
  EXPECT_EQ(BuildLayerNameText("", "Solid 1"), "AE Solid 1");
  EXPECT_EQ(BuildLayerNameText("", ""), "AE ");
}

TEST(LayerName, DisplayNameDropsThePrefixOnlyWhenSomethingFollows) {
  EXPECT_EQ(DisplayNameOf("AE Rig"), "Rig");
  EXPECT_EQ(DisplayNameOf("AE x"), "x");
  EXPECT_EQ(DisplayNameOf("AE "), "AE ");
}

}  // namespace
