#pragma once
// The console line by which a render that did not succeed says why.
#include <cstdint>
#include <string>

// The line for a render result other than 0.
std::string RenderResultText(int32_t code);
