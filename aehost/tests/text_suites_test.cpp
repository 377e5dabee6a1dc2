// The source text of a text layer through the stream and text document suites,
// as the exporter reads it: a stream of text documents whose keys hold.
#include <algorithm>

#include "aehost/core/exit_report.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

class TextSuitesTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        title = &AddNullLayer(project, *comp, "Title");
        title->objectType = LayerObjectType::Text;
        title->startTime = 1.0;
        TextDocument first;
        first.text = "Erste Zeile";
        TextDocument second = first;
        second.text = "Zweite \xc3\x84nderung";
        title->text.keys = {{0.0, first}, {0.5, second}};
    }

    // The text shown at a composition time, read as the exporter reads it.
    std::string TextAt(AEGP_StreamRefH stream, A_long compHundredths) {
        const A_Time time{compHundredths, 100};
        AEGP_StreamValue2 value{};
        EXPECT_EQ(StreamSuite()->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_CompTime, &time, false, &value),
                  A_Err_NONE);
        AEGP_MemHandle text = nullptr;
        EXPECT_EQ(TextDocumentSuite()->AEGP_GetNewText(kPlugin, value.val.text, &text), A_Err_NONE);
        EXPECT_EQ(StreamSuite()->AEGP_DisposeStreamValue(&value), A_Err_NONE);
        return text ? TakeText(text) : std::string();
    }

    Layer* title = nullptr;
};

TEST_F(TextSuitesTest, TheSourceTextStreamGivesTheDocumentOfItsTime) {
    const AEGP_StreamSuite9* streams = StreamSuite();
    AEGP_StreamRefH stream = nullptr;
    ASSERT_EQ(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*title), AEGP_LayerStream_SOURCE_TEXT, &stream),
              A_Err_NONE);
    AEGP_StreamType type = 0;
    streams->AEGP_GetStreamType(stream, &type);
    EXPECT_EQ(type, AEGP_StreamType_TEXT_DOCUMENT);
    char name[AEGP_MAX_STREAM_NAME_SIZE] = {};
    streams->AEGP_GetStreamName(stream, true, name);
    EXPECT_STREQ(name, "Source Text");
    A_Boolean varying = false;
    streams->AEGP_IsStreamTimevarying(stream, &varying);
    EXPECT_TRUE(varying);
    // The layer starts at 1 s, its second key stands at 1.5 s in the composition.
    EXPECT_EQ(TextAt(stream, 0), "Erste Zeile");
    EXPECT_EQ(TextAt(stream, 149), "Erste Zeile");
    EXPECT_EQ(TextAt(stream, 150), "Zweite \xc3\x84nderung");
    // Its keys are counted and timed like those of any stream; calls for values of numbers
    // refuse it rather than misread it.
    A_long keys = 0;
    EXPECT_EQ(KeyframeSuite()->AEGP_GetStreamNumKFs(stream, &keys), A_Err_NONE);
    EXPECT_EQ(keys, 2);
    A_Time second{};
    EXPECT_EQ(KeyframeSuite()->AEGP_GetKeyframeTime(stream, 1, AEGP_LTimeMode_CompTime, &second), A_Err_NONE);
    EXPECT_DOUBLE_EQ(static_cast<double>(second.value) / second.scale, 1.5);
    A_Boolean expression = true;
    EXPECT_EQ(streams->AEGP_GetExpressionState(kPlugin, stream, &expression), A_Err_NONE);
    EXPECT_FALSE(expression);
    AEGP_StreamValue2 keyValue{};
    EXPECT_NE(KeyframeSuite()->AEGP_GetNewKeyframeValue(kPlugin, stream, 0, &keyValue), A_Err_NONE);
    EXPECT_EQ(streams->AEGP_DisposeStream(stream), A_Err_NONE);
    g_host.misuse.clear();
    EXPECT_TRUE(ExitProblems().empty());
}

TEST_F(TextSuitesTest, TextDocumentsAreRefusedOnOtherLayersAndOnceDisposed) {
    const AEGP_StreamSuite9* streams = StreamSuite();
    AEGP_StreamRefH stream = nullptr;
    EXPECT_NE(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_SOURCE_TEXT, &stream),
              A_Err_NONE);
    ASSERT_EQ(streams->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*title), AEGP_LayerStream_SOURCE_TEXT, &stream),
              A_Err_NONE);
    const A_Time zero{0, 100};
    AEGP_StreamValue2 value{};
    ASSERT_EQ(streams->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_CompTime, &zero, false, &value),
              A_Err_NONE);
    const AEGP_TextDocumentH document = value.val.text;
    // The value still holds its document at exit: the report names it.
    const std::vector<std::string> problems = ExitProblems();
    EXPECT_NE(std::find(problems.begin(), problems.end(), "1 text document value(s) never disposed"), problems.end());
    const A_UTF16Char changed[] = {'N', 'e', 'u'};
    EXPECT_EQ(TextDocumentSuite()->AEGP_SetText(document, changed, 3), A_Err_NONE);
    AEGP_MemHandle text = nullptr;
    ASSERT_EQ(TextDocumentSuite()->AEGP_GetNewText(kPlugin, document, &text), A_Err_NONE);
    EXPECT_EQ(TakeText(text), "Neu");
    EXPECT_EQ(title->text.keys[0].document.text, "Erste Zeile");  // the layer is not changed by its value
    EXPECT_EQ(streams->AEGP_DisposeStreamValue(&value), A_Err_NONE);
    EXPECT_NE(TextDocumentSuite()->AEGP_GetNewText(kPlugin, document, &text), A_Err_NONE);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(streams->AEGP_DisposeStream(stream), A_Err_NONE);
}

}  // namespace
}  // namespace aehost
