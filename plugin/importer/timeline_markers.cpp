#include "plugin/importer/timeline_markers.h"

#include <cmath>

#include "plugin/engine/engine_extensions.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/importer/import_file.h"
#include "plugin/importer/scene_read.h"
#include "plugin/text/encodings.h"

namespace {

constexpr A_Err kMarkerFailed = 512;
constexpr A_Err kMarkerNotMade = 4;

// Looked up once it is found.
const MarkerLibrary* Markers() {
  static const MarkerLibrary* library = nullptr;
  if (!library) library = ExtensionLibrary<MarkerLibrary>(kExtensionMarkers);
  return library;
}

const AEGP_MarkerSuite2* MarkerSuite(CTI* cti) {
  return cti->Suite<AEGP_MarkerSuite2>(kAEGPMarkerSuite, kAEGPMarkerSuiteVersion2);
}

const AEGP_KeyframeSuite4* KeySuite(CTI* cti) {
  return cti->Suite<AEGP_KeyframeSuite4>(kAEGPKeyframeSuite, kAEGPKeyframeSuiteVersion4);
}

// Whether the scene marker has a note parameter, and its text.
bool ReadNote(TimelineMarker* marker, std::u16string* note) {
  const ParamContainer* data = t_ORYOS_Bl->GetDataInstance(marker);
  if (!data || t_ORYOS_Bc->FindIndex(data, MarkerParam_Note, 0) == -1) return false;
  OwnedString text;
  const OwnedString empty;
  t_ORYOS_Bc->GetString(data, text.get(), MarkerParam_Note, empty.get());
  *note = DecodeUtf8(ToUtf8(*text.get()));
  return true;
}

std::u16string Comment(CTI* cti, AEGP_MarkerValP marker) {
  AEGP_MemHandle handle = nullptr;
  if (MarkerSuite(cti)->AEGP_GetMarkerString(g_pluginId, marker, AEGP_MarkerString_COMMENT, &handle) || !handle)
    return {};
  const auto* memory = cti->Suite<AEGP_MemorySuite1>(kAEGPMemorySuite, kAEGPMemorySuiteVersion1);
  std::u16string text;
  void* units = nullptr;
  if (!memory->AEGP_LockMemHandle(handle, &units) && units) {
    for (const auto* at = static_cast<const char16_t*>(units); *at; ++at) text.push_back(*at);
    memory->AEGP_UnlockMemHandle(handle);
  }
  memory->AEGP_FreeMemHandle(handle);
  return text;
}

// The host's time base of the marker stream: frames of `frameRate`, each `step` units of `scale`.
struct HostTimeBase {
  double frameRate;
  A_long step;
  A_u_long scale;
};

A_Err MakeHostMarker(CTI* cti, TimelineMarker* sceneMarker, AEGP_MarkerValP* marker, const HostTimeBase& base) {
  std::u16string note;
  const bool hasNote = ReadNote(sceneMarker, &note);
  const std::u16string text = MarkerComment(DecodeUtf8(NodeName(sceneMarker)), hasNote ? &note : nullptr);
  const BaseTime length =
      ContainerHas(sceneMarker, MarkerParam_Length) ? ContainerTime(sceneMarker, MarkerParam_Length) : BaseTime(0, 1);
  const A_Time duration{SceneFrame(length, base.frameRate) * base.step, base.scale};
  const auto* markers = MarkerSuite(cti);
  if (!*marker && (markers->AEGP_NewMarker(marker) || !*marker)) {
    cti->AddError(kMarkerNotMade, "ExtractORYTimelineMarkers failed to create an AE Timeline marker.");
    return kMarkerNotMade;
  }
  if (const A_Err err = markers->AEGP_SetMarkerString(*marker, AEGP_MarkerString_COMMENT,
                                                      reinterpret_cast<const A_UTF16Char*>(text.c_str()),
                                                      static_cast<A_long>(text.size())))
    return err;
  return markers->AEGP_SetMarkerDuration(*marker, &duration);
}

bool IsDuplicateMarker(CTI* cti, AEGP_StreamRefH stream, A_long timeValue, AEGP_MarkerValP marker) {
  if (!marker) return false;
  const auto* keys = KeySuite(cti);
  const auto* markers = MarkerSuite(cti);
  const auto* streams = cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
  A_long count = 0;
  if (keys->AEGP_GetStreamNumKFs(stream, &count)) return false;
  A_Time candidateLength{};
  markers->AEGP_GetMarkerDuration(marker, &candidateLength);
  const std::u16string candidateComment = Comment(cti, marker);
  for (A_long i = 0; i < count; ++i) {
    A_Time time{};
    if (keys->AEGP_GetKeyframeTime(stream, i, AEGP_LTimeMode_LayerTime, &time) || time.value != timeValue) continue;
    AEGP_StreamValue2 value{};
    if (keys->AEGP_GetNewKeyframeValue(g_pluginId, stream, i, &value)) continue;
    A_Time length{};
    markers->AEGP_GetMarkerDuration(value.val.markerP, &length);
    const bool same = length.value == candidateLength.value && length.scale == candidateLength.scale &&
                      Comment(cti, value.val.markerP) == candidateComment;
    streams->AEGP_DisposeStreamValue(&value);
    if (same) return true;
  }
  return false;
}

// Puts the marker on the stream at `time`; the stream's value takes it over.
A_Err InsertMarker(CTI* cti, AEGP_StreamRefH stream, const A_Time& time, AEGP_MarkerValP marker) {
  const auto* streams = cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
  A_long index = 0;
  if (const A_Err err = KeySuite(cti)->AEGP_InsertKeyframe(stream, AEGP_LTimeMode_LayerTime, &time, &index)) {
    MarkerSuite(cti)->AEGP_DisposeMarker(marker);
    return err;
  }
  AEGP_StreamValue2 value{};
  if (const A_Err err = streams->AEGP_GetNewStreamValue(g_pluginId, stream, AEGP_LTimeMode_LayerTime, &time, true,
                                                        &value)) {
    MarkerSuite(cti)->AEGP_DisposeMarker(marker);
    return err;
  }
  if (value.val.markerP) MarkerSuite(cti)->AEGP_DisposeMarker(value.val.markerP);
  value.val.markerP = marker;
  const A_Err err = KeySuite(cti)->AEGP_SetKeyframeValue(stream, index, &value);
  const A_Err disposed = streams->AEGP_DisposeStreamValue(&value);
  return err ? err : disposed;
}

bool SetMarkerTime(TimelineMarker* marker, int32_t id, const BaseTime& time) {
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetTime(&value, &time);
  const ParamLevel level{id, 0, 0};
  const ParamId path{&level, 1, 0};
  const bool set = t_ORYOS_At->SetParameter(marker, &path, &value, 0);
  t_ORYOS_Gd->Free(&value);
  return set;
}

A_Err CopyMarkerToScene(CTI* cti, AEGP_MarkerValP marker, const A_Time& time, TimelineMarker* sceneMarker) {
  if (!marker || !sceneMarker) return A_Err_NONE;
  A_Time duration{0, 1};
  MarkerSuite(cti)->AEGP_GetMarkerDuration(marker, &duration);
  if (!SetMarkerTime(sceneMarker, MarkerParam_Time, BaseTime(time.value, time.scale)) ||
      !SetMarkerTime(sceneMarker, MarkerParam_Length, BaseTime(duration.value, duration.scale))) {
    cti->AddError(515, "Error during timeline marker conversion failed to SetParameter correctly.");
    return A_Err_NONE;
  }
  std::u16string name, note;
  SplitMarkerComment(Comment(cti, marker), &name, &note);
  SetNodeName(sceneMarker, EncodeUtf8(name));
  if (!note.empty()) SetContainerString(sceneMarker, MarkerParam_Note, EncodeUtf8(note));
  return A_Err_NONE;
}

A_Err ExportMarkerStream(CTI* cti, BaseDocument* document, AEGP_StreamRefH stream) {
  const auto* keys = KeySuite(cti);
  const auto* streams = cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
  A_long count = 0;
  A_Err err = keys->AEGP_GetStreamNumKFs(stream, &count);
  const MarkerLibrary* library = Markers();
  const OwnedString defaultName("AE Marker Default");
  const Vector black;
  const BaseTime zero(0, 1);
  for (A_long i = 0; i < count && !err; ++i) {
    A_Time time{};
    AEGP_StreamValue2 value{};
    err = keys->AEGP_GetKeyframeTime(stream, i, AEGP_LTimeMode_LayerTime, &time);
    if (!err) err = keys->AEGP_GetNewKeyframeValue(g_pluginId, stream, i, &value);
    if (err) break;
    TimelineMarker* sceneMarker =
        library ? library->AddMarker(document, nullptr, &zero, defaultName.get(), &black, &zero, 0) : nullptr;
    err = CopyMarkerToScene(cti, value.val.markerP, time, sceneMarker);
    const A_Err disposed = streams->AEGP_DisposeStreamValue(&value);
    if (!err) err = disposed;
  }
  return err;
}

}  // namespace

