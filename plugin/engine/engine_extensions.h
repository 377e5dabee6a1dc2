#pragma once
// The engine's extension libraries, found by id: a library's table of functions, taken only
// when the engine says it is at least as large as the table this program was written for.
#include <cstddef>

#include "plugin/engine/engine_tables.h"

// Null when the engine has no such library or a smaller one.
const void* FindExtensionLibrary(int32_t id, std::size_t tableSize);

template <class Library>
const Library* ExtensionLibrary(int32_t id) {
  return static_cast<const Library*>(FindExtensionLibrary(id, sizeof(Library)));
}
