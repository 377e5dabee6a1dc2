/* Enumerations of the host that plug-ins pass and test. */
#ifndef QAE_SDK_AE_ENUMS_H
#define QAE_SDK_AE_ENUMS_H

#include "sdk/ae_types.h"

typedef A_long AEGP_ItemType;
enum {
    AEGP_ItemType_NONE = 0,
    AEGP_ItemType_FOLDER = 1,
    AEGP_ItemType_COMP = 2,
    AEGP_ItemType_FOOTAGE = 4
};

typedef A_long AEGP_ObjectType;
enum {
    AEGP_ObjectType_NONE = -1,
    AEGP_ObjectType_AV = 0,
    AEGP_ObjectType_LIGHT = 1,
    AEGP_ObjectType_CAMERA = 2,
    AEGP_ObjectType_TEXT = 3,
    AEGP_ObjectType_VECTOR = 4
};

typedef A_long AEGP_LightType;
enum {
    AEGP_LightType_NONE = -1,
    AEGP_LightType_PARALLEL = 0,
    AEGP_LightType_SPOT = 1,
    AEGP_LightType_POINT = 2,
    AEGP_LightType_AMBIENT = 3
};

typedef A_long AEGP_CameraType;
enum {
    AEGP_CameraType_NONE = -1,
    AEGP_CameraType_PERSPECTIVE = 0,
    AEGP_CameraType_ORTHOGRAPHIC = 1
};

typedef A_long AEGP_FilmSizeUnits;
enum {
    AEGP_FilmSizeUnits_NONE = 0,
    AEGP_FilmSizeUnits_HORIZONTAL = 1,
    AEGP_FilmSizeUnits_VERTICAL = 2,
    AEGP_FilmSizeUnits_DIAGONAL = 3
};

typedef A_long AEGP_LTimeMode;
enum {
    AEGP_LTimeMode_LayerTime = 0,
    AEGP_LTimeMode_CompTime = 1
};

typedef A_long AEGP_StreamType;
enum {
    AEGP_StreamType_NO_DATA = 0,
    AEGP_StreamType_ThreeD_SPATIAL = 1,
    AEGP_StreamType_ThreeD = 2,
    AEGP_StreamType_TwoD_SPATIAL = 3,
    AEGP_StreamType_TwoD = 4,
    AEGP_StreamType_OneD = 5,
    AEGP_StreamType_COLOR = 6,
    AEGP_StreamType_ARB = 7,
    AEGP_StreamType_MARKER = 8,
    AEGP_StreamType_LAYER_ID = 9,
    AEGP_StreamType_MASK_ID = 10,
    AEGP_StreamType_MASK = 11,
    AEGP_StreamType_TEXT_DOCUMENT = 12
};

/* Bits of a layer's flags; AEGP_SetLayerFlag takes exactly one of them. */
typedef A_long AEGP_LayerFlags;
enum {
    AEGP_LayerFlag_NONE = 0x0,
    AEGP_LayerFlag_VIDEO_ACTIVE = 0x1,
    AEGP_LayerFlag_AUDIO_ACTIVE = 0x2,
    AEGP_LayerFlag_EFFECTS_ACTIVE = 0x4,
    AEGP_LayerFlag_MOTION_BLUR = 0x8,
    AEGP_LayerFlag_FRAME_BLENDING = 0x10,
    AEGP_LayerFlag_LOCKED = 0x20,
    AEGP_LayerFlag_SHY = 0x40,
    AEGP_LayerFlag_COLLAPSE = 0x80,
    AEGP_LayerFlag_AUTO_ORIENT_ROTATION = 0x100,
    AEGP_LayerFlag_ADJUSTMENT_LAYER = 0x200,
    AEGP_LayerFlag_TIME_REMAPPING = 0x400,
    AEGP_LayerFlag_LAYER_IS_3D = 0x800,
    AEGP_LayerFlag_LOOK_AT_CAMERA = 0x1000,
    AEGP_LayerFlag_LOOK_AT_POI = 0x2000,
    AEGP_LayerFlag_SOLO = 0x4000,
    AEGP_LayerFlag_MARKERS_LOCKED = 0x8000,
    AEGP_LayerFlag_NULL_LAYER = 0x10000
};

