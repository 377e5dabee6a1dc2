#pragma once
// A path of the engine that is constructed and destructed with its scope.
#include <string>

#include "plugin/engine/engine_tables.h"

struct OwnedFilename {
  OwnedFilename() { t_ORYOS_Fn->FilenameInit(&value); }
  explicit OwnedFilename(const std::string& utf8Path) : OwnedFilename() {
    t_ORYOS_Fn->SetFromCString(&value, utf8Path.c_str());
  }
  ~OwnedFilename() { t_ORYOS_Fn->FilenameFree(&value); }
  OwnedFilename(const OwnedFilename&) = delete;
  OwnedFilename& operator=(const OwnedFilename&) = delete;

  Filename value{nullptr};
};
