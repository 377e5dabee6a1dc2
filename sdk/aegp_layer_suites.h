/* Suites of layers: layers, cameras, lights, masks and their outlines,
   text outlines, and the path data of outlines. */
#ifndef QAE_SDK_AEGP_LAYER_SUITES_H
#define QAE_SDK_AEGP_LAYER_SUITES_H

#include "sdk/ae_enums.h"
#include "sdk/ae_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define kAEGPLayerSuite "AEGP Layer Suite"
#define kAEGPLayerSuiteVersion11 11
#define kAEGPLayerSuiteVersion13 13
#define kAEGPLayerSuiteVersion14 14

/* All versions of the layer suite share this layout. Layer indexes are
   zero-based, 0 being the top layer. */
typedef struct AEGP_LayerSuite14 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH compH, A_long* num_layersPL);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH compH, A_long layer_indexL, AEGP_LayerH* layerPH);
    /* Null unless exactly one layer is selected. */
    A_Err (*AEGP_GetActiveLayer)(AEGP_LayerH* layerPH);
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH layerH, A_long* layer_indexPL);
    /* Null for layers without a source (cameras, lights, text, shapes). */
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH layerH, AEGP_ItemH* source_itemPH);
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH layerH, AEGP_CompH* compPH);
    /* Each name as zero-terminated UTF-16 in a handle the caller frees; a
       layer without a name of its own gives an empty layer name. */
    A_Err (*AEGP_GetLayerName)(AEGP_PluginID plugin_id, AEGP_LayerH layerH, AEGP_MemHandle* layer_namePH0,
                               AEGP_MemHandle* source_namePH0);
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH layerH, AEGP_LayerFlags* layer_flagsP);
    A_Err (*AEGP_SetLayerFlag)(AEGP_LayerH layerH, AEGP_LayerFlags single_flag, A_Boolean valueB);
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH layerH, A_Boolean* is_3DPB);
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH layerH, AEGP_LTimeMode time_mode, A_Time* curr_timePT);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH layerH, AEGP_LTimeMode time_mode, A_Time* in_pointPT);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH layerH, AEGP_LTimeMode time_mode, A_Time* durationPT);
    A_Err (*AEGP_SetLayerInPointAndDuration)(AEGP_LayerH layerH, AEGP_LTimeMode time_mode,
                                             const A_Time* in_pointPT, const A_Time* durationPT);
    /* The layer's matrix to composition space at a composition time, with
       its parents; row vectors, translation in row 3. */
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH layerH, const A_Time* comp_timeP, A_Matrix4* transform);
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH layerH, AEGP_LayerIDVal* id_valP);
    A_Err (*AEGP_GetLayerFromLayerID)(AEGP_CompH parent_compH, AEGP_LayerIDVal id, AEGP_LayerH* layerPH);
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH layerH, AEGP_ObjectType* object_type);
    /* Null when the layer has no parent. */
    A_Err (*AEGP_GetLayerParent)(AEGP_LayerH layerH, AEGP_LayerH* parent_layerPH);
    A_Err (*AEGP_IsAddLayerValid)(AEGP_ItemH item_to_addH, AEGP_CompH into_compH, A_Boolean* validPB);
    A_Err (*AEGP_AddLayer)(AEGP_ItemH item_to_addH, AEGP_CompH into_compH, AEGP_LayerH* added_layerPH0);
} AEGP_LayerSuite14;

typedef AEGP_LayerSuite14 AEGP_LayerSuite11;
typedef AEGP_LayerSuite14 AEGP_LayerSuite13;

#define kAEGPCameraSuite "AEGP Camera Suite"
#define kAEGPCameraSuiteVersion2 2

typedef struct AEGP_CameraSuite2 {
    A_Err (*AEGP_GetCameraType)(AEGP_LayerH camera_layerH, AEGP_CameraType* camera_typeP);
    A_Err (*AEGP_GetDefaultCameraDistanceToImagePlane)(AEGP_CompH compH, A_FpLong* dist_to_planePF);
    A_Err (*AEGP_GetCameraFilmSize)(AEGP_LayerH camera_layerH, AEGP_FilmSizeUnits* film_size_unitsP,
                                    A_FpLong* film_sizePF0);
    A_Err (*AEGP_SetCameraFilmSize)(AEGP_LayerH camera_layerH, AEGP_FilmSizeUnits film_size_units,
                                    A_FpLong* film_sizePF0);
} AEGP_CameraSuite2;

#define kAEGPLightSuite "AEGP Light Suite"
#define kAEGPLightSuiteVersion1 1
#define kAEGPLightSuiteVersion2 2

typedef struct AEGP_LightSuite2 {
    A_Err (*AEGP_GetLightType)(AEGP_LayerH light_layerH, AEGP_LightType* light_typeP);
    A_Err (*AEGP_SetLightType)(AEGP_LayerH light_layerH, AEGP_LightType light_type);
} AEGP_LightSuite2;

typedef AEGP_LightSuite2 AEGP_LightSuite1;

#define kAEGPLayerMaskSuite "AEGP Layer Mask Suite"
#define kAEGPLayerMaskSuiteVersion7 7

typedef struct AEGP_LayerMaskSuite7 {
    A_Err (*AEGP_GetLayerNumMasks)(AEGP_LayerH layerH, A_long* num_masksPL);
    /* Zero-based; the mask is disposed by the caller. */
    A_Err (*AEGP_GetLayerMaskByIndex)(AEGP_LayerH layerH, A_long mask_indexL, AEGP_MaskRefH* maskPH);
    A_Err (*AEGP_DisposeMask)(AEGP_MaskRefH maskH);
} AEGP_LayerMaskSuite7;

