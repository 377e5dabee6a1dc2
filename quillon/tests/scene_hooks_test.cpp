// Scene hooks of documents (table Bd): the engine registers none, and a look-up of one must
// be safe, since the render session asks every document for its hook.
#include <gtest/gtest.h>

#include "quillon/tests/engine_tables.h"

namespace quillon {
namespace {

using testing::Bd;
using testing::Bl;

TEST(SceneHooks, ADocumentHasNone) {
  BaseDocument* document = Bd()->AllocDocument();
  ASSERT_NE(Bd()->FindSceneHook, nullptr);
  EXPECT_EQ(Bd()->FindSceneHook(document, 1057220), nullptr);
  EXPECT_EQ(Bd()->FindSceneHook(nullptr, 1057220), nullptr);
  Bl()->FreeNode(document);
}

}  // namespace
}  // namespace quillon
