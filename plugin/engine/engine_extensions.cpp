#include "plugin/engine/engine_extensions.h"

const void* FindExtensionLibrary(int32_t id, std::size_t tableSize) {
  const void* cacheSlot = nullptr;
  const ExtensionRecord* record = t_ORYOS_Ge->FindExtension(id, kExtensionLookupLevel, &cacheSlot);
  const void* table = nullptr;
  int32_t libraryId = 0, size = 0;
  if (!record || !t_ORYOS_Ge->GetExtensionTable(record, &table, &libraryId, &size)) return nullptr;
  return size >= 0 && static_cast<std::size_t>(size) >= tableSize ? table : nullptr;
}
