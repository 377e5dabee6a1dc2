// Text animators: each moves, scales and turns the characters that its range selector selects.
// A range runs from `start` to `end` percent of the characters (line breaks included); a
// character is selected by the share of its own slice [c / n, (c + 1) / n] that the range
// covers, and takes that share of the animator's position offset, of its scale away from 100
// percent and of its rotation. The values are streams and may have keys. A character turns
// and scales about the start of its baseline.
#pragma once

#include <string>
#include <vector>

#include "aehost/model/stream.h"
#include "aehost/model/value.h"

namespace aehost {

struct TextAnimator {
  std::string name = "Animator 1";
  double start = 0.0;  // percent of the characters
  double end = 100.0;
  Stream position{StreamKind::TwoD, MakeValue(0.0, 0.0), {}, {}, true};  // pixels, added
  Stream scale{StreamKind::TwoD, MakeValue(100.0, 100.0), {}, {}, true};  // percent
  Stream rotation{StreamKind::OneD, MakeValue(0.0), {}, {}, true};        // degrees, clockwise
  bool operator==(const TextAnimator&) const = default;
};

// How far animator selects character `index` of `count`: 0 to 1.
double SelectedShare(const TextAnimator& animator, std::size_t index, std::size_t count);

// The transform of character `index` of `count` whose baseline starts at (originX, originY),
// with every animator applied at layer time `layerTime`: from glyph space to layer space.
Matrix4 CharacterTransform(const std::vector<TextAnimator>& animators, std::size_t index, std::size_t count,
                           double layerTime, double originX, double originY);

}  // namespace aehost
