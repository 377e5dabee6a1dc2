#include "quillon/model/animation.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace quillon {
namespace {

// The slope at key index of a curve, from its neighbours.
double SlopeAt(const KeyStore& keys, int32_t index) {
  int32_t before = std::max(index - 1, 0);
  int32_t after = std::min(index + 1, keys.size() - 1);
  double span = Seconds(keys.timeAt(after)) - Seconds(keys.timeAt(before));
  return span > 0.0 ? (keys.valueAt(after) - keys.valueAt(before)) / span : 0.0;
}

double Between(const KeyStore& keys, int32_t left, const BaseTime& time) {
  const double a = keys.valueAt(left);
  const double b = keys.valueAt(left + 1);
  double t0 = Seconds(keys.timeAt(left));
  double span = Seconds(keys.timeAt(left + 1)) - t0;
  double u = (Seconds(time) - t0) / span;
  if (keys.bitsAt(left) & (uint64_t{1} << kNodeBitKeyLinear)) return a + (b - a) * u;
  double m0 = SlopeAt(keys, left) * span;
  double m1 = SlopeAt(keys, left + 1) * span;
  double u2 = u * u, u3 = u2 * u;
  return (2 * u3 - 3 * u2 + 1) * a + (u3 - 2 * u2 + u) * m0 + (-2 * u3 + 3 * u2) * b + (u3 - u2) * m1;
}

// The comparison of the times' operator<, here where the search below can take it in, so
// that each step of the search is a conditional move instead of a branch that a random
// look-up mispredicts half of the time.
bool Earlier(const BaseTime& a, const BaseTime& b) { return a.numerator * b.denominator < b.numerator * a.denominator; }

// The first of `count` times in order that is not earlier than `time`.
size_t LowerBoundIn(const BaseTime* times, size_t count, const BaseTime& time) {
  if (count == 0) return 0;
  const BaseTime* base = times;
  while (count > 1) {
    const size_t half = count / 2;
    base = Earlier(base[half], time) ? base + half : base;
    count -= half;
  }
  return static_cast<size_t>(base - times) + (Earlier(*base, time) ? 1 : 0);
}

}  // namespace

Key::Key() : Node(NodeClass::Key, NodeType_Key) {}
Curve::Curve() : Node(NodeClass::Curve, NodeType_Curve) {}

Track::Track(std::vector<ParamLevel> levels) : Node(NodeClass::Track, NodeType_Track), path(std::move(levels)) {}

Track::~Track() {
  if (curve) curve->track = nullptr;
}

// A key that holds anything else must keep its node, or what it holds is lost when the key
// goes back into the arrays: a new field of a node or a key needs its test here. The sizes
// (of this platform's build) make a new field fail the build until this is looked at.
static_assert(sizeof(void*) != 8 || (sizeof(Node) == 248 && sizeof(Key) == 296),
              "Node or Key has a new field: say in IsPlainKey whether a key holding it is plain, then update the sizes");

bool IsPlainKey(const Key& key) {
  return key.name.empty() && key.infoBits == 0 && key.linkId == 0 && key.layerId == 0 && key.params.empty() &&
         (!key.trackRoot || !key.trackRoot->firstChild) && key.data.kind() == DataKind_Empty &&
         !HasIdentity(key.identity);
}

double KeyStore::valueAt(int32_t index) const {
  const size_t slot = slotOf(index);
  return nodes_[slot] ? nodes_[slot]->value : values_[slot];
}

uint64_t KeyStore::bitsAt(int32_t index) const {
  const size_t slot = slotOf(index);
  return nodes_[slot] ? nodes_[slot]->bits.to_ullong() : bits_[slot];
}

Key* KeyStore::at(int32_t index) const {
  if (index < 0 || index >= size()) return nullptr;
  const size_t slot = slotOf(index);
  if (nodes_[slot]) return nodes_[slot];
  Key* spare = lendSpare(index);
  spare->time = times_[slot];
  spare->value = values_[slot];
  spare->bits = std::bitset<64>(bits_[slot]);
  spare->curve = owner_;
  nodes_[slot] = spare;
  return spare;
}

Key* KeyStore::lendSpare(int32_t index) const {
  Spare& spare = spares_[nextSpare_];
  nextSpare_ = (nextSpare_ + 1) % kSpareNodes;
  Key* node = spare.node;
  if (node && spare.index >= 0) {
    const size_t slot = slotOf(spare.index);
    // A key that gained more through its handle keeps the node.
    if (IsPlainKey(*node)) {
      values_[slot] = node->value;
      bits_[slot] = node->bits.to_ullong();
      nodes_[slot] = nullptr;
    } else {
      node = nullptr;
    }
  }
  if (!node) node = new Key();
  spare = {node, index};
  return node;
}

int32_t KeyStore::lowerBound(const BaseTime& time) const {
  const BaseTime* times = times_.data();
  if (gapBegin_ > 0 && !Earlier(times[gapBegin_ - 1], time))
    return static_cast<int32_t>(LowerBoundIn(times, gapBegin_, time));
  return static_cast<int32_t>(gapBegin_ + LowerBoundIn(times + gapEnd_, times_.size() - gapEnd_, time));
}

