#include "aehost/model/text_animators.h"

#include <algorithm>

#include "aehost/model/evaluate.h"
#include "aehost/model/transform.h"

namespace aehost {

namespace {

Value ValueAt(const Stream& stream, double layerTime) {
  return stream.keys.empty() ? stream.value : InterpolateKeys(stream, layerTime);
}

}  // namespace

double SelectedShare(const TextAnimator& animator, std::size_t index, std::size_t count) {
  if (count == 0) return 0.0;
  const double from = static_cast<double>(index) / static_cast<double>(count);
  const double to = static_cast<double>(index + 1) / static_cast<double>(count);
  const double low = std::min(animator.start, animator.end) / 100.0;
  const double high = std::max(animator.start, animator.end) / 100.0;
  return std::clamp((std::min(to, high) - std::max(from, low)) / (to - from), 0.0, 1.0);
}

Matrix4 CharacterTransform(const std::vector<TextAnimator>& animators, std::size_t index, std::size_t count,
                           double layerTime, double originX, double originY) {
  double scaleX = 1.0, scaleY = 1.0, rotation = 0.0, dx = 0.0, dy = 0.0;
  for (const TextAnimator& animator : animators) {
    const double share = SelectedShare(animator, index, count);
    if (share == 0.0) continue;
    const Value position = ValueAt(animator.position, layerTime);
    const Value scale = ValueAt(animator.scale, layerTime);
    dx += position[0] * share;
    dy += position[1] * share;
    scaleX *= 1.0 + (scale[0] / 100.0 - 1.0) * share;
    scaleY *= 1.0 + (scale[1] / 100.0 - 1.0) * share;
    rotation += ValueAt(animator.rotation, layerTime)[0] * share;
  }
  Matrix4 m = Scaling(scaleX, scaleY, 1.0);
  if (rotation != 0.0) m = Multiply(m, RotationZ(rotation));
  return Multiply(m, Translation(originX + dx, originY + dy, 0.0));
}

}  // namespace aehost
