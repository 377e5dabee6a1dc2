/* The suites that give a shape layer as the host has evaluated it: the shape at a time, its
   items, the contours and colour of an item, and an identity of the shape's form. Entries
   without a published name carry the name of their role; the plug-in reaches some of them by
   their place in the table, so the order of every table is fixed, and places the plug-in never
   calls are kept as reserved entries. */
#pragma once

#include "sdk/ae_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct AEGP_Shape* AEGP_ShapeH;
typedef struct AEGP_ShapeItem* AEGP_ShapeItemH;
typedef struct AEGP_Guid* AEGP_GuidH;

/* An item's colour: components as fractions, 1 being full, alpha first. */
typedef struct AEGP_ShapeColour {
    A_FpLong alpha;
    A_FpLong red;
    A_FpLong green;
    A_FpLong blue;
} AEGP_ShapeColour;

/* A table place the plug-in never calls; the host answers it with an error. */
typedef A_Err (*AEGP_ReservedEntry)(void);

#define kAEGPShapeLayerSuite "AEGP Shape Layer Suite"
#define kAEGPShapeLayerSuiteVersion2 2
#define kAEGPShapeLayerSuiteVersion3 3

/* Version 2 is version 3 without its last entry. The time is layer time; `reserved` is 0. */
typedef struct AEGP_ShapeLayerSuite3 {
    A_Err (*GetShapeAtTime)(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long reserved, AEGP_ShapeH* shapePH);
    A_Err (*DisposeShape)(AEGP_ShapeH shapeH);
    A_Err (*GetShapeItemCount)(AEGP_ShapeH shapeH, A_long* countPL);
    A_Err (*GetShapeItem)(AEGP_ShapeH shapeH, A_long indexL, AEGP_ShapeItemH* itemPH);
    A_Err (*GetShapeIdentity)(AEGP_ShapeH shapeH, AEGP_GuidH* identityPH);
} AEGP_ShapeLayerSuite3;
typedef AEGP_ShapeLayerSuite3 AEGP_ShapeLayerSuite2;

#define kAEGPAnimatedShapeSuite "AEGP Animated Shape Suite"
#define kAEGPAnimatedShapeSuiteVersion1 1
#define kAEGPAnimatedShapeSuiteVersion2 2

/* The outlines are read with AEGP_GetNumTextOutlines and AEGP_GetIndexedTextOutline of the
   text layer suite. An item lives as long as its shape. */
typedef struct AEGP_AnimatedShapeSuite2 {
    A_Err (*GetItemOutlines)(AEGP_ShapeItemH itemH, AEGP_TextOutlinesH* outlinesPH);
    A_Err (*DisposeItemOutlines)(AEGP_TextOutlinesH outlinesH);
    AEGP_ReservedEntry reserved2;
    AEGP_ReservedEntry reserved3;
    A_Err (*GetItemColour)(AEGP_ShapeItemH itemH, AEGP_ShapeColour* colourP);
} AEGP_AnimatedShapeSuite2;
typedef AEGP_AnimatedShapeSuite2 AEGP_AnimatedShapeSuite1;

#define kAEGPGuidSuite "AEGP Guid Suite"
#define kAEGPGuidSuiteVersion2 2

typedef struct AEGP_GuidSuite2 {
    AEGP_ReservedEntry reserved0;
    A_Err (*CompareIdentity)(AEGP_GuidH firstH, AEGP_GuidH secondH, A_Boolean* equalPB);
    A_Err (*DisposeIdentity)(AEGP_GuidH identityH);
} AEGP_GuidSuite2;

#ifdef __cplusplus
}
#endif
