// The query scripts byte for byte: they are a wire format with the host's script engine.
#include <gtest/gtest.h>

#include "plugin/exporter/text_shape/script_queries.h"

namespace {

// The exported composition, then one entered through the layer at `index` of the one before.
std::vector<CompStackEntry> StackThrough(std::initializer_list<uint32_t> indexes) {
  std::vector<CompStackEntry> stack(1);
  for (const uint32_t index : indexes) {
    CompStackEntry entry;
    entry.layerIndex = index;
    stack.push_back(entry);
  }
  return stack;
}

TEST(ScriptQueries, TheTextDocumentQueryAtTopLevel) {
  EXPECT_EQ(FillLayerIndex(BuildTextDocumentQuery("value.fontSize", StackThrough({})), 0),
            "function getLayerData(layerId) {\n"
            "  var comp = app.project.activeItem;\n"
            "  var layerItem = comp.layer(layerId+1);\n"
            "  if (layerItem instanceof TextLayer)\n"
            "  {\n"
            "    return layerItem.property(\"ADBE Text Properties\").property(\"ADBE Text Document\").value.fontSize;\n"
            "  }\n"
            "}\n"
            "getLayerData(0);");
}

TEST(ScriptQueries, TheTextDocumentQueryTwoPrecompositionsDeep) {
  // Entered through the third layer of the exported composition, then the first of that one.
  const std::string script = BuildTextDocumentQuery("valueAtTime(2.04,false).fillColor", StackThrough({2, 0}));
  EXPECT_EQ(script,
            "function getLayerData(layerId) {\n"
            "  var comp = app.project.activeItem;\n"
            "  var layerItem = comp.layer(3).source.layer(1).source.layer(layerId+1);\n"
            "  if (layerItem instanceof TextLayer)\n"
            "  {\n"
            "    return layerItem.property(\"ADBE Text Properties\").property(\"ADBE Text Document\")"
            ".valueAtTime(2.04,false).fillColor;\n"
            "  }\n"
            "}\n"
            "getLayerData(%d);");
}

TEST(ScriptQueries, ThePathOptionQuery) {
  EXPECT_EQ(FillLayerIndex(BuildPathOptionQuery("First Margin", "numKeys", StackThrough({4})), 12),
            "function getLayerData(layerId) { \n"
            " var comp = app.project.activeItem;\n"
            " var layerItem = comp.layer(5).source.layer(layerId+1);\n"
            "   if (layerItem instanceof TextLayer){\n"
            "      var hasText = layerItem.property(\"Text\");\n"
            "     if (hasText){\n"
            "       var hasPathOptions = hasText.property(\"Path Options\");\n"
            "       if (hasPathOptions){\n"
            "         var itemDetails = hasPathOptions.property(\"First Margin\");\n"
            "         if (itemDetails){\n"
            "           return itemDetails.numKeys;\n"
            "         }\n"
            "       }\n"
            "     }\n"
            "   }\n"
            " return \"0\";\n"
            "}getLayerData(12);");
}

struct PathCase {
  const char* member;
  bool timed;
  BaseTime time;
  const char* path;
};

class PropertyPaths : public ::testing::TestWithParam<PathCase> {};

TEST_P(PropertyPaths, AreBuiltFromMemberAndTime) {
  const PathCase& c = GetParam();
  EXPECT_EQ(BuildPropertyPath(c.member, c.timed ? &c.time : nullptr), c.path);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PropertyPaths,
    ::testing::Values(PathCase{"fontSize", false, {}, "value.fontSize"},
                      PathCase{"fontSize", true, BaseTime(51, 25), "valueAtTime(2.04,false).fontSize"},
                      PathCase{"", true, BaseTime(51, 25), "valueAtTime(2.04,false)"},
                      PathCase{"", false, {}, "value"},
                      // Six significant digits: 12.3456789 s is sent as 12.3457.
                      PathCase{"", true, BaseTime(123456789, 10000000), "valueAtTime(12.3457,false)"},
                      PathCase{"", true, BaseTime(1234567, 1), "valueAtTime(1.23457e+06,false)"}));

TEST(ScriptQueries, ATimeWithoutDenominatorIsSentAsZero) {
  BaseTime none;
  none.numerator = 5;
  none.denominator = 0;
  EXPECT_EQ(BuildPropertyPath("", &none), "valueAtTime(0,false)");
}

TEST(ScriptQueries, AScriptBeyondTheClassicBufferIsSentWhole) {
  std::vector<CompStackEntry> stack(1);
  for (int i = 0; i < 200; ++i) stack.push_back(CompStackEntry{nullptr, nullptr, nullptr, 6, 0.0});
  const std::string script = FillLayerIndex(BuildTextDocumentQuery("value.font", stack), 3);
  EXPECT_GT(script.size(), 2048u);
  EXPECT_EQ(script.substr(script.size() - 16), "getLayerData(3);");
}

}  // namespace
