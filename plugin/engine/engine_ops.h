// The one declaration of what the engine offers: opaque scene types, the value
// objects whose storage the caller provides, the 37 tables of operations in the
// order in which the engine hands them over, the extension libraries found by id,
// and the entry points by which the engine is started, tested and shut down.
// The plug-in reaches the engine only through these tables; the engine
// implements exactly this header.
#pragma once

#include <cstddef>
#include <cstdint>

#include "plugin/engine/engine_values.h"

// ---------------------------------------------------------------------------
// Opaque scene types. Pointers only; no field is ever read by the caller.
// They derive from SceneNode so that a BaseObject* passes where a node is asked.
struct SceneNode {
  SceneNode() = delete;
};
struct BaseDocument : SceneNode {};
struct BaseObject : SceneNode {};
struct BaseTag : SceneNode {};
struct Material : SceneNode {};
struct BaseShader : SceneNode {};
struct SceneLayer : SceneNode {};      // an entry of the document's layer list
struct RenderData : SceneNode {};      // a render settings node
struct TimelineMarker : SceneNode {};  // an entry of the document's marker list
struct AnimTrack : SceneNode {};
struct AnimCurve : SceneNode {};
struct AnimKey : SceneNode {};
struct BaseView;        // an editor view of a document
struct SceneFile;       // an open binary scene file
struct LinkHolder;      // a link from a value to a node
struct ExtensionRecord; // what FindExtension gives

// ---------------------------------------------------------------------------
// Value objects: the caller provides the storage, the engine constructs,
// fills and destructs them.

// One typed value. Whole numbers (kind 15) live in payload.int32, floats
// (kind 19) in payload.float64: a caller may set those two kinds itself. Every
// other kind points into engine memory and is handled by table Gd. Kind 0 is
// the empty value.
struct DataValue {
  int32_t kind;
  int32_t reserved;
  union {
    int32_t int32;
    int64_t int64;
    double float64;
    void* object;
  } payload;
};
static_assert(sizeof(DataValue) == 16, "DataValue is one 32-bit kind and one 64-bit payload");

// Kinds of DataValue beyond the numbered ones of the scene identifiers.
constexpr int32_t DataKind_Empty = 0;
constexpr int32_t DataKind_Bool = 400007001;
constexpr int32_t DataKind_Int64 = 400007002;
constexpr int32_t DataKind_Filename = 400007003;
constexpr int32_t DataKind_Link = 400007004;
constexpr int32_t DataKind_Container = 400007005;  // a nested ParamContainer
// An entry of a document's texture list (GetTextureList): a path, read with Gd GetFilename.
constexpr int32_t DataKind_TextureFile = 131;

// A reference-counted UTF-16 text; an empty one may hold a null impl.
struct EngineString {
  void* impl;
};

// A path; an empty one may hold a null impl.
struct Filename {
  void* impl;
};

// One level of a parameter path. Levels are equal when id is equal and,
// where both are non-zero, kind and creator are equal.
struct ParamLevel {
  int32_t id;
  int32_t kind;
  int32_t creator;
};

// The path of a parameter. A constant path is written in place as a pointer
// to a static array and a count, with capacity 0: the engine never frees
// levels it does not own (capacity > 0 after ParamIdAssign).
struct ParamId {
  const ParamLevel* levels;
  int32_t count;
  int32_t capacity;
};

// A map from a 32-bit id to a DataValue. A local one is made with
// InitContainer and destructed with FreeContainer; the one that
// GetDataInstance gives belongs to its node.
struct ParamContainer {
  void* impl;
  int32_t id;
  int32_t reserved;
};

// ---------------------------------------------------------------------------
// Engine constants the callers pass or test.
constexpr int32_t kSceneFileIdent = 0x4F525936;  // "ORY6", big-endian characters
constexpr int32_t kSceneFileModeRead = 1;
constexpr int32_t kSceneFileModeWrite = 2;
constexpr int32_t kStringEncodingLatin1 = 1;
constexpr int32_t kStringEncodingUtf8 = 4;
constexpr int32_t kTrackKindFloat = 1;
constexpr int32_t kExtensionLookupLevel = 17;
constexpr uint32_t kInfoBitFromCache = 0x200;
constexpr uint32_t kInfoBitTrackOff = 0x20000;
constexpr int32_t kNodeBitDocumentLayers = 32;  // on a document: a layer with LayerParam_DocumentBit was inserted
constexpr int32_t kNodeBitKeyLinear = 41;          // on a key: interpolates in a straight line to the next
constexpr int32_t kNodeBitKeyTangentsLocked = 46;  // on a key: its tangents stay as they are when neighbours move
constexpr int32_t kQuillonApiVersion = 2024200;

// ---------------------------------------------------------------------------
// The 37 tables. Each lists its operations in the table's own order.

// Identity, lists and records of the render session's operations.
struct NodeArray;   // a list of nodes (AllocNodeArray)
struct MemoryFile;  // a buffer that a scene file is written into
struct SceneStateTree;  // the scene states of a document (GetStateData)
// The 16 bytes that every node carries.
struct NodeMarker {
  uint8_t bytes[16];
};
// Two nodes handed over together: a placeholder and the element it stands for.
struct NodePair {
  SceneNode* first;
  SceneNode* second;
};
static_assert(sizeof(NodePair) == 16, "a pair is two pointers");
// A layer's switches: the second and third say whether its objects are seen
// in the editor and in renders (LayerParam_Visible, LayerParam_Render).
struct LayerRecord {
  int32_t solo;
  int32_t view;
  int32_t render;
  int32_t locked;
  int32_t animation;
};
// Kinds of IsKindOf and GetBranchKind beyond the type numbers of nodes.
constexpr int32_t NodeKind_Object = 5155;
constexpr int32_t NodeKind_Tag = 5694;
constexpr int32_t NodeKind_Material = 5702;
constexpr int32_t NodeKind_Shader = 5707;
constexpr int32_t NodeKind_Document = 110059;
constexpr int32_t NodeKind_RenderSettings = 110304;
constexpr int32_t kMessageMergePlaceholder = 0x40000004;
constexpr int32_t kActiveObjectNew = 0;
constexpr int32_t kActiveObjectAdd = 1;
constexpr int32_t kActiveObjectRemove = 2;
// A document's parameter that is its current time (GetDocumentTime), a BaseTime.
constexpr int32_t DocParam_Time = 1000;
constexpr int32_t kSceneFileVersionCurrent = 25117;

