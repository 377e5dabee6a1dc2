// A document whose numbers include an infinity or a NaN cannot be evaluated into anything a
// host can hold. This finds the first such number on an object, a tag or a key of a track, and
// names the object and the parameter, so that a reader of the scene can refuse it plainly.
#pragma once

#include <string>

#include "quillon/model/document.h"

namespace quillon {

// Empty when every number is finite; else `object "NAME": PARAMETER holds nan`.
std::string NonFiniteValue(const Document& document);

}  // namespace quillon
