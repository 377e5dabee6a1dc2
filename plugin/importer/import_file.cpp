#include "plugin/importer/import_file.h"

#include <cmath>

#include "plugin/engine/engine_start.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/host/frame_report.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/importer/camera_light_conversion.h"
#include "plugin/importer/import_session.h"
#include "plugin/importer/object_walk.h"
#include "plugin/importer/scene_file_header.h"
#include "plugin/importer/scene_read.h"
#include "plugin/importer/timeline_markers.h"
#include "plugin/log/debug_log.h"
#include "plugin/platform/shared_file_lock.h"
#include "plugin/text/encodings.h"
#include "plugin/text/load_string_table.h"
#include "plugin/text/string_table.h"

namespace {

constexpr A_Err kNotImported = 2;
constexpr int32_t kLockWaitSeconds = 5;
constexpr int32_t kFullImportLoadFlags = 67;
constexpr int32_t kSequencePreviewRange = 3;
constexpr char kUnnamedDocument[] = "ORY Document";

bool IsHighSurrogate(A_UTF16Char unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(A_UTF16Char unit) { return unit >= 0xDC00 && unit < 0xE000; }

// The host's UTF-16 path as the file system's UTF-8. A surrogate pair is one character of
// the name, so it becomes one four-byte sequence; the plug-in's text conversion works unit by
// unit, which would name another file.
std::string PathUtf8(const A_UTF16Char* path) {
  std::string bytes;
  std::u16string run;
  for (const A_UTF16Char* at = path; *at; ++at) {
    if (!IsHighSurrogate(at[0]) || !IsLowSurrogate(at[1])) {
      run.push_back(static_cast<char16_t>(*at));
      continue;
    }
    bytes += EncodeUtf8(run);
    run.clear();
    const uint32_t character = 0x10000 + ((at[0] - 0xD800u) << 10) + (at[1] - 0xDC00u);
    bytes += static_cast<char>(0xF0 | (character >> 18));
    bytes += static_cast<char>(0x80 | ((character >> 12) & 0x3F));
    bytes += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    bytes += static_cast<char>(0x80 | (character & 0x3F));
    ++at;
  }
  return bytes + EncodeUtf8(run);
}

struct LoadedDocument {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  ~LoadedDocument() {
    if (document) t_ORYOS_Bl->FreeNode(document);
  }
  LoadedDocument() = default;
  LoadedDocument(const LoadedDocument&) = delete;
  LoadedDocument& operator=(const LoadedDocument&) = delete;
};

// A view through a camera that the walk did not reach still brings that camera.
void ConvertViewCamera(BaseDocument* document) {
  if (g_importSession.activeCameraFound || t_ORYOS_Bd->GetViewCount(document) == 0) return;
  const BaseView* view = t_ORYOS_Bd->GetRenderView(document);
  if (!view) view = t_ORYOS_Bd->GetActiveView(document);
  if (!view) return;
  if (BaseObject* camera = t_ORYOS_Br->GetViewCamera(view)) ConvertCamera(camera);
}

A_Ratio HundredthsRatio(double value) { return A_Ratio{static_cast<A_long>(std::trunc(value * 100.0)), 100}; }

// Creates the composition in `folder` and gives it its start and aspect; the scale of the
// composition's own item layer when the host accepts it as a layer.
A_Err CreateComposition(CTI* cti, AEGP_ItemH folder, const std::u16string& name, RenderData* settings,
                        BaseDocument* document, AEGP_CompH* composition) {
  const double width = ContainerFloat(settings, RenderParam_Width, 0.0);
  const double height = ContainerFloat(settings, RenderParam_Height, 0.0);
  const double pixelAspect = ContainerFloat(settings, RenderParam_PixelAspect, 0.0);
  const int32_t sequenceMode = ContainerInt32(settings, RenderParam_FrameSequence, 0);
  const double frameRate = ContainerFloat(settings, RenderParam_FrameRate, 0.0);
  int32_t frames = 0;
  int32_t startFrame = 0;
  GetDocumentFrameRange(document, sequenceMode, &frames, &startFrame);
  if (!CompositionFrameFits(width, height, pixelAspect)) {
    LogEvent("CreateComposition", "the scene's render size or pixel aspect does not fit a composition");
    return A_Err_PARAMETER;
  }
  if (!CompositionTimingFits(frameRate, frames, startFrame)) {
    LogEvent("CreateComposition", "the scene's frame rate " + std::to_string(frameRate) + " or frame range (" +
                                      std::to_string(frames) + " frames from " + std::to_string(startFrame) +
                                      ") does not fit a composition");
    return A_Err_PARAMETER;
  }
  const uint32_t scale = ImportTimeScale(frameRate);
  const A_Ratio aspect = HundredthsRatio(pixelAspect);
  const A_Ratio rate = HundredthsRatio(frameRate);
  const A_Time duration{frames * 100, scale};
  const A_Time displayStart{startFrame * 100, scale};

  const auto* comps = cti->Suite<AEGP_CompSuite19>(kAEGPCompSuite, kAEGPCompSuiteVersion19);
  const auto* layers = cti->Suite<AEGP_LayerSuite11>(kAEGPLayerSuite, kAEGPLayerSuiteVersion11);
  AEGP_ItemH item = nullptr;
  A_Boolean valid = false;
  A_Err err = comps->AEGP_CreateComp(folder, reinterpret_cast<const A_UTF16Char*>(name.c_str()),
                                     static_cast<A_long>(std::trunc(width)), static_cast<A_long>(std::trunc(height)),
                                     &aspect, &duration, &rate, composition);
  if (!err) err = comps->AEGP_SetCompDisplayStartTime(*composition, &displayStart);
  if (!err) err = comps->AEGP_SetCompPixelAspectRatio(*composition, &aspect);
  if (!err) err = comps->AEGP_GetItemFromComp(*composition, &item);
  if (!err) err = layers->AEGP_IsAddLayerValid(item, *composition, &valid);
  if (!valid || err) return err;
  AEGP_LayerH layer = nullptr;
  if ((err = layers->AEGP_AddLayer(item, *composition, &layer))) return err;
  const auto* streams = cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
  AEGP_StreamValue2 value{};
  if ((err = streams->AEGP_GetNewLayerStream(g_pluginId, layer, AEGP_LayerStream_SCALE, &value.streamH))) return err;
  value.val.three_d = {pixelAspect * 100.0, pixelAspect * 100.0, 100.0};
  err = streams->AEGP_SetStreamValue(g_pluginId, value.streamH, &value);
  const A_Err disposed = streams->AEGP_DisposeStream(value.streamH);
  return err ? err : disposed;
}

}  // namespace

bool CompositionTimingFits(double frameRate, int32_t frames, int32_t startFrame) {
  // Times go to the host in hundredths of a frame over a scale of a hundred times the rate,
  // all in 32 bits.
  constexpr double kLargest = INT32_MAX;
  const bool rateFits = std::isfinite(frameRate) && frameRate * 100.0 >= 1.0 && frameRate * 100.0 <= kLargest;
  return rateFits && frames >= 1 && frames * 100.0 <= kLargest && std::abs(startFrame * 100.0) <= kLargest;
}

bool CompositionFrameFits(double width, double height, double pixelAspect) {
  constexpr double kLargest = INT32_MAX;
  const auto fits = [&](double value) { return std::isfinite(value) && std::abs(value) <= kLargest; };
  return fits(width) && fits(height) && fits(pixelAspect * 100.0);
}

uint32_t ImportTimeScale(double frameRate) { return static_cast<uint32_t>(static_cast<int32_t>(frameRate * 100.0)); }

BaseTime DocumentRangeStart(BaseDocument* document, int32_t sequenceMode) {
  return ContainerTime(document, sequenceMode == kSequencePreviewRange ? DocParam_LoopMinTime : DocParam_MinTime);
}

void GetDocumentFrameRange(BaseDocument* document, int32_t sequenceMode, int32_t* frames, int32_t* startFrame) {
  const bool preview = sequenceMode == kSequencePreviewRange;
  const BaseTime first = DocumentRangeStart(document, sequenceMode);
  const BaseTime last = ContainerTime(document, preview ? DocParam_LoopMaxTime : DocParam_MaxTime);
  const double fps = ContainerInt32(document, DocParam_Fps, 0);
  *startFrame = SceneFrame(first, fps);
  *frames = SceneFrame(last, fps) - *startFrame + 1;
}

bool BuildComposition(CTI* cti, const std::string& fileLeaf, BaseDocument* document) {
  if (!cti || !document) return false;
  if (!IsStringTableLoaded()) LoadStringTable(cti, g_pluginId);
  const auto* utility = cti->Suite<AEGP_UtilitySuite7>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion7);
  if (utility->AEGP_StartUndoGroup(GetString(kStrUndoImport).c_str())) return false;
  const auto* projects = cti->Suite<AEGP_ProjSuite8>(kAEGPProjSuite, kAEGPProjSuiteVersion8);
  AEGP_ProjectH project = nullptr;
  AEGP_ItemH root = nullptr;
  if (projects->AEGP_GetProjectByIndex(0, &project) || projects->AEGP_GetProjectRootFolder(project, &root))
    return false;