// A picture of the engine: colour channels, with an optional alpha bitmap.
struct Bitmap;
// An engine thread (table Bt).
struct EngineThread;
// The progress of a render: value from 0 to 1, the stage, the caller's object.
using RenderProgress = void (*)(double value, int32_t stage, void* object);

// Results of RenderDocument.
constexpr int32_t kRenderResultOk = 0;
constexpr int32_t kRenderResultOutOfMemory = 1;
constexpr int32_t kRenderResultAssetMissing = 2;
constexpr int32_t kRenderResultEvaluationFailed = 3;  // the document cannot be evaluated
constexpr int32_t kRenderResultUserBreak = 6;
constexpr int32_t kRenderResultNoView = 8;  // no render view, or a view without a camera
constexpr int32_t kRenderResultNoProject = 1000;  // no document
constexpr int32_t kRenderResultNoOutput = 1002;   // no bitmap
// Stages handed to the progress of a render.
constexpr int32_t kRenderStagePrepare = 1;
constexpr int32_t kRenderStageRender = 2;
constexpr int32_t kRenderStageDone = 3;

// Folders of GetEngineFolder.
constexpr int32_t kEngineFolderInstall = 0;  // where the engine library lies
constexpr int32_t kEngineFolderUser = 8;     // the engine's writable folder of the user

struct ORYOS_Ge {
  bool (*FileExists)(const Filename* file, int32_t reserved);
  const ExtensionRecord* (*FindExtension)(int32_t id, int32_t level, const void** cacheSlot);
  // table gets the library's table of functions; libraryId and tableSize
  // repeat its two leading 32-bit words.
  bool (*GetExtensionTable)(const ExtensionRecord* record, const void** table, int32_t* libraryId,
                            int32_t* tableSize);
  void (*Sleep)(int32_t milliseconds);
  // Replaces the document's content with the file's; error gets a message.
  bool (*LoadFileIntoDocument)(BaseDocument* document, const Filename* file, int32_t flags, void* reserved1,
                               void* reserved2, EngineString* error);
  // The render session's services.
  // One line of UTF-8 text on the engine's console (standard error).
  void (*ConsolePrint)(const char* text);
  bool (*DeleteFile)(const Filename* file, int32_t reserved);
  // Drops what renders keep between frames.
  void (*FlushCaches)();
  // Forgets a texture that a document's materials resolved, so that the next
  // render looks it up again.
  void (*InvalidateTexture)(const Filename* documentPath, const EngineString* textureName, const Filename* reserved);
  // A folder of the engine by kind (kEngineFolder...).
  void (*GetEngineFolder)(Filename* out, int32_t kind);
  // Renders the document at its time through its render view into bitmap (and
  // its alpha channel) on the calling thread. thread, when not null, is asked
  // for a break after every line. The result is a kRenderResult... code.
  int32_t (*RenderDocument)(BaseDocument* document, int32_t reserved1, RenderProgress progress, void* object,
                            Bitmap* bitmap, const ParamContainer* settings, int32_t flags, EngineThread* thread,
                            int32_t reserved2);
  // Moves the render view's camera so that it sees the whole scene.
  void (*FrameCamera)(BaseDocument* document, int32_t mode);
  // Frees a document with all it holds (as FreeNode).
  void (*FreeDocument)(BaseDocument* document);
  // assets, made with InitContainer, gets the path of each file the document needs under
  // 0, 1, 2 ...: with kAssetsPictures in flags, the picture of every bitmap shader of its
  // materials, once each, in the order of the materials. A relative path is taken from
  // folder when that is filled. False for a null document or assets.
  bool (*GetAssets)(const BaseDocument* document, int32_t reserved1, ParamContainer* assets, const Filename* folder,
                    int32_t flags, int32_t reserved2);
};
// GetAssets: list the pictures of the materials (the only assets this engine knows).
constexpr int32_t kAssetsPictures = 256;

struct ORYOS_Sh {};

struct ORYOS_Hf {
  bool (*Open)(SceneFile* file, int32_t ident, const Filename* path, int32_t mode, int32_t reserved);
  bool (*Close)(SceneFile* file);
  SceneFile* (*AllocSceneFile)();
  void (*FreeSceneFile)(SceneFile* file);
  // 0 when every write since Open succeeded, else an error number.
  int32_t (*GetFileError)(const SceneFile* file);
  // The file version of the 3D application to write, before Open: versions
  // below kSceneFileVersionCurrent are written without what they lack.
  void (*SetWriterVersion)(SceneFile* file, int32_t version);
};

