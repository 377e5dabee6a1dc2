#include "plugin/host/export_command.h"

#include "plugin/engine/engine_start.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/ae_to_ory.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/host/active_composition.h"
#include "plugin/host/host_text.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/host/project_path.h"
#include "plugin/host/target_file.h"
#include "plugin/log/debug_log.h"
#include "plugin/script/text_export_question.h"
#include "plugin/text/encodings.h"
#include "plugin/text/load_string_table.h"
#include "plugin/text/path_text.h"
#include "plugin/text/string_table.h"

namespace {

// Frees the command's document on every way out, also when the exporter threw.
struct DocumentScope {
  BaseDocument* document;
  ~DocumentScope() {
    if (document) t_ORYOS_Bl->FreeNode(document);
  }
};

}  // namespace

namespace {

// The project's file name, empty when the project was never saved.
std::string ProjectFileName(CTI* cti) {
  std::u16string path;
  GetProjectPath(*cti, &path);
  return EncodeUtf8(LastPathComponent(path));
}

void WriteSceneFile(CTI* cti, BaseDocument* document, const Filename& target) {
  SceneFile* file = t_ORYOS_Hf->AllocSceneFile();
  if (!file) return;
  if (t_ORYOS_Hf->Open(file, kSceneFileIdent, &target, kSceneFileModeWrite, 0)) {
    const bool written = t_ORYOS_Bl->WriteNode(document, file);
    const bool closed = t_ORYOS_Hf->Close(file);
    LogEvent("RunExportCommand", written && closed ? "scene file written" : "scene file incomplete");
  } else {
    cti->AddError(1, "Failed to create target file.");
  }
  t_ORYOS_Hf->FreeSceneFile(file);
}

// The root object under which the composition is exported: a null named
// "<project file>-<composition>", recognised by its origin key.
BaseObject* MakeRootObject(CTI* cti, BaseDocument* document, const ActiveComposition& active,
                           const std::string& projectName, AEGP_ItemH* compItem) {
  BaseObject* root = t_ORYOS_Bo->AllocObject(ObjectType_Null);
  if (!root) return nullptr;
  std::string name = projectName + "-";
  const auto* comps = cti->Suite<AEGP_CompSuite19>(kAEGPCompSuite, kAEGPCompSuiteVersion19);
  const A_Err err = comps->AEGP_GetItemFromComp(active.comp, compItem);
  t_ORYOS_Bd->InsertObject(document, root, nullptr, nullptr, 0, 1);
  std::u16string compName;
  if (!err && GetItemName(*cti, g_pluginId, *compItem, &compName) == A_Err_NONE) name += EncodeUtf8(compName);
  if (err) *compItem = nullptr;
  SetNodeName(root, name);
  SetContainerString(root, ParamKey_OriginKey, kExportRootOriginKey);
  return root;
}

// Puts the middle of the composition at the scene's origin; false when the host failed.
bool CentreRoot(CTI* cti, BaseObject* root, AEGP_ItemH compItem) {
  if (!compItem) return true;
  const auto* items = cti->Suite<AEGP_ItemSuite13>(kAEGPItemSuite, kAEGPItemSuiteVersion13);
  A_long width = 0;
  A_long height = 0;
  if (items->AEGP_GetItemDimensions(compItem, &width, &height) != A_Err_NONE) return false;
  // Halved as 32-bit floats, as the host's own sizes are.
  const Vector offset{-static_cast<double>(static_cast<float>(width) * 0.5f),
                      static_cast<double>(static_cast<float>(height) * 0.5f), 0.0};
  t_ORYOS_Bo->SetOffsetPosition(root, &offset);
  return true;
}

void ReportStreamTrouble(CTI* cti) {
  if (const std::optional<std::u16string> text = GetStringU16(kStrTroubles2Exporter)) cti->ReportMessage(*text);
}

// The walks after the user's answers; false with the report done or a silent cancel.
bool ExportWalks(CTI* cti, AEToOry& exporter, AEGP_CompH comp, BaseObject* root) {
  bool failed = false;
  if (!exporter.ExportLayers(comp, nullptr, root, 0)) {
    if (cti->GetAbortCode() == PF_Interrupt_CANCEL) return false;
    failed = true;
  }
  if (!exporter.ExportRest(comp, nullptr, root, 0)) {
    if (cti->GetAbortCode() == PF_Interrupt_CANCEL) return false;
    failed = true;
  }
  if (failed) ReportStreamTrouble(cti);
  // A cancel on the progress bar does not stop a walk by itself; it still means no file.
  return !failed && cti->GetAbortCode() != PF_Interrupt_CANCEL;
}

}  // namespace

bool RunExportCommand(CTI* cti) {
  if (!EnsureEngineStarted(cti)) return false;
  const std::string projectName = ProjectFileName(cti);
  if (projectName.empty()) {
    ReportError(kCodeSaveBeforeExport, cti);
    return false;
  }
  DocumentScope scope{t_ORYOS_Bd->AllocDocument()};
  if (!scope.document) return false;
  OwnedFilename target;
  if (!ExportActiveComposition(cti, scope.document, &target.value, projectName)) return false;
  WriteSceneFile(cti, scope.document, target.value);
  return cti->errors.empty();
}

bool ExportActiveComposition(CTI* cti, BaseDocument* document, Filename* target, const std::string& projectName) {
  if (!document || !cti) return false;
  const ActiveComposition active = FindActiveComposition(*cti);
  if (!active.item) {
    cti->AddError(2, "No item selected.");
    return false;
  }
  if (!active.isComposition) {
    cti->AddError(2, "Selected item is not a composition.");
    return false;
  }
  if (!active.comp) {
    cti->AddError(2, "Failed to get composition from item.");
    return false;
  }
  AEToOry exporter;
  const OwnedString engineProjectName(projectName);
  if (!exporter.Init(cti, document, *target, *engineProjectName.get())) {
    cti->AddError(2, "AEToOry failed to initialise.");
    return false;
  }
  if (ProjectFileName(cti).empty()) return false;
  AEGP_ItemH compItem = nullptr;
  BaseObject* root = MakeRootObject(cti, document, active, projectName, &compItem);
  if (!root) return false;
  if (!exporter.Scan(active.comp, nullptr, 0)) {
    if (cti->GetAbortCode() != PF_Interrupt_CANCEL) ReportStreamTrouble(cti);
    return false;
  }
  if (!exporter.foundLayersToExport) {
    ReportError(kCodeNo3dLayers, cti);
    return false;
  }
  if (exporter.found2dLayers) ReportError(kCode2dLayersFound, cti);
  if (exporter.foundTextLayers) {
    uint8_t choice = 1;
    if (AskTextExport(cti, &choice) != A_Err_NONE) return false;
    exporter.exportTextAsPlanes = choice == 0;
  }
  if (ChooseTargetFile(cti, target) != A_Err_NONE || !t_ORYOS_Fn->IsFilled(target)) return false;
  exporter.SetTarget(*target);
  if (!ExportWalks(cti, exporter, active.comp, root)) return false;
  return CentreRoot(cti, root, compItem);
}