  std::string name = NodeName(document);
  if (name.empty()) name = fileLeaf;
  if (name.empty()) name = kUnnamedDocument;
  const std::u16string hostName = DecodeUtf8(name);
  const auto* items = cti->Suite<AEGP_ItemSuite13>(kAEGPItemSuite, kAEGPItemSuiteVersion13);
  AEGP_ItemH folder = nullptr;
  A_Err err = items->AEGP_CreateNewFolder(reinterpret_cast<const A_UTF16Char*>(hostName.c_str()), root, &folder);
  RenderData* settings = t_ORYOS_Bd->GetActiveSettings(document);
  if (!settings && !err) err = 3;
  AEGP_CompH composition = nullptr;
  if (!err) err = CreateComposition(cti, folder, hostName, settings, document, &composition);
  g_importSession = ImportSession{g_pluginId, cti->pica(), composition, document, false};
  return err == A_Err_NONE;
}

bool ImportSceneFile(CTI* cti, const Filename& file) {
  if (!t_ORYOS_Fn->IsFilled(&file) || !t_ORYOS_Ge->FileExists(&file, 0)) return false;
  SharedFileLock lock(file);
  if (!lock.OpenToRead(kLockWaitSeconds)) {
    LogEvent("ImportSceneFile", lock.GetErrorText());
    return false;
  }
  LoadedDocument loaded;
  if (!loaded.document) return false;
  OwnedString loadError;
  if (!t_ORYOS_Ge->LoadFileIntoDocument(loaded.document, &file, kFullImportLoadFlags, nullptr, nullptr,
                                        loadError.get())) {
    LogEvent("ImportSceneFile", "the document did not load: " + ToUtf8(*loadError.get()));
    return false;
  }
  bool result = BuildComposition(cti, LeafOf(file), loaded.document);
  if (result && !WalkDocument(loaded.document)) {
    LogEvent("ImportSceneFile", "the engine did not evaluate the document");
    result = false;
  }
  // The viewed camera and the markers are handed over whatever became of the walk: each
  // conversion refuses for itself what it has nowhere to go.
  ConvertViewCamera(loaded.document);
  ExtractORYTimelineMarkers(cti, loaded.document);
  g_importSession = ImportSession{};
  cti->Suite<AEGP_UtilitySuite7>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion7)->AEGP_EndUndoGroup();
  return result;
}

A_Err VerifyFileCallback(const A_UTF16Char* filePath, AE_FIM_Refcon /*refcon*/) {
  A_Err result = kNotImported;
  const A_Err err = RunInFrame(g_pica, eQuillon_AEGP_VerifyFileImportable, g_pluginId, [&](CTI*) {
    if (filePath && IsSceneFile(PathUtf8(filePath))) result = A_Err_NONE;
  });
  return err ? err : result;
}

A_Err ImportFileCallback(const A_UTF16Char* filePath, AE_FIM_Refcon /*refcon*/) {
  A_Err result = kNotImported;
  const A_Err err = RunInFrame(g_pica, eQuillon_AEGP_ImportFile, g_pluginId, [&](CTI* cti) {
    DebugLogger scope("ImportFileCallback");
    if (!filePath) return;
    // Scene files are engine paths: the engine must run before the first one is made. An
    // import shows no message on any path; a failure is the code the host gets.
    if (!EnsureEngineStarted(cti)) {
      LogEvent("ImportFileCallback", "the engine did not start");
      return;
    }
    const OwnedFilename file(PathUtf8(filePath));
    if (ImportSceneFile(cti, file.value)) result = A_Err_NONE;
  });
  return err ? err : result;
}
