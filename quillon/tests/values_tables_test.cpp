// Typed values, parameter sets, links, texts, paths and the extension
// libraries, through tables Gd, Bc, Ln, St, Fn and Ge.
#include <gtest/gtest.h>

#include <cstring>

#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

TEST(TypedValuesTest, KindsCopiesAndEquality) {
  Data number, same, other, vector;
  number.value.kind = DataKind_Int32;  // a caller may set whole numbers itself
  number.value.payload.int32 = 7;
  Gd()->SetInt32(&same.value, 7);
  Gd()->SetFloat(&other.value, 7.0);
  EXPECT_TRUE(Gd()->Equals(&number.value, &same.value));
  EXPECT_FALSE(Gd()->Equals(&number.value, &other.value));

  Vector v{1, 2, 3};
  Gd()->SetVector(&vector.value, &v);
  Data copy;
  Gd()->Copy(&copy.value, &vector.value, 0);
  EXPECT_TRUE(Gd()->Equals(&copy.value, &vector.value));
  EXPECT_NE(Gd()->GetVector(&copy.value), Gd()->GetVector(&vector.value));
  EXPECT_EQ(Gd()->GetVector(&number.value), nullptr);
  EXPECT_EQ(Gd()->GetInt32(&vector.value), 0);

  Data time;
  BaseTime half(1, 2);
  Gd()->SetTime(&time.value, &half);
  EXPECT_EQ(Gd()->GetKind(&time.value), DataKind_Time);
  EXPECT_EQ(Gd()->GetTime(&time.value)->denominator, 2.0);
  Gd()->Free(&time.value);
  EXPECT_TRUE(Gd()->IsEmpty(&time.value));
}

TEST(TypedValuesTest, CustomPayloadsBelongToTheirKind) {
  Data priority;
  Gd()->InitCustomData(&priority.value, DataKind_Priority);
  EXPECT_EQ(Gd()->GetCustomData(&priority.value, DataKind_Font), nullptr);
  void* payload = Gd()->GetCustomData(&priority.value, DataKind_Priority);
  ASSERT_NE(payload, nullptr);
  const auto* library = Extension<PriorityLibrary>(kExtensionPriority);
  ASSERT_NE(library, nullptr);
  Data two, ten;
  Gd()->SetInt32(&two.value, 2);
  Gd()->SetInt32(&ten.value, 10);
  EXPECT_TRUE(library->SetPriorityEntry(payload, 0, &two.value));
  EXPECT_TRUE(library->SetPriorityEntry(payload, 1, &ten.value));
  EXPECT_FALSE(library->SetPriorityEntry(payload, -1, &ten.value));

  Data copy, different;
  Gd()->Copy(&copy.value, &priority.value, 0);
  EXPECT_TRUE(Gd()->Equals(&copy.value, &priority.value));
  Gd()->Copy(&different.value, &priority.value, 0);
  library->SetPriorityEntry(Gd()->GetCustomData(&different.value, DataKind_Priority), 1, &two.value);
  EXPECT_FALSE(Gd()->Equals(&different.value, &priority.value));
}

TEST(TypedValuesTest, FontPayloadIsFilledFromADescription) {
  ParamContainer description{};
  Bc()->InitContainer(&description, -1, 0);
  Text family("DejaVu Sans");
  Bc()->SetString(&description, 500, &family.value);
  Bc()->SetInt32(&description, 501, 700);
  Data font;
  Gd()->InitCustomData(&font.value, DataKind_Font);
  const auto* library = Extension<FontLibrary>(kExtensionFont);
  ASSERT_TRUE(library->SetFontFromContainer(Gd()->GetCustomData(&font.value, DataKind_Font), &description));
  Data same;
  Gd()->InitCustomData(&same.value, DataKind_Font);
  EXPECT_FALSE(Gd()->Equals(&font.value, &same.value));
  library->SetFontFromContainer(Gd()->GetCustomData(&same.value, DataKind_Font), &description);
  EXPECT_TRUE(Gd()->Equals(&font.value, &same.value));
  Bc()->FreeContainer(&description);
}