struct ORYOS_Bc {
  void (*InitContainer)(ParamContainer* container, int32_t id, int32_t reserved);
  void (*FreeContainer)(ParamContainer* container);
  void (*SetBool)(ParamContainer* container, int32_t id, bool value);
  void (*SetInt32)(ParamContainer* container, int32_t id, int32_t value);
  void (*SetString)(ParamContainer* container, int32_t id, const EngineString* value);
  int32_t (*FindIndex)(const ParamContainer* container, int32_t id, int32_t reserved);
  SceneNode* (*GetLink)(const ParamContainer* container, int32_t id, const BaseDocument* document, int32_t reserved);
  void (*SetLink)(ParamContainer* container, int32_t id, SceneNode* target);
  DataValue* (*GetData)(ParamContainer* container, int32_t id);
  void (*InsertData)(ParamContainer* container, int32_t id, const DataValue* value);
  void (*SetDataAt)(ParamContainer* container, int32_t id, const DataValue* value);
  void (*SetCustomData)(ParamContainer* container, int32_t id, const DataValue* value);
  void (*SetInt64)(ParamContainer* container, int32_t id, int64_t value);
  int64_t (*GetInt64)(const ParamContainer* container, int32_t id, int64_t fallback);
  double (*GetFloat)(const ParamContainer* container, int32_t id, double fallback);
  bool (*GetBool)(const ParamContainer* container, int32_t id, bool fallback);
  int32_t (*GetInt32)(const ParamContainer* container, int32_t id, int32_t fallback);
  EngineString* (*GetString)(const ParamContainer* container, EngineString* out, int32_t id,
                             const EngineString* fallback);
  BaseTime* (*GetTime)(const ParamContainer* container, BaseTime* out, int32_t id, const BaseTime* fallback);
  bool (*ContainersEqual)(const ParamContainer* a, const ParamContainer* b);
  void (*SetFilename)(ParamContainer* container, int32_t id, const Filename* value);
  // out gets a copy of the path, or is emptied when the id holds none; false then.
  bool (*GetFilename)(const ParamContainer* container, int32_t id, Filename* out);
  // Stores a copy of value under id (DataKind_Container).
  void (*SetContainer)(ParamContainer* container, int32_t id, const ParamContainer* value);
  // out, made with InitContainer, gets a copy of the container under id; false
  // (and out left as it was) when id holds none.
  bool (*GetContainer)(const ParamContainer* container, int32_t id, ParamContainer* out);
};

// A function that the job queue runs on the engine's main thread (St->ExecuteOnMainThread).
using MainThreadJob = void (*)(void* data);
constexpr int32_t kJobNoWait = 0;
constexpr int32_t kJobWaitNoLimit = -1;

struct ORYOS_St {
  // length -1 reads up to the terminating zero.
  void (*SetCString)(EngineString* string, const char* text, int32_t length, int32_t encoding);
  bool (*FindFirst)(const EngineString* string, const EngineString* needle, int32_t* position, int32_t start);
  void (*Delete)(EngineString* string, int32_t start, int32_t count);
  // start -1 and count -1 insert all of other; position = length appends.
  void (*Insert)(EngineString* string, int32_t position, const EngineString* other, int32_t start, int32_t count);
  void (*SubString)(const EngineString* string, EngineString* out, int32_t start, int32_t count);
  int32_t (*GetCStringLength)(const EngineString* string, int32_t encoding);
  void (*GetCString)(const EngineString* string, char* buffer, int32_t size, int32_t encoding);
  int32_t (*Compare)(const EngineString* a, const EngineString* b);
  bool (*FindChar)(const EngineString* string, char16_t unit, int32_t* position, int32_t start);
  // The core framework's operations on the same values.
  int32_t (*GetLength)(const EngineString* string);
  void (*Retain)(const EngineString* string);
  // Drops one reference and leaves the value empty.
  void (*Release)(EngineString* string);
  char16_t (*GetUnit)(const EngineString* string, int32_t index);
  void (*SetUnit)(EngineString* string, int32_t index, char16_t unit);
  void (*FromCString)(EngineString* out, const char* text, int32_t encoding);
  void (*FromUtf16)(EngineString* out, const char16_t* units, int32_t count);
  // The core framework's job queue: job(data) runs on the engine's main thread, which serves
  // the queue in order. waitMilliseconds kJobNoWait returns at once, kJobWaitNoLimit when the
  // job has run, a positive value at the latest then (false when it has not run by then; it
  // still runs later). On the main thread itself a job that is waited for runs directly.
  // False for a null job.
  bool (*ExecuteOnMainThread)(MainThreadJob job, void* data, int32_t waitMilliseconds);
  // Whether the calling thread is the engine's main thread.
  bool (*IsMainThread)();
};

// Bitmap depths (AllocBitmapSized) and line formats (ReadBitmapLine,
// WriteBitmapLine) share one scheme: bits 0x30 are the channel size (0: 8-bit
// integer, 0x10: 16-bit integer, 0x20: 32-bit float; 0x30 counts as 8-bit),
// the low nibble without bit 0 the channels (2 and 8: one channel, grey or
// alpha; any other: red, green, blue).
constexpr int32_t kBitmapDepth8 = 5;
constexpr int32_t kBitmapDepth16 = 21;
constexpr int32_t kBitmapDepth32 = 37;
constexpr int32_t kLineFormatRgb8 = 4;
constexpr int32_t kLineFormatRgb16 = 20;
constexpr int32_t kLineFormatRgb32 = 36;
constexpr int32_t kLineFormatAlpha8 = 2;
constexpr int32_t kLineFormatAlpha16 = 18;
constexpr int32_t kLineFormatAlpha32 = 34;
// SaveBitmap's kind of file: PNG. Flags: 1 with the alpha channel, 8 sixteen
// bits a channel, 256 thirty-two bits a channel (written as sixteen).
constexpr int32_t kBitmapSavePng = 1100;
constexpr int32_t kBitmapSaveAlpha = 1;
constexpr int32_t kBitmapSave16 = 8;
constexpr int32_t kBitmapSave32 = 256;
// Bitmap data: the text (kind 130) of the assets a render missed.
constexpr int32_t kBitmapDataMissingAssets = 1019;

