#include "aehost/core/exit_report.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

using StreamSuitesTest = HostTest;

A_Time At(A_long value) { return A_Time{value, 2500}; }  // 25 fps: 100 units a frame

TEST_F(StreamSuitesTest, KeyedStreamValuesBetweenKeys) {
    Stream& position = EnsureStream(project, *comp, *card, LayerStream::Position);
    AddKeyframe(position, 0.0, MakeValue(0, 0, 0));
    AddKeyframe(position, 1.0, MakeValue(100, -50, 20));
    const AEGP_StreamSuite9* streams = StreamSuite();
    AEGP_StreamRefH stream = nullptr;
    ASSERT_EQ(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_POSITION, &stream),
              A_Err_NONE);
    AEGP_StreamType type = 0;
    streams->AEGP_GetStreamType(stream, &type);
    EXPECT_EQ(type, AEGP_StreamType_ThreeD_SPATIAL);
    A_Boolean varying = false;
    streams->AEGP_IsStreamTimevarying(stream, &varying);
    EXPECT_TRUE(varying);
    // Linear keys on a straight path: half way in time is half way in space.
    AEGP_StreamValue2 value{};
    const A_Time half = At(1250);
    ASSERT_EQ(streams->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_CompTime, &half, false, &value),
              A_Err_NONE);
    EXPECT_EQ(value.streamH, stream);
    EXPECT_NEAR(value.val.three_d.x, 50, 1e-9);
    EXPECT_NEAR(value.val.three_d.y, -25, 1e-9);
    EXPECT_NEAR(value.val.three_d.z, 10, 1e-9);
    EXPECT_EQ(streams->AEGP_DisposeStreamValue(&value), A_Err_NONE);
    char name[AEGP_MAX_STREAM_NAME_SIZE] = {};
    streams->AEGP_GetStreamName(stream, true, name);
    EXPECT_STREQ(name, "Position");
    EXPECT_NE(streams->AEGP_SetStreamValue(kPlugin, stream, &value), A_Err_NONE);  // it has keys
    EXPECT_EQ(streams->AEGP_DisposeStream(stream), A_Err_NONE);
    EXPECT_NE(streams->AEGP_DisposeStream(stream), A_Err_NONE);
    EXPECT_NE(streams->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_CompTime, &half, false, &value),
              A_Err_NONE);
    EXPECT_TRUE(ExitProblems().size() == g_host.misuse.size());  // no stream left open
}

TEST_F(StreamSuitesTest, IllegalStreamsAndColoursOfLights) {
    const AEGP_StreamSuite9* streams = StreamSuite();
    A_Boolean legal = true;
    streams->AEGP_IsStreamLegal(LayerHandle(*card), AEGP_LayerStream_ZOOM, &legal);
    EXPECT_FALSE(legal);
    AEGP_StreamRefH stream = nullptr;
    EXPECT_NE(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_ZOOM, &stream),
              A_Err_NONE);
    EXPECT_EQ(stream, nullptr);
    EXPECT_NE(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), 5, &stream), A_Err_NONE);

    Layer& light = AddLightLayer(project, *comp, "Key", 960, 540);
    SetStreamValue(project, *comp, light, LayerStream::Color, MakeValue(1.0, 0.5, 0.25, 1.0));
    ASSERT_EQ(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(light), AEGP_LayerStream_COLOR, &stream),
              A_Err_NONE);
    AEGP_StreamValue2 value{};
    const A_Time zero = At(0);
    ASSERT_EQ(streams->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_CompTime, &zero, false, &value),
              A_Err_NONE);
    EXPECT_EQ(value.val.color.alpha, 1.0);
    EXPECT_EQ(value.val.color.red, 1.0);
    EXPECT_EQ(value.val.color.green, 0.5);
    EXPECT_EQ(value.val.color.blue, 0.25);
    // A stream whose layer is deleted is refused, not followed.
    comp->comp.layers.erase(comp->comp.layers.begin());
    AEGP_StreamType type = 0;
    EXPECT_NE(streams->AEGP_GetStreamType(stream, &type), A_Err_NONE);
    streams->AEGP_DisposeStream(stream);
}

