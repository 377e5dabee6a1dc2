// Operations of the render session in the existing tables: identity, copies,
// links and lists of nodes (At), layer records (Bl), nested containers and
// paths (Bc), documents and settings (Bd), memory files (Fn), scene file
// versions (Hf), links of a kind (Ln) and the scene states library.
#pragma once

#include <vector>

#include "plugin/engine/engine_ops.h"

// The list of nodes behind AllocNodeArray.
struct NodeArray {
  std::vector<SceneNode*> items;
};

namespace quillon {

// At
SceneNode* CloneNode(const SceneNode* node, int32_t flags, LinkHolder* reserved);
bool CopyNodeTo(const SceneNode* source, SceneNode* destination, int32_t flags, int32_t reserved);
bool IsKindOf(const SceneNode* node, int32_t kind);
void SendNodeMessage(SceneNode* node, int32_t id, void* data);
bool SendTreeMessage(SceneNode* node, int32_t mode, int32_t id, void* data);
NodeArray* AllocNodeArray();
void FreeNodeArray(NodeArray* array);
int32_t GetNodeArrayCount(const NodeArray* array);
SceneNode* GetNodeArrayItem(const NodeArray* array, int32_t index);
bool GetBranches(const SceneNode* node, NodeArray* array, int32_t reserved);
const NodeMarker* GetMarker(const SceneNode* node);
bool MarkersEqual(const NodeMarker* a, const NodeMarker* b);
bool MoveLinks(SceneNode* from, SceneNode* to, int32_t reserved);
bool FindUniqueId(const SceneNode* node, int32_t applicationId, const void** data, int32_t* size);
void SetUniqueId(SceneNode* node, int32_t applicationId, const void* data, int32_t size);
int32_t GetBranchKind(const SceneNode* head);

// Bl
const LayerRecord* GetLayerData(const SceneLayer* layer, const BaseDocument* document, int32_t reserved);
bool SetLayerData(SceneLayer* layer, const BaseDocument* document, const LayerRecord* record);

// Bc
bool ContainersEqual(const ParamContainer* a, const ParamContainer* b);
void BcSetFilename(ParamContainer* container, int32_t id, const Filename* value);
bool BcGetFilename(const ParamContainer* container, int32_t id, Filename* out);
void SetContainer(ParamContainer* container, int32_t id, const ParamContainer* value);
bool GetContainer(const ParamContainer* container, int32_t id, ParamContainer* out);

// Ge
void FreeDocument(BaseDocument* document);
bool GetAssets(const BaseDocument* document, int32_t reserved1, ParamContainer* assets, const Filename* folder,
               int32_t flags, int32_t reserved2);

// Bd
SceneStateTree* GetStateData(BaseDocument* document, int32_t reserved1, int32_t reserved2);
BaseView* GetViewAt(const BaseDocument* document, int32_t index);
BaseTime* GetDocumentTime(BaseDocument* document);
void InsertRenderSettingsAt(BaseDocument* document, RenderData* settings, RenderData* predecessor, int32_t reserved);
void SetActiveRenderSettings(BaseDocument* document, RenderData* settings);
RenderData* GetFirstSettingsChild(const RenderData* settings);
void InsertSettingsChild(RenderData* settings, RenderData* child, RenderData* predecessor);
void SetActiveObject(BaseDocument* document, BaseObject* object, int32_t mode);
void GetActiveObjects(const BaseDocument* document, NodeArray* array);
SceneNode* FindSceneHook(const BaseDocument* document, int32_t type);
void GetTextureList(ParamContainer* list, const BaseDocument* document, int32_t reserved1, int32_t reserved2);

// Mt and Ba
MaterialChannel* GetChannel(Material* material, int32_t index);
bool GetReflectionShaders(Material* material, NodeArray* array);
BaseShader* GetChannelShader(const MaterialChannel* channel);

// Fn
void SetMemoryRead(Filename* file, const void* data, int64_t size, bool takesOwnership);
void SetMemoryWrite(Filename* file, MemoryFile* memory);
MemoryFile* AllocMemoryFile();
void FreeMemoryFile(MemoryFile* memory);
void GetMemoryFileData(const MemoryFile* memory, const void** data, int64_t* size);

// Ln
void SetLinkDocument(LinkHolder* holder, const BaseDocument* document);
void SetLinkMode(LinkHolder* holder, int32_t mode);
SceneNode* GetLinkTargetOfKind(const LinkHolder* holder, const BaseDocument* document, int32_t kind);

// The scene states library (kExtensionSceneStates).
const ExtensionHeader& SceneStateLibraryHeader();

}  // namespace quillon
