// Hostile scene files: every one is refused with the byte offset of its problem, and
// none crashes, hangs or makes the reader allocate more than the file can justify.
#include <gtest/gtest.h>

#include <string>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/byte_writer.h"
#include "quillon/format/file_frame.h"
#include "quillon/format/identity_record.h"
#include "quillon/format/ory_format.h"
#include "quillon/format/record_layout.h"
#include "quillon/format/tests/sample_scene.h"

namespace quillon::format {
namespace {

std::vector<std::uint8_t> SampleFile() {
  std::vector<std::uint8_t> bytes;
  EXPECT_TRUE(EncodeDocument(*testing::MakeSampleScene(), bytes, nullptr));
  return bytes;
}

// The decoder's error, or "" when it accepted the file.
std::string DecodeError(const std::vector<std::uint8_t>& file) {
  Document doc;
  std::string error;
  return DecodeDocument(file.data(), file.size(), doc, &error) ? "" : error;
}

// The offset named by an error "byte N: ...".
std::size_t OffsetOf(const std::string& error) {
  EXPECT_EQ(error.rfind("byte ", 0), 0u) << error;
  return std::stoull(error.substr(5));
}

std::vector<std::uint8_t> Resealed(std::vector<std::uint8_t> file) {
  ByteWriter w;
  w.bytes = std::move(file);
  SealFrame(w);
  return w.bytes;
}

// A frame whose body starts as `head` writes it; the rest is up to each test.
struct CraftedFile : ByteWriter {
  CraftedFile() { BeginFrame(*this); }
  // An object with no parts, no transform offset and no tags; its child count follows.
  void PlainObject(std::int32_t type) {
    I32(type);
    U8(0);
    I32(0);                                   // rotation order
    for (int i = 0; i < 3; ++i) F64(0);       // offset position
    for (int i = 0; i < 3; ++i) I32(0);       // modes
  }
  // Time, empty lists, no active settings, no views, no scene states.
  void EmptyDocumentTail() {
    F64(0);
    F64(1);
    for (int list = 0; list < 4; ++list) U32(0);
    I32(-1);
    U32(0);
    U32(0);
    I32(-1);
    I32(-1);
    U32(0);
    I32(-1);
  }
  std::vector<std::uint8_t> Sealed() {
    SealFrame(*this);
    return bytes;
  }
};

TEST(CorruptInput, TruncationAtEveryOffsetIsRefused) {
  const std::vector<std::uint8_t> file = SampleFile();
  for (std::size_t n = 0; n < file.size(); ++n) {
    const std::vector<std::uint8_t> cut(file.begin(), file.begin() + n);
    const std::string error = DecodeError(cut);
    ASSERT_NE(error, "") << "accepted a file cut at " << n;
    EXPECT_LE(OffsetOf(error), n);
  }
}

TEST(CorruptInput, TruncatedBodyWithARepairedFrameIsRefusedByTheParser) {
  // The frame's checksum is made to fit, so the parser itself meets the early end.
  const std::vector<std::uint8_t> file = SampleFile();
  for (std::size_t n = kFrameHeaderBytes; n < file.size(); ++n) {
    const std::string error = DecodeError(Resealed({file.begin(), file.begin() + n}));
    ASSERT_NE(error, "") << "accepted a body cut at " << n;
    EXPECT_LE(OffsetOf(error), n);
    EXPECT_GE(OffsetOf(error), kFrameHeaderBytes);
  }
}

TEST(CorruptInput, FlippedBytesAreFoundOrReadSafely) {
  const std::vector<std::uint8_t> file = SampleFile();
  for (std::size_t i = kFrameHeaderBytes; i < file.size(); ++i) {
    std::vector<std::uint8_t> damaged = file;
    damaged[i] ^= 0xFF;
    EXPECT_EQ(OffsetOf(DecodeError(damaged)), 12u) << "the checksum missed byte " << i;
    // With a fitting checksum the body parser must cope with whatever the byte became.
    const std::string error = DecodeError(Resealed(damaged));
    // An item that the file ends before is named where it would start, at most at the end.
    if (!error.empty()) {
      EXPECT_LE(OffsetOf(error), file.size()) << error << " at flip " << i;
    }
  }
}

TEST(CorruptInput, ListCountBeyondTheFileIsRefusedBeforeReading) {
  CraftedFile f;
  f.U8(0);
  f.EmptyDocumentTail();
  std::vector<std::uint8_t> file = f.Sealed();
  const std::size_t objectCount = kFrameHeaderBytes + 1 + 16;  // behind presence byte and time
  for (int i = 0; i < 4; ++i) file.at(objectCount + i) = 0xFF;
  // 4294967295 objects of at least 53 bytes; 32 bytes of the tail remain.
  EXPECT_EQ(DecodeError(Resealed(file)),
            "byte 41: list entry count 4294967295 needs at least 227633266635 bytes, 40 remain");
}

TEST(CorruptInput, TextLongerThanTheFileIsRefused) {
  CraftedFile f;
  f.U8(NodePart_Name);
  f.U32(0x7FFFFFFF);
  f.EmptyDocumentTail();
  EXPECT_EQ(DecodeError(f.Sealed()), "byte 25: node name length 2147483647 units exceeds the 60 bytes that remain");
}

TEST(CorruptInput, KeyCountBeyondTheFileIsRefused) {
  CraftedFile f;
  f.U8(NodePart_Tracks);
  f.U32(1);                // one track
  f.U32(1);                // one level
  f.I32(ObjectParam_Enabled);
  f.I32(0);
  f.I32(0);
  f.I32(kTrackKindFloat);
  f.U8(0);                 // track's common block
  f.U8(1);                 // has a curve
  f.U8(0);                 // curve's common block
  f.U32(100000000);        // keys
  f.EmptyDocumentTail();
  EXPECT_EQ(DecodeError(f.Sealed()), "byte 52: key count 100000000 needs at least 2900000000 bytes, 60 remain");
}

TEST(CorruptInput, PriorityAndTagCountsBeyondTheFileAreRefused) {
  CraftedFile priority;
  priority.U8(NodePart_Params);
  priority.U32(1);
  priority.I32(TargetTagParam_Priority);
  priority.I32(DataKind_Priority);
  priority.U32(0xFFFFFFFF);
  priority.EmptyDocumentTail();
  EXPECT_EQ(DecodeError(priority.Sealed()),
            "byte 37: priority entry count 4294967295 needs at least 17179869180 bytes, 60 remain");

  CraftedFile tag;
  tag.U8(0);
  tag.F64(0);
  tag.F64(1);
  tag.U32(1);              // one object
  tag.PlainObject(ObjectType_Spline);
  tag.U32(1);              // one tag
  tag.I32(TagType_Points);
  tag.U8(0);
  tag.U32(1000000);        // points of 24 bytes each
  // 24 header, 1 + 16 document, 4 count, 4 + 1 + 4 + 24 + 12 object, 4 + 4 + 1 tag.
  EXPECT_EQ(DecodeError(tag.Sealed()), "byte 99: tag element count 1000000 needs at least 24000000 bytes, 0 remain");
}

TEST(CorruptInput, NestingDeeperThanTheLimitIsRefused) {
  CraftedFile f;
  f.U8(0);
  f.F64(0);
  f.F64(1);
  const int depth = kMaxDepth + 50;
  for (int level = 0; level < depth; ++level) {
    f.U32(1);              // one object in this list
    f.PlainObject(ObjectType_Null);
    f.U32(0);              // no tags
  }
  for (int level = 0; level <= depth; ++level) f.U32(0);
  const std::string error = DecodeError(f.Sealed());
  EXPECT_NE(error.find("content nests deeper than 200 levels"), std::string::npos) << error;
}

TEST(CorruptInput, UnknownKindBadIndicesDisorderAndTrailingBytesAreNamed) {
  CraftedFile kind;
  kind.U8(NodePart_Params);
  kind.U32(1);
  kind.I32(5);
  kind.I32(77);
  kind.EmptyDocumentTail();
  EXPECT_EQ(DecodeError(kind.Sealed()), "byte 33: value kind 77 is unknown");

  CraftedFile order;
  order.U8(NodePart_Params);
  order.U32(2);
  order.I32(9);
  order.I32(DataKind_Empty);
  order.I32(9);
  order.I32(DataKind_Empty);
  order.EmptyDocumentTail();
  EXPECT_EQ(DecodeError(order.Sealed()), "byte 37: parameter id 9 does not rise above 9");

  CraftedFile active;
  active.U8(0);
  active.EmptyDocumentTail();
  std::vector<std::uint8_t> file = active.bytes;
  for (int i = 0; i < 4; ++i) file.at(kFrameHeaderBytes + 1 + 16 + 16 + i) = 0;  // index 0 of no settings
  EXPECT_EQ(DecodeError(Resealed(file)), "byte 57: active settings index 0 is outside -1..-1");

  file = active.bytes;
  file.push_back(0);
  EXPECT_EQ(DecodeError(Resealed(file)), "byte 85: 1 bytes follow the end of the document");
}

TEST(CorruptInput, KeysOutOfTimeOrderAreRefused) {
  CraftedFile f;
  f.U8(NodePart_Tracks);
  f.U32(1);
  f.U32(1);
  f.I32(ObjectParam_Enabled);
  f.I32(0);
  f.I32(0);
  f.I32(kTrackKindFloat);
  f.U8(0);
  f.U8(1);
  f.U8(0);
  f.U32(2);
  for (double frame : {5.0, 3.0}) {
    f.F64(frame);
    f.F64(25);
    f.F64(0);
    f.U8(0);
    f.I32(DataKind_Empty);
  }
  f.EmptyDocumentTail();
  EXPECT_EQ(DecodeError(f.Sealed()), "byte 85: key 1 does not come after the key before it");
}

TEST(CorruptInput, FailedReadLeavesTheDocumentEmpty) {
  std::vector<std::uint8_t> file = SampleFile();
  file.resize(file.size() - 3);
  std::unique_ptr<Document> doc = testing::MakeSampleScene();
  std::string error;
  EXPECT_FALSE(DecodeDocument(file.data(), file.size(), *doc, &error));
  file = Resealed(file);
  EXPECT_FALSE(DecodeDocument(file.data(), file.size(), *doc, &error));
  EXPECT_EQ(doc->objects->firstChild, nullptr);
  EXPECT_TRUE(doc->views.empty());
  EXPECT_TRUE(doc->params.empty());
}

// A document node with nothing but its identity part, written by `identity`.
struct IdentityCase {
  const char* what;
  void (*identity)(CraftedFile& f);
  std::string error;  // the start of the error
};

void EmptyTail(CraftedFile& f) { f.EmptyDocumentTail(); }

const IdentityCase kIdentityCases[] = {
    {"marker flag", [](CraftedFile& f) { f.U8(2); EmptyTail(f); }, "byte 25: marker flag 2 is neither 0 nor 1"},
    {"cut marker", [](CraftedFile& f) { f.U8(1); f.Raw("0123456789", 10); },
     "byte 26: truncated node marker: needs 16 bytes, 10 remain"},
    {"empty id", [](CraftedFile& f) { f.U8(0); f.U32(1); f.I32(7); f.U32(0); EmptyTail(f); },
     "byte 30: unique id of application 7 is empty"},
    {"second id of one application",
     [](CraftedFile& f) {
       f.U8(0);
       f.U32(2);
       for (char c : {'a', 'b'}) {
         f.I32(7);
         f.U32(1);
         f.U8(static_cast<std::uint8_t>(c));
       }
       EmptyTail(f);
     },
     "byte 39: application 7 gives the node a second unique id"},
    {"id count", [](CraftedFile& f) { f.U8(0); f.U32(0xFFFFFFFF); EmptyTail(f); },
     "byte 26: unique id count 4294967295 needs at least 38654705655 bytes"},
    {"id size", [](CraftedFile& f) { f.U8(0); f.U32(1); f.I32(7); f.U32(0xFFFFFFFF); EmptyTail(f); },
     "byte 34: unique id byte count 4294967295 needs at least 4294967295 bytes"},
    {"nothing after the flags", [](CraftedFile&) {}, "byte 24: node part flags name an identity, but the file ends"},
};

TEST(CorruptInput, DamagedIdentityIsNamed) {
  for (const IdentityCase& c : kIdentityCases) {
    SCOPED_TRACE(c.what);
    CraftedFile f;
    f.U8(kNodePartIdentity);
    c.identity(f);
    const std::string error = DecodeError(f.Sealed());
    EXPECT_EQ(error.rfind(c.error, 0), 0u) << error;
  }
}

// A refused file leaves the document empty, also of the identity the file began to give it.
TEST(CorruptInput, RefusedFileLeavesNoIdentity) {
  CraftedFile f;
  f.U8(kNodePartIdentity);
  f.U8(1);
  f.Raw("0123456789abcdef", 16);
  f.U32(0);
  f.U8(7);  // a stray byte where the time should begin
  const std::vector<std::uint8_t> file = f.Sealed();
  Document doc;
  std::string error;
  EXPECT_FALSE(DecodeDocument(file.data(), file.size(), doc, &error));
  EXPECT_FALSE(HasIdentity(doc.identity)) << error;
}

TEST(CorruptInput, IdentityInAVersionOneFileIsRefused) {
  CraftedFile f;
  f.U8(kNodePartIdentity);
  f.U8(0);
  f.U32(0);
  f.EmptyDocumentTail();
  std::vector<std::uint8_t> file = f.Sealed();
  EXPECT_EQ(DecodeError(file), "");
  file[8] = 1;
  EXPECT_EQ(DecodeError(file), "byte 24: node part flags 128 name parts that do not exist");
}

}  // namespace
}  // namespace quillon::format
