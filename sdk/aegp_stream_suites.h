/* Suites of animated values: stream values, streams, separated streams,
   keyframes, markers and text documents. */
#ifndef QAE_SDK_AEGP_STREAM_SUITES_H
#define QAE_SDK_AEGP_STREAM_SUITES_H

#include "sdk/ae_enums.h"
#include "sdk/ae_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef A_FpLong AEGP_OneDVal;
typedef A_FloatPoint AEGP_TwoDVal;
typedef A_FloatPoint3 AEGP_ThreeDVal;
typedef A_FloatPoint4 AEGP_FourDVal;

/* One value of a stream; which member holds it follows the stream's type.
   Spatial values are in pixels, angles in degrees, scale in percent. */
typedef union AEGP_StreamVal2 {
    AEGP_FourDVal four_d;
    AEGP_ThreeDVal three_d;
    AEGP_TwoDVal two_d;
    AEGP_OneDVal one_d;
    AEGP_ColorVal color;
    AEGP_MarkerValP markerP;
    AEGP_LayerIDVal layer_id;
    AEGP_MaskIDVal mask_id;
    AEGP_MaskOutlineValH mask;
    AEGP_TextDocumentH text;
} AEGP_StreamVal2;

/* A value owned by the caller until AEGP_DisposeStreamValue. */
typedef struct AEGP_StreamValue2 {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal2 val;
} AEGP_StreamValue2;

#define AEGP_MAX_STREAM_NAME_SIZE 128

#define kAEGPStreamSuite "AEGP Stream Suite"
#define kAEGPStreamSuiteVersion7 7
#define kAEGPStreamSuiteVersion9 9

/* All versions of the stream suite share this layout. A time mode of
   layer time counts from the layer's start, composition time from the
   composition's. */
typedef struct AEGP_StreamSuite9 {
    A_Err (*AEGP_IsStreamLegal)(AEGP_LayerH layerH, AEGP_LayerStream which_stream, A_Boolean* is_legalP);
    A_Err (*AEGP_CanVaryOverTime)(AEGP_StreamRefH streamH, A_Boolean* can_varyPB);
    /* The caller disposes the stream; an illegal stream is an error. */
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID plugin_id, AEGP_LayerH layerH, AEGP_LayerStream which_stream,
                                    AEGP_StreamRefH* streamPH);
    A_Err (*AEGP_GetNewMaskStream)(AEGP_PluginID plugin_id, AEGP_MaskRefH maskH, AEGP_MaskStream which_stream,
                                   AEGP_StreamRefH* mask_streamPH);
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH streamH);
    /* Zero-terminated UTF-8 into a buffer of AEGP_MAX_STREAM_NAME_SIZE bytes. */
    A_Err (*AEGP_GetStreamName)(AEGP_StreamRefH streamH, A_Boolean force_englishB, A_char* nameZ);
    A_Err (*AEGP_IsStreamTimevarying)(AEGP_StreamRefH streamH, A_Boolean* is_timevaryingPB);
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH streamH, AEGP_StreamType* stream_typeP);
    /* pre_expressionB false gives the value after the stream's expression. */
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, AEGP_LTimeMode time_mode,
                                    const A_Time* timePT, A_Boolean pre_expressionB, AEGP_StreamValue2* valueP);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue2* valueP);
    /* Sets the value of a stream without keys; a stream with keys is an error. */
    A_Err (*AEGP_SetStreamValue)(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, AEGP_StreamValue2* valueP);
    A_Err (*AEGP_GetExpressionState)(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, A_Boolean* enabledPB);
    A_Err (*AEGP_SetExpressionState)(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, A_Boolean enabledB);
    /* Zero-terminated UTF-16 in a handle the caller frees; empty for none. */
    A_Err (*AEGP_GetExpression)(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, AEGP_MemHandle* unicodeHZ);
    A_Err (*AEGP_SetExpression)(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, const A_UTF16Char* expressionP);
} AEGP_StreamSuite9;

typedef AEGP_StreamSuite9 AEGP_StreamSuite7;

#define kAEGPDynamicStreamSuite "AEGP Dynamic Stream Suite"
#define kAEGPDynamicStreamSuiteVersion2 2
#define kAEGPDynamicStreamSuiteVersion3 3
#define kAEGPDynamicStreamSuiteVersion5 5

/* A stream whose dimensions were separated has one follower per dimension;
   the leader is the original stream. */
typedef struct AEGP_DynamicStreamSuite5 {
    A_Err (*AEGP_IsSeparationFollower)(AEGP_StreamRefH streamH, A_Boolean* is_followerPB);
    A_Err (*AEGP_GetSeparationLeader)(AEGP_StreamRefH followerH, AEGP_StreamRefH* leaderPH);
    A_Err (*AEGP_GetSeparationDimension)(AEGP_StreamRefH followerH, A_u_short* dimensionP);
    A_Err (*AEGP_IsSeparationLeader)(AEGP_StreamRefH streamH, A_Boolean* is_leaderPB);
    A_Err (*AEGP_AreDimensionsSeparated)(AEGP_StreamRefH leaderH, A_Boolean* separatedPB);
    A_Err (*AEGP_GetSeparationFollower)(AEGP_StreamRefH leaderH, A_u_short dimension,
                                        AEGP_StreamRefH* followerPH);
} AEGP_DynamicStreamSuite5;

typedef AEGP_DynamicStreamSuite5 AEGP_DynamicStreamSuite2;
typedef AEGP_DynamicStreamSuite5 AEGP_DynamicStreamSuite3;

