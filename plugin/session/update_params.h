#pragma once
// Parameters of update documents and what the session keeps on the objects it changes.
#include <cstdint>

// __updc: true inserts the camera, false copies its values; __updr: true keeps the old
// settings' children; __updl: the list of layers (a container).
constexpr int32_t ParamKey_UpdateData = 1029194;
// __upda: the application whose unique id names the camera.
constexpr int32_t ParamKey_UpdateAppId = 2001;
// An object's modes 0 and 1 as they were before the session first changed them.
constexpr int32_t ParamKey_StoredMode0 = 465001951;
constexpr int32_t ParamKey_StoredMode1 = 465001952;

// The list of __updl.
constexpr int32_t kLayerListCount = 1000;
constexpr int32_t kLayerListObjectsWithoutLayerVisible = 1001;
constexpr int32_t kLayerListFirstIndex = 2000;
