#include "plugin/exporter/text_shape/shape_queries.h"

#include "plugin/exporter/text_shape/script_queries.h"
#include "plugin/text/script_literal.h"

namespace {

// The end of the templates that hand the group to their own getShapeData.
std::string GroupTail() {
  return "function getLayerData(layerId) \n{ "
         "  var myShapeGroup = getShapeLayerGroup(layerId);"
         "  if (myShapeGroup){\n"
         "    return getShapeData(myShapeGroup);\n"
         "  } \n"
         "  return \"\";\n"
         "}\n"
         "getLayerData(%d);";
}

// The colour walk shared by the colour query and the inventory: seekShapeData visits the
// group's properties depth first and numbers the colour properties it meets, and
// getShapeData starts it at the group's contents. `onFound` is the statement that ends a
// visit that found something; `seekEnd` ends the call that starts the walk.
std::string SeekShapeData(const std::string& onFound, const std::string& seekEnd, const std::string& subgroupCall) {
  return "function seekShapeData(childShp,shapeNumber){\n"
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
         "\t  }\n"
         "\t\t" + onFound + "\n"
         "\t }\n"
         "}\n"
         "return v;\n"
         "}\n"
         "function getShapeData(shapeItem){\n"
         "var vsg=shapeItem.property(\"ADBE Vectors Group\");\n"
         "var info=\"\";\n"
         "if (vsg){ info=seekShapeData(vsg,0)" + seekEnd + "}\n"
         "else{\n"
         "\tvar vg = shapeItem.property( \"ADBE Vector Group\" );\n"
         "\tif (vg){" + subgroupCall + "}\n"
         "}\n"
         "return info;\n"
         "}\n"
         "function getLayerData(layerId){"
         "var myShapeGroup = getShapeLayerGroup(layerId);"
         "if (myShapeGroup){ return getShapeData(myShapeGroup); }"
         "return \"\";\n"
         "}\n"
         "getLayerData(%d);";
}

}  // namespace

std::string BuildShapeGroupPrologue(int32_t group, const std::vector<CompStackEntry>& compStack) {
  return "function getShapeLayerGroup(layerId) \n{ "
         "  var comp = app.project.activeItem; \n"
         " var layerItem = comp." + BuildCompAddress(compStack) + "layer(layerId+1);\n"
         "    if (layerItem instanceof ShapeLayer){ \n"
         "      var shpLayer = layerItem;\n"
         "      return shpLayer(\"ADBE Root Vectors Group\").property(" + std::to_string(static_cast<int64_t>(group) + 1) + ");\n"
         "    }\n"
         "}\n";
}

std::string BuildRootVectorsQuery(const std::string& member, const std::vector<CompStackEntry>& compStack) {
  return "function getLayerData(layerId) \n{ "
         "  var comp = app.project.activeItem; \n"
         " var layerItem = comp." + BuildCompAddress(compStack) + "layer(layerId+1);\n"
         "    if (layerItem instanceof ShapeLayer){ \n"
         "      var shpLayer = layerItem;\n"
         "      return shpLayer(\"ADBE Root Vectors Group\")." + member + ";\n"
         "    }\n"
         "  return \"0\";\n"
         "}\n"
         "getLayerData(%d);";
}

std::string BuildGroupQuery(int32_t group, const std::string& member, const std::vector<CompStackEntry>& compStack) {
  return BuildShapeGroupPrologue(group, compStack) +
         "function getLayerData(layerId) \n{ "
         "  var myShapeGroup = getShapeLayerGroup(layerId);"
         "   if (myShapeGroup){\n"
         "     return myShapeGroup." + member + ";\n"
         "   } \n"
         "   return \"\";\n"
         "}\n"
         "getLayerData(%d);";
}

std::string BuildGroupItemList(int32_t group, const std::vector<CompStackEntry>& compStack) {
  return BuildShapeGroupPrologue(group, compStack) +
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
         "}\n" +
         GroupTail();
}

std::string BuildGroupAttributeQuery(const std::string& attribute, const std::string& property,
                                     const std::string& member, int32_t group,
                                     const std::vector<CompStackEntry>& compStack) {
  return BuildShapeGroupPrologue(group, compStack) +
         "function getShapeData(shapeItem) \n{ "
         "  var shapeProperty = shapeItem.property( \"ADBE Vectors Group\" );\n"
         "  if (shapeProperty){\n"
         "    var shapeAttribute = shapeProperty.property( \"ADBE Vector Graphic - " + ScriptLiteralText(attribute, '"') + "\" );\n"
         "    if (shapeAttribute){\n"
         "      return shapeAttribute.property(\"ADBE Vector " + ScriptLiteralText(property, '"') + "\")." + member + ";\n"
         "    }\n"
         "    else{\n"
         "      var shapeSubItem = shapeProperty.property( \"ADBE Vector Group\" );\n"
         "      if (shapeSubItem){\n"
         "        return getShapeData(shapeSubItem)\n"
         "      }\n"
         "    }\n"
         "  }\n"
         "  return \"\";\n"
         "}\n" +
         GroupTail();
}

std::string BuildGroupPathQuery(const std::string& member, int32_t group, const std::vector<CompStackEntry>& compStack) {
  return BuildShapeGroupPrologue(group, compStack) +
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
         "          result.push(shapeAttributeItem." + member + ");\n"
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
         "}\n" +
         GroupTail();
}

std::string BuildShapeColourQuery(const ShapeStyleEntry& entry, const std::string& member,
                                  const std::vector<CompStackEntry>& compStack) {
  const std::string colour = entry.isGradient ? "\"Colors\")." : "\"Color\").";
  return BuildShapeGroupPrologue(entry.group, compStack) +
         "function getShapeColourIndex(shpGrp,shapeNumber){\n"
         "var v=\"\";\n"
         "if (shpGrp.propertyType==PropertyType.PROPERTY){return v;}\n"
         "if (shpGrp.property(\"Color\")||shpGrp.property(\"Colors\")){\n"
         "  if (shapeNumber == " + std::to_string(entry.shapeNumber) + "){ return shpGrp.property(" + colour + member + "; }\n"
         "  return \"IGNORE\";\n"
         "}\n"
         "return v;\n"
         "}\n" +
         SeekShapeData("if (vi!=\"\" && vi!=\"IGNORE\"){ return vi;}", " ", " return getShapeData(vg);");
}

std::string BuildShapeStyleInventory(int32_t group, const std::vector<CompStackEntry>& compStack) {
  return BuildShapeGroupPrologue(group, compStack) +
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
         SeekShapeData("if (vi!=\"\"){v+=vi;}", ";", "return getShapeData(vg);");
}

std::string BuildMaskQuery(int32_t maskNumber, const std::string& member, const std::vector<CompStackEntry>& compStack) {
  return "function getLayerData(layerId) { \n"
         " var comp = app.project.activeItem;\n"
         " var layerItem = comp." + BuildCompAddress(compStack) + "layer(layerId+1);\n"
         "   if (layerItem instanceof TextLayer){\n "
         "     return layerItem.property(\"ADBE Mask Parade\").property(" + std::to_string(static_cast<int64_t>(maskNumber) + 1) +
         ").property(\"ADBE Mask Shape\")." + member + ";\n"
         "   }\n"
         " return \"\";\n"
         "}"
         "getLayerData(%d);";
}
