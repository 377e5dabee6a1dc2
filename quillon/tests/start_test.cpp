// The asynchronous start of the real library: loaded with dlopen, started with
// a module record of this program, it finds this program's quillon::ory_main,
// hands over the API record, and only then reports ready.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "plugin/engine/engine_ops.h"

namespace {

std::atomic<int32_t> g_starts{0};
std::atomic<int32_t> g_ends{0};
std::atomic<const QuillonApi*> g_handedOver{nullptr};
std::string g_startFolder;

// Stands for the program's module record: data of this image.
int32_t g_moduleRecord = 0;

void KeepOverride() {}

}  // namespace

namespace quillon {
int32_t ory_main(int32_t action, void* p1, void*, void* p3) {
  if (action == kOryMainStart) {
    auto* api = static_cast<const QuillonApi*>(p1);
    const auto* fn = static_cast<const ORYOS_Fn*>(api->tables[Table_Fn]);
    const auto* st = static_cast<const ORYOS_St*>(api->tables[Table_St]);
    EngineString text{nullptr};
    fn->GetString(&text, static_cast<const Filename*>(p3));
    std::string folder(static_cast<size_t>(st->GetCStringLength(&text, kStringEncodingUtf8)) + 1, '\0');
    st->GetCString(&text, folder.data(), static_cast<int32_t>(folder.size()), kStringEncodingUtf8);
    st->Release(&text);
    folder.pop_back();
    g_startFolder = folder;
    g_handedOver.store(api);
    g_starts.fetch_add(1);
    return 1;
  }
  if (action == kOryMainEnd) {
    g_ends.fetch_add(1);
    return 1;
  }
  return -1;
}
}  // namespace quillon

namespace {

class EngineStartTest : public ::testing::Test {
 protected:
  void* library = dlopen(QUILLON_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
  QuillonInitializeFunc initialize = nullptr;
  IsQuillonInitializedFunc isInitialized = nullptr;
  QuillonShutdownFunc shutdown = nullptr;

  void SetUp() override {
    ASSERT_NE(library, nullptr) << dlerror();
    initialize = reinterpret_cast<QuillonInitializeFunc>(dlsym(library, "QuillonInitialize"));
    isInitialized = reinterpret_cast<IsQuillonInitializedFunc>(dlsym(library, "IsQuillonInitialized"));
    shutdown = reinterpret_cast<QuillonShutdownFunc>(dlsym(library, "QuillonShutdown"));
    ASSERT_TRUE(initialize && isInitialized && shutdown);
  }

  void TearDown() override {
    if (library) dlclose(library);
  }

  const QuillonApi* WaitUntilReady() {
    const QuillonApi* record = nullptr;
    for (int round = 0; round < 500 && !isInitialized(&record); ++round) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return record;
  }
};

TEST_F(EngineStartTest, OnlyTheThreeEntryPointsAreExported) {
  EXPECT_EQ(dlsym(library, "_ZN7quillon8ApiRecordEv"), nullptr);
  EXPECT_EQ(dlsym(library, "_Z7ReduceR8BaseTime"), nullptr);
}

TEST_F(EngineStartTest, StartHandsOverTheTablesAndShutdownEndsIt) {
  EXPECT_FALSE(initialize(&g_moduleRecord, nullptr, u"/opt/engine/", u"", nullptr));

  char16_t first[] = u"g_customParentHWND=";
  char16_t second[] = u"g_moduleNegatives=";
  char16_t* items[] = {first, second};
  QuillonArguments args{items, 2, 2};
  ASSERT_TRUE(initialize(&g_moduleRecord, "start", u"/opt/engine/", u"", &args));
  const QuillonApi* record = WaitUntilReady();
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(g_starts.load(), 1);
  EXPECT_EQ(g_handedOver.load(), record);
  EXPECT_EQ(g_startFolder, "/opt/engine/");
  EXPECT_GE(record->version, kQuillonApiVersion);
  for (int32_t i = 0; i < kEngineTableCount; ++i) EXPECT_NE(record->tables[i], nullptr) << kEngineTableNames[i];

  // A second start does not start again.
  ASSERT_TRUE(initialize(&g_moduleRecord, "start", u"/opt/engine/", u"", &args));
  EXPECT_EQ(g_starts.load(), 1);

  // The overrides take their interface ids from the framework's records; made-up ids are refused.
  const auto* methods = static_cast<const QuillonOverrideBlock*>(dlsym(library, kFrameworkMethodsSymbol));
  ASSERT_NE(methods, nullptr);
  ASSERT_EQ(methods->count, 4);
  QuillonOverride items4[4];
  for (int i = 0; i < 4; ++i) items4[i] = {{0, 0}, methods->items[i].methodName, reinterpret_cast<void*>(&KeepOverride)};
  EXPECT_EQ(std::string(items4[0].methodName), "Free@fd4f2d19abfff044");
  EXPECT_EQ(std::string(items4[2].methodName), "RemoveWeakReference@f0540d7d9f694e77");
  QuillonOverrideBlock overrides{items4, 4};
  EXPECT_FALSE(shutdown(&overrides, &g_moduleRecord, true));
  for (int i = 0; i < 4; ++i) {
    items4[i].interfaceId[0] = methods->items[i].interfaceId[0];
    items4[i].interfaceId[1] = methods->items[i].interfaceId[1];
  }
  EXPECT_TRUE(shutdown(&overrides, &g_moduleRecord, false));
  EXPECT_EQ(g_ends.load(), 1);
  const QuillonApi* after = nullptr;
  EXPECT_FALSE(isInitialized(&after));
  EXPECT_EQ(after, nullptr);

  // A malformed override block is reported, and no second end is sent.
  QuillonOverrideBlock shortBlock{items4, 3};
  EXPECT_FALSE(shutdown(&shortBlock, &g_moduleRecord, false));
  EXPECT_EQ(g_ends.load(), 1);
}

}  // namespace