void SplitMarkerComment(const std::u16string& comment, std::u16string* name, std::u16string* note) {
  const size_t lineFeed = comment.find(u'\n');
  *name = comment.substr(0, lineFeed);
  *note = lineFeed == std::u16string::npos ? std::u16string() : comment.substr(lineFeed);
}

A_Err ExportCompMarkers(CTI* cti, BaseDocument* document, AEGP_CompH composition) {
  if (!cti || !document || !composition) return A_Err_NONE;
  const auto* comps = cti->Suite<AEGP_CompSuite21>(kAEGPCompSuite, kAEGPCompSuiteVersion21);
  AEGP_StreamRefH stream = nullptr;
  A_Err err = comps->AEGP_GetNewCompMarkerStream(g_pluginId, composition, &stream);
  if (!err) err = ExportMarkerStream(cti, document, stream);
  if (stream) {
    const A_Err disposed =
        cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9)->AEGP_DisposeStream(stream);
    if (!err) err = disposed;
  }
  return err;
}

A_Err ExportLayerMarkers(CTI* cti, BaseDocument* document, AEGP_LayerH layer) {
  if (!cti || !document || !layer) return A_Err_NONE;
  const auto* streams = cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
  AEGP_StreamRefH stream = nullptr;
  A_Err err = streams->AEGP_GetNewLayerStream(g_pluginId, layer, AEGP_LayerStream_MARKER, &stream);
  if (!err) err = ExportMarkerStream(cti, document, stream);
  if (stream) {
    const A_Err disposed = streams->AEGP_DisposeStream(stream);
    if (!err) err = disposed;
  }
  return err;
}

