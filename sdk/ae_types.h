/* Basic value and handle types of the host's plug-in interface. */
#ifndef QAE_SDK_AE_TYPES_H
#define QAE_SDK_AE_TYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t A_Err;
typedef int32_t A_long;
typedef uint32_t A_u_long;
typedef int16_t A_short;
typedef uint16_t A_u_short;
typedef uint8_t A_Boolean;
typedef char A_char;
typedef uint16_t A_UTF16Char;
typedef double A_FpLong;
typedef float A_FpShort;
typedef A_Boolean PF_Boolean;

/* A time is value / scale seconds. */
typedef struct A_Time {
    A_long value;
    A_u_long scale;
} A_Time;

typedef struct A_Ratio {
    A_long num;
    A_u_long den;
} A_Ratio;

typedef struct A_FloatPoint {
    A_FpLong x, y;
} A_FloatPoint;

typedef struct A_FloatPoint3 {
    A_FpLong x, y, z;
} A_FloatPoint3;

typedef struct A_FloatPoint4 {
    A_FpLong x, y, z, w;
} A_FloatPoint4;

/* Row vectors: a point p maps to p * mat, the translation is row 3. */
typedef struct A_Matrix4 {
    A_FpLong mat[4][4];
} A_Matrix4;

/* Colour channels from 0 to 1. */
typedef struct AEGP_ColorVal {
    A_FpLong alpha, red, green, blue;
} AEGP_ColorVal;

typedef A_long AEGP_PluginID;
typedef A_long AEGP_Command;
typedef A_long AEGP_LayerIDVal;
typedef A_long AEGP_MaskIDVal;
typedef A_u_long AEGP_MemSize;

/* Opaque handles; the host checks every one it is given. */
typedef struct AEGP_Project* AEGP_ProjectH;
typedef struct AEGP_Item* AEGP_ItemH;
typedef struct AEGP_Comp* AEGP_CompH;
typedef struct AEGP_Layer* AEGP_LayerH;
typedef struct AEGP_Footage* AEGP_FootageH;
typedef struct AEGP_StreamRef* AEGP_StreamRefH;
typedef struct AEGP_MemHandleRec* AEGP_MemHandle;
typedef struct AEGP_MaskRef* AEGP_MaskRefH;
typedef struct AEGP_MaskOutlineVal* AEGP_MaskOutlineValH;
typedef struct AEGP_MarkerVal* AEGP_MarkerValP;
typedef struct AEGP_TextDocument* AEGP_TextDocumentH;
typedef struct AEGP_TextOutlines* AEGP_TextOutlinesH;
typedef struct AEGP_AddKeyframesInfo* AEGP_AddKeyframesInfoH;
typedef struct AEGP_PersistentBlob* AEGP_PersistentBlobH;
typedef struct PF_AppProgressDialog* PF_AppProgressDialogP;
typedef struct PF_PathOutline* PF_PathOutlinePtr;
typedef struct PF_PathSegPrep* PF_PathSegPrepPtr;
typedef struct PF_ProgressInfo* PF_ProgPtr;

/* The input record of a call through an effect, as far as the plug-in reads it: the time
   base of the layer the effect sits on (one frame is time_step units of time_scale). */
typedef struct PF_InData {
    A_long time_step;
    A_u_long time_scale;
} PF_InData;

/* Refcons the plug-in hands to the host and gets back in its hooks. */
typedef void* AEGP_GlobalRefcon;
typedef void* AEGP_CommandRefcon;
typedef void* AEGP_UpdateMenuRefcon;
typedef void* AEGP_DeathRefcon;
typedef void* AE_FIM_Refcon;

#ifdef __cplusplus
}
#endif

#endif