typedef A_long AEGP_LayerStream;
enum {
    AEGP_LayerStream_NONE = -1,
    AEGP_LayerStream_ANCHORPOINT = 0,
    AEGP_LayerStream_POSITION = 1,
    AEGP_LayerStream_SCALE = 2,
    AEGP_LayerStream_ROTATION = 3, /* about Z */
    AEGP_LayerStream_OPACITY = 4,
    AEGP_LayerStream_MARKER = 6,
    AEGP_LayerStream_ROTATE_X = 8,
    AEGP_LayerStream_ROTATE_Y = 9,
    AEGP_LayerStream_ORIENTATION = 10,
    AEGP_LayerStream_ZOOM = 11,
    AEGP_LayerStream_FOCUS_DISTANCE = 13,
    AEGP_LayerStream_APERTURE = 14,
    AEGP_LayerStream_INTENSITY = 16,
    AEGP_LayerStream_COLOR = 17,
    AEGP_LayerStream_CONE_ANGLE = 18,
    AEGP_LayerStream_CONE_FEATHER = 19,
    AEGP_LayerStream_SHADOW_DARKNESS = 20,
    AEGP_LayerStream_CASTS_SHADOWS = 28,
    AEGP_LayerStream_SOURCE_TEXT = 31,
    AEGP_LayerStream_LIGHT_FALLOFF_TYPE = 40,
    AEGP_LayerStream_LIGHT_FALLOFF_START = 41,
    AEGP_LayerStream_LIGHT_FALLOFF_DISTANCE = 42
};

typedef A_long AEGP_MaskStream;
enum {
    AEGP_MaskStream_OUTLINE = 400
};

typedef A_long AEGP_KeyframeInterpolationType;
enum {
    AEGP_KeyInterp_NONE = 0,
    AEGP_KeyInterp_LINEAR = 1,
    AEGP_KeyInterp_BEZIER = 2,
    AEGP_KeyInterp_HOLD = 3
};

typedef A_long AEGP_MarkerStringType;
enum {
    AEGP_MarkerString_NONE = 0,
    AEGP_MarkerString_COMMENT = 1,
    AEGP_MarkerString_CHAPTER = 2,
    AEGP_MarkerString_URL = 3,
    AEGP_MarkerString_FRAME_TARGET = 4,
    AEGP_MarkerString_CUE_POINT_NAME = 5
};

typedef A_long AEGP_MenuID;
enum {
    AEGP_Menu_NONE = 0,
    AEGP_Menu_FILE = 2,
    AEGP_Menu_EDIT = 3,
    AEGP_Menu_COMPOSITION = 4,
    AEGP_Menu_LAYER = 5,
    AEGP_Menu_EFFECT = 6,
    AEGP_Menu_WINDOW = 7,
    AEGP_Menu_IMPORT = 10,
    AEGP_Menu_EXPORT = 13,
    AEGP_Menu_ANIMATION = 14
};

/* Position of a new menu item: an index, or one of these. */
enum {
    AEGP_MENU_INSERT_SORTED = -2,
    AEGP_MENU_INSERT_AT_BOTTOM = -1,
    AEGP_MENU_INSERT_AT_TOP = 0
};

/* When a command hook runs relative to the host's own handling. */
typedef A_long AEGP_HookPriority;
enum {
    AEGP_HP_BeforeAE = 1,
    AEGP_HP_AfterAE = 2
};

typedef A_long AEGP_WindowType;
enum {
    AEGP_WindType_NONE = 0,
    AEGP_WindType_PROJECT = 1,
    AEGP_WindType_COMP = 2,
    AEGP_WindType_TIME_LAYOUT = 3,
    AEGP_WindType_LAYER = 4,
    AEGP_WindType_FOOTAGE = 5,
    AEGP_WindType_OTHER = 6
};

/* Folders that AEGP_GetPluginPaths can give. */
typedef A_long AEGP_GetPathTypes;
enum {
    AEGP_GetPathTypes_PLUGIN = 0,
    AEGP_GetPathTypes_USER_PLUGIN = 1,
    AEGP_GetPathTypes_ALLUSER_PLUGIN = 2,
    AEGP_GetPathTypes_APP = 3
};

typedef A_long AEGP_MemFlag;
enum {
    AEGP_MemFlag_NONE = 0,
    AEGP_MemFlag_CLEAR = 1,
    AEGP_MemFlag_QUIET = 2
};

/* Four-character code of a footage's kind, first character in the high byte. */
typedef A_u_long AEGP_FootageSignature;
#define AEGP_FootageSignature_NONE ((AEGP_FootageSignature)0x4E4F4E45u)    /* "NONE" */
#define AEGP_FootageSignature_MISSING ((AEGP_FootageSignature)0x4D495353u) /* "MISS" */
#define AEGP_FootageSignature_SOLID ((AEGP_FootageSignature)0x536F6C69u)   /* "Soli" */

#endif
