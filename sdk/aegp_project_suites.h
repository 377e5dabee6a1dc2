/* Suites of the project and its items: projects, items and folders,
   compositions, footage. */
#ifndef QAE_SDK_AEGP_PROJECT_SUITES_H
#define QAE_SDK_AEGP_PROJECT_SUITES_H

#include "sdk/ae_enums.h"
#include "sdk/ae_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define kAEGPProjSuite "AEGP Proj Suite"
#define kAEGPProjSuiteVersion8 8
#define kAEGPProjSuiteVersion9 9

typedef struct AEGP_ProjSuite9 {
    A_Err (*AEGP_GetNumProjects)(A_long* num_projectsPL);
    A_Err (*AEGP_GetProjectByIndex)(A_long proj_index, AEGP_ProjectH* projPH);
    /* The project's file as zero-terminated UTF-16; empty when never saved. */
    A_Err (*AEGP_GetProjectPath)(AEGP_ProjectH projH, AEGP_MemHandle* unicode_pathPH);
    A_Err (*AEGP_GetProjectRootFolder)(AEGP_ProjectH projH, AEGP_ItemH* root_folderPH);
} AEGP_ProjSuite9;

typedef AEGP_ProjSuite9 AEGP_ProjSuite8;

#define kAEGPItemSuite "AEGP Item Suite"
#define kAEGPItemSuiteVersion13 13

typedef struct AEGP_ItemSuite13 {
    /* Walk of all items of a project, folders included; null after the last. */
    A_Err (*AEGP_GetFirstProjItem)(AEGP_ProjectH projH, AEGP_ItemH* itemPH);
    A_Err (*AEGP_GetNextProjItem)(AEGP_ProjectH projH, AEGP_ItemH itemH, AEGP_ItemH* next_itemPH);
    /* Null when nothing is active. */
    A_Err (*AEGP_GetActiveItem)(AEGP_ItemH* itemPH);
    A_Err (*AEGP_GetItemType)(AEGP_ItemH itemH, AEGP_ItemType* item_typeP);
    /* Zero-terminated UTF-16 in a handle that the caller frees. */
    A_Err (*AEGP_GetItemName)(AEGP_PluginID plugin_id, AEGP_ItemH itemH, AEGP_MemHandle* unicode_namePH);
    A_Err (*AEGP_SetItemName)(AEGP_ItemH itemH, const A_UTF16Char* nameZ);
    A_Err (*AEGP_GetItemID)(AEGP_ItemH itemH, A_long* item_idPL);
    /* Null for the root folder. */
    A_Err (*AEGP_GetItemParentFolder)(AEGP_ItemH itemH, AEGP_ItemH* parent_folderPH);
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH itemH, A_Time* durationPT);
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH itemH, A_long* widthPL, A_long* heightPL);
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH itemH, A_Ratio* pix_aspect_ratioPRt);
    /* A null parent puts the folder into the root folder. */
    A_Err (*AEGP_CreateNewFolder)(const A_UTF16Char* nameZ, AEGP_ItemH parent_folderH0, AEGP_ItemH* new_folderPH);
} AEGP_ItemSuite13;

#define kAEGPCompSuite "AEGP Comp Suite"
#define kAEGPCompSuiteVersion15 15
#define kAEGPCompSuiteVersion19 19
#define kAEGPCompSuiteVersion21 21

/* All versions of the composition suite share this layout. */
typedef struct AEGP_CompSuite21 {
    /* Null when the item is not a composition. */
    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH itemH, AEGP_CompH* compPH);
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH compH, AEGP_ItemH* itemPH);
    A_Err (*AEGP_GetCompFramerate)(AEGP_CompH compH, A_FpLong* fpsPF);
    A_Err (*AEGP_GetCompFrameDuration)(AEGP_CompH compH, A_Time* frame_durationPT);
    A_Err (*AEGP_GetCompDisplayStartTime)(AEGP_CompH compH, A_Time* start_timePT);
    A_Err (*AEGP_SetCompDisplayStartTime)(AEGP_CompH compH, const A_Time* start_timePT);
    A_Err (*AEGP_SetCompPixelAspectRatio)(AEGP_CompH compH, const A_Ratio* pix_aspectratioPRt);
    /* A null parent puts the composition into the root folder. */
    A_Err (*AEGP_CreateComp)(AEGP_ItemH parent_folderH0, const A_UTF16Char* nameZ, A_long width, A_long height,
                             const A_Ratio* pixel_aspect_ratioPRt, const A_Time* durationPT,
                             const A_Ratio* frameratePRt, AEGP_CompH* new_compPH);
    /* New layers go to the top of the composition; a null duration is the composition's. */
    A_Err (*AEGP_CreateSolidInComp)(const A_UTF16Char* nameZ, A_long width, A_long height,
                                    const AEGP_ColorVal* colorP, AEGP_CompH parent_compH,
                                    const A_Time* durationPT0, AEGP_LayerH* new_solidPH);
    A_Err (*AEGP_CreateCameraInComp)(const A_UTF16Char* nameZ, A_FloatPoint center_point, AEGP_CompH parent_compH,
                                     AEGP_LayerH* new_cameraPH);
    A_Err (*AEGP_CreateLightInComp)(const A_UTF16Char* nameZ, A_FloatPoint center_point, AEGP_CompH parent_compH,
                                    AEGP_LayerH* new_lightPH);
    A_Err (*AEGP_CreateNullInComp)(const A_UTF16Char* nameZ, AEGP_CompH parent_compH, const A_Time* durationPT0,
                                   AEGP_LayerH* new_null_solidPH);
    /* The composition's marker stream; the caller disposes it. */
    A_Err (*AEGP_GetNewCompMarkerStream)(AEGP_PluginID plugin_id, AEGP_CompH parent_compH,
                                         AEGP_StreamRefH* streamPH);
} AEGP_CompSuite21;

typedef AEGP_CompSuite21 AEGP_CompSuite15;
typedef AEGP_CompSuite21 AEGP_CompSuite19;

#define kAEGPFootageSuite "AEGP Footage Suite"
#define kAEGPFootageSuiteVersion11 11

typedef struct AEGP_FootageSuite11 {
    A_Err (*AEGP_GetMainFootageFromItem)(AEGP_ItemH itemH, AEGP_FootageH* footagePH);
    A_Err (*AEGP_GetFootageNumFiles)(AEGP_FootageH footageH, A_long* num_main_filesPL0,
                                     A_long* files_per_framePL0);
    /* Zero-terminated UTF-16 in a handle that the caller frees. */
    A_Err (*AEGP_GetFootagePath)(AEGP_PluginID plugin_id, AEGP_FootageH footageH, A_long frame_num,
                                 A_long file_index, AEGP_MemHandle* unicode_pathPH);
    A_Err (*AEGP_GetFootageSignature)(AEGP_FootageH footageH, AEGP_FootageSignature* sigP);
    A_Err (*AEGP_GetSolidFootageColor)(AEGP_ItemH itemH, A_Boolean proxyB, AEGP_ColorVal* colorP);
} AEGP_FootageSuite11;

#ifdef __cplusplus
}
#endif

#endif