TEST(ParamContainerTest, LocalSetWithDefaultsAndIndices) {
  ParamContainer set{};
  Bc()->InitContainer(&set, -1, 0);
  EXPECT_EQ(Bc()->FindIndex(&set, 5, 0), -1);
  Bc()->SetInt32(&set, 5, 1);
  Bc()->SetInt32(&set, 5, 2);
  Bc()->SetBool(&set, 3, true);
  Bc()->SetInt64(&set, 9, int64_t{1} << 40);
  EXPECT_EQ(Bc()->GetInt32(&set, 5, 0), 2);
  EXPECT_EQ(Bc()->GetInt32(&set, 6, -4), -4);
  EXPECT_TRUE(Bc()->GetBool(&set, 3, false));
  EXPECT_EQ(Bc()->GetInt64(&set, 9, 0), int64_t{1} << 40);
  EXPECT_EQ(Bc()->FindIndex(&set, 3, 0), 0);
  EXPECT_EQ(Bc()->FindIndex(&set, 9, 0), 2);
  EXPECT_EQ(Bc()->GetFloat(&set, 77, 1.5), 1.5);

  Text name("root"), fallback("none"), out;
  Bc()->SetString(&set, 465001953, &name.value);
  Bc()->GetString(&set, &out.value, 465001953, &fallback.value);
  EXPECT_EQ(out.Utf8(), "root");
  Bc()->GetString(&set, &out.value, 1, &fallback.value);
  EXPECT_EQ(out.Utf8(), "none");

  BaseTime in(3, 25), read, otherwise(0, 1);
  Data time;
  Gd()->SetTime(&time.value, &in);
  Bc()->InsertData(&set, ParamKey_LayerInTime, &time.value);
  EXPECT_EQ(Bc()->GetTime(&set, &read, ParamKey_LayerInTime, &otherwise)->numerator, 3.0);
  EXPECT_EQ(Bc()->GetData(&set, ParamKey_LayerInTime)->kind, DataKind_Time);
  EXPECT_EQ(Bc()->GetData(&set, ParamKey_LayerOutTime), nullptr);
  Bc()->FreeContainer(&set);
  EXPECT_EQ(set.impl, nullptr);
}

TEST(LinkTest, LinksResolveWhileTheTargetLivesAndInItsDocument) {
  BaseDocument* document = Bd()->AllocDocument();
  BaseObject* target = Bo()->AllocObject(ObjectType_Null);
  BaseObject* tagged = Bo()->AllocObject(ObjectType_Camera);
  Bd()->InsertObject(document, target, nullptr, nullptr, 0, 1);
  Bd()->InsertObject(document, tagged, nullptr, nullptr, 0, 1);
  BaseTag* tag = Tg()->AllocTag(TagType_Target, 0);
  Bo()->InsertTag(tagged, tag, nullptr);
  Bc()->SetLink(Bl()->GetDataInstance(tag), TargetTagParam_Target, target);
  EXPECT_EQ(Bc()->GetLink(Bl()->GetDataInstance(tag), TargetTagParam_Target, At()->GetDocument(tag), 0), target);

  LinkHolder* holder = Ln()->AllocLinkHolder();
  Ln()->SetLinkTarget(holder, target);
  Data value;
  Gd()->SetLinkHolder(&value.value, holder);
  EXPECT_EQ(Ln()->GetLinkTarget(Gd()->GetLinkHolder(&value.value)), target);
  BaseDocument* elsewhere = Bd()->AllocDocument();
  EXPECT_EQ(Ln()->GetLinkTargetIn(holder, elsewhere, 0), nullptr);
  EXPECT_EQ(Ln()->GetLinkTargetIn(holder, document, 0), target);

  At()->Remove(target);
  Bl()->FreeNode(target);
  EXPECT_EQ(Ln()->GetLinkTarget(holder), nullptr);
  EXPECT_EQ(Bc()->GetLink(Bl()->GetDataInstance(tag), TargetTagParam_Target, document, 0), nullptr);
  Ln()->FreeLinkHolder(holder);
  Bl()->FreeNode(elsewhere);
  Bl()->FreeNode(document);
}

TEST(TextTest, EditsAndConversions) {
  Text text("Layer 12"), needle("12"), tail(" copy");
  int32_t at = -1;
  EXPECT_TRUE(St()->FindFirst(&text.value, &needle.value, &at, 0));
  EXPECT_EQ(at, 6);
  EXPECT_FALSE(St()->FindFirst(&text.value, &needle.value, &at, 7));
  St()->Insert(&text.value, St()->GetLength(&text.value), &tail.value, -1, -1);
  EXPECT_EQ(text.Utf8(), "Layer 12 copy");
  St()->Delete(&text.value, 0, 6);
  EXPECT_EQ(text.Utf8(), "12 copy");
  Text part;
  St()->SubString(&text.value, &part.value, 3, 4);
  EXPECT_EQ(part.Utf8(), "copy");
  EXPECT_TRUE(St()->FindChar(&text.value, u'c', &at, 0));
  EXPECT_EQ(at, 3);
  EXPECT_GT(St()->Compare(&part.value, &text.value), 0);  // "c" stands after "1"
  EXPECT_EQ(St()->Compare(&part.value, &part.value), 0);

  // U+00E9 is two bytes in UTF-8 and one in Latin-1.
  Text accent("\xC3\xA9t\xC3\xA9");
  EXPECT_EQ(St()->GetLength(&accent.value), 3);
  EXPECT_EQ(St()->GetCStringLength(&accent.value, kStringEncodingUtf8), 5);
  EXPECT_EQ(St()->GetCStringLength(&accent.value, kStringEncodingLatin1), 3);
  EXPECT_EQ(St()->GetUnit(&accent.value, 0), u'\u00E9');
}

