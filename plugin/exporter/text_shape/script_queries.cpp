#include "plugin/exporter/text_shape/script_queries.h"

#include <sstream>

#include "plugin/text/script_literal.h"

std::string BuildPropertyPath(const std::string& member, const BaseTime* time) {
  std::ostringstream path;
  path << "value";
  if (time) {
    const double seconds = time->denominator != 0.0 ? time->numerator / time->denominator : 0.0;
    path << "AtTime(" << seconds << ",false)";
  }
  if (!member.empty()) path << '.' << member;
  return path.str();
}

std::string BuildCompAddress(const std::vector<CompStackEntry>& compStack) {
  std::string address;
  for (std::size_t i = 1; i < compStack.size(); ++i) {
    address += "layer(" + std::to_string(static_cast<uint64_t>(compStack[i].layerIndex) + 1) + ").source.";
  }
  return address;
}

std::string BuildTextDocumentQuery(const std::string& path, const std::vector<CompStackEntry>& compStack) {
  return "function getLayerData(layerId) {\n"
         "  var comp = app.project.activeItem;\n"
         "  var layerItem = comp." + BuildCompAddress(compStack) + "layer(layerId+1);\n"
         "  if (layerItem instanceof TextLayer)\n"
         "  {\n"
         "    return layerItem.property(\"ADBE Text Properties\").property(\"ADBE Text Document\")." + path + ";\n"
         "  }\n"
         "}\n"
         "getLayerData(%d);";
}

std::string BuildPathOptionQuery(const std::string& optionName, const std::string& path,
                                 const std::vector<CompStackEntry>& compStack) {
  return "function getLayerData(layerId) { \n"
         " var comp = app.project.activeItem;\n"
         " var layerItem = comp." + BuildCompAddress(compStack) + "layer(layerId+1);\n"
         "   if (layerItem instanceof TextLayer){\n "
         "     var hasText = layerItem.property(\"Text\");\n"
         "     if (hasText){\n"
         "       var hasPathOptions = hasText.property(\"Path Options\");\n"
         "       if (hasPathOptions){\n"
         "         var itemDetails = hasPathOptions.property(\"" + ScriptLiteralText(optionName, '"') + "\");\n"
         "         if (itemDetails){\n"
         "           return itemDetails." + path + ";\n"
         "         }\n"
         "       }\n"
         "     }\n"
         "   }\n"
         " return \"0\";\n"
         "}"
         "getLayerData(%d);";
}

std::string FillLayerIndex(const std::string& scriptTemplate, int32_t layerIndex) {
  const std::string::size_type at = scriptTemplate.find("%d");
  if (at == std::string::npos) return scriptTemplate;
  return scriptTemplate.substr(0, at) + std::to_string(layerIndex) + scriptTemplate.substr(at + 2);
}
