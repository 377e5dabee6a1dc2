#pragma once
// The export object: turns one After Effects composition into the content of one scene
// document. The export command constructs it on its stack and calls, in this order,
// Init, Scan, SetTarget, ExportLayers and ExportRest; between Scan and ExportLayers it reads
// the found… flags and sets exportTextAsPlanes from the user's answer.
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "plugin/engine/engine_ops.h"
#include "plugin/engine/engine_values.h"
#include "sdk/ae_types.h"

struct CTI;

// One composition that the walk is inside: the exported one at the bottom, the innermost last.
struct CompStackEntry {
  AEGP_LayerH layer = nullptr;  // precomposition layer it was entered through; null at the bottom
  AEGP_CompH comp = nullptr;
  BaseObject* node = nullptr;   // receives the new objects of this composition; null in a scan
  uint32_t layerIndex = 0;      // index of `layer` in the parent composition
  double zOffset = 0.0;         // depth that keeps layers of one plane apart, see the walk
};

class AEToOry {
 public:
  AEToOry();
  ~AEToOry();
  AEToOry(const AEToOry&) = delete;
  AEToOry& operator=(const AEToOry&) = delete;

  // The operations of the export command, in the order it calls them.
  bool Init(CTI* cti, BaseDocument* document, const Filename& target, const EngineString& projectName);
  bool Scan(AEGP_CompH comp, AEGP_LayerH layer, uint32_t layerIndex);
  bool SetTarget(const Filename& target);
  bool ExportLayers(AEGP_CompH comp, AEGP_LayerH layer, BaseObject* node, uint32_t layerIndex);
  bool ExportRest(AEGP_CompH comp, AEGP_LayerH layer, BaseObject* node, uint32_t layerIndex);

  // The stack of compositions; the values below always describe its top.
  bool PushComp(AEGP_CompH comp, AEGP_LayerH layer, BaseObject* node, uint32_t layerIndex);
  bool PopComp();
  bool SetUpComp(AEGP_CompH comp);
  AEGP_LayerH TopLayer() const;
  AEGP_CompH TopComp() const;
  BaseObject* TopNode() const;
  double TopZOffset() const;
  void AddZOffset(double step);
  bool CompSize(int32_t* width, int32_t* height);

  void ReportProgress();
  // Progress inside one long layer; gives the frame's abort code (517 after a cancel).
  int32_t ReportSubProgress(int32_t step, int32_t steps);

  CTI* cti = nullptr;
  BaseDocument* document = nullptr;
  uint32_t totalLayers = 0;
  uint32_t layerCounter = 0;
  std::string targetLeaf;   // last component of the target file's name, in every origin key
  std::string projectName;  // the project's file name
  std::vector<CompStackEntry> compStack;
  SceneLayer* lockLayer = nullptr;  // "Lock Layer", made when a locked layer is met
  int32_t fps = 30;
  int32_t firstFrame = 0;
  int32_t frameCount = 10;
  double pixelAspect = 1.0;
  A_Time compStart{0, 1};
  A_Time frameDuration{0, 1};
  bool documentPending = true;
  bool found2dLayers = false;
  bool foundLayersToExport = false;
  bool foundCamera = false;
  bool foundTextLayers = false;
  bool exportTextAsPlanes = false;

  // The objects that the factories made, by origin key and by layer id, so that finding one
  // again does not walk every object of the document for each layer.
  std::unordered_map<std::string, BaseObject*> objectsByKey;
  std::unordered_map<int32_t, BaseObject*> objectsByLayerId;

  // What the scan measured against the walk's bounds (walk_bounds.h).
  uint64_t layerUses = 0;
  std::unordered_map<AEGP_LayerH, uint32_t> parentDepths;
};
