// The shape query scripts byte for byte (a wire format with the host's script engine), and
// how the inventory's reply becomes colour entries.
#include <gtest/gtest.h>

#include "plugin/exporter/text_shape/reply_parsing.h"
#include "plugin/exporter/text_shape/script_queries.h"
#include "plugin/exporter/text_shape/shape_queries.h"
#include "plugin/exporter/text_shape/shape_styles.h"

namespace {

const std::vector<CompStackEntry> kTop(1);

std::vector<CompStackEntry> ThroughLayer(uint32_t index) {
  std::vector<CompStackEntry> stack(2);
  stack[1].layerIndex = index;
  return stack;
}

const std::string kPrologueOfGroup2 =
    "function getShapeLayerGroup(layerId) \n{ "
    "  var comp = app.project.activeItem; \n"
    " var layerItem = comp.layer(layerId+1);\n"
    "    if (layerItem instanceof ShapeLayer){ \n"
    "      var shpLayer = layerItem;\n"
    "      return shpLayer(\"ADBE Root Vectors Group\").property(2);\n"
    "    }\n"
    "}\n";

const std::string kGroupTail =
    "function getLayerData(layerId) \n{ "
    "  var myShapeGroup = getShapeLayerGroup(layerId);"
    "  if (myShapeGroup){\n"
    "    return getShapeData(myShapeGroup);\n"
    "  } \n"
    "  return \"\";\n"
    "}\n"
    "getLayerData(%d);";

TEST(ShapeQueries, ThePrologueFindsTheGroupThroughPrecompositions) {
  EXPECT_EQ(BuildShapeGroupPrologue(1, kTop), kPrologueOfGroup2);
  EXPECT_NE(BuildShapeGroupPrologue(0, ThroughLayer(4)).find(" var layerItem = comp.layer(5).source.layer(layerId+1);\n"
                                                             "    if (layerItem instanceof ShapeLayer){ \n"),
            std::string::npos);
}

TEST(ShapeQueries, TheRootVectorsQueryStandsAlone) {
  EXPECT_EQ(FillLayerIndex(BuildRootVectorsQuery("numProperties", kTop), 3),
            "function getLayerData(layerId) \n{ "
            "  var comp = app.project.activeItem; \n"
            " var layerItem = comp.layer(layerId+1);\n"
            "    if (layerItem instanceof ShapeLayer){ \n"
            "      var shpLayer = layerItem;\n"
            "      return shpLayer(\"ADBE Root Vectors Group\").numProperties;\n"
            "    }\n"
            "  return \"0\";\n"
            "}\n"
            "getLayerData(3);");
}

TEST(ShapeQueries, TheGroupQueryAndTheItemList) {
  EXPECT_EQ(BuildGroupQuery(1, "name", kTop), kPrologueOfGroup2 +
                                                  "function getLayerData(layerId) \n{ "
                                                  "  var myShapeGroup = getShapeLayerGroup(layerId);"
                                                  "   if (myShapeGroup){\n"
                                                  "     return myShapeGroup.name;\n"
                                                  "   } \n"
                                                  "   return \"\";\n"
                                                  "}\n"
                                                  "getLayerData(%d);");
  EXPECT_EQ(BuildGroupItemList(1, kTop), kPrologueOfGroup2 +
                                             "function getShapeData(shapeItem) \n{ "
                                             "  var testItem = shapeItem.property( \"ADBE Vectors Group\" );\n"
                                             "  var shpVar=\"X:\";\n"
                                             "  for (var pathItem = 1 ; pathItem <= testItem.numProperties;pathItem++)\n"
                                             "  {\n"
                                             "    var testAttribute = testItem.property( pathItem );\n"
                                             "    if (testAttribute)\n"
                                             "    {\n"
                                             "      shpVar+=testAttribute.name;\n"
                                             "      shpVar+=\" - \";\n"
                                             "    }\n"
                                             "  }\n"
                                             "  return shpVar;\n"
                                             "}\n" + kGroupTail);
}

TEST(ShapeQueries, TheAttributeQuery) {
  EXPECT_EQ(BuildGroupAttributeQuery("Stroke", "Stroke Color", "numKeys", 1, kTop),
            kPrologueOfGroup2 +
                "function getShapeData(shapeItem) \n{ "
                "  var shapeProperty = shapeItem.property( \"ADBE Vectors Group\" );\n"
                "  if (shapeProperty){\n"
                "    var shapeAttribute = shapeProperty.property( \"ADBE Vector Graphic - Stroke\" );\n"
                "    if (shapeAttribute){\n"
                "      return shapeAttribute.property(\"ADBE Vector Stroke Color\").numKeys;\n"
                "    }\n"
                "    else{\n"
                "      var shapeSubItem = shapeProperty.property( \"ADBE Vector Group\" );\n"
                "      if (shapeSubItem){\n"
                "        return getShapeData(shapeSubItem)\n"
                "      }\n"
                "    }\n"
                "  }\n"
                "  return \"\";\n"
                "}\n" + kGroupTail);
}

TEST(ShapeQueries, ThePathQueryKeepsItsFiveTabs) {
  EXPECT_EQ(BuildGroupPathQuery("value.closed", 1, kTop),
            kPrologueOfGroup2 +
                "function getShapeData(shapeItem) \n{ "
                "  var shapeGroup = shapeItem.property( \"ADBE Vectors Group\" );\n"
                "  var result = []\n"
                "  if (shapeGroup)\n"
                "  {\n"
                "    for (var pathItem = 1 ; pathItem <= shapeGroup.numProperties;pathItem++)\n"
                "    {\n"
                "      var shapeAttribute = shapeGroup.property( pathItem );\n"
                "      if (shapeAttribute)\n"
                "      {\n"
                "        var shapeAttributeItem = shapeAttribute.property( \"Path\" );\n"
                "        if (shapeAttributeItem)\n"
                "        {\n"
                "          result.push(shapeAttributeItem.value.closed);\n"
                "        }\n"
                "        else{\n"
                "          var shapeSubItem = shapeGroup.property( \"ADBE Vector Group\" );\n"
                "\t\t\t\t\t if (shapeSubItem){\n"
                "            return getShapeData(shapeSubItem);\n"
                "          }\n"
                "        }\n"
                "      }\n"
                "    }\n"
                "  }\n"
                "  else{\n"
                "    var shapeSubItem = shapeItem.property( \"ADBE Vector Group\" );\n"
                "    if (shapeSubItem){\n"
                "      return getShapeData(shapeSubItem);\n"
                "    }\n"
                "  }\n"
                "  return result;\n"
                "}\n" + kGroupTail);
}

const std::string kSeekShapeData =
    "function seekShapeData(childShp,shapeNumber){\n"
    "var v=\"\";\n"
    "var ki=\"\";\n"
    "for (var spi = 1 ; spi <= childShp.numProperties; spi++){\n"
    "\tvar grChild = childShp.property( spi );\n"
    " var vi=\"\";\n"
    "\tif (grChild){\n"
    "\t\tvi=getShapeColourIndex(grChild,shapeNumber);\n"
    "\t\tif (vi!=\"\"){ shapeNumber++; }\n"
    "\t\tif (vi==\"\" && grChild.propertyType!=PropertyType.PROPERTY){\n"
    "\t\t  vi = seekShapeData(grChild,shapeNumber); \n"
    "\t  }\n";

const std::string kShapeLayerData =
    "function getLayerData(layerId){"
    "var myShapeGroup = getShapeLayerGroup(layerId);"
    "if (myShapeGroup){ return getShapeData(myShapeGroup); }"
    "return \"\";\n"
    "}\n"
    "getLayerData(%d);";

TEST(ShapeQueries, TheColourQueryOfASolidAndOfAGradient) {
  ShapeStyleEntry entry;
  entry.group = 1;
  entry.shapeNumber = 3;
  const std::string walk = kSeekShapeData +
                           "\t\tif (vi!=\"\" && vi!=\"IGNORE\"){ return vi;}\n"
                           "\t }\n"
                           "}\n"
                           "return v;\n"
                           "}\n"
                           "function getShapeData(shapeItem){\n"
                           "var vsg=shapeItem.property(\"ADBE Vectors Group\");\n"
                           "var info=\"\";\n"
                           "if (vsg){ info=seekShapeData(vsg,0) }\n"
                           "else{\n"
                           "\tvar vg = shapeItem.property( \"ADBE Vector Group\" );\n"
                           "\tif (vg){ return getShapeData(vg);}\n"
                           "}\n"
                           "return info;\n"
                           "}\n" + kShapeLayerData;
  auto head = [](const char* colour) {
    return kPrologueOfGroup2 +
           "function getShapeColourIndex(shpGrp,shapeNumber){\n"
           "var v=\"\";\n"
           "if (shpGrp.propertyType==PropertyType.PROPERTY){return v;}\n"
           "if (shpGrp.property(\"Color\")||shpGrp.property(\"Colors\")){\n"
           "  if (shapeNumber == 3){ return shpGrp.property(" + std::string(colour) + "numKeys; }\n"
           "  return \"IGNORE\";\n"
           "}\n"
           "return v;\n"
           "}\n";
  };
  EXPECT_EQ(BuildShapeColourQuery(entry, "numKeys", kTop), head("\"Color\").") + walk);
  entry.isGradient = true;
  EXPECT_EQ(BuildShapeColourQuery(entry, "numKeys", kTop), head("\"Colors\").") + walk);
}

TEST(ShapeQueries, TheInventoryWithItsScriptEscapes) {
  EXPECT_EQ(BuildShapeStyleInventory(1, kTop),
            kPrologueOfGroup2 +
                "function appendParent(p){\n"
                "var v=\"\";\n"
                "if ((p.name==\"Contents\" && p.propertyIndex==2)){return v;}\n"
                "v+=\"\\t\";"
                "v+=p.name;\n"
                "return v;\n"
                "}\n"
                "function getShapeColourIndex(shpGrp,shapeNumber){\n"
                "var v=\"\";\n"
                "if (shpGrp.propertyType==PropertyType.PROPERTY){return v;}\n"
                "if (shpGrp.property(\"Color\")||shpGrp.property(\"Colors\")){\n"
                " if (shpGrp.property(\"Color\")){ v+=\"Col-\";\n"
                "   if (shpGrp.property(\"Color\").numKeys!=0){ v+=\"Anim-\"; }\n"
                " }\n"
                " if (shpGrp.property(\"Colors\")){ v+=\"Grad-\"; }\n"
                " if (shpGrp.property(\"Composite\").value){v+=\"Over-\";}\n"
                " else{ v+=\"Under-\"; }\n"
                " if (shpGrp.property(\"Stroke Width\")){v+=\"Stroke-\";}\n"
                " else{ v+=\"Fill-\"; }\n"
                " while(shpGrp){;\n"
                "  if (shpGrp.property(\"Path\")){ v=\"Bezier-\" + v;}\n"
                "  v+=appendParent(shpGrp);\n"
                "  shpGrp=shpGrp.parentProperty;\n"
                "  if (!shpGrp.parentProperty){break;}\n"
                " }\n"
                " v+=\"\\n\";\n"
                "}\n"
                "return v;\n"
                "}\n" +
                kSeekShapeData +
                "\t\tif (vi!=\"\"){v+=vi;}\n"
                "\t }\n"
                "}\n"
                "return v;\n"
                "}\n"
                "function getShapeData(shapeItem){\n"
                "var vsg=shapeItem.property(\"ADBE Vectors Group\");\n"
                "var info=\"\";\n"
                "if (vsg){ info=seekShapeData(vsg,0);}\n"
                "else{\n"
                "\tvar vg = shapeItem.property( \"ADBE Vector Group\" );\n"
                "\tif (vg){return getShapeData(vg);}\n"
                "}\n"
                "return info;\n"
                "}\n" + kShapeLayerData);
}

TEST(ShapeQueries, TheMaskQuery) {
  EXPECT_EQ(BuildMaskQuery(0, "numKeys", ThroughLayer(1)),
            "function getLayerData(layerId) { \n"
            " var comp = app.project.activeItem;\n"
            " var layerItem = comp.layer(2).source.layer(layerId+1);\n"
            "   if (layerItem instanceof TextLayer){\n "
            "     return layerItem.property(\"ADBE Mask Parade\").property(1).property(\"ADBE Mask Shape\").numKeys;\n"
            "   }\n"
            " return \"\";\n"
            "}"
            "getLayerData(%d);");
}

TEST(ShapeStyles, EachLineBecomesAnEntryWithItsFlagsAndPath) {
  int asked = 0;
  const auto closed = [&] { ++asked; return false; };
  const auto entries = ParseShapeStyles("Col-Over-Fill-\tFill 1\tGroup 2\n"
                                        "Grad-Under-Stroke-\tStroke 1\tInner\tGroup 2\n"
                                        "Bezier-Col-Anim-Over-Fill-\tFill 2\tGroup 2\n"
                                        "Bezier-Col-Over-Stroke-\tStroke 2\tGroup 2\n",
                                        4, closed);
  // The fill on the open path is dropped; the stroke on it stays with its running number.
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(entries[0].path, "Group 2-Fill 1");
  EXPECT_EQ(entries[0].shapeNumber, 0);
  EXPECT_EQ(entries[0].group, 4);
  EXPECT_TRUE(entries[0].isOver);
  EXPECT_FALSE(entries[0].isGradient);
  EXPECT_EQ(entries[1].path, "Group 2-Inner-Stroke 1");
  EXPECT_TRUE(entries[1].isGradient);
  EXPECT_FALSE(entries[1].isOver);
  EXPECT_FALSE(entries[1].isAnimated);
  EXPECT_EQ(entries[2].shapeNumber, 3);
  EXPECT_TRUE(entries[2].include);
}

TEST(ShapeStyles, AFillOnAClosedPathStaysAndNothingGivesNoEntries) {
  const auto entries = ParseShapeStyles("Bezier-Col-Anim-Over-Fill-\tFill 1\tGroup 2\n", 0, [] { return true; });
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_TRUE(entries[0].isAnimated);
  for (const char* nothing : {"", "undefined"}) EXPECT_TRUE(ParseShapeStyles(nothing, 0, [] { return true; }).empty());
}

TEST(ShapeReplies, StatesValuesAndLargestKeyCounts) {
  struct Case {
    const char* reply;
    bool isSet;
    bool hasValue;
    int largest;
  };
  for (const Case& c : {Case{"", false, false, 0}, Case{"undefined", false, false, 0}, Case{"false", false, true, 0},
                        Case{"true", true, true, 0}, Case{"0,4,2", true, true, 4}, Case{"-3,,-1", true, true, -1}}) {
    SCOPED_TRACE(c.reply);
    EXPECT_EQ(ParseIsSet(c.reply), c.isSet);
    EXPECT_EQ(ParseHasValue(c.reply), c.hasValue);
    EXPECT_EQ(ParseLargestWhole(c.reply), c.largest);
  }
}

}  // namespace
