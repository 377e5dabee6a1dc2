#include "plugin/exporter/text_shape/font_description.h"

#include "plugin/engine/engine_extensions.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/text_shape/property_bridge.h"
#include "plugin/platform/font_catalog.h"

namespace {

// A container of font entries that the engine frees when it goes.
struct FontContainer {
  FontContainer() { t_ORYOS_Bc->InitContainer(&container, 0, 0); }
  ~FontContainer() { t_ORYOS_Bc->FreeContainer(&container); }
  FontContainer(const FontContainer&) = delete;
  FontContainer& operator=(const FontContainer&) = delete;
  ParamContainer container{};
};

void SetEntryText(ParamContainer* container, int32_t id, const std::string& text) {
  const OwnedString value(text);
  t_ORYOS_Bc->SetString(container, id, value.get());
}

// The PostScript name twice, and for a font the catalogue knows, what it reports of it.
void ResolveFont(AEToOry& exporter, AEGP_LayerH layer, ParamContainer* container) {
  const std::string postScriptName = GetTextFont(exporter, layer);
  SetEntryText(container, FontEntry_PostScriptName, postScriptName);
  SetEntryText(container, FontEntry_PostScriptNameAgain, postScriptName);
  const std::optional<FontFace> face = FindFontByPostScriptName(postScriptName);
  if (!face) return;
  SetEntryText(container, FontEntry_Family, face->family);
  t_ORYOS_Bc->SetInt32(container, FontEntry_Weight, face->style.weight);
  t_ORYOS_Bc->SetInt32(container, FontEntry_Italic, face->style.italic ? 1 : 0);
  t_ORYOS_Bc->SetInt32(container, FontEntry_CharSet, face->style.charSet);
}

}  // namespace

void WriteFontDescription(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text) {
  FontContainer font;
  ResolveFont(exporter, layer, &font.container);
  const FontLibrary* library = ExtensionLibrary<FontLibrary>(kExtensionFont);
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->InitCustomData(&value, DataKind_Font);
  void* payload = t_ORYOS_Gd->GetCustomData(&value, DataKind_Font);
  if (library && library->SetFontFromContainer && payload && library->SetFontFromContainer(payload, &font.container)) {
    SetDataParam(text, TextParam_Font, value);
  }
  t_ORYOS_Gd->Free(&value);
}