#define kAEGPMaskOutlineSuite "AEGP Mask Outline Suite"
#define kAEGPMaskOutlineSuiteVersion3 3

/* A vertex with its tangents relative to the vertex. */
typedef struct AEGP_MaskVertex {
    A_FpLong x, y;
    A_FpLong tan_in_x, tan_in_y;
    A_FpLong tan_out_x, tan_out_y;
} AEGP_MaskVertex;

typedef struct AEGP_MaskOutlineSuite3 {
    A_Err (*AEGP_IsMaskOutlineOpen)(AEGP_MaskOutlineValH mask_outlineH, A_Boolean* openPB);
    A_Err (*AEGP_GetMaskOutlineNumSegments)(AEGP_MaskOutlineValH mask_outlineH, A_long* num_segmentsPL);
    A_Err (*AEGP_GetMaskOutlineVertexInfo)(AEGP_MaskOutlineValH mask_outlineH, A_long which_pointL,
                                           AEGP_MaskVertex* vertexP);
} AEGP_MaskOutlineSuite3;

#define kAEGPTextLayerSuite "AEGP Text Layer Suite"
#define kAEGPTextLayerSuiteVersion1 1
#define kAEGPTextLayerSuiteVersion2 2

typedef struct AEGP_TextLayerSuite1 {
    A_Err (*AEGP_GetNewTextOutlines)(AEGP_LayerH layerH, const A_Time* layer_timeP,
                                     AEGP_TextOutlinesH* outlinesPH);
    A_Err (*AEGP_DisposeTextOutlines)(AEGP_TextOutlinesH outlinesH);
    A_Err (*AEGP_GetNumTextOutlines)(AEGP_TextOutlinesH outlinesH, A_long* num_outlinesPL);
    A_Err (*AEGP_GetIndexedTextOutline)(AEGP_TextOutlinesH outlinesH, A_long path_index, PF_PathOutlinePtr* pathPP);
} AEGP_TextLayerSuite1;

/* One character of a laid-out text at a time, as the character suite reads it. */
typedef struct AEGP_TextCharacter* AEGP_TextCharacterH;

/* Version 2 is version 1 with the characters of the layout, reached by their place in the
   table. Characters are counted from 0 in the source text at the time, line breaks included;
   times are layer times. A character's outlines are disposed with AEGP_DisposeTextOutlines. */
typedef struct AEGP_TextLayerSuite2 {
    A_Err (*AEGP_GetNewTextOutlines)(AEGP_LayerH layerH, const A_Time* layer_timeP,
                                     AEGP_TextOutlinesH* outlinesPH);
    A_Err (*AEGP_DisposeTextOutlines)(AEGP_TextOutlinesH outlinesH);
    A_Err (*AEGP_GetNumTextOutlines)(AEGP_TextOutlinesH outlinesH, A_long* num_outlinesPL);
    A_Err (*AEGP_GetIndexedTextOutline)(AEGP_TextOutlinesH outlinesH, A_long path_index, PF_PathOutlinePtr* pathPP);
    A_Err (*GetCharacterCount)(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long* countPL);
    A_Err (*GetCharacterAt)(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long indexL,
                            AEGP_TextCharacterH* characterPH);
    A_Err (*DisposeCharacter)(AEGP_TextCharacterH characterH);
    A_Err (*GetCharacterOutlines)(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long indexL,
                                  AEGP_TextOutlinesH* outlinesPH);
} AEGP_TextLayerSuite2;

#define kAEGPTextLayerCharacterSuite "AEGP Text Layer Character Suite"
#define kAEGPTextLayerCharacterSuiteVersion1 1

/* Row vectors in the plane: a point p maps to p * mat, the translation is row 2. */
typedef struct A_Matrix3 {
    A_FpLong mat[3][3];
} A_Matrix3;

/* A character's transform within its layer: the 3x3 is the transform in the plane, the 4x4
   the whole one, whose element [3][2] is the character's depth. */
typedef struct AEGP_TextLayerCharacterSuite1 {
    A_Err (*GetCharacterMatrix3)(AEGP_TextCharacterH characterH, A_Matrix3* matrixP);
    A_Err (*GetCharacterMatrix4)(AEGP_TextCharacterH characterH, A_Matrix4* matrixP);
} AEGP_TextLayerCharacterSuite1;

#define kPFPathDataSuite "PF Path Data Suite"
#define kPFPathDataSuiteVersion1 1

/* A vertex with absolute tangent handles. */
typedef struct PF_PathVertex {
    A_FpLong x, y;
    A_FpLong tan_in_x, tan_in_y;
    A_FpLong tan_out_x, tan_out_y;
} PF_PathVertex;

/* The first argument is the effect's reference; a general plug-in passes 0.
   A mask outline value can be passed as a path outline. */
typedef struct PF_PathDataSuite1 {
    A_Err (*PF_PathIsOpen)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr pathP, PF_Boolean* openPB);
    A_Err (*PF_PathNumSegments)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr pathP, A_long* num_segmentsPL);
    A_Err (*PF_PathVertexInfo)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr pathP, A_long which_pointL,
                               PF_PathVertex* vertexP);
    /* Prepares the length of one segment, sampled frequencyL times. */
    A_Err (*PF_PathPrepareSegLength)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr pathP, A_long which_segL,
                                     A_long frequencyL, PF_PathSegPrepPtr* lengthPrepPP);
    A_Err (*PF_PathGetSegLength)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr pathP, A_long which_segL,
                                 PF_PathSegPrepPtr* lengthPrepP0, A_FpLong* lengthPF);
    A_Err (*PF_PathCleanup)(PF_ProgPtr effect_ref0, PF_PathSegPrepPtr* lengthPrepPP);
} PF_PathDataSuite1;

#ifdef __cplusplus
}
#endif

#endif
