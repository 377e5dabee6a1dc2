/* Suites of the host application: registration, commands, utilities,
   memory handles, preferences, import flavors, progress dialogs and maths. */
#ifndef QAE_SDK_AEGP_APP_SUITES_H
#define QAE_SDK_AEGP_APP_SUITES_H

#include "sdk/aegp_entry.h"
#include "sdk/ae_enums.h"
#include "sdk/ae_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define kAEGPRegisterSuite "AEGP Register Suite"
#define kAEGPRegisterSuiteVersion6 6
#define kAEGPRegisterSuiteVersion7 7

typedef struct AEGP_RegisterSuite7 {
    A_Err (*AEGP_RegisterCommandHook)(AEGP_PluginID plugin_id, AEGP_HookPriority hook_priority,
                                      AEGP_Command command, AEGP_CommandHook hook, AEGP_CommandRefcon refcon);
    A_Err (*AEGP_RegisterUpdateMenuHook)(AEGP_PluginID plugin_id, AEGP_UpdateMenuHook hook,
                                         AEGP_UpdateMenuRefcon refcon);
    A_Err (*AEGP_RegisterDeathHook)(AEGP_PluginID plugin_id, AEGP_DeathHook hook, AEGP_DeathRefcon refcon);
} AEGP_RegisterSuite7;

#define kAEGPCommandSuite "AEGP Command Suite"
#define kAEGPCommandSuiteVersion1 1

typedef struct AEGP_CommandSuite1 {
    A_Err (*AEGP_GetUniqueCommand)(AEGP_Command* unique_commandP);
    /* nameZ is code page 1252 text. */
    A_Err (*AEGP_InsertMenuCommand)(AEGP_Command command, const A_char* nameZ, AEGP_MenuID menu_id,
                                    A_long after_item);
    A_Err (*AEGP_RemoveMenuCommand)(AEGP_Command command);
    A_Err (*AEGP_SetMenuCommandName)(AEGP_Command command, const A_char* nameZ);
    A_Err (*AEGP_EnableCommand)(AEGP_Command command);
    A_Err (*AEGP_DisableCommand)(AEGP_Command command);
    A_Err (*AEGP_DoCommand)(AEGP_Command command);
} AEGP_CommandSuite1;

#define kAEGPUtilitySuite "AEGP Utility Suite"
#define kAEGPUtilitySuiteVersion3 3
#define kAEGPUtilitySuiteVersion7 7
#define kAEGPUtilitySuiteVersion10 10
#define kAEGPUtilitySuiteVersion11 11
#define kAEGPUtilitySuiteVersion13 13

/* All versions of the utility suite share this layout. */
typedef struct AEGP_UtilitySuite13 {
    A_Err (*AEGP_ReportInfo)(AEGP_PluginID plugin_id, const A_char* info_stringZ);
    A_Err (*AEGP_ReportInfoUnicode)(AEGP_PluginID plugin_id, const A_UTF16Char* info_stringZ);
    /* Undo groups nest; the outermost one names the step. */
    A_Err (*AEGP_StartUndoGroup)(const A_char* undo_nameZ);
    A_Err (*AEGP_EndUndoGroup)(void);
    A_Err (*AEGP_RegisterWithAEGP)(AEGP_GlobalRefcon global_refcon, const A_char* plugin_nameZ,
                                   AEGP_PluginID* plugin_id);
    /* Runs a script; the result (and on failure the error text) come back as
       zero-terminated UTF-8 in handles that the caller frees. Either out
       pointer may be null. */
    A_Err (*AEGP_ExecuteScript)(AEGP_PluginID plugin_id, const A_char* scriptZ, A_Boolean platform_encodingB,
                                AEGP_MemHandle* resultPH0, AEGP_MemHandle* error_stringPH0);
    /* The folder as zero-terminated UTF-16 in a handle, ending without a separator. */
    A_Err (*AEGP_GetPluginPaths)(AEGP_PluginID plugin_id, AEGP_GetPathTypes path_type,
                                 AEGP_MemHandle* unicode_path_memH);
} AEGP_UtilitySuite13;

typedef AEGP_UtilitySuite13 AEGP_UtilitySuite3;
typedef AEGP_UtilitySuite13 AEGP_UtilitySuite7;
typedef AEGP_UtilitySuite13 AEGP_UtilitySuite10;
typedef AEGP_UtilitySuite13 AEGP_UtilitySuite11;

#define kAEGPMemorySuite "AEGP Memory Suite"
#define kAEGPMemorySuiteVersion1 1

typedef struct AEGP_MemorySuite1 {
    A_Err (*AEGP_NewMemHandle)(AEGP_PluginID plugin_id, const A_char* whatZ, AEGP_MemSize size,
                               AEGP_MemFlag flags, AEGP_MemHandle* memPH);
    A_Err (*AEGP_FreeMemHandle)(AEGP_MemHandle memH);
    /* Locks nest: each lock needs its unlock. */
    A_Err (*AEGP_LockMemHandle)(AEGP_MemHandle memH, void** ptr_to_ptr);
    A_Err (*AEGP_UnlockMemHandle)(AEGP_MemHandle memH);
    A_Err (*AEGP_GetMemHandleSize)(AEGP_MemHandle memH, AEGP_MemSize* sizeP);
    A_Err (*AEGP_ResizeMemHandle)(const A_char* whatZ, AEGP_MemSize new_size, AEGP_MemHandle memH);
    A_Err (*AEGP_SetMemReportingOn)(A_Boolean turn_OnB);
    A_Err (*AEGP_GetMemStats)(AEGP_PluginID plugin_id, A_long* countP, A_long* sizeP);
} AEGP_MemorySuite1;

