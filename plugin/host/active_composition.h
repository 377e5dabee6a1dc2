#pragma once
// The composition the user is working in: the active item, when it is a composition.
#include <string>

#include "plugin/host/suite_handler.h"

struct ActiveComposition {
  A_Err err = A_Err_NONE;   // the error of the last host call
  AEGP_ItemH item = nullptr;
  bool isComposition = false;
  AEGP_CompH comp = nullptr;
};

// Asks the host in order for the active item, its type and its composition, stopping at
// the first call that fails or gives nothing.
ActiveComposition FindActiveComposition(SuiteHandler& suites);

// The item's name (UTF-16), empty when the host gives none.
A_Err GetItemName(SuiteHandler& suites, AEGP_PluginID pluginId, AEGP_ItemH item, std::u16string* name);
