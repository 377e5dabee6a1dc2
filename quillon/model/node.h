// The common base of everything in a scene: type, name, flag bits, info bits,
// a parameter set, a place in a tree, and the animation tracks on it.
#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "plugin/engine/engine_ops.h"
#include "quillon/model/identity.h"
#include "quillon/model/value.h"

namespace quillon {

// What a node is, beyond its type number.
enum class NodeClass : int32_t {
  ListRoot,
  Document,
  Object,
  Tag,
  Material,
  Shader,
  Layer,
  RenderSettings,
  Marker,
  Track,
  Curve,
  Key,
  State,
};

// Type numbers of nodes that the scene identifiers do not number.
constexpr int32_t NodeType_ListRoot = 400008000;
constexpr int32_t NodeType_Document = 400008001;
constexpr int32_t NodeType_Layer = 400008002;
constexpr int32_t NodeType_RenderSettings = 400008003;
constexpr int32_t NodeType_Marker = 400008004;
constexpr int32_t NodeType_Track = 400008005;
constexpr int32_t NodeType_Curve = 400008006;
constexpr int32_t NodeType_Key = 400008007;
constexpr int32_t NodeType_State = 400008008;

class Document;
class Track;

class Node {
 public:
  Node(NodeClass nodeClass, int32_t type);
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  // Destroys the children and the tracks; the node must be out of its list.
  virtual ~Node();

  NodeClass nodeClass;
  int32_t type;
  std::u16string name;
  std::bitset<64> bits;
  uint32_t infoBits = 0;
  ParamSet params;
  // The handle that GetDataInstance gives; its impl points at params.
  ParamContainer container;

  // Tree links. A list root owns its children; a cache's parent is the
  // generator that owns it, although the cache is not among its children.
  Node* parent = nullptr;
  Node* prev = nullptr;
  Node* next = nullptr;
  Node* firstChild = nullptr;
  Node* lastChild = nullptr;

  // Who owns a list root: the document or node whose list it is.
  Node* owner = nullptr;
  // The tracks on this node, made on first use.
  std::unique_ptr<Node> trackRoot;
  // Scene layer assignment, by link id.
  uint64_t layerId = 0;
  // Link id once something links to this node (links.h).
  uint64_t linkId = 0;
  // Marker and unique ids (identity.h).
  NodeIdentity identity;

  Node* trackList();
};

// Tree operations. Insert* take the node out of any list first.
void InsertFirstUnder(Node* node, Node* parent);
void InsertLastUnder(Node* node, Node* parent);
void InsertBehind(Node* node, Node* predecessor);
void Unlink(Node* node);
// The parent that callers see: null above the top of a list.
Node* VisibleParent(const Node* node);
// The document that the node belongs to, through lists and owners.
Document* DocumentOf(const Node* node);
// Whether node lies at or below ancestor; inserting ancestor there would make a cycle.
bool IsWithin(const Node* node, const Node* ancestor);
// Children in order.
std::vector<Node*> ChildrenOf(const Node* node);

// A list root owned by owner.
std::unique_ptr<Node> MakeListRoot(Node* owner);

}  // namespace quillon
