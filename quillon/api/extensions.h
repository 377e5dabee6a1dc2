// Look-up of the extension libraries by id.
#pragma once

#include "plugin/engine/engine_ops.h"

namespace quillon {

const ExtensionRecord* FindExtensionRecord(int32_t id);
bool ReadExtensionRecord(const ExtensionRecord* record, const void** table, int32_t* libraryId, int32_t* tableSize);

}  // namespace quillon