#define kAEGPPersistentDataSuite "AEGP Persistent Data Suite"
#define kAEGPPersistentDataSuiteVersion3 3
#define kAEGPPersistentDataSuiteVersion4 4

typedef struct AEGP_PersistentDataSuite3 {
    A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentBlobH* blobPH);
    A_Err (*AEGP_DoesKeyExist)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ,
                               const A_char* value_keyZ, A_Boolean* existsPB);
    /* Copies at most buf_size bytes, zero-terminated; *actual_buf_sizeP0 gets
       the size the whole value needs. A missing key gives defaultZ0 (or ""). */
    A_Err (*AEGP_GetString)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ, const A_char* value_keyZ,
                            const A_char* defaultZ0, A_u_long buf_size, A_char* bufZ,
                            A_u_long* actual_buf_sizeP0);
    A_Err (*AEGP_SetString)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ, const A_char* value_keyZ,
                            const A_char* valueZ);
    A_Err (*AEGP_GetLong)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ, const A_char* value_keyZ,
                          A_long defaultL, A_long* valueP);
    A_Err (*AEGP_SetLong)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ, const A_char* value_keyZ,
                          A_long value);
    A_Err (*AEGP_DeleteEntry)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ,
                              const A_char* value_keyZ);
} AEGP_PersistentDataSuite3;

typedef AEGP_PersistentDataSuite3 AEGP_PersistentDataSuite4;

#define kAEGPFileImportManagerSuite "AEGP File Import Manager Suite"
#define kAEGPFileImportManagerSuiteVersion3 3

typedef struct AEGP_FileImportManagerSuite3 {
    /* Gives a new flavor id; the name is code page 1252 text. */
    A_Err (*AEGP_RegisterImportFlavor)(const A_char* nameZ, AE_FIM_ImportFlavorRef* flavorP);
    A_Err (*AEGP_RegisterImportFlavorFileTypes)(AE_FIM_ImportFlavorRef flavor, A_long num_file_kinds,
                                                const AEIO_FileKind* file_kinds, A_long num_extensions,
                                                const AEIO_FileExtension* extensions);
    A_Err (*AEGP_RegisterImportFlavorImportCallbacks)(AE_FIM_ImportFlavorRef flavor, A_long import_flags,
                                                      const AE_FIM_ImportCallbacks* callbacks);
} AEGP_FileImportManagerSuite3;

#define kPFAppSuite "PF AE App Suite"
#define kPFAppSuiteVersion1 1
#define kPFAppSuiteVersion6 6
#define kPFAppSuiteVersion7 7

#define PF_APP_MAX_PERS_LEN 63
#define PF_APP_LANG_TAG_SIZE 6

typedef struct PF_AppPersonalTextInfo {
    A_char name[PF_APP_MAX_PERS_LEN + 1];
    A_char org[PF_APP_MAX_PERS_LEN + 1];
    A_char serial_str[PF_APP_MAX_PERS_LEN + 1];
} PF_AppPersonalTextInfo;

/* All versions of the application suite share this layout. */
typedef struct PFAppSuite7 {
    A_Err (*PF_GetPersonalInfo)(PF_AppPersonalTextInfo* ptiP);
    /* A tag such as "en_US", zero-terminated. */
    A_Err (*PF_AppGetLanguage)(A_char lang_tagZ[PF_APP_LANG_TAG_SIZE]);
    /* cancel_strZ0 may be null (a default text), indeterminateB is 0 for a bar. */
    A_Err (*PF_CreateNewAppProgressDialog)(const A_UTF16Char* titleZ, const A_UTF16Char* cancel_strZ0,
                                           PF_Boolean indeterminateB, PF_AppProgressDialogP* dialogP);
    /* Returns PF_Interrupt_CANCEL once the user has cancelled. */
    A_Err (*PF_AppProgressDialogUpdate)(PF_AppProgressDialogP dialog, A_long countL, A_long totalL);
    A_Err (*PF_DisposeAppProgressDialog)(PF_AppProgressDialogP dialog);
    /* Non-zero in *render_enginePB when the host runs as a render engine only, with no user. */
    A_Err (*PF_IsRenderEngine)(PF_Boolean* render_enginePB);
} PFAppSuite7;

typedef PFAppSuite7 PFAppSuite1;
typedef PFAppSuite7 PFAppSuite6;

#define kPFANSISuite "PF ANSI Suite"
#define kPFANSISuiteVersion1 1

typedef struct PF_ANSICallbacksSuite1 {
    A_FpLong (*atan)(A_FpLong);
    A_FpLong (*atan2)(A_FpLong y, A_FpLong x);
    A_FpLong (*ceil)(A_FpLong);
    A_FpLong (*cos)(A_FpLong);
    A_FpLong (*exp)(A_FpLong);
    A_FpLong (*fabs)(A_FpLong);
    A_FpLong (*floor)(A_FpLong);
    A_FpLong (*fmod)(A_FpLong x, A_FpLong y);
    A_FpLong (*hypot)(A_FpLong x, A_FpLong y);
    A_FpLong (*log)(A_FpLong);
    A_FpLong (*log10)(A_FpLong);
    A_FpLong (*pow)(A_FpLong x, A_FpLong y);
    A_FpLong (*sin)(A_FpLong);
    A_FpLong (*sqrt)(A_FpLong);
    A_FpLong (*tan)(A_FpLong);
    A_FpLong (*asin)(A_FpLong);
    A_FpLong (*acos)(A_FpLong);
} PF_ANSICallbacksSuite1;

#ifdef __cplusplus
}
#endif

#endif