struct ORYOS_Bm {
  // An empty bitmap of size 0; InitBitmap gives it pixels.
  Bitmap* (*AllocBitmap)();
  // Frees the bitmap and its alpha channel.
  void (*FreeBitmap)(Bitmap* bitmap);
  int32_t (*GetBitmapWidth)(const Bitmap* bitmap);
  int32_t (*GetBitmapHeight)(const Bitmap* bitmap);
  // 1 on success. file is written whole or not at all.
  int32_t (*SaveBitmap)(const Bitmap* bitmap, const Filename* file, int32_t kind, const ParamContainer* settings,
                        int32_t flags);
  // The alpha channel, made (cleared) when there is none; it belongs to bitmap.
  Bitmap* (*AddAlphaChannel)(Bitmap* bitmap, int32_t reserved, bool straight);
  Bitmap* (*GetAlphaChannel)(const Bitmap* bitmap);
  // A cleared bitmap of that size and depth; null for a size below 1 or above
  // what fits in memory.
  Bitmap* (*AllocBitmapSized)(int32_t width, int32_t height, int32_t depth);
  // A layer of a multipass picture; this engine renders none, so null.
  Bitmap* (*GetLayerBitmap)(Bitmap* bitmap, int32_t a, int32_t b);
  // count pixels of line y from x into buffer, one every pixelBytes bytes, in
  // format. A range outside the bitmap reads nothing.
  void (*ReadBitmapLine)(const Bitmap* bitmap, int32_t x, int32_t y, int32_t count, void* buffer,
                         int32_t pixelBytes, int32_t format, int32_t colour, int32_t reserved);
  // A copy of the bitmap's value id in out, or of fallback when it has none
  // (out empty without a fallback); true when the bitmap had it.
  bool (*GetBitmapData)(const Bitmap* bitmap, DataValue* out, int32_t id, const DataValue* fallback);
  // Gives the bitmap pixels of bits a pixel (8, 16, 32: one channel of 1, 2, 4
  // bytes; 24, 48, 96: three); 1 on success.
  int32_t (*InitBitmap)(Bitmap* bitmap, int32_t width, int32_t height, int32_t bits, int32_t reserved);
  // The reverse of ReadBitmapLine; false when the range is outside.
  bool (*WriteBitmapLine)(Bitmap* bitmap, int32_t x, int32_t y, int32_t count, const void* buffer,
                          int32_t pixelBytes, int32_t format, int32_t reserved);
};
struct ORYOS_Ms {};

// A channel of a material (GetChannel): channel index i is the material's link parameter
// MaterialChannel_Color + i to the channel's shader. It holds while that parameter is neither
// removed nor replaced.
struct MaterialChannel;
// The channel index of the reflection, whose shaders GetReflectionShaders lists.
constexpr int32_t kMaterialChannelReflection = 3;

struct ORYOS_Ba {
  BaseShader* (*AllocShader)(int32_t type);
  // The shader the channel links to; null when it links to none or to no shader.
  BaseShader* (*GetChannelShader)(const MaterialChannel* channel);
};

struct ORYOS_Fn {
  bool (*IsFilled)(const Filename* file);
  void (*GetString)(EngineString* out, const Filename* file);
  void (*SetString)(Filename* file, const EngineString* path);
  void (*GetDirectory)(Filename* out, const Filename* file);
  void (*GetFile)(Filename* out, const Filename* file);
  void (*SetSuffix)(Filename* file, const char* suffix);
  bool (*CheckSuffix)(const Filename* file, const char* suffix);
  void (*SetFile)(Filename* file, const Filename* leaf);
  bool (*FilenameEquals)(const Filename* a, const Filename* b);
  void (*FilenameInit)(Filename* file);
  void (*FilenameFree)(Filename* file);
  void (*FilenameCopy)(const Filename* source, Filename* destination);
  void (*SetFromCString)(Filename* file, const char* path);
  // Memory files. A Filename made a memory file reads from or writes to a
  // buffer instead of the disk; its text is "mfs:/" and a name, which the
  // other operations may change while the text keeps that scheme.
  // Reading: a copy of size bytes of data; with takesOwnership the engine
  // frees data (std::free) at once.
  void (*SetMemoryRead)(Filename* file, const void* data, int64_t size, bool takesOwnership);
  // Writing: what a scene file opened on file writes lands in memory.
  void (*SetMemoryWrite)(Filename* file, MemoryFile* memory);
  MemoryFile* (*AllocMemoryFile)();
  void (*FreeMemoryFile)(MemoryFile* memory);
  // The bytes written so far; valid until the next write or the free.
  void (*GetMemoryFileData)(const MemoryFile* memory, const void** data, int64_t* size);
};

// A file on the disk, written through the engine.
struct DiskFile;
constexpr int32_t kDiskFileWrite = 2;

struct ORYOS_Fl {
  DiskFile* (*AllocFile)();
  // Closes the file: a file opened for writing takes the place of the target
  // only when every write succeeded, else the target stays as it was.
  void (*FreeFile)(DiskFile* file);
  bool (*OpenFile)(DiskFile* file, const Filename* path, int32_t mode, int32_t errorMode, int32_t byteOrder,
                   int32_t type, int32_t creator);
  bool (*WriteFile)(DiskFile* file, const void* data, int64_t size);
};
struct ORYOS_Bf {};
struct ORYOS_Cd {};
struct ORYOS_Cu {};
struct ORYOS_Pr {};

struct ORYOS_Lr {
  // Releases what the engine holds on behalf of the module record given at start.
  void (*FreeModuleResources)(void* moduleRecord);
};

struct ORYOS_Bl {
  int32_t (*GetNodeType)(const SceneNode* node);
  uint32_t (*GetInfoBits)(const SceneNode* node);
  void (*FreeNode)(SceneNode* node);
  bool (*WriteNode)(const BaseDocument* document, SceneFile* file);
  ParamContainer* (*GetDataInstance)(SceneNode* node);
  SceneLayer* (*GetSceneLayer)(const SceneNode* node, const BaseDocument* document);
  void (*SetLayer)(SceneNode* node, SceneLayer* layer);
  AnimTrack* (*FindTrack)(const SceneNode* node, const ParamId* id);
  void (*InsertTrack)(SceneNode* node, AnimTrack* track);
  // The layer's record in document, borrowed until the next GetLayerData on
  // the same thread; null for a node that is no layer of document.
  const LayerRecord* (*GetLayerData)(const SceneLayer* layer, const BaseDocument* document, int32_t reserved);
  bool (*SetLayerData)(SceneLayer* layer, const BaseDocument* document, const LayerRecord* record);
};

