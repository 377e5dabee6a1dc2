// Animation: a track on a node, bound to a parameter path, holds one curve;
// the curve holds keys in time order.
//
// Most keys are a time, a value and a few bits, and a curve keeps those in
// arrays of their own (40 bytes a key) instead of one node each: a look-up by
// time is a binary search over contiguous times, and evaluating, writing and
// reading touch no node. A key that carries more (data, parameters, a name, a
// link) keeps a node of its own for good. Callers reach keys through nodes,
// the handles of the tables: a key of the plain kind is lent one of the
// curve's few spare nodes when a caller asks for it. Once all spares are lent,
// the next key asked for takes the spare lent longest ago: what the caller set
// on it (value, bits) goes back into the arrays first. A handle to a plain key
// therefore holds while fewer than kSpareNodes other keys of its curve have
// been asked for; a key that has gained more through its handle by then keeps
// that node for good.
#pragma once

#include <cstdint>
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

// Whether a key is no more than time, value and bits, and so fits the arrays.
bool IsPlainKey(const Key& key);

// Keys by index in time order, in parallel arrays with one movable gap, so
// that keys added in time order, and keys deleted one by one while walking
// the curve, each cost constant time on average.
class KeyStore {
 public:
  static constexpr size_t kSpareNodes = 8;

  explicit KeyStore(Curve* owner) : owner_(owner) {}
  ~KeyStore();
  KeyStore(const KeyStore&) = delete;
  KeyStore& operator=(const KeyStore&) = delete;

  int32_t size() const { return static_cast<int32_t>(times_.size() - gapSize()); }
  const BaseTime& timeAt(int32_t index) const { return times_[slotOf(index)]; }
  double valueAt(int32_t index) const;
  uint64_t bitsAt(int32_t index) const;
  // The node that key `index` has now (its own, or the spare while lent), or null.
  const Key* nodeAt(int32_t index) const { return nodes_[slotOf(index)]; }
  // The key as a node, the handle that callers hold (see above); null out of range.
  Key* at(int32_t index) const;
  // The slots held, used or not: what the store costs beside its keys.
  size_t capacity() const { return times_.size(); }
  // The index of the first key at or after `time`.
  int32_t lowerBound(const BaseTime& time) const;
  // Room for `count` keys in all, for a reader that knows how many will come.
  void reserve(size_t count);

  void insert(int32_t index, std::unique_ptr<Key> key);
  void insert(int32_t index, const BaseTime& time, double value, uint64_t bits);
  void erase(int32_t index);

 private:
  static constexpr size_t kMinCapacity = 16;
  size_t gapSize() const { return gapEnd_ - gapBegin_; }
  size_t slotOf(int32_t index) const {
    auto i = static_cast<size_t>(index);
    return i < gapBegin_ ? i : i + gapSize();
  }
  // Opens a slot at index, the gap moved behind it; gives the slot.
  size_t openSlot(int32_t index);
  void moveGap(size_t position);
  // Moves the keys into `capacity` slots, the gap at the end.
  void reallocate(size_t capacity);
  // A spare for key `index`: a new one while fewer than kSpareNodes are lent,
  // else the one lent longest ago, taken back from its key.
  Key* lendSpare(int32_t index) const;

  Curve* owner_;
  std::vector<BaseTime> times_;
  // Values and bits of keys without a node; a key with a node keeps them there.
  mutable std::vector<double> values_;
  mutable std::vector<uint64_t> bits_;
  mutable std::vector<Key*> nodes_;
  size_t gapBegin_ = 0;
  size_t gapEnd_ = 0;
  // The spare nodes and the indices of the plain keys they are lent to, in the
  // order they were lent, the next to take back at `nextSpare_`.
  struct Spare {
    Key* node = nullptr;
    int32_t index = -1;
  };
  mutable Spare spares_[kSpareNodes];
  mutable size_t nextSpare_ = 0;
};

class Curve : public Node {
 public:
  Curve();
  KeyStore keys{this};
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
