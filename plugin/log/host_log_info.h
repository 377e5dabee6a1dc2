#pragma once
// What the host tells about itself for the log header, asked through the calling
// thread's frame.
#include <optional>

#include "plugin/log/log_format.h"

// Nothing when the calling thread has no frame.
std::optional<HostLogInfo> QueryHostLogInfo();
