#pragma once
// The speed at a host keyframe is repaired by a script, since the change works on a property
// by its name and on the follower of a separated position, which no suite call reaches.
#include <string>

#include "plugin/host/cti.h"

// The speed and influence (per cent) of one side of a key, as KeyframeEase takes them.
struct KeyEase {
  double speed;
  double influence;
};

// Which key of which property a script changes. `layerIndex` counts from 0, `keyIndex` from 1.
struct KeyEaseTarget {
  int32_t layerIndex;
  std::string propertyName;  // the English name, or of the leader when separated
  bool isSeparated;
  int32_t dimension;  // the follower asked for when separated
  int32_t keyIndex;
};

// The script that sets the temporal ease of the target key in the active composition.
std::string KeyEaseScript(const KeyEaseTarget& target, const KeyEase& easeIn, const KeyEase& easeOut);

// Runs that script; its reply is not looked at, so a script that fails shows only through
// the host's error. The host's error is returned.
A_Err RunKeyEase(CTI* cti, const KeyEaseTarget& target, const KeyEase& easeIn, const KeyEase& easeOut);