struct ORYOS_Tg {
  BaseTag* (*AllocTag)(int32_t type, int32_t reserved);
  void* (*GetDataAddress)(BaseTag* tag);
};

struct ORYOS_Bo {
  BaseObject* (*AllocObject)(int32_t type);
  BaseObject* (*AllocSpline)(int32_t pointCount, int32_t splineKind);
  void (*GetPosition)(const BaseObject* object, Vector* out);
  void (*SetPosition)(BaseObject* object, const Vector* value);
  void (*GetScale)(const BaseObject* object, Vector* out);
  void (*SetScale)(BaseObject* object, const Vector* value);
  void (*GetRotation)(const BaseObject* object, Vector* out);
  void (*SetRotation)(BaseObject* object, const Vector* value);
  const Matrix* (*GetLocalMatrix)(BaseObject* object);
  void (*SetLocalMatrix)(BaseObject* object, const Matrix* value);
  void (*GetGlobalMatrix)(const BaseObject* object, Matrix* out);
  void (*SetGlobalMatrix)(BaseObject* object, const Matrix* value);
  void (*SetOffsetPosition)(BaseObject* object, const Vector* value);
  void (*SetMode)(BaseObject* object, int32_t which, int32_t mode);
  BaseTag* (*GetTag)(const BaseObject* object, int32_t tagType, int32_t index);
  void* (*GetTagData)(BaseObject* object, int32_t tagType, int32_t index);
  int32_t (*GetTagDataCount)(const BaseObject* object, int32_t tagType);
  void (*InsertTag)(BaseObject* object, BaseTag* tag, BaseTag* predecessor);
  BaseObject* (*GetGeneratorCache)(const BaseObject* object);
  BaseObject* (*GetDeformCache)(const BaseObject* object);
  void (*ResizeSpline)(BaseObject* spline, int32_t pointCount, int32_t segmentCount);
  void (*ReleaseCacheCheck)(BaseObject* object);
  void (*SetRotationOrder)(BaseObject* object, int32_t order);
  int32_t (*GetRotationOrder)(const BaseObject* object);
  // Position, scale and rotation (radians, in the object's order) in world space.
  void (*GetAbsolutePosition)(const BaseObject* object, Vector* out);
  void (*SetAbsolutePosition)(BaseObject* object, const Vector* value);
  void (*GetAbsoluteScale)(const BaseObject* object, Vector* out);
  void (*SetAbsoluteScale)(BaseObject* object, const Vector* value);
  void (*GetAbsoluteRotation)(const BaseObject* object, Vector* out);
  void (*SetAbsoluteRotation)(BaseObject* object, const Vector* value);
  // The display mode that SetMode set (0 for an unknown index).
  int32_t (*GetMode)(const BaseObject* object, int32_t which);
  BaseTag* (*GetFirstTag)(const BaseObject* object);
};

struct ORYOS_Bd {
  RenderData* (*AllocRenderData)();
  BaseDocument* (*AllocDocument)();
  BaseObject* (*GetFirstObject)(const BaseDocument* document);
  Material* (*GetFirstMaterial)(const BaseDocument* document);
  RenderData* (*GetFirstSettings)(const BaseDocument* document);
  void (*InsertMaterial)(BaseDocument* document, Material* material, Material* predecessor, int32_t reserved);
  void (*InsertObject)(BaseDocument* document, BaseObject* object, BaseObject* parent, BaseObject* predecessor,
                       int32_t reserved, int32_t undo);
  RenderData* (*GetActiveSettings)(const BaseDocument* document);
  BaseView* (*GetActiveView)(const BaseDocument* document);
  BaseView* (*GetRenderView)(const BaseDocument* document);
  SceneLayer* (*AllocLayer)();
  SceneNode* (*GetLayerRoot)(BaseDocument* document);
  void (*InsertSettings)(BaseDocument* document, RenderData* settings);
  int32_t (*GetViewCount)(const BaseDocument* document);
  bool (*EvaluateDocument)(BaseDocument* document, int32_t thread, int32_t animation, int32_t expressions,
                           int32_t caches, int32_t flags);
  // The document's scene states, for the library kExtensionSceneStates.
  SceneStateTree* (*GetStateData)(BaseDocument* document, int32_t reserved1, int32_t reserved2);
  BaseView* (*GetViewAt)(const BaseDocument* document, int32_t index);
  // The time at which the document is evaluated and rendered.
  BaseTime* (*GetDocumentTime)(BaseDocument* document);
  // Puts settings first among the top-level render settings (without a
  // predecessor) or behind predecessor; it does not become active.
  void (*InsertRenderSettingsAt)(BaseDocument* document, RenderData* settings, RenderData* predecessor,
                                 int32_t reserved);
  void (*SetActiveRenderSettings)(BaseDocument* document, RenderData* settings);
  RenderData* (*GetFirstSettingsChild)(const RenderData* settings);
  // child goes below settings, behind predecessor or last without one.
  void (*InsertSettingsChild)(RenderData* settings, RenderData* child, RenderData* predecessor);
  // The active objects: mode kActiveObjectNew makes object the only one (none for null),
  // kActiveObjectAdd adds it, kActiveObjectRemove takes it away.
  void (*SetActiveObject)(BaseDocument* document, BaseObject* object, int32_t mode);
  // array gets the active objects of the document, in the order they became active.
  void (*GetActiveObjects)(const BaseDocument* document, NodeArray* array);
  // The document's scene hook of that type. This engine has no scene hooks (no extension
  // registers one), so it gives null for every document and type.
  SceneNode* (*FindSceneHook)(const BaseDocument* document, int32_t type);
  // list, made with InitContainer, gets under 0, 1, 2 ... an entry of kind
  // DataKind_TextureFile for each picture the bitmap shaders of the document's materials
  // name, once each, as named. Nothing for a null list or document.
  void (*GetTextureList)(ParamContainer* list, const BaseDocument* document, int32_t reserved1, int32_t reserved2);
};

