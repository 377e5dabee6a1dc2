// The state of the running host: the project it has open, what the user has
// selected, what plug-ins registered, and every handle it has given out.
// Suites are plain C functions, so this state is one global, `g_host`.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "aehost/core/handle_table.h"
#include "aehost/model/project.h"
#include "aehost/model/shape_evaluation.h"
#include "aehost/model/text_characters.h"
#include "sdk/aegp.h"

namespace aehost {

struct MemBlock {
    std::vector<char> bytes;
    int locks = 0;
    AEGP_PluginID owner = 0;
    std::string what;
};

// What a stream handle stands for: a layer stream, the markers of a layer or
// of a composition, the source text of a text layer, or the outline of a mask.
enum class StreamTarget { Layer, LayerMarkers, CompMarkers, SourceText, MaskOutline };

struct StreamRef {
    StreamTarget target = StreamTarget::Layer;
    int compId = 0;
    int layerId = 0;
    int streamId = 0;  // AEGP_LayerStream
    int maskIndex = 0;  // a mask's outline: the mask's zero-based index on its layer
};

// A mask handle: the mask by its layer and its zero-based index there.
struct MaskRef {
    int layerId = 0;
    int index = 0;
};

// An outline value as the mask outline and path data suites read it: a contour at one time.
struct OutlineValue {
    PathShape shape;
};

// A segment length prepared on an outline; it goes when its outline goes.
struct SegmentPrep {
    std::uintptr_t outline = 0;
    int segment = 0;
    double length = 0.0;
};

// A shape layer evaluated at one time, as the shape suites hand it out. Its items are valid
// while it lives; the handles given for them go with it.
struct ShapeValue {
    std::vector<ShapeItem> items;
    std::vector<std::uintptr_t> itemHandles;
};

struct ShapeItemRef {
    std::uintptr_t shape = 0;
    std::size_t index = 0;
};

// The contours of an item as outline values, one each, read like text outlines.
struct ShapeOutlines {
    std::vector<std::uintptr_t> outlines;
};

// The identity of a shape's form (ShapeFormIdentity).
struct ShapeIdentity {
    std::string form;
};

// A key waiting for AEGP_EndAddKeyframes; times in the stream's own time.
struct PendingKey {
    double time = 0.0;
    bool hasValue = false;
    Value value;
    Marker marker;
};

struct AddKeyframesBatch {
    std::uintptr_t stream = 0;
    std::vector<PendingKey> keys;
};

struct ProgressDialog {
    std::string title;
    int shownPercent = -1;
};

// What an import has made so far, shown as a running count while the
// flavor works; `file` is empty when no import runs.
struct ImportProgress {
    std::string file;
    int layers = 0;
    long long keyframes = 0;
};

struct MenuCommand {
    AEGP_Command id = 0;
    AEGP_PluginID owner = 0;
    bool inserted = false;
    std::string text;  // UTF-8
    AEGP_MenuID menu = AEGP_Menu_NONE;
    bool enabled = true;
};

struct CommandHookEntry {
    AEGP_PluginID plugin = 0;
    AEGP_HookPriority priority = AEGP_HP_AfterAE;
    AEGP_Command command = 0;  // 0: every command
    AEGP_CommandHook hook = nullptr;
    AEGP_CommandRefcon refcon = nullptr;
};

struct UpdateMenuHookEntry {
    AEGP_PluginID plugin = 0;
    AEGP_UpdateMenuHook hook = nullptr;
    AEGP_UpdateMenuRefcon refcon = nullptr;
};

struct DeathHookEntry {
    AEGP_PluginID plugin = 0;
    AEGP_DeathHook hook = nullptr;
    AEGP_DeathRefcon refcon = nullptr;
};

struct ImportFlavor {
    AE_FIM_ImportFlavorRef ref = AE_FIM_ImportFlavorRef_NONE;
    std::string name;                     // UTF-8
    std::vector<std::string> extensions;  // lower case, without the dot
    bool hasCallbacks = false;
    AE_FIM_ImportCallbacks callbacks{};
    A_long flags = 0;
};

struct PluginRecord {
    AEGP_PluginID id = 0;
    std::string name;
    AEGP_GlobalRefcon refcon = nullptr;
};

// Runs ExtendScript text; on failure `error` says why.
using ScriptRunner = std::function<bool(const std::string& script, std::string* result, std::string* error)>;

struct Host {
    Project* project = nullptr;
    int activeItemId = -1;  // -1: nothing active
    int activeLayerId = 0;  // 0: no single selected layer
    double currentTime = 0.0;  // composition seconds

    std::string appDir;  // the application folder, as AEGP_GetPluginPaths gives it
    std::map<AEGP_PluginID, std::string> pluginDirs;
    std::string language = "en_US";
    PF_AppPersonalTextInfo personal{};
    bool quiet = false;
    bool verbose = false;      // trace each step on standard error (trace.h)
    bool progressBar = false;  // draw progress on standard error
    ImportProgress importing;  // the running count of an import (progress.h)
    int cancelProgressAt = -1;  // the user presses Cancel once progress reaches this percent; -1: never

    ScriptRunner runScript;
    std::vector<std::string> transcript;  // every message the plug-ins showed
    std::vector<std::string> misuse;      // every refused call, as reported
    std::set<std::string> expressionErrors;  // told once each, not once a frame
    std::vector<std::string> undoStack;

    std::map<std::string, std::map<std::string, std::string>> preferences;

    std::vector<PluginRecord> plugins;
    std::vector<MenuCommand> commands;
    std::vector<CommandHookEntry> commandHooks;
    std::vector<UpdateMenuHookEntry> updateMenuHooks;
    std::vector<DeathHookEntry> deathHooks;
    std::vector<ImportFlavor> flavors;
    AEGP_Command nextCommand = 1;
    AEGP_PluginID nextPluginId = 1;

    bool memReporting = false;
    HandleTable<MemBlock> memory{HandleKind::Memory};
    std::vector<std::uintptr_t> freedMemory;  // to tell a double free from a wrong handle
    HandleTable<StreamRef> streams{HandleKind::Stream};
    HandleTable<Marker> markers{HandleKind::Marker};
    HandleTable<TextDocument> textDocuments{HandleKind::TextDocument};  // source text values
    HandleTable<MaskRef> masks{HandleKind::Mask};
    HandleTable<OutlineValue> outlines{HandleKind::Outline};  // mask outline values
    HandleTable<SegmentPrep> segmentPreps{HandleKind::Outline};
    HandleTable<ShapeValue> shapes{HandleKind::Shape};
    HandleTable<ShapeItemRef> shapeItems{HandleKind::Shape};
    HandleTable<ShapeOutlines> shapeOutlines{HandleKind::Shape};
    HandleTable<ShapeIdentity> shapeIdentities{HandleKind::Shape};
    HandleTable<TextCharacter> textCharacters{HandleKind::Shape};  // characters of a laid-out text
    HandleTable<AddKeyframesBatch> keyBatches{HandleKind::AddKeyframes};
    HandleTable<ProgressDialog> progress{HandleKind::Progress};

    std::map<std::string, int> acquiredSuites;  // "name/version" -> acquisitions not released
};

extern Host g_host;

// Back to a host with nothing open and nothing registered.
void ResetHost();

// A message for the user: standard error and the transcript.
void ShowMessage(const std::string& text);

// A call the host refused because the plug-in passed something wrong; told on
// standard error, kept for the report at exit. Returns `err`.
A_Err Refuse(const char* call, const std::string& why, A_Err err = A_Err_PARAMETER);

}  // namespace aehost