TEST_F(StreamSuitesTest, StaticValuesAreSetAndExpressionsKept) {
    const AEGP_StreamSuite9* streams = StreamSuite();
    AEGP_StreamRefH stream = nullptr;
    ASSERT_EQ(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_SCALE, &stream),
              A_Err_NONE);
    AEGP_StreamValue2 value{};
    value.streamH = stream;
    value.val.three_d = {50, 75, 100};
    ASSERT_EQ(streams->AEGP_SetStreamValue(kPlugin, stream, &value), A_Err_NONE);
    EXPECT_EQ(card->streams.at(LayerStream::Scale).value, MakeValue(50, 75, 100));
    const std::u16string expression = u"[100, 100, 100]";
    ASSERT_EQ(streams->AEGP_SetExpression(kPlugin, stream, reinterpret_cast<const A_UTF16Char*>(expression.c_str())),
              A_Err_NONE);
    A_Boolean enabled = false;
    streams->AEGP_GetExpressionState(kPlugin, stream, &enabled);
    EXPECT_TRUE(enabled);
    AEGP_MemHandle text = nullptr;
    streams->AEGP_GetExpression(kPlugin, stream, &text);
    EXPECT_EQ(TakeText(text), "[100, 100, 100]");
    streams->AEGP_DisposeStream(stream);
}

TEST_F(StreamSuitesTest, KeyframesInsertedOneByOneAndInBatches) {
    const AEGP_KeyframeSuite4* keys = KeyframeSuite();
    AEGP_StreamRefH stream = nullptr;
    card->startTime = 2.0;
    ASSERT_EQ(StreamSuite()->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_ROTATION, &stream),
              A_Err_NONE);
    AEGP_AddKeyframesInfoH batch = nullptr;
    ASSERT_EQ(keys->AEGP_StartAddKeyframes(stream, &batch), A_Err_NONE);
    A_long first = -1, second = -1;
    const A_Time zero = At(0), one = At(2500);
    ASSERT_EQ(keys->AEGP_AddKeyframes(batch, AEGP_LTimeMode_LayerTime, &zero, &first), A_Err_NONE);
    ASSERT_EQ(keys->AEGP_AddKeyframes(batch, AEGP_LTimeMode_LayerTime, &one, &second), A_Err_NONE);
    AEGP_StreamValue2 value{};
    value.streamH = stream;
    value.val.one_d = 90;
    ASSERT_EQ(keys->AEGP_SetAddKeyframe(batch, second, &value), A_Err_NONE);
    EXPECT_NE(keys->AEGP_SetAddKeyframe(batch, 2, &value), A_Err_NONE);
    A_long count = -1;
    keys->AEGP_GetStreamNumKFs(stream, &count);
    EXPECT_EQ(count, 0);  // nothing before the batch ends
    ASSERT_EQ(keys->AEGP_EndAddKeyframes(true, batch), A_Err_NONE);
    keys->AEGP_GetStreamNumKFs(stream, &count);
    EXPECT_EQ(count, 2);
    // The key without a value took the stream's value there (0 degrees).
    AEGP_StreamValue2 got{};
    keys->AEGP_GetNewKeyframeValue(kPlugin, stream, 0, &got);
    EXPECT_EQ(got.val.one_d, 0.0);
    // Layer time 1 is composition time 3.
    A_Time t{};
    keys->AEGP_GetKeyframeTime(stream, 1, AEGP_LTimeMode_CompTime, &t);
    EXPECT_EQ(t.value, 7500);
    const A_Time halfComp = At(6250);
    StreamSuite()->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_CompTime, &halfComp, false, &got);
    EXPECT_NEAR(got.val.one_d, 45.0, 1e-9);

    ASSERT_EQ(keys->AEGP_StartAddKeyframes(stream, &batch), A_Err_NONE);
    keys->AEGP_AddKeyframes(batch, AEGP_LTimeMode_LayerTime, &halfComp, &first);
    ASSERT_EQ(keys->AEGP_EndAddKeyframes(false, batch), A_Err_NONE);  // thrown away
    keys->AEGP_GetStreamNumKFs(stream, &count);
    EXPECT_EQ(count, 2);
    EXPECT_NE(keys->AEGP_EndAddKeyframes(true, batch), A_Err_NONE);

    A_long index = -1;
    const A_Time middle = At(1250);  // layer time 0.5
    ASSERT_EQ(keys->AEGP_InsertKeyframe(stream, AEGP_LTimeMode_LayerTime, &middle, &index), A_Err_NONE);
    EXPECT_EQ(index, 1);
    keys->AEGP_GetNewKeyframeValue(kPlugin, stream, 1, &got);
    EXPECT_NEAR(got.val.one_d, 45.0, 1e-9);
    AEGP_KeyframeInterpolationType in = 0, out = 0;
    ASSERT_EQ(keys->AEGP_SetKeyframeInterpolation(stream, 1, AEGP_KeyInterp_HOLD, AEGP_KeyInterp_BEZIER), A_Err_NONE);
    keys->AEGP_GetKeyframeInterpolation(stream, 1, &in, &out);
    EXPECT_EQ(in, AEGP_KeyInterp_HOLD);
    EXPECT_EQ(out, AEGP_KeyInterp_BEZIER);
    EXPECT_NE(keys->AEGP_GetKeyframeTime(stream, 3, AEGP_LTimeMode_CompTime, &t), A_Err_NONE);
    StreamSuite()->AEGP_DisposeStream(stream);
}