// Engine threads. The thread calls main(object); the break test of a thread
// asks ThreadBreak first, and then its own testBreak(object).
using EngineThreadMain = void (*)(void* object);
using EngineThreadTestBreak = bool (*)(void* object);
using EngineThreadName = const char* (*)(void* object);
// Both modes start the thread and return at once; a caller that needs the end
// waits with WaitThread. Mode 1 is the one of a render.
constexpr int32_t kThreadStartAsync = 0;
constexpr int32_t kThreadStartRender = 1;
// A priority of 1001 runs the thread behind the process's other threads.
constexpr int32_t kThreadPriorityLow = 1001;

struct ORYOS_Bt {
  EngineThread* (*AllocThread)(EngineThreadMain main, EngineThreadTestBreak testBreak, void* object,
                               EngineThreadName name);
  // Asks the thread to stop and waits for it before freeing.
  void (*FreeThread)(EngineThread* thread);
  // False while the thread still runs.
  bool (*StartThread)(EngineThread* thread, int32_t mode, int32_t priority, int32_t reserved);
  // Asks the thread to stop (ThreadBreak turns true); with wait 1 returns when it has.
  void (*EndThread)(EngineThread* thread, int32_t wait);
  void (*WaitThread)(EngineThread* thread, int32_t reserved);
  // Whether the thread was asked to stop.
  bool (*ThreadBreak)(EngineThread* thread);
  bool (*IsThreadRunning)(EngineThread* thread);
};

struct ORYOS_Mt {
  Material* (*AllocMaterial)(int32_t type);
  // The channel of that index, or null when the material has no link parameter for it.
  MaterialChannel* (*GetChannel)(Material* material, int32_t index);
  // array gets the shaders of the reflection: in this engine it has one layer, so the list
  // holds the shader of channel kMaterialChannelReflection, or nothing. False for a null
  // material or array.
  bool (*GetReflectionShaders)(Material* material, NodeArray* array);
};

struct ORYOS_Tx {};
struct ORYOS_Bs {};
struct ORYOS_Bu {};

struct ORYOS_Br {
  BaseObject* (*GetViewCamera)(const BaseView* view);
  BaseObject* (*GetSceneCamera)(const BaseView* view, const BaseDocument* document);
  void (*SetSceneCamera)(BaseView* view, BaseObject* camera, int32_t reserved);
};

struct ORYOS_Bv {};
struct ORYOS_Nb {};
struct ORYOS_Pl {};
struct ORYOS_Fi {};
struct ORYOS_Pa {};

struct ORYOS_Ln {
  LinkHolder* (*AllocLinkHolder)();
  void (*FreeLinkHolder)(LinkHolder* holder);
  void (*SetLinkTarget)(LinkHolder* holder, SceneNode* target);
  SceneNode* (*GetLinkTarget)(const LinkHolder* holder);
  SceneNode* (*GetLinkTargetIn)(const LinkHolder* holder, const BaseDocument* document, int32_t reserved);
  // Links resolve by a process-wide id: the document and the mode are accepted
  // for the interface and change nothing.
  void (*SetLinkDocument)(LinkHolder* holder, const BaseDocument* document);
  void (*SetLinkMode)(LinkHolder* holder, int32_t mode);
  // The target when it lies in document and IsKindOf(target, kind), else null.
  SceneNode* (*GetLinkTargetOfKind)(const LinkHolder* holder, const BaseDocument* document, int32_t kind);
};

struct ORYOS_Gv {};

struct ORYOS_Gd {
  void (*Free)(DataValue* value);
  bool (*Equals)(const DataValue* a, const DataValue* b);
  int32_t (*GetKind)(const DataValue* value);
  void (*Copy)(DataValue* destination, const DataValue* source, int32_t reserved);
  void (*SetInt32)(DataValue* value, int32_t number);
  void (*SetFloat)(DataValue* value, double number);
  void (*SetVector)(DataValue* value, const Vector* vector);
  void (*SetString)(DataValue* value, const EngineString* string);
  void (*SetFilename)(DataValue* value, const Filename* file);
  void (*SetTime)(DataValue* value, const BaseTime* time);
  void (*SetLinkHolder)(DataValue* value, const LinkHolder* holder);
  int32_t (*GetInt32)(const DataValue* value);
  double (*GetFloat)(const DataValue* value);
  const Vector* (*GetVector)(const DataValue* value);
  const EngineString* (*GetString)(const DataValue* value);
  const BaseTime* (*GetTime)(const DataValue* value);
  const LinkHolder* (*GetLinkHolder)(const DataValue* value);
  void* (*GetCustomData)(DataValue* value, int32_t kind);
  const void* (*GetCustomDataConst)(const DataValue* value, int32_t kind);
  void (*InitCustomData)(DataValue* value, int32_t kind);
  bool (*IsEmpty)(const DataValue* value);
  // Kinds that the operations above do not reach.
  void (*SetBool)(DataValue* value, bool flag);
  bool (*GetBool)(const DataValue* value);
  void (*SetInt64)(DataValue* value, int64_t number);
  int64_t (*GetInt64)(const DataValue* value);
  const Filename* (*GetFilename)(const DataValue* value);
};

