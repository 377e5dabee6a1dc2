// The import's stream values and key batches against the headless host in this process. The
// host's stream suite is handed out through a wrapper that counts the values given back, since
// the host keeps nothing that a plain value's disposal would change.
#include <gtest/gtest.h>

#include <string>

#include "aehost/core/basic_suite.h"
#include "aehost/core/host.h"
#include "aehost/core/model_handles.h"
#include "aehost/model/edit.h"
#include "plugin/host/cti.h"
#include "plugin/importer/layer_streams.h"
#include "plugin/importer/tests/in_process_host.h"

namespace {

const AEGP_StreamSuite9* g_hostStreams = nullptr;
AEGP_StreamSuite9 g_countingStreams{};
int g_disposedValues = 0;

A_Err CountDisposedValue(AEGP_StreamValue2* value) {
  ++g_disposedValues;
  return g_hostStreams->AEGP_DisposeStreamValue(value);
}

SPErr AcquireCounting(const char* name, A_long version, const void** suite) {
  const SPErr err = aehost::BasicSuite()->AcquireSuite(name, version, suite);
  if (!err && std::string(name) == kAEGPStreamSuite && version == kAEGPStreamSuiteVersion9) {
    g_hostStreams = static_cast<const AEGP_StreamSuite9*>(*suite);
    g_countingStreams = *g_hostStreams;
    g_countingStreams.AEGP_DisposeStreamValue = CountDisposedValue;
    *suite = &g_countingStreams;
  }
  return err;
}

class LayerStreams : public ::testing::Test {
 protected:
  void SetUp() override {
    qae_test::ResetHostWithPlugin(project);
    comp = &aehost::AddComp(project, "Main", 640, 360, 1.0, 2.0, 25);
    layer = &aehost::AddNullLayer(project, *comp, "Mover");
    layer->switches.threeD = true;
    pica = *aehost::BasicSuite();
    pica.AcquireSuite = AcquireCounting;
    g_disposedValues = 0;
    OpenFrame(&pica, 0, qae_test::kInProcessPlugin);
  }

  void TearDown() override {
    CloseFrame();
    aehost::ResetHost();
  }

  size_t PositionKeys() const {
    const auto found = layer->streams.find(aehost::LayerStream::Position);
    return found == layer->streams.end() ? 0 : found->second.keys.size();
  }

  aehost::Project project;
  aehost::Item* comp = nullptr;
  aehost::Layer* layer = nullptr;
  SPBasicSuite pica{};
};

// The static value and each key's value go back to the host once they are handed over.
TEST_F(LayerStreams, EveryValueHandedOverIsDisposed) {
  {
    OpenStream position;
    ASSERT_EQ(SetLayerStream(aehost::LayerHandle(*layer), AEGP_LayerStream_POSITION, ThreeD(1, 2, 3), &position),
              StreamResult::kSet);
    EXPECT_EQ(g_disposedValues, 1);
    ASSERT_TRUE(position.StartKeys());
    EXPECT_TRUE(position.AddKey(A_Time{0, 25}, ThreeD(1, 2, 3)));
    EXPECT_TRUE(position.AddKey(A_Time{1, 25}, ThreeD(4, 5, 6)));
    EXPECT_EQ(g_disposedValues, 3);
    EXPECT_TRUE(position.EndKeys());
  }
  EXPECT_EQ(PositionKeys(), 2u);
  EXPECT_TRUE(aehost::g_host.streams.Entries().empty());
}

// A batch that was never ended (a host call failed on the way) leaves with its stream
// without adding its keys, and the host gets the batch back.
TEST_F(LayerStreams, ABatchLeftOpenIsNotCommitted) {
  {
    OpenStream position;
    ASSERT_EQ(SetLayerStream(aehost::LayerHandle(*layer), AEGP_LayerStream_POSITION, ThreeD(1, 2, 3), &position),
              StreamResult::kSet);
    ASSERT_TRUE(position.StartKeys());
    EXPECT_TRUE(position.AddKey(A_Time{0, 25}, ThreeD(1, 2, 3)));
  }
  EXPECT_EQ(PositionKeys(), 0u);
  EXPECT_TRUE(aehost::g_host.keyBatches.Entries().empty());
  EXPECT_TRUE(aehost::g_host.streams.Entries().empty());
}

}  // namespace
