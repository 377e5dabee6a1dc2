// Animation: a track on a node, bound to a parameter path, holds one curve;
// the curve holds keys in time order. Keys live in a gap buffer, so that keys
// added in time order, and keys deleted one by one while walking the curve,
// each cost constant time on average. The times stand in an array of their own
// beside the keys, so that a look-up by time is a binary search over
// contiguous times that touches no key until it has found one.
#pragma once

#include <memory>
#include <vector>

#include "quillon/model/node.h"

namespace quillon {

class Curve;

class Key : public Node {
 public:
  Key();
  BaseTime time;
  double value = 0.0;
  // The value of a key that holds no float.
  Value data;
  Curve* curve = nullptr;
};

// Keys by index in time order, with a movable gap. Slot i of `times_` holds
// the time of the key in slot i of `slots_`; both share the gap.
class KeyStore {
 public:
  int32_t size() const { return static_cast<int32_t>(slots_.size() - gapSize()); }
  Key* at(int32_t index) const;
  const BaseTime& timeAt(int32_t index) const { return times_[slotOf(index)]; }
  // The slots held, used or not: what the store costs beside its keys.
  size_t capacity() const { return slots_.size(); }
  void insert(int32_t index, std::unique_ptr<Key> key);
  std::unique_ptr<Key> erase(int32_t index);
  ~KeyStore();
  KeyStore() = default;
  KeyStore(const KeyStore&) = delete;
  KeyStore& operator=(const KeyStore&) = delete;

 private:
  static constexpr size_t kMinCapacity = 16;
  size_t gapSize() const { return gapEnd_ - gapBegin_; }
  size_t slotOf(int32_t index) const {
    auto i = static_cast<size_t>(index);
    return i < gapBegin_ ? i : i + gapSize();
  }
  void moveGap(size_t position);
  // Moves the keys into `capacity` slots, the gap at the end.
  void reallocate(size_t capacity);
  std::vector<Key*> slots_;
  std::vector<BaseTime> times_;
  size_t gapBegin_ = 0;
  size_t gapEnd_ = 0;
};

class Curve : public Node {
 public:
  Curve();
  KeyStore keys;
  class Track* track = nullptr;
};

class Track : public Node {
 public:
  explicit Track(std::vector<ParamLevel> path);
  ~Track() override;
  std::vector<ParamLevel> path;
  // kTrackKindFloat, or the kind of the values that the keys hold.
  int32_t kind = kTrackKindFloat;
  std::unique_ptr<Curve> curve;
};

Track* AsTrack(Node* node);
const Track* AsTrack(const Node* node);
Key* AsKey(Node* node);
Curve* AsCurve(Node* node);

bool LevelsEqual(const ParamLevel& a, const ParamLevel& b);
bool PathsEqual(const std::vector<ParamLevel>& a, const ParamLevel* levels, int32_t count);

// Index of the first key at or after time, and whether it stands exactly there.
int32_t LowerBound(const Curve& curve, const BaseTime& time, bool* exact);
// Adds a key at time, or gives the one that stands there.
Key* AddKeyAt(Curve& curve, const BaseTime& time);
void DeleteKeyAt(Curve& curve, int32_t index);
// The interpolated value of a float curve; fallback when it has no keys.
double EvaluateCurve(const Curve& curve, const BaseTime& time, double fallback);

std::vector<Track*> TracksOf(Node& node);
Track* FindTrackByPath(const Node& node, const ParamLevel* levels, int32_t count);
std::unique_ptr<Track> CloneTrack(const Track& source);
// Copies name, bits, info bits, parameters, layer and tracks of one node to another.
void CopyNodeBasics(const Node& source, Node& destination);

}  // namespace quillon