void KeyStore::moveGap(size_t position) {
  const auto moveAll = [&](auto mover, size_t from, size_t to, size_t destination) {
    mover(times_.begin() + from, times_.begin() + to, times_.begin() + destination);
    mover(values_.begin() + from, values_.begin() + to, values_.begin() + destination);
    mover(bits_.begin() + from, bits_.begin() + to, bits_.begin() + destination);
    mover(nodes_.begin() + from, nodes_.begin() + to, nodes_.begin() + destination);
  };
  if (position < gapBegin_) {
    size_t n = gapBegin_ - position;
    moveAll([](auto f, auto l, auto d) { std::move_backward(f, l, d); }, position, gapBegin_, gapEnd_);
    gapBegin_ -= n;
    gapEnd_ -= n;
  } else if (position > gapBegin_) {
    size_t n = position - gapBegin_;
    moveAll([](auto f, auto l, auto d) { std::move(f, l, d); }, gapEnd_, gapEnd_ + n, gapBegin_);
    gapBegin_ += n;
    gapEnd_ += n;
  }
}

void KeyStore::reallocate(size_t capacity) {
  moveGap(static_cast<size_t>(size()));
  const size_t used = gapBegin_;
  const auto resized = [&](auto& array) {
    std::remove_reference_t<decltype(array)> grown(capacity);
    std::copy(array.begin(), array.begin() + static_cast<std::ptrdiff_t>(used), grown.begin());
    array = std::move(grown);
  };
  resized(times_);
  resized(values_);
  resized(bits_);
  resized(nodes_);
  gapEnd_ = capacity;
}

void KeyStore::reserve(size_t count) {
  if (count > capacity()) reallocate(count);
}

size_t KeyStore::openSlot(int32_t index) {
  if (gapSize() == 0) reallocate(std::max(kMinCapacity, capacity() * 2));
  moveGap(static_cast<size_t>(index));
  for (Spare& spare : spares_)
    if (spare.index >= index) ++spare.index;
  return gapBegin_++;
}

void KeyStore::insert(int32_t index, const BaseTime& time, double value, uint64_t bits) {
  if (index < 0 || index > size()) return;
  const size_t slot = openSlot(index);
  times_[slot] = time;
  values_[slot] = value;
  bits_[slot] = bits;
  nodes_[slot] = nullptr;
}

void KeyStore::insert(int32_t index, std::unique_ptr<Key> key) {
  if (!key || index < 0 || index > size()) return;
  if (IsPlainKey(*key)) {
    insert(index, key->time, key->value, key->bits.to_ullong());
    return;
  }
  const size_t slot = openSlot(index);
  times_[slot] = key->time;
  values_[slot] = 0.0;
  bits_[slot] = 0;
  key->curve = owner_;
  nodes_[slot] = key.release();
}

void KeyStore::erase(int32_t index) {
  if (index < 0 || index >= size()) return;
  moveGap(static_cast<size_t>(index));
  Key* node = nodes_[gapEnd_];
  for (Spare& spare : spares_) {
    if (spare.index == index) spare = {};
    if (spare.index > index) --spare.index;
  }
  delete node;
  nodes_[gapEnd_++] = nullptr;
  // A pruned curve gives back the room it grew to, so that a track of a thousand keys
  // pruned to two does not hold a thousand slots for the rest of the document's life.
  const auto used = static_cast<size_t>(size());
  if (capacity() > kMinCapacity && used * 4 < capacity()) reallocate(std::max(kMinCapacity, used * 2));
}

KeyStore::~KeyStore() {
  for (int32_t i = 0; i < size(); ++i) delete nodes_[slotOf(i)];
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
  const int32_t index = keys.lowerBound(time);
  if (exact) *exact = index < keys.size() && keys.timeAt(index) == time;
  return index;
}

Key* AddKeyAt(Curve& curve, const BaseTime& time) {
  const int32_t count = curve.keys.size();
  // Keys mostly come in time order: one behind the last needs no search.
  bool exact = false;
  const bool behindLast = count == 0 || curve.keys.timeAt(count - 1) < time;
  const int32_t index = behindLast ? count : LowerBound(curve, time, &exact);
  if (!exact) curve.keys.insert(index, time, 0.0, 0);
  return curve.keys.at(index);
}

void DeleteKeyAt(Curve& curve, int32_t index) { curve.keys.erase(index); }

double EvaluateCurve(const Curve& curve, const BaseTime& time, double fallback) {
  const KeyStore& keys = curve.keys;
  int32_t n = keys.size();
  if (n == 0) return fallback;
  bool exact = false;
  int32_t index = LowerBound(curve, time, &exact);
  if (exact) return keys.valueAt(index);
  if (index == 0) return keys.valueAt(0);
  if (index == n) return keys.valueAt(n - 1);
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
  if (!source.curve) return copy;
  copy->curve = std::make_unique<Curve>();
  copy->curve->track = copy.get();
  const KeyStore& keys = source.curve->keys;
  KeyStore& copies = copy->curve->keys;
  copies.reserve(static_cast<size_t>(keys.size()));
  for (int32_t i = 0; i < keys.size(); ++i) {
    const Key* key = keys.nodeAt(i);
    if (!key) {
      copies.insert(i, keys.timeAt(i), keys.valueAt(i), keys.bitsAt(i));
      continue;
    }
    auto keyCopy = std::make_unique<Key>();
    keyCopy->time = key->time;
    keyCopy->value = key->value;
    keyCopy->data = key->data;
    keyCopy->bits = key->bits;
    keyCopy->params = key->params;
    copies.insert(i, std::move(keyCopy));
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
