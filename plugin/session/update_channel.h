#pragma once
// Which part of a render's document an incoming update document changes, told by the
// update's name alone: a client names small updates after what they carry, and anything
// else is a whole document.
#include <cstdint>
#include <string>

namespace quillon {

enum class UpdateChannel {
  kFullDocument,
  kCamera,          // __updc: its first object is a camera
  kActiveCamera,    // __upda: the unique id of the camera to look through
  kView,            // __updd: its first view
  kRenderSettings,  // __updr: its active render settings
  kTime,            // __updt: its document time
  kLayers,          // __updl: a list of layers to switch on
  kDifference,      // __upds<n>: changed elements with the unique ids of application n
};

struct ChannelOfUpdate {
  UpdateChannel channel = UpdateChannel::kFullDocument;
  int32_t applicationId = 0;  // of a difference
};

// The channel of an update by the exact text of its name (UTF-8). A difference needs an
// application number other than 0 after "__upds"; the number is read as far as it is a
// decimal number (sign and digits) within at most 10000 characters, and one beyond 32 bits
// counts as none.
ChannelOfUpdate ChannelOfName(const std::string& name);

}  // namespace quillon
