#include "plugin/host/active_composition.h"

#include "plugin/host/host_text.h"

ActiveComposition FindActiveComposition(SuiteHandler& suites) {
  ActiveComposition active;
  const auto* items = suites.Suite<AEGP_ItemSuite13>(kAEGPItemSuite, kAEGPItemSuiteVersion13);
  active.err = items->AEGP_GetActiveItem(&active.item);
  if (active.err || !active.item) return active;
  AEGP_ItemType type = AEGP_ItemType_NONE;
  active.err = items->AEGP_GetItemType(active.item, &type);
  active.isComposition = !active.err && type == AEGP_ItemType_COMP;
  if (!active.isComposition) return active;
  const auto* comps = suites.Suite<AEGP_CompSuite19>(kAEGPCompSuite, kAEGPCompSuiteVersion19);
  active.err = comps->AEGP_GetCompFromItem(active.item, &active.comp);
  return active;
}

A_Err GetItemName(SuiteHandler& suites, AEGP_PluginID pluginId, AEGP_ItemH item, std::u16string* name) {
  name->clear();
  const auto* items = suites.Suite<AEGP_ItemSuite13>(kAEGPItemSuite, kAEGPItemSuiteVersion13);
  AEGP_MemHandle handle = nullptr;
  if (const A_Err err = items->AEGP_GetItemName(pluginId, item, &handle)) return err;
  return ReadUtf16Handle(suites, handle, name);
}
