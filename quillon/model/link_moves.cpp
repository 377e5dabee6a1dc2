#include "quillon/model/link_moves.h"

#include "quillon/model/links.h"
#include "quillon/model/node_walk.h"

namespace quillon {
namespace {

void Relink(Document& document, uint64_t from, uint64_t to) {
  auto replace = [from, to](uint64_t& link) {
    if (link == from) link = to;
  };
  ForEachDocumentNode(document, [&replace](Node& node) { ForEachLinkOfNode(node, replace); });
  for (auto& view : document.views) replace(view->sceneCameraId);
}

}  // namespace

void MoveLinks(Node& from, Node& to) {
  if (from.linkId == 0 || &from == &to) return;
  const uint64_t target = LinkIdOf(&to);
  Document* first = DocumentOf(&from);
  Document* second = DocumentOf(&to);
  if (first) Relink(*first, from.linkId, target);
  if (second && second != first) Relink(*second, from.linkId, target);
}

}  // namespace quillon
