#include "quillon/model/animation.h"

#include <algorithm>

namespace quillon {
namespace {

// The slope at key index of a curve, from its neighbours.
double SlopeAt(const KeyStore& keys, int32_t index) {
  int32_t before = std::max(index - 1, 0);
  int32_t after = std::min(index + 1, keys.size() - 1);
  const Key* a = keys.at(before);
  const Key* b = keys.at(after);
  double span = Seconds(b->time) - Seconds(a->time);
  return span > 0.0 ? (b->value - a->value) / span : 0.0;
}

double Between(const KeyStore& keys, int32_t left, const BaseTime& time) {
  const Key* a = keys.at(left);
  const Key* b = keys.at(left + 1);
  double t0 = Seconds(a->time);
  double span = Seconds(b->time) - t0;
  double u = (Seconds(time) - t0) / span;
  if (a->bits.test(kNodeBitKeyLinear)) return a->value + (b->value - a->value) * u;
  double m0 = SlopeAt(keys, left) * span;
  double m1 = SlopeAt(keys, left + 1) * span;
  double u2 = u * u, u3 = u2 * u;
  return (2 * u3 - 3 * u2 + 1) * a->value + (u3 - 2 * u2 + u) * m0 + (-2 * u3 + 3 * u2) * b->value +
         (u3 - u2) * m1;
}

}  // namespace

Key::Key() : Node(NodeClass::Key, NodeType_Key) {}
Curve::Curve() : Node(NodeClass::Curve, NodeType_Curve) {}

Track::Track(std::vector<ParamLevel> levels) : Node(NodeClass::Track, NodeType_Track), path(std::move(levels)) {}

Track::~Track() {
  if (curve) curve->track = nullptr;
}

Key* KeyStore::at(int32_t index) const {
  if (index < 0 || index >= size()) return nullptr;
  return slots_[slotOf(index)];
}

void KeyStore::moveGap(size_t position) {
  if (position < gapBegin_) {
    size_t n = gapBegin_ - position;
    std::move_backward(slots_.begin() + position, slots_.begin() + gapBegin_, slots_.begin() + gapEnd_);
    std::move_backward(times_.begin() + position, times_.begin() + gapBegin_, times_.begin() + gapEnd_);
    gapBegin_ -= n;
    gapEnd_ -= n;
  } else if (position > gapBegin_) {
    size_t n = position - gapBegin_;
    std::move(slots_.begin() + gapEnd_, slots_.begin() + gapEnd_ + n, slots_.begin() + gapBegin_);
    std::move(times_.begin() + gapEnd_, times_.begin() + gapEnd_ + n, times_.begin() + gapBegin_);
    gapBegin_ += n;
    gapEnd_ += n;
  }
}

void KeyStore::reallocate(size_t capacity) {
  moveGap(static_cast<size_t>(size()));
  const size_t used = gapBegin_;
  std::vector<Key*> slots(capacity, nullptr);
  std::vector<BaseTime> times(capacity);
  std::copy(slots_.begin(), slots_.begin() + used, slots.begin());
  std::copy(times_.begin(), times_.begin() + used, times.begin());
  slots_ = std::move(slots);
  times_ = std::move(times);
  gapEnd_ = capacity;
}

void KeyStore::insert(int32_t index, std::unique_ptr<Key> key) {
  if (index < 0 || index > size()) return;
  if (gapSize() == 0) reallocate(std::max<size_t>(kMinCapacity, slots_.size() * 2));
  moveGap(static_cast<size_t>(index));
  times_[gapBegin_] = key->time;
  slots_[gapBegin_++] = key.release();
}

std::unique_ptr<Key> KeyStore::erase(int32_t index) {
  if (index < 0 || index >= size()) return nullptr;
  moveGap(static_cast<size_t>(index));
  std::unique_ptr<Key> key(slots_[gapEnd_++]);
  // A pruned curve gives back the room it grew to, so that a track of a thousand keys
  // pruned to two does not hold a thousand slots for the rest of the document's life.
  const auto used = static_cast<size_t>(size());
  if (slots_.size() > kMinCapacity && used * 4 < slots_.size()) reallocate(std::max(kMinCapacity, used * 2));
  return key;
}

KeyStore::~KeyStore() {
  for (int32_t i = 0; i < size(); ++i) delete at(i);
}

Track* AsTrack(Node* node) {
  return node && node->nodeClass == NodeClass::Track ? static_cast<Track*>(node) : nullptr;
}

const Track* AsTrack(const Node* node) {
  return node && node->nodeClass == NodeClass::Track ? static_cast<const Track*>(node) : nullptr;
}

Key* AsKey(Node* node) { return node && node->nodeClass == NodeClass::Key ? static_cast<Key*>(node) : nullptr; }
Curve* AsCurve(Node* node) {
  return node && node->nodeClass == NodeClass::Curve ? static_cast<Curve*>(node) : nullptr;
}

bool LevelsEqual(const ParamLevel& a, const ParamLevel& b) {
  if (a.id != b.id) return false;
  if (a.kind != 0 && b.kind != 0 && a.kind != b.kind) return false;
  return a.creator == 0 || b.creator == 0 || a.creator == b.creator;
}

bool PathsEqual(const std::vector<ParamLevel>& a, const ParamLevel* levels, int32_t count) {
  if (static_cast<int32_t>(a.size()) != count) return false;
  for (int32_t i = 0; i < count; ++i) {
    if (!LevelsEqual(a[static_cast<size_t>(i)], levels[i])) return false;
  }
  return true;
}

int32_t LowerBound(const Curve& curve, const BaseTime& time, bool* exact) {
  const KeyStore& keys = curve.keys;
  int32_t low = 0, high = keys.size();
  while (low < high) {
    int32_t mid = low + (high - low) / 2;
    if (keys.timeAt(mid) < time) {
      low = mid + 1;
    } else {
      high = mid;
    }
  }
  if (exact) *exact = low < keys.size() && keys.timeAt(low) == time;
  return low;
}

Key* AddKeyAt(Curve& curve, const BaseTime& time) {
  const int32_t count = curve.keys.size();
  // Keys mostly come in time order: one behind the last needs no search.
  bool exact = false;
  const bool behindLast = count == 0 || curve.keys.timeAt(count - 1) < time;
  int32_t index = behindLast ? count : LowerBound(curve, time, &exact);
  if (exact) return curve.keys.at(index);
  auto key = std::make_unique<Key>();
  key->time = time;
  key->curve = &curve;
  Key* made = key.get();
  curve.keys.insert(index, std::move(key));
  return made;
}

void DeleteKeyAt(Curve& curve, int32_t index) { curve.keys.erase(index); }

double EvaluateCurve(const Curve& curve, const BaseTime& time, double fallback) {
  const KeyStore& keys = curve.keys;
  int32_t n = keys.size();
  if (n == 0) return fallback;
  bool exact = false;
  int32_t index = LowerBound(curve, time, &exact);
  if (exact) return keys.at(index)->value;
  if (index == 0) return keys.at(0)->value;
  if (index == n) return keys.at(n - 1)->value;
  return Between(keys, index - 1, time);
}

std::vector<Track*> TracksOf(Node& node) {
  std::vector<Track*> tracks;
  if (!node.trackRoot) return tracks;
  for (Node* at = node.trackRoot->firstChild; at; at = at->next) tracks.push_back(AsTrack(at));
  return tracks;
}

Track* FindTrackByPath(const Node& node, const ParamLevel* levels, int32_t count) {
  if (!node.trackRoot) return nullptr;
  for (Node* at = node.trackRoot->firstChild; at; at = at->next) {
    Track* track = AsTrack(at);
    if (track && PathsEqual(track->path, levels, count)) return track;
  }
  return nullptr;
}

std::unique_ptr<Track> CloneTrack(const Track& source) {
  auto copy = std::make_unique<Track>(source.path);
  CopyNodeBasics(source, *copy);
  copy->kind = source.kind;
  if (source.curve) {
    copy->curve = std::make_unique<Curve>();
    copy->curve->track = copy.get();
    for (int32_t i = 0; i < source.curve->keys.size(); ++i) {
      const Key* key = source.curve->keys.at(i);
      auto keyCopy = std::make_unique<Key>();
      keyCopy->time = key->time;
      keyCopy->value = key->value;
      keyCopy->data = key->data;
      keyCopy->bits = key->bits;
      keyCopy->params = key->params;
      keyCopy->curve = copy->curve.get();
      copy->curve->keys.insert(i, std::move(keyCopy));
    }
  }
  return copy;
}

void CopyNodeBasics(const Node& source, Node& destination) {
  destination.name = source.name;
  destination.bits = source.bits;
  destination.infoBits = source.infoBits;
  destination.params = source.params;
  destination.layerId = source.layerId;
  if (!source.trackRoot) return;
  for (Node* at = source.trackRoot->firstChild; at; at = at->next) {
    if (const Track* track = AsTrack(at)) InsertLastUnder(CloneTrack(*track).release(), destination.trackList());
  }
}

}  // namespace quillon
