// Implements lines.h. A line takes one step along its longer axis (the major one) for each pixel, and a step along the
// other (the minor one) whenever the exact line has moved on by one there. Which steps lie inside the picture is worked
// out first, so that nothing is painted or even counted outside.
#include "platform/linux/lines.h"

#include <algorithm>

namespace tavimo::platform {

namespace {

struct Axis {
  std::int64_t start;
  std::int64_t direction;  // 1 or -1
  std::int64_t length;     // steps from the first pixel to the last, up to 2^32 - 1
  std::int64_t limit;      // the picture's size
  std::int64_t stride;     // from one pixel to the next
};

Axis MakeAxis(std::int32_t from, std::int32_t to, std::int32_t limit, std::int64_t stride) noexcept {
  const std::int64_t distance = std::int64_t{to} - from;
  return {from, distance < 0 ? -1 : 1, distance < 0 ? -distance : distance, limit, stride};
}

struct Range {
  std::int64_t first;
  std::int64_t end;  // not in the range
};

// The steps along an axis that stand in the picture; end may lie before first.
Range StepsInside(const Axis& axis) noexcept {
  const bool forward = axis.direction > 0;
  const std::int64_t first = forward ? -axis.start : axis.start - (axis.limit - 1);
  return {std::max<std::int64_t>(first, 0), forward ? axis.limit - axis.start : axis.start + 1};
}

struct MinorPlace {
  std::int64_t steps;
  std::int64_t fraction;  // on the way to the next step, in parts of 2 x major.length
};

// Where the line stands on the minor axis after some steps on the major one: n x minor / major, rounded to the nearest,
// a half toward the smaller coordinate. The products stay below 2^64.
MinorPlace PlaceAfter(std::int64_t majorSteps, const Axis& major, const Axis& minor) noexcept {
  const auto length = static_cast<std::uint64_t>(major.length);
  const std::uint64_t product = static_cast<std::uint64_t>(majorSteps) * static_cast<std::uint64_t>(minor.length);
  const auto whole = static_cast<std::int64_t>(product / length);
  const auto rest = static_cast<std::int64_t>(product % length);
  const std::int64_t fraction = 2 * rest + major.length - (minor.direction > 0 ? 1 : 0);
  const std::int64_t full = 2 * major.length;
  return fraction >= full ? MinorPlace{whole + 1, fraction - full} : MinorPlace{whole, fraction};
}

// The first step in the range at which the minor axis has come as far as minorSteps; range.end when it never does.
std::int64_t FirstReaching(std::int64_t minorSteps, Range range, const Axis& major, const Axis& minor) noexcept {
  if (minorSteps <= 0) return range.first;
  if (minorSteps > minor.length) return range.end;
  while (range.first < range.end) {
    const std::int64_t middle = range.first + (range.end - range.first) / 2;
    if (PlaceAfter(middle, major, minor).steps < minorSteps) {
      range.first = middle + 1;
    } else {
      range.end = middle;
    }
  }
  return range.first;
}

void PaintSteps(std::uint32_t* pixels, Range steps, const Axis& major, const Axis& minor,
                std::uint32_t value) noexcept {
  MinorPlace place = PlaceAfter(steps.first, major, minor);
  std::int64_t index = (major.start + major.direction * steps.first) * major.stride +
                       (minor.start + minor.direction * place.steps) * minor.stride;
  const std::int64_t full = 2 * major.length;
  for (std::int64_t step = steps.first; step < steps.end; ++step) {
    pixels[index] = value;
    index += major.direction * major.stride;
    place.fraction += 2 * minor.length;
    if (place.fraction < full) continue;
    place.fraction -= full;
    index += minor.direction * minor.stride;
  }
}

// The rule is that of any line (PaintSlanted): a pixel for each step that lies inside the picture. A waveform is a
// thousand lines along an axis: their pixels are a range, and nothing needs to be worked out for each.
void PaintAlongAxis(std::uint32_t* pixels, const Axis& axis, std::uint32_t value) noexcept {
  Range steps = StepsInside(axis);
  steps.end = std::min(steps.end, axis.length);
  if (steps.first >= steps.end) return;
  const std::int64_t stride = axis.direction * axis.stride;
  std::uint32_t* pixel = pixels + (axis.start * axis.stride + steps.first * stride);
  for (std::int64_t step = steps.first; step < steps.end; ++step, pixel += stride) *pixel = value;
}

// Any line. REQUIRES: picture and axes are of the same line.
void PaintSlanted(std::uint32_t* pixels, const Axis& major, const Axis& minor, std::uint32_t value) noexcept {
  Range steps = StepsInside(major);
  steps.end = std::min(steps.end, major.length);
  if (steps.first >= steps.end) return;
  const Range minorSteps = StepsInside(minor);
  const Range inside{FirstReaching(minorSteps.first, steps, major, minor),
                     FirstReaching(minorSteps.end, steps, major, minor)};
  if (inside.first < inside.end) PaintSteps(pixels, inside, major, minor, value);
}

}  // namespace

void PaintLine(const Picture& picture, Point from, Point to, std::uint32_t value) noexcept {
  const Axis x = MakeAxis(from.x, to.x, picture.width, 1);
  const Axis y = MakeAxis(from.y, to.y, picture.height, picture.width);
  if (x.length == 0) {
    if (from.x >= 0 && from.x < picture.width) PaintAlongAxis(picture.pixels + from.x, y, value);
  } else if (y.length == 0) {
    if (from.y >= 0 && from.y < picture.height) {
      PaintAlongAxis(picture.pixels + std::int64_t{from.y} * picture.width, x, value);
    }
  } else if (x.length > y.length) {
    PaintSlanted(picture.pixels, x, y, value);
  } else {
    PaintSlanted(picture.pixels, y, x, value);
  }
}

}  // namespace tavimo::platform
