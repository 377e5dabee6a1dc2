// A document many times larger than the writer's buffer comes out byte for byte as the
// whole-buffer encoder of the first format version wrote it, into a file and into memory,
// and reads back from the file. Its links point forward across many buffer flushes: every
// object names a layer, and the layers follow all objects in the file.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/format_versions.h"
#include "quillon/format/ory_format.h"
#include "quillon/format/tests/sample_scene.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"

namespace quillon::format {
namespace {

constexpr int kObjects = 600;
constexpr int kLayers = 7;
constexpr int kKeysPerTrack = 120;

// The sample scene, which holds every kind of content, and kObjects nulls with three
// keyed position tracks and a layer each.
std::unique_ptr<Document> MakeLargeDocument() {
  std::unique_ptr<Document> document = testing::MakeSampleScene();
  std::vector<Node*> layers;
  for (int i = 0; i < kLayers; ++i) {
    Node* layer = NewLayer().release();
    layer->name = u"L" + std::u16string(1, static_cast<char16_t>(u'a' + i));
    InsertLastUnder(layer, document->layers.get());
    layers.push_back(layer);
  }
  for (int i = 0; i < kObjects; ++i) {
    auto* object = new Object(ObjectType_Null);
    object->name = u"null " + std::u16string(1, static_cast<char16_t>(u'A' + i % 26));
    object->layerId = LinkIdOf(layers[static_cast<size_t>(i % kLayers)]);
    InsertLastUnder(object, document->objects.get());
    for (int32_t component : {VectorComponent_X, VectorComponent_Y, VectorComponent_Z}) {
      auto* track = new Track({{ObjectParam_Position, DataKind_Vector, 0}, {component, DataKind_Float, 0}});
      track->curve = std::make_unique<Curve>();
      track->curve->track = track;
      InsertLastUnder(track, object->trackList());
      for (int frame = 0; frame < kKeysPerTrack; ++frame) {
        Key* key = AddKeyAt(*track->curve, BaseTime(frame, 30));
        key->value = i * 0.5 + frame * 0.25 - component;
        key->bits.set(kNodeBitKeyLinear);
        key->bits.set(kNodeBitKeyTangentsLocked);
      }
    }
  }
  return document;
}

// 64-bit FNV-1a: a digest that the expectation below was taken with.
std::uint64_t Digest(const std::uint8_t* data, std::size_t size) {
  std::uint64_t hash = 14695981039346656037ull;
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ data[i]) * 1099511628211ull;
  return hash;
}

// Size and digest of the file that the whole-buffer encoder wrote for MakeLargeDocument, in
// format version 1, which the document (without identities, containers and states) still
// gives when it is written as version 1.
constexpr std::size_t kExpectedSize = 8114022;
constexpr std::uint64_t kExpectedDigest = 12046610575224125654ull;

TEST(LargeDocument, StreamedFileHasTheBytesOfTheWholeBufferEncoding) {
  const std::unique_ptr<Document> document = MakeLargeDocument();
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("ory_large_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + ".ory");
  std::string error;
  ASSERT_TRUE(WriteDocument(*document, path.string(), &error)) << error;
  std::ifstream in(path, std::ios::binary);
  const std::string file((std::istreambuf_iterator<char>(in)), {});
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(file.data());
  std::vector<std::uint8_t> encoded;
  ASSERT_TRUE(EncodeDocument(*document, encoded, &error)) << error;
  EXPECT_EQ(std::vector<std::uint8_t>(bytes, bytes + file.size()), encoded);
  std::vector<std::uint8_t> versionOne;
  ASSERT_TRUE(EncodeDocumentAs(*document, kFormatVersionWithoutIdentity, versionOne, &error)) << error;
  EXPECT_EQ(versionOne.size(), kExpectedSize);
  EXPECT_EQ(Digest(versionOne.data(), versionOne.size()), kExpectedDigest);

  std::unique_ptr<Document> read = NewDocument();
  ASSERT_TRUE(ReadDocument(path.string(), *read, &error)) << error;
  std::filesystem::remove(path);
  std::vector<std::uint8_t> again;
  ASSERT_TRUE(EncodeDocument(*read, again, &error)) << error;
  EXPECT_EQ(again, encoded);
}

// A file read through the bounded buffer is checked as a whole one is: bytes damaged in the
// middle, even where they make a record that cannot be decoded, are named by the checksum.
TEST(LargeDocument, DamageAnywhereInTheStreamedBodyIsNamedByTheChecksum) {
  const std::unique_ptr<Document> document = MakeLargeDocument();
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("ory_damaged_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + ".ory");
  std::string error;
  std::vector<std::uint8_t> bytes;
  ASSERT_TRUE(EncodeDocument(*document, bytes, &error)) << error;
  for (const std::size_t damaged : {std::size_t{100}, bytes.size() / 2, bytes.size() - 3}) {
    std::vector<std::uint8_t> copy = bytes;
    for (std::size_t i = damaged; i < damaged + 3; ++i) copy[i] ^= 0xFF;
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(copy.data()),
                                                static_cast<std::streamsize>(copy.size()));
    std::unique_ptr<Document> read = NewDocument();
    EXPECT_FALSE(ReadDocument(path.string(), *read, &error));
    EXPECT_EQ(error.rfind(path.string() + ": byte 12: checksum 0x", 0), 0u) << error;
    EXPECT_EQ(error.substr(error.size() - 21), ": the file is damaged") << error;
    EXPECT_EQ(read->objects->firstChild, nullptr);
  }
  std::filesystem::resize_file(path, bytes.size() - 1);
  std::unique_ptr<Document> read = NewDocument();
  EXPECT_FALSE(ReadDocument(path.string(), *read, &error));
  EXPECT_EQ(error, path.string() + ": byte 16: body length " + std::to_string(bytes.size() - 24) + " does not match the " +
                       std::to_string(bytes.size() - 25) + " bytes after the header: the file is truncated");
  std::filesystem::remove(path);
}

// The file stops taking bytes part way (the process may write no more than 3 MiB to a file)
// while the encoder is still filling buffers for it: the write ends with the system's reason,
// and the file it was to replace keeps its content, with nothing else left in its folder.
TEST(LargeDocument, AFileThatStopsTakingBytesMidwayLeavesTheOldOne) {
  const std::unique_ptr<Document> document = MakeLargeDocument();
  const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                       ("ory_limit_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                        "_" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const std::string path = (folder / "scene.ory").string();
  std::ofstream(path) << "old";
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const rlimit limit{3 << 20, 3 << 20};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::string error;
    const bool written = WriteDocument(*document, path, &error);
    ::_exit(!written && error == path + ": cannot write: File too large" ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  std::ifstream in(path);
  EXPECT_EQ(std::string((std::istreambuf_iterator<char>(in)), {}), "old");
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  EXPECT_EQ(names, std::vector<std::string>{"scene.ory"});
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace quillon::format