#define kAEGPKeyframeSuite "AEGP Keyframe Suite"
#define kAEGPKeyframeSuiteVersion4 4

/* Speed in units per second, influence in percent. */
typedef struct AEGP_KeyframeEase {
    A_FpLong speedF;
    A_FpLong influenceF;
} AEGP_KeyframeEase;

typedef struct AEGP_KeyframeSuite4 {
    A_Err (*AEGP_GetStreamNumKFs)(AEGP_StreamRefH streamH, A_long* num_kfsPL);
    A_Err (*AEGP_GetKeyframeTime)(AEGP_StreamRefH streamH, A_long key_index, AEGP_LTimeMode time_mode,
                                  A_Time* timePT);
    /* Inserts a key holding the stream's value at that time, or finds the key
       already there; gives its index. */
    A_Err (*AEGP_InsertKeyframe)(AEGP_StreamRefH streamH, AEGP_LTimeMode time_mode, const A_Time* timePT,
                                 A_long* key_indexPL);
    A_Err (*AEGP_DeleteKeyframe)(AEGP_StreamRefH streamH, A_long key_index);
    A_Err (*AEGP_GetNewKeyframeValue)(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, A_long key_index,
                                      AEGP_StreamValue2* valueP);
    A_Err (*AEGP_SetKeyframeValue)(AEGP_StreamRefH streamH, A_long key_index, const AEGP_StreamValue2* valueP);
    A_Err (*AEGP_GetStreamValueDimensionality)(AEGP_StreamRefH streamH, A_short* value_dimPS);
    A_Err (*AEGP_GetStreamTemporalDimensionality)(AEGP_StreamRefH streamH, A_short* temporal_dimPS);
    A_Err (*AEGP_GetKeyframeTemporalEase)(AEGP_StreamRefH streamH, A_long key_index, A_long dimensionL,
                                          AEGP_KeyframeEase* in_easeP0, AEGP_KeyframeEase* out_easeP0);
    A_Err (*AEGP_SetKeyframeTemporalEase)(AEGP_StreamRefH streamH, A_long key_index, A_long dimensionL,
                                          const AEGP_KeyframeEase* in_easeP0, const AEGP_KeyframeEase* out_easeP0);
    A_Err (*AEGP_GetKeyframeInterpolation)(AEGP_StreamRefH streamH, A_long key_index,
                                           AEGP_KeyframeInterpolationType* in_interpP0,
                                           AEGP_KeyframeInterpolationType* out_interpP0);
    A_Err (*AEGP_SetKeyframeInterpolation)(AEGP_StreamRefH streamH, A_long key_index,
                                           AEGP_KeyframeInterpolationType in_interp,
                                           AEGP_KeyframeInterpolationType out_interp);
    /* Batched key insertion: keys added and given values between start and
       end are applied together at the end when addB is true. */
    A_Err (*AEGP_StartAddKeyframes)(AEGP_StreamRefH streamH, AEGP_AddKeyframesInfoH* akPH);
    A_Err (*AEGP_AddKeyframes)(AEGP_AddKeyframesInfoH akH, AEGP_LTimeMode time_mode, const A_Time* timePT,
                               A_long* indexPL);
    A_Err (*AEGP_SetAddKeyframe)(AEGP_AddKeyframesInfoH akH, A_long indexL, const AEGP_StreamValue2* valueP);
    A_Err (*AEGP_EndAddKeyframes)(A_Boolean addB, AEGP_AddKeyframesInfoH akH);
} AEGP_KeyframeSuite4;

#define kAEGPMarkerSuite "AEGP Marker Suite"
#define kAEGPMarkerSuiteVersion2 2

typedef struct AEGP_MarkerSuite2 {
    A_Err (*AEGP_NewMarker)(AEGP_MarkerValP* markerPP);
    A_Err (*AEGP_DisposeMarker)(AEGP_MarkerValP markerP);
    A_Err (*AEGP_DuplicateMarker)(AEGP_MarkerValP markerP, AEGP_MarkerValP* new_markerPP);
    /* Zero-terminated UTF-16 in a handle the caller frees. */
    A_Err (*AEGP_GetMarkerString)(AEGP_PluginID plugin_id, AEGP_MarkerValP markerP, AEGP_MarkerStringType str_type,
                                  AEGP_MemHandle* unicodePH);
    A_Err (*AEGP_SetMarkerString)(AEGP_MarkerValP markerP, AEGP_MarkerStringType str_type,
                                  const A_UTF16Char* unicodeP, A_long lengthL);
    A_Err (*AEGP_GetMarkerDuration)(AEGP_MarkerValP markerP, A_Time* durationPT);
    A_Err (*AEGP_SetMarkerDuration)(AEGP_MarkerValP markerP, const A_Time* durationPT);
} AEGP_MarkerSuite2;

#define kAEGPTextDocumentSuite "AEGP Text Document Suite"
#define kAEGPTextDocumentSuiteVersion1 1

typedef struct AEGP_TextDocumentSuite1 {
    /* Zero-terminated UTF-16 in a handle the caller frees. */
    A_Err (*AEGP_GetNewText)(AEGP_PluginID plugin_id, AEGP_TextDocumentH text_documentH, AEGP_MemHandle* unicodePH);
    A_Err (*AEGP_SetText)(AEGP_TextDocumentH text_documentH, const A_UTF16Char* unicodePS, A_long lengthL);
} AEGP_TextDocumentSuite1;

#ifdef __cplusplus
}
#endif

#endif
