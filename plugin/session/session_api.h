/* The render session's interface for callers in the plug-in's process, exported from the
   plug-in library as plain C functions (look them up by name after loading it).

   A caller makes its own session object (a command object of the family, with its own map
   of renders), selects a render by a 32-bit id and works on that current render. The three
   commands StopRender, CloseRender and EndSession run on process-wide command objects of
   their own; each reaches only the renders that its object selected.

   The engine must run first: QuillonSessionStartEngine starts it as the export command
   does, from the engine's install folder beside the host's application folder. Before the
   host unloads the plug-in, a caller frees its session objects and the command objects. */
#ifndef QAE_PLUGIN_SESSION_SESSION_API_H
#define QAE_PLUGIN_SESSION_SESSION_API_H

#include <stdbool.h>
#include <stdint.h>

#include "sdk/aegp_entry.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct QuillonRenderSession QuillonRenderSession;

/* Gets `count` pixels of line `y` from pixel `x`: four channels (red, green, blue, alpha)
   of `bytesPerChannel` bytes each, valid during the call only. */
typedef void (*QuillonFrameLineCallback)(void* refcon, int32_t x, int32_t y, int32_t count, int32_t bytesPerChannel,
                                         const uint8_t* pixels);

/* Starts the engine and waits until it runs (at most 60 seconds); true when it runs. The
   plug-in's entry point must have run. */
AEGP_EXPORT bool QuillonSessionStartEngine(void);

/* A caller's session object; null when the engine does not run or memory ran out. */
AEGP_EXPORT QuillonRenderSession* QuillonSessionNew(void);
/* Stops every render of the object and frees it with what it holds. */
AEGP_EXPORT void QuillonSessionFree(QuillonRenderSession* session);

/* Operations on the current render; false without one. */
AEGP_EXPORT bool QuillonSessionSelectRender(QuillonRenderSession* session, uint32_t id);
/* Makes the scene file at `path` (UTF-8) the render's document. */
AEGP_EXPORT bool QuillonSessionOpenDocument(QuillonRenderSession* session, const char* path);
/* Sets up a frame of `width` x `height` at 1, 2 or 4 bytes a channel and renders it on
   the render's thread unless the last picture is still good. */
AEGP_EXPORT bool QuillonSessionPrepareRender(QuillonRenderSession* session, int32_t width, int32_t height,
                                             int32_t bytesPerChannel, bool option6014, bool normalPriority);
/* The frame in whole lines; also while the render runs (`running` says so). */
AEGP_EXPORT bool QuillonSessionReadFrame(QuillonRenderSession* session, QuillonFrameLineCallback callback,
                                         void* refcon, bool* running);
/* The runs of pixels that differ from the frame last read whole. */
AEGP_EXPORT bool QuillonSessionReadFrameChanges(QuillonRenderSession* session, QuillonFrameLineCallback callback,
                                                void* refcon, bool* running);
/* Any pointer may be null. */
AEGP_EXPORT bool QuillonSessionGetRenderState(QuillonRenderSession* session, bool* running, int32_t* result,
                                              double* progress, int32_t* stage);
AEGP_EXPORT bool QuillonSessionStopCurrentRender(QuillonRenderSession* session);
AEGP_EXPORT bool QuillonSessionCloseDocument(QuillonRenderSession* session);
AEGP_EXPORT bool QuillonSessionReleaseRender(QuillonRenderSession* session, bool free);

/* Files the render's materials may use, by name (UTF-8). With `toMemory` the render takes
   over `*data`, which must come from malloc, and `*data` becomes null; without it the bytes
   are written to the file `name`, or to the engine's "tex" folder for a name without a
   folder. A picture's `format` word: bit 0 alpha first in each pixel, bits 0x30 the channel
   size (0x10 16 bits, 0x20 32 bits), the low bits the channels. */
AEGP_EXPORT bool QuillonSessionSendFile(QuillonRenderSession* session, const char* name, void** data, int64_t size,
                                        bool toMemory);
AEGP_EXPORT bool QuillonSessionSendPicture(QuillonRenderSession* session, const char* name, const void* pixels,
                                           int32_t format, int32_t width, int32_t height, int32_t stride);
AEGP_EXPORT bool QuillonSessionRemoveFile(QuillonRenderSession* session, const char* name);

/* A document for the render, named `name` (UTF-8): the `size` bytes at `data`, or the file
   `name` when `data` is null. The exact name says what it changes: "__updc" the camera,
   "__upda" the camera looked through, "__updd" the view, "__updr" the render settings,
   "__updt" the time, "__updl" the layers, "__upds" and an application number a difference
   merged by unique ids; any other name makes it the whole document. False when the render
   has no document afterwards. */
AEGP_EXPORT bool QuillonSessionUpdateDocument(QuillonRenderSession* session, const char* name, const void* data,
                                              int64_t size);
/* Whether the next prepare renders again; whether a document is open. */
AEGP_EXPORT bool QuillonSessionIsDirty(QuillonRenderSession* session, bool* dirty);
AEGP_EXPORT bool QuillonSessionIsOpen(QuillonRenderSession* session, bool* open);

/* Direct operations on the open document; false without one. The time is a fraction of
   seconds. */
