// The camera and light suites: the settings of camera and light layers that
// are not streams.
#include "aehost/core/model_handles.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/model/evaluate.h"

namespace aehost {

namespace {

A_Err ResolveTyped(const char* call, AEGP_LayerH layerH, LayerObjectType type, LayerInComp* at) {
    if (A_Err err = ResolveLayer(call, layerH, at)) return err;
    if (at->layer->objectType != type)
        return Refuse(call, type == LayerObjectType::Camera ? "layer is not a camera" : "layer is not a light");
    return A_Err_NONE;
}

A_Err GetCameraType(AEGP_LayerH camera_layerH, AEGP_CameraType* camera_typeP) {
    return GuardCall("AEGP_GetCameraType", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCameraType", camera_typeP);
        LayerInComp at;
        if (A_Err err = ResolveTyped("AEGP_GetCameraType", camera_layerH, LayerObjectType::Camera, &at)) return err;
        *camera_typeP = static_cast<AEGP_CameraType>(at.layer->camera.type);
        return A_Err_NONE;
    });
}

A_Err GetDefaultCameraDistanceToImagePlane(AEGP_CompH compH, A_FpLong* dist_to_planePF) {
    return GuardCall("AEGP_GetDefaultCameraDistanceToImagePlane", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetDefaultCameraDistanceToImagePlane", dist_to_planePF);
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetDefaultCameraDistanceToImagePlane", compH, &comp)) return err;
        *dist_to_planePF = DefaultCameraZoom(*comp);
        return A_Err_NONE;
    });
}

A_Err GetCameraFilmSize(AEGP_LayerH camera_layerH, AEGP_FilmSizeUnits* film_size_unitsP, A_FpLong* film_sizePF0) {
    return GuardCall("AEGP_GetCameraFilmSize", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCameraFilmSize", film_size_unitsP);
        LayerInComp at;
        if (A_Err err = ResolveTyped("AEGP_GetCameraFilmSize", camera_layerH, LayerObjectType::Camera, &at))
            return err;
        *film_size_unitsP = static_cast<AEGP_FilmSizeUnits>(at.layer->camera.filmSizeUnits);
        if (film_sizePF0) *film_sizePF0 = at.layer->camera.filmSize;
        return A_Err_NONE;
    });
}

A_Err SetCameraFilmSize(AEGP_LayerH camera_layerH, AEGP_FilmSizeUnits film_size_units, A_FpLong* film_sizePF0) {
    return GuardCall("AEGP_SetCameraFilmSize", [&]() -> A_Err {
        const char* call = "AEGP_SetCameraFilmSize";
        LayerInComp at;
        if (A_Err err = ResolveTyped(call, camera_layerH, LayerObjectType::Camera, &at)) return err;
        if (film_size_units < AEGP_FilmSizeUnits_NONE || film_size_units > AEGP_FilmSizeUnits_DIAGONAL)
            return Refuse(call, "unknown film size units");
        if (film_sizePF0 && !(*film_sizePF0 > 0.0)) return Refuse(call, "film size must be positive");
        at.layer->camera.filmSizeUnits = static_cast<FilmSizeUnits>(film_size_units);
        if (film_sizePF0) at.layer->camera.filmSize = *film_sizePF0;
        return A_Err_NONE;
    });
}

const AEGP_CameraSuite2 g_cameraSuite = {GetCameraType, GetDefaultCameraDistanceToImagePlane, GetCameraFilmSize,
                                         SetCameraFilmSize};

A_Err GetLightType(AEGP_LayerH light_layerH, AEGP_LightType* light_typeP) {
    return GuardCall("AEGP_GetLightType", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLightType", light_typeP);
        LayerInComp at;
        if (A_Err err = ResolveTyped("AEGP_GetLightType", light_layerH, LayerObjectType::Light, &at)) return err;
        *light_typeP = static_cast<AEGP_LightType>(at.layer->light.type);
        return A_Err_NONE;
    });
}

A_Err SetLightType(AEGP_LayerH light_layerH, AEGP_LightType light_type) {
    return GuardCall("AEGP_SetLightType", [&]() -> A_Err {
        LayerInComp at;
        if (A_Err err = ResolveTyped("AEGP_SetLightType", light_layerH, LayerObjectType::Light, &at)) return err;
        if (light_type < AEGP_LightType_PARALLEL || light_type > AEGP_LightType_AMBIENT)
            return Refuse("AEGP_SetLightType", "unknown light type " + std::to_string(light_type));
        at.layer->light.type = static_cast<LightType>(light_type);
        return A_Err_NONE;
    });
}

const AEGP_LightSuite2 g_lightSuite = {GetLightType, SetLightType};

}  // namespace

const AEGP_CameraSuite2* CameraSuite() { return &g_cameraSuite; }
const AEGP_LightSuite2* LightSuite() { return &g_lightSuite; }

}  // namespace aehost