struct ORYOS_At {
  int32_t (*GetType)(const SceneNode* node);
  bool (*GetParameter)(const SceneNode* node, const ParamId* id, DataValue* out, int32_t flags);
  bool (*SetParameter)(SceneNode* node, const ParamId* id, const DataValue* value, int32_t flags);
  SceneNode* (*GetNext)(const SceneNode* node);
  SceneNode* (*GetUp)(const SceneNode* node);
  SceneNode* (*GetDown)(const SceneNode* node);
  void (*InsertAfter)(SceneNode* node, SceneNode* predecessor);
  void (*InsertUnder)(SceneNode* node, SceneNode* parent);
  void (*InsertUnderLast)(SceneNode* node, SceneNode* parent);
  void (*Remove)(SceneNode* node);
  BaseDocument* (*GetDocument)(const SceneNode* node);
  SceneNode* (*GetFirstUnderRoot)(const SceneNode* root);
  void (*InsertUnderRoot)(SceneNode* root, SceneNode* node);
  void (*GetName)(const SceneNode* node, EngineString* out);
  void (*SetName)(SceneNode* node, const EngineString* name, bool notify);
  void (*InsertShader)(SceneNode* material, BaseShader* shader, BaseShader* predecessor);
  void (*SetBitFlag)(SceneNode* node, int32_t bit, bool on);
  // Additions of the engine beside what export and import call.
  bool (*GetBitFlag)(const SceneNode* node, int32_t bit);
  SceneNode* (*GetPrev)(const SceneNode* node);
  // A deep copy that keeps markers and unique ids, outside any list (see
  // quillon/ENGINE.md); a document is copied whole. Null for what has no copy.
  SceneNode* (*CloneNode)(const SceneNode* node, int32_t flags, LinkHolder* reserved);
  // destination takes source's name, parameters, tracks (and between objects
  // their tags and transform); it keeps its place, children and identity.
  bool (*CopyNodeTo)(const SceneNode* source, SceneNode* destination, int32_t flags, int32_t reserved);
  bool (*IsKindOf)(const SceneNode* node, int32_t kind);
  // Messages the engine does not know are ignored.
  void (*SendNodeMessage)(SceneNode* node, int32_t id, void* data);
  // kMessageMergePlaceholder with a NodePair: what links to first links to second.
  bool (*SendTreeMessage)(SceneNode* node, int32_t mode, int32_t id, void* data);
  NodeArray* (*AllocNodeArray)();
  void (*FreeNodeArray)(NodeArray* array);
  int32_t (*GetNodeArrayCount)(const NodeArray* array);
  SceneNode* (*GetNodeArrayItem)(const NodeArray* array, int32_t index);
  // array gets the heads of the lists that hang below node; a head's first
  // entry is GetDown(head), its kind GetBranchKind(head).
  bool (*GetBranches)(const SceneNode* node, NodeArray* array, int32_t reserved);
  // Every node has a marker, given on first use and kept in the scene file.
  const NodeMarker* (*GetMarker)(const SceneNode* node);
  bool (*MarkersEqual)(const NodeMarker* a, const NodeMarker* b);
  // What links to from links to to afterwards.
  bool (*MoveLinks)(SceneNode* from, SceneNode* to, int32_t reserved);
  // The bytes that the application applicationId gave the node, borrowed while
  // the node lives unchanged; false and null data without.
  bool (*FindUniqueId)(const SceneNode* node, int32_t applicationId, const void** data, int32_t* size);
  // Additions of the engine: how a client gives the unique id (size 0 removes it),
  // and the kind of a list head of GetBranches (one of NodeKind_...).
  void (*SetUniqueId)(SceneNode* node, int32_t applicationId, const void* data, int32_t size);
  int32_t (*GetBranchKind)(const SceneNode* head);
};

struct ORYOS_CA {
  // Slot 0 is the key's time, which the easing fit and the rebasing read by its place; the
  // named operations of keys, curves and tracks follow it in the table's order.
  void (*GetKeyTime)(const AnimKey* key, BaseTime* out);
  double (*GetKeyValue)(const AnimKey* key);
  void (*SetKeyValue)(AnimKey* key, AnimCurve* curve, double value);
  void (*SetKeyData)(AnimKey* key, AnimCurve* curve, const DataValue* value);
  DataValue* (*GetKeyData)(AnimKey* key);
  int32_t (*GetKeyCount)(const AnimCurve* curve);
  AnimKey* (*GetKey)(const AnimCurve* curve, int32_t index);
  AnimKey* (*FindKey)(const AnimCurve* curve, const BaseTime* time, int32_t* index, int32_t reserved);
  AnimTrack* (*AllocTrack)(SceneNode* node, const ParamId* id);
  AnimCurve* (*GetCurve)(AnimTrack* track, int32_t which, bool create);
  double (*GetCurveValue)(const AnimTrack* track, const BaseDocument* document, const BaseTime* time, int32_t flags);
  bool (*FillKey)(AnimTrack* track, const BaseDocument* document, const SceneNode* node, AnimKey* key);
  int32_t (*GetTrackKind)(const AnimTrack* track);
  AnimKey* (*AddKey)(AnimCurve* curve, const BaseTime* time, void* reserved1, int32_t reserved2, int32_t reserved3);
  void (*DeleteKey)(AnimCurve* curve, int32_t index, int32_t reserved1, int32_t reserved2);
  // Additions of the engine beside what export and import call.
  void (*GetTrackParamId)(const AnimTrack* track, ParamId* out);
  SceneNode* (*GetFirstTrack)(const SceneNode* node);
};

struct ORYOS_Ne {};
struct ORYOS_FL {};

// ---------------------------------------------------------------------------
// The API record that the engine hands over.

enum EngineTableIndex : int32_t {
  Table_Ge, Table_Sh, Table_Hf, Table_Bc, Table_St, Table_Bm, Table_Ms, Table_Ba, Table_Fn, Table_Fl,
  Table_Bf, Table_Cd, Table_Cu, Table_Pr, Table_Lr, Table_Bl, Table_Tg, Table_Bo, Table_Bd, Table_Bt,
  Table_Mt, Table_Tx, Table_Bs, Table_Bu, Table_Br, Table_Bv, Table_Nb, Table_Pl, Table_Fi, Table_Pa,
  Table_Ln, Table_Gv, Table_Gd, Table_At, Table_CA, Table_Ne, Table_FL,
  kEngineTableCount
};
static_assert(kEngineTableCount == 37, "the engine hands over 37 tables");

