/* What the host calls in a general plug-in: the entry point, the hooks it
   registers, and the callbacks of an import flavor. */
#ifndef QAE_SDK_AEGP_ENTRY_H
#define QAE_SDK_AEGP_ENTRY_H

#include "sdk/ae_enums.h"
#include "sdk/ae_types.h"
#include "sdk/sp_basic.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(_WIN32)
#define AEGP_EXPORT __declspec(dllexport)
#else
#define AEGP_EXPORT __attribute__((visibility("default")))
#endif

/* The name under which the host looks the entry point up in the library. */
#define AEGP_ENTRY_POINT_NAME "EntryPointFunc"

/* Called once after the library is loaded; plugin_id is the id the host gave
   this plug-in, global_refconP may receive a refcon for later hooks. */
typedef A_Err (*AEGP_EntryPointFunc)(SPBasicSuite* pica, A_long major_version, A_long minor_version,
                                     AEGP_PluginID plugin_id, AEGP_GlobalRefcon* global_refconP);

/* Called for every menu command; the hook sets *handledPB when it acted. */
typedef A_Err (*AEGP_CommandHook)(AEGP_GlobalRefcon plugin_refcon, AEGP_CommandRefcon refcon,
                                  AEGP_Command command, AEGP_HookPriority hook_priority,
                                  A_Boolean already_handledB, A_Boolean* handledPB);

/* Called before the host shows a menu, to enable or disable commands. */
typedef A_Err (*AEGP_UpdateMenuHook)(AEGP_GlobalRefcon plugin_refcon, AEGP_UpdateMenuRefcon refcon,
                                     AEGP_WindowType active_window);

/* Called once when the host shuts down. */
typedef A_Err (*AEGP_DeathHook)(AEGP_GlobalRefcon plugin_refcon, AEGP_DeathRefcon refcon);

/* Import flavors. A flavor id is given by the host; this value means none. */
typedef A_long AE_FIM_ImportFlavorRef;
#define AE_FIM_ImportFlavorRef_NONE ((AE_FIM_ImportFlavorRef)(-2147483647 - 1))

/* A file kind: two words, the first holding the extension's letters in file
   order, the second -1 when the kind is given by extension only. */
typedef struct AEIO_FileKind {
    A_u_long type;
    A_long creator;
} AEIO_FileKind;

/* An extension with its dot, zero-padded to eight bytes (".ory"). */
typedef struct AEIO_FileExtension {
    A_char dot_extension[8];
} AEIO_FileExtension;

/* Import flags. */
enum {
    AE_FIM_ImportFlag_NONE = 0,
    AE_FIM_ImportFlag_COMP = 2 /* the import makes a composition */
};

/* Both callbacks get the file's path as zero-terminated UTF-16.
   Verify returns 0 when the file can be imported. */
typedef A_Err (*AE_FIM_VerifyImportableCB)(const A_UTF16Char* file_pathZ, AE_FIM_Refcon refcon);
typedef A_Err (*AE_FIM_ImportFileCB)(const A_UTF16Char* file_pathZ, AE_FIM_Refcon refcon);

typedef struct AE_FIM_ImportCallbacks {
    AE_FIM_Refcon refcon;
    AE_FIM_ImportFileCB import_cb;
    AE_FIM_VerifyImportableCB verify_cb;
} AE_FIM_ImportCallbacks;

#ifdef __cplusplus
}
#endif

#endif
