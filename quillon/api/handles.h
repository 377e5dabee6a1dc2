// The opaque handles of the tables are the model's objects seen from outside:
// these casts are the only place where one turns into the other.
#pragma once

#include "plugin/engine/engine_ops.h"
#include "quillon/model/animation.h"
#include "quillon/model/document.h"
#include "quillon/model/tag.h"

namespace quillon {

inline Node* NodeOf(const SceneNode* handle) {
  return reinterpret_cast<Node*>(const_cast<SceneNode*>(handle));
}

template <typename Handle>
Handle* HandleOf(Node* node) {
  return reinterpret_cast<Handle*>(node);
}

inline Object* ObjectOf(const BaseObject* handle) { return AsObject(NodeOf(handle)); }
inline Document* DocumentOfHandle(const BaseDocument* handle) { return AsDocument(NodeOf(handle)); }
inline Tag* TagOf(const BaseTag* handle) { return AsTag(NodeOf(handle)); }
inline Track* TrackOf(const AnimTrack* handle) { return AsTrack(NodeOf(handle)); }
inline Curve* CurveOf(const AnimCurve* handle) { return AsCurve(NodeOf(handle)); }
inline Key* KeyOf(const AnimKey* handle) { return AsKey(NodeOf(handle)); }

inline View* ViewOf(const BaseView* handle) { return reinterpret_cast<View*>(const_cast<BaseView*>(handle)); }
inline BaseView* HandleOfView(View* view) { return reinterpret_cast<BaseView*>(view); }

inline LinkData* LinkOf(const LinkHolder* handle) {
  return reinterpret_cast<LinkData*>(const_cast<LinkHolder*>(handle));
}
inline LinkHolder* HandleOfLink(LinkData* link) { return reinterpret_cast<LinkHolder*>(link); }

inline ParamSet* SetOf(const ParamContainer* container) {
  return container ? static_cast<ParamSet*>(container->impl) : nullptr;
}

// The levels of a ParamId as a path.
inline std::vector<ParamLevel> PathOf(const ParamId* id) {
  if (!id || !id->levels || id->count <= 0) return {};
  return std::vector<ParamLevel>(id->levels, id->levels + id->count);
}

}  // namespace quillon