// The two-letter names, in table order, for diagnostics.
inline constexpr const char* kEngineTableNames[kEngineTableCount] = {
    "Ge", "Sh", "Hf", "Bc", "St", "Bm", "Ms", "Ba", "Fn", "Fl", "Bf", "Cd", "Cu", "Pr", "Lr", "Bl", "Tg", "Bo", "Bd",
    "Bt", "Mt", "Tx", "Bs", "Bu", "Br", "Bv", "Nb", "Pl", "Fi", "Pa", "Ln", "Gv", "Gd", "At", "CA", "Ne", "FL"};

struct QuillonApi {
  int32_t version;
  int32_t padding;
  const void* tables[kEngineTableCount];
};

// ---------------------------------------------------------------------------
// Extension libraries. A library's table begins with two 32-bit words, its id
// and its size in bytes; entry n is the n-th function pointer behind them. An
// entry beyond the size, or a null entry, counts as absent.

struct ExtensionHeader {
  int32_t id;
  int32_t size;
};

constexpr int32_t kExtensionParamId = 1000467;
constexpr int32_t kExtensionPriority = 1009364;
constexpr int32_t kExtensionFont = 1009371;
constexpr int32_t kExtensionSplineKey = 100004811;
constexpr int32_t kExtensionInstance = 431000180;
constexpr int32_t kExtensionMarkers = 465001534;
constexpr int32_t kExtensionSceneStates = 431000064;

struct ParamIdLibrary {
  ExtensionHeader header;
  void (*ParamIdInit)(ParamId* id);
  void (*ParamIdFree)(ParamId* id);
  void (*ParamIdAssign)(ParamId* id, const ParamLevel* levels, int32_t count);
};

struct PriorityLibrary {
  ExtensionHeader header;
  // payload from GetCustomData(value, DataKind_Priority).
  bool (*SetPriorityEntry)(void* payload, int32_t index, const DataValue* value);
};

struct FontLibrary {
  ExtensionHeader header;
  void* unused[36];
  // Entry 36: fills a font payload (GetCustomData(value, DataKind_Font)) from a
  // container of font description entries.
  bool (*SetFontFromContainer)(void* payload, const ParamContainer* description);
};

struct SplineKeyLibrary {
  ExtensionHeader header;
  void* unused[33];
  // Entry 33: the point and tangent tags inside a spline key payload
  // (GetCustomData(value, DataKind_SplineKey)); their arrays by GetDataAddress.
  bool (*GetSplineKeyTags)(void* payload, BaseTag** points, BaseTag** tangents);
};

struct InstanceLibrary {
  ExtensionHeader header;
  void* unused[7];
  // Entry 7: object becomes an instance of reference; result tells success.
  void (*SetInstanceReference)(BaseObject* object, bool* result, BaseObject* reference);
};

struct MarkerLibrary {
  ExtensionHeader header;
  TimelineMarker* (*GetFirstMarker)(const BaseDocument* document);
  // A null predecessor puts the marker behind the last one that is not later.
  TimelineMarker* (*AddMarker)(BaseDocument* document, TimelineMarker* predecessor, const BaseTime* time,
                               const EngineString* name, const Vector* colour, const BaseTime* length,
                               int32_t reserved);
};

// Scene states: entry 0 makes a state (insert it with InsertUnderRoot on the
// root, or InsertUnder another state), 41 gives the root of the tree (the
// states by GetDown), 46 the current state or null, 47 makes a state of the
// tree current (false for any other node).
struct SceneStateLibrary {
  ExtensionHeader header;
  SceneNode* (*AllocState)();
  void* unused1[40];
  SceneNode* (*GetStateRoot)(SceneStateTree* tree);
  void* unused2[4];
  SceneNode* (*GetCurrentState)(SceneStateTree* tree);
  bool (*SetCurrentState)(SceneStateTree* tree, SceneNode* state);
};

// Element layouts of the variable tags of a spline (GetTagData, GetDataAddress).
struct SplineTangent {
  Vector left;   // relative to the point
  Vector right;  // relative to the point
};
struct SplineSegment {
  int32_t count;
  uint8_t closed;
  uint8_t reserved[3];
};
static_assert(sizeof(SplineSegment) == 8, "a segment element takes 8 bytes");

// ---------------------------------------------------------------------------
// Start and end. The engine exports the three C entry points; the program
// exports quillon::ory_main, which the engine calls when its start is done.
// The module record given to QuillonInitialize (the program's g_vantor) must be
// data of the program's own image: the engine looks up quillon::ory_main in
// the library that holds that address.

// Pointers to zero-terminated UTF-16 strings.
struct QuillonArguments {
  char16_t** items;
  int64_t count;
  int64_t capacity;
};

// One method of the core framework that the program replaces for the time
// after the engine has gone.
struct QuillonOverride {
  uint64_t interfaceId[2];
  const char* methodName;
  void* function;
};

struct QuillonOverrideBlock {
  QuillonOverride* items;
  int64_t count;
};

// The core framework's records of its methods, exported by the engine library under this name
// as a QuillonOverrideBlock: each gives a method's interface id and name with the function that
// implements it. The program reads the ids of its overrides and the functions it saves here.
inline constexpr char kFrameworkMethodsSymbol[] = "QuillonFrameworkMethods";

using QuillonInitializeFunc = bool (*)(void* moduleRecord, const char* startText, const char16_t* path,
                                       const char16_t* secondPath, const QuillonArguments* args);
using IsQuillonInitializedFunc = bool (*)(const QuillonApi** record);
using QuillonShutdownFunc = bool (*)(const QuillonOverrideBlock* overrides, void* moduleRecord, bool keepRunning);

// Actions of ory_main.
constexpr int32_t kOryMainStart = 1;
constexpr int32_t kOryMainPluginStart = 2;
constexpr int32_t kOryMainEnd = 3;
constexpr int32_t kOryMainQuery = 4;
constexpr int32_t kOryMainPluginMessage = 6;

namespace quillon {
// p1 is the API record on start; p3 the engine's install folder as a Filename*.
int32_t ory_main(int32_t action, void* p1, void* p2, void* p3);
}  // namespace quillon
using OryMainFunc = int32_t (*)(int32_t action, void* p1, void* p2, void* p3);