std::u16string MarkerComment(const std::u16string& name, const std::u16string* note) {
  return note ? name + u"\n" + *note : name;
}

A_Err ExtractORYTimelineMarkers(CTI* cti, BaseDocument* document) {
  if (!document) {
    cti->AddError(kMarkerFailed, "ExtractORYTimelineMarkers failed, file pointer is null.");
    return kMarkerFailed;
  }
  const auto* layers = cti->Suite<AEGP_LayerSuite14>(kAEGPLayerSuite, kAEGPLayerSuiteVersion14);
  AEGP_LayerH layer = nullptr;
  if (const A_Err err = layers->AEGP_GetActiveLayer(&layer)) return err;
  if (!layer) return A_Err_NONE;
  AEGP_CompH composition = nullptr;
  if (layers->AEGP_GetLayerParentComp(layer, &composition) || !composition) {
    cti->AddError(kMarkerFailed, "ExtractORYTimelineMarkers failed to locate the current composition.");
    return kMarkerFailed;
  }
  A_FpLong frameRate = 25.0;
  const A_Err rateErr = cti->Suite<AEGP_CompSuite21>(kAEGPCompSuite, kAEGPCompSuiteVersion21)
                            ->AEGP_GetCompFramerate(composition, &frameRate);
  const MarkerLibrary* library = Markers();
  TimelineMarker* marker = library ? library->GetFirstMarker(document) : nullptr;
  if (!marker) return rateErr;
  // The host's time base comes only with a call through an effect; the hooks have none. It is
  // asked for before the stream, so that a hook's call ends without a stream it would have to
  // leave open, and the import still reports success.
  const PF_InData* inData = cti->effectCall ? cti->effectCall->inData : nullptr;
  if (!inData) {
    cti->AddError(kMarkerFailed, "ExtractORYTimelineMarkers failed. PF_InData was not found.");
    return kMarkerFailed;
  }
  AEGP_StreamRefH stream = nullptr;
  if (rateErr ||
      cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9)
          ->AEGP_GetNewLayerStream(g_pluginId, layer, AEGP_LayerStream_MARKER, &stream) ||
      !stream) {
    cti->AddError(kMarkerFailed, "ExtractORYTimelineMarkers failed to acquire the layers marker stream.");
    return kMarkerFailed;
  }
  // Frame 0 of the imported composition shows the document's first frame, so a marker lands
  // as far after the layer's start as it stands after the document's.
  RenderData* settings = t_ORYOS_Bd->GetActiveSettings(document);
  const int32_t firstFrame = SceneFrame(
      DocumentRangeStart(document, settings ? ContainerInt32(settings, RenderParam_FrameSequence, 0) : 0), frameRate);
  const HostTimeBase base{frameRate, inData->time_step, inData->time_scale};
  A_Err err = A_Err_NONE;
  for (; marker && !err; marker = static_cast<TimelineMarker*>(t_ORYOS_At->GetNext(marker))) {
    if (!ContainerHas(marker, MarkerParam_Time)) continue;
    const A_Time time{(SceneFrame(ContainerTime(marker, MarkerParam_Time), frameRate) - firstFrame) *
                          inData->time_step,
                      inData->time_scale};
    AEGP_MarkerValP hostMarker = nullptr;
    if (MakeHostMarker(cti, marker, &hostMarker, base)) {
      if (hostMarker) MarkerSuite(cti)->AEGP_DisposeMarker(hostMarker);
      cti->AddError(kMarkerFailed, "ExtractORYTimelineMarkers failed. An error occurred during marker creation.");
      err = kMarkerFailed;
    } else if (IsDuplicateMarker(cti, stream, time.value, hostMarker)) {
      MarkerSuite(cti)->AEGP_DisposeMarker(hostMarker);
    } else {
      err = InsertMarker(cti, stream, time, hostMarker);
    }
  }
  // After a failure the stream stays with the host, as a failed host call leaves it.
  if (!err) err = cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9)->AEGP_DisposeStream(stream);
  return err;
}
