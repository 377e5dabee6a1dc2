#pragma once
// A parameter list of the engine that is constructed and destructed with its scope.
#include "plugin/engine/engine_tables.h"

struct OwnedContainer {
  OwnedContainer() { t_ORYOS_Bc->InitContainer(&value, 0, 0); }
  ~OwnedContainer() { t_ORYOS_Bc->FreeContainer(&value); }
  OwnedContainer(const OwnedContainer&) = delete;
  OwnedContainer& operator=(const OwnedContainer&) = delete;

  ParamContainer value{};
};
