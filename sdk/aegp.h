/* Everything of the host's plug-in interface in one include. */
#ifndef QAE_SDK_AEGP_H
#define QAE_SDK_AEGP_H

#include "sdk/ae_errors.h"
#include "sdk/ae_enums.h"
#include "sdk/ae_types.h"
#include "sdk/sp_basic.h"
#include "sdk/aegp_entry.h"
#include "sdk/aegp_app_suites.h"
#include "sdk/aegp_project_suites.h"
#include "sdk/aegp_layer_suites.h"
#include "sdk/aegp_stream_suites.h"
#include "sdk/aegp_shape_suites.h"

#endif