TEST(TextTest, SharedTextIsCopiedOnWrite) {
  Text original("abc");
  EngineString shared = original.value;
  St()->Retain(&shared);
  St()->SetUnit(&shared, 0, u'x');
  Text view;
  St()->SubString(&shared, &view.value, 0, -1);
  EXPECT_EQ(view.Utf8(), "xbc");
  EXPECT_EQ(original.Utf8(), "abc");
  St()->Release(&shared);
}

TEST(FilenameTest, PartsAndSuffixes) {
  Filename path{}, folder{}, leaf{};
  Fn()->FilenameInit(&path);
  Fn()->FilenameInit(&folder);
  Fn()->FilenameInit(&leaf);
  EXPECT_FALSE(Fn()->IsFilled(&path));
  Fn()->SetFromCString(&path, "/scenes/shot/comp.aep");
  Fn()->SetSuffix(&path, "ory");
  EXPECT_TRUE(Fn()->CheckSuffix(&path, "ORY"));
  EXPECT_FALSE(Fn()->CheckSuffix(&path, "aep"));
  Fn()->GetDirectory(&folder, &path);
  Fn()->GetFile(&leaf, &path);
  Text text;
  Fn()->GetString(&text.value, &folder);
  EXPECT_EQ(text.Utf8(), "/scenes/shot");
  Fn()->GetString(&text.value, &leaf);
  EXPECT_EQ(text.Utf8(), "comp.ory");
  Fn()->SetFromCString(&leaf, "other.ory");
  Fn()->SetFile(&path, &leaf);
  Fn()->GetString(&text.value, &path);
  EXPECT_EQ(text.Utf8(), "/scenes/shot/other.ory");
  Fn()->FilenameCopy(&path, &folder);
  EXPECT_TRUE(Fn()->FilenameEquals(&path, &folder));
  Fn()->FilenameFree(&path);
  Fn()->FilenameFree(&folder);
  Fn()->FilenameFree(&leaf);
}

TEST(ExtensionTest, LibrariesAreFoundByIdWithTheirSize) {
  const ExtensionRecord* record = Ge()->FindExtension(kExtensionMarkers, kExtensionLookupLevel, nullptr);
  ASSERT_NE(record, nullptr);
  const void* table = nullptr;
  int32_t id = 0, size = 0;
  ASSERT_TRUE(Ge()->GetExtensionTable(record, &table, &id, &size));
  EXPECT_EQ(id, kExtensionMarkers);
  int32_t secondWord = 0;
  std::memcpy(&secondWord, static_cast<const char*>(table) + 4, 4);
  EXPECT_EQ(secondWord, size);
  EXPECT_EQ(size, static_cast<int32_t>(sizeof(MarkerLibrary)));
  EXPECT_EQ(Ge()->FindExtension(12345, kExtensionLookupLevel, nullptr), nullptr);
  // Entry 36 of the font library lies within its size.
  EXPECT_GE(Extension<FontLibrary>(kExtensionFont)->header.size,
            static_cast<int32_t>(sizeof(ExtensionHeader) + 37 * sizeof(void*)));
}

TEST(ExtensionTest, ParamIdsOwnWhatTheyAreAssigned) {
  const auto* library = Extension<ParamIdLibrary>(kExtensionParamId);
  ASSERT_NE(library, nullptr);
  ParamId id;
  library->ParamIdInit(&id);
  EXPECT_EQ(id.count, 0);
  ParamLevel levels[2] = {{ObjectParam_Rotation, DataKind_Vector, 0}, {VectorComponent_Z, DataKind_Float, 0}};
  library->ParamIdAssign(&id, levels, 2);
  levels[1].id = 0;
  EXPECT_EQ(id.count, 2);
  EXPECT_EQ(id.levels[1].id, VectorComponent_Z);
  library->ParamIdFree(&id);
  EXPECT_EQ(id.levels, nullptr);
}

TEST(ExtensionTest, MarkersStandInTimeOrder) {
  const auto* markers = Extension<MarkerLibrary>(kExtensionMarkers);
  ASSERT_NE(markers, nullptr);
  BaseDocument* document = Bd()->AllocDocument();
  EXPECT_EQ(markers->GetFirstMarker(document), nullptr);
  BaseTime late(2, 1), early(1, 2), length(1, 1);
  Vector red{1, 0, 0};
  Text first("first"), second("second");
  markers->AddMarker(document, nullptr, &late, &second.value, &red, &length, 0);
  markers->AddMarker(document, nullptr, &early, &first.value, &red, &length, 0);
  TimelineMarker* marker = markers->GetFirstMarker(document);
  Text name;
  At()->GetName(marker, &name.value);
  EXPECT_EQ(name.Utf8(), "first");
  Data time;
  Path timePath(MarkerParam_Time);
  ASSERT_TRUE(At()->GetParameter(marker, &timePath.id, &time.value, 0));
  EXPECT_EQ(Gd()->GetTime(&time.value)->denominator, 2.0);
  At()->GetName(At()->GetNext(marker), &name.value);
  EXPECT_EQ(name.Utf8(), "second");
  Bl()->FreeNode(document);
}

}  // namespace
}  // namespace quillon::testing