AEGP_EXPORT bool QuillonSessionSetDocumentTime(QuillonRenderSession* session, double numerator, double denominator);
AEGP_EXPORT bool QuillonSessionSetKeepCaches(QuillonRenderSession* session, bool keep);
/* The cameras of the render and active views take place, rotation (radians) and lens
   values (focal length 500, aperture 1006, parameter 1000, projection 1001); `makeNew`
   gives each view a new camera first. */
AEGP_EXPORT bool QuillonSessionSetCameraValues(QuillonRenderSession* session, const double position[3],
                                               const double rotation[3], float focalLength, float aperture,
                                               float third, int32_t projection, bool makeNew);
/* The views look through the camera with this unique id of application `applicationId`;
   false when no camera has it. */
AEGP_EXPORT bool QuillonSessionSelectCamera(QuillonRenderSession* session, int32_t applicationId, const void* id,
                                            int32_t size);
/* Switches on the layers at `indices` (depth-first from 0), every other one off, and
   shows or hides the objects on no layer. */
AEGP_EXPORT bool QuillonSessionSendLayerList(QuillonRenderSession* session, const int32_t* indices, int32_t count,
                                             bool objectsWithoutLayerVisible);
/* The same with the layers given by `count` markers of 16 bytes each. */
AEGP_EXPORT bool QuillonSessionSetLayerStates(QuillonRenderSession* session, const uint8_t* markers, int32_t count,
                                              bool objectsWithoutLayerVisible);
/* Makes the object with this unique id of application `applicationId` active (`mode` 0
   makes it the only one); the first active object then takes a position as the offset of
   its local matrix. Like the setters below, the second leaves a running render and the
   need to render again to the caller. */
AEGP_EXPORT bool QuillonSessionSelectObject(QuillonRenderSession* session, int32_t applicationId, const void* id,
                                            int32_t size, int32_t mode);
AEGP_EXPORT bool QuillonSessionSetActivePosition(QuillonRenderSession* session, const double position[3]);
/* The object with the 16-byte `marker` takes a world position, rotation (radians, in
   `order`) or scale. These leave a running render and the need to render again to the
   caller. */
AEGP_EXPORT bool QuillonSessionSetObjectPosition(QuillonRenderSession* session, const uint8_t marker[16],
                                                 const double position[3]);
AEGP_EXPORT bool QuillonSessionSetObjectRotation(QuillonRenderSession* session, const uint8_t marker[16],
                                                 const double rotation[3], int32_t order);
AEGP_EXPORT bool QuillonSessionSetObjectScale(QuillonRenderSession* session, const uint8_t marker[16],
                                              const double scale[3]);

/* The preparation steps: the prepare message to the objects and the scene hook that want
   it, and one copy of the document made and freed at once. Each stops the render first and
   gives false in every case. */
AEGP_EXPORT bool QuillonSessionRunHookMessages(QuillonRenderSession* session);
AEGP_EXPORT bool QuillonSessionCopyDocumentOnce(QuillonRenderSession* session);
/* Moves the render view's camera so that it sees the whole scene (the engine's framing
   `mode`); the picture is then out of date. `position` and `rotation` (radians), when not
   null, get the camera's world values; they are left alone without an open document or a
   camera, which still gives true. */
AEGP_EXPORT bool QuillonSessionFrameView(QuillonRenderSession* session, int32_t mode, double position[3],
                                         double rotation[3]);
/* Write the frame range (times as fractions of seconds over one `denominator`) and the
   output size into the render's active render settings; a width or height not above 0
   becomes 1. These leave a running render and the need to render again to the caller. */
AEGP_EXPORT bool QuillonSessionSetFrameRange(QuillonRenderSession* session, int32_t sequence, double rate,
                                             double fromNumerator, double toNumerator, double denominator,
                                             int32_t value);
AEGP_EXPORT bool QuillonSessionSetOutputSize(QuillonRenderSession* session, double width, double height,
                                             double pixelAspect, double filmAspect);
/* The output size as the active render settings hold it; any pointer may be null. */
AEGP_EXPORT bool QuillonSessionGetOutputSize(QuillonRenderSession* session, double* width, double* height,
                                             double* pixelAspect, double* filmAspect);

/* Gets one path of a list, in UTF-8, valid during the call only. */
typedef void (*QuillonPathCallback)(void* refcon, const char* path);
/* Each file the open document needs, a relative one taken from the document's folder;
   true, with no call, without a document. */
AEGP_EXPORT bool QuillonSessionCollectAssets(QuillonRenderSession* session, QuillonPathCallback callback,
                                             void* refcon);
/* Each picture the open document's materials name, as named; false without an open
   document. */
AEGP_EXPORT bool QuillonSessionCollectTextures(QuillonRenderSession* session, QuillonPathCallback callback,
                                               void* refcon);

/* The three commands; see plugin/session/session_commands.h for their results. */
AEGP_EXPORT int32_t QuillonSessionStopRender(uint32_t id);
AEGP_EXPORT int32_t QuillonSessionCloseRender(uint32_t id);
AEGP_EXPORT int32_t QuillonSessionEndSession(uint32_t id);
AEGP_EXPORT void QuillonSessionFreeThreads(void);

/* True when nobody accepts connections on 127.0.0.1:`port`. */
AEGP_EXPORT bool QuillonSessionIsPortFree(uint16_t port, bool* addressFree);

#ifdef __cplusplus
}
#endif

#endif