TEST_F(StreamSuitesTest, MarkersAreKeysOfTheMarkerStream) {
    const AEGP_KeyframeSuite4* keys = KeyframeSuite();
    const AEGP_MarkerSuite2* markers = MarkerSuite();
    AEGP_StreamRefH stream = nullptr;
    ASSERT_EQ(StreamSuite()->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_MARKER, &stream),
              A_Err_NONE);
    AEGP_StreamType type = 0;
    StreamSuite()->AEGP_GetStreamType(stream, &type);
    EXPECT_EQ(type, AEGP_StreamType_MARKER);
    AEGP_MarkerValP marker = nullptr;
    ASSERT_EQ(markers->AEGP_NewMarker(&marker), A_Err_NONE);
    const std::u16string comment = u"Hit\nfirst contact";
    ASSERT_EQ(markers->AEGP_SetMarkerString(marker, AEGP_MarkerString_COMMENT,
                                            reinterpret_cast<const A_UTF16Char*>(comment.c_str()),
                                            static_cast<A_long>(comment.size())),
              A_Err_NONE);
    const A_Time half{1, 2};
    ASSERT_EQ(markers->AEGP_SetMarkerDuration(marker, &half), A_Err_NONE);

    // The way an importer puts a marker: insert a key, take the value there,
    // put its own marker into the value, set it and dispose of the value.
    A_long index = -1;
    const A_Time second = At(2500);
    ASSERT_EQ(keys->AEGP_InsertKeyframe(stream, AEGP_LTimeMode_LayerTime, &second, &index), A_Err_NONE);
    AEGP_StreamValue2 value{};
    ASSERT_EQ(StreamSuite()->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_LayerTime, &second, true, &value),
              A_Err_NONE);
    ASSERT_EQ(markers->AEGP_DisposeMarker(value.val.markerP), A_Err_NONE);
    value.val.markerP = marker;
    ASSERT_EQ(keys->AEGP_SetKeyframeValue(stream, index, &value), A_Err_NONE);
    ASSERT_EQ(StreamSuite()->AEGP_DisposeStreamValue(&value), A_Err_NONE);
    EXPECT_NE(markers->AEGP_DisposeMarker(marker), A_Err_NONE);  // went with the value

    ASSERT_EQ(card->markers.size(), 1u);
    EXPECT_EQ(card->markers[0].time, 1.0);
    EXPECT_EQ(card->markers[0].duration, 0.5);
    EXPECT_EQ(card->markers[0].comment, "Hit\nfirst contact");

    AEGP_StreamValue2 back{};
    ASSERT_EQ(keys->AEGP_GetNewKeyframeValue(kPlugin, stream, 0, &back), A_Err_NONE);
    AEGP_MemHandle text = nullptr;
    ASSERT_EQ(markers->AEGP_GetMarkerString(kPlugin, back.val.markerP, AEGP_MarkerString_COMMENT, &text), A_Err_NONE);
    EXPECT_EQ(TakeText(text), "Hit\nfirst contact");
    A_Time duration{};
    markers->AEGP_GetMarkerDuration(back.val.markerP, &duration);
    EXPECT_EQ(duration.value * 2, static_cast<A_long>(duration.scale));
    StreamSuite()->AEGP_DisposeStreamValue(&back);
    StreamSuite()->AEGP_DisposeStream(stream);

    AEGP_StreamRefH compMarkers = nullptr;
    ASSERT_EQ(CompSuite()->AEGP_GetNewCompMarkerStream(kPlugin, CompHandle(*comp), &compMarkers), A_Err_NONE);
    const A_Time two = At(5000);
    keys->AEGP_InsertKeyframe(compMarkers, AEGP_LTimeMode_CompTime, &two, &index);
    ASSERT_EQ(comp->comp.markers.size(), 1u);
    EXPECT_EQ(comp->comp.markers[0].time, 2.0);
    StreamSuite()->AEGP_DisposeStream(compMarkers);
    EXPECT_TRUE(ExitProblems().size() == g_host.misuse.size());
}

}  // namespace
}  // namespace aehost
