#pragma once
// The file of a loaded library.
#include <string>

// The path of the library (or program) that holds `address`; empty when unknown.
std::string ModulePathOf(const void* address);
