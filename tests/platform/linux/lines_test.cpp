// Lines by the definition of their pixels, against the way they are painted: along an axis, slanted, clipped.
#include "platform/linux/lines.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

namespace tavimo::platform {
namespace {

constexpr std::int32_t kWidth = 21;
constexpr std::int32_t kHeight = 13;
using Pixels = std::vector<std::uint32_t>;

// How far the minor coordinate has moved after some steps, rounded to the nearest; a half toward the smaller
// coordinate.
std::int32_t MinorSteps(std::int32_t steps, std::int32_t major, std::int32_t minor) {
  const std::int32_t doubled = 2 * steps * std::abs(minor);
  return (doubled + major - (minor > 0 ? 1 : 0)) / (2 * major);
}

Pixels ByDefinition(Point from, Point to) {
  Pixels pixels(kWidth * kHeight);
  const std::int32_t dx = to.x - from.x;
  const std::int32_t dy = to.y - from.y;
  const bool isFlat = std::abs(dx) > std::abs(dy);
  const std::int32_t major = std::abs(isFlat ? dx : dy);
  const std::int32_t minor = isFlat ? dy : dx;
  for (std::int32_t step = 0; step < major; ++step) {
    const std::int32_t along = (isFlat ? dx : dy) < 0 ? -step : step;
    const std::int32_t across = (minor < 0 ? -1 : 1) * MinorSteps(step, major, minor);
    const std::int32_t x = from.x + (isFlat ? along : across);
    const std::int32_t y = from.y + (isFlat ? across : along);
    if (x >= 0 && x < kWidth && y >= 0 && y < kHeight) pixels[static_cast<std::size_t>(y * kWidth + x)] = 1;
  }
  return pixels;
}

TEST(Lines, AreThoseOfTheDefinition) {
  std::mt19937 random(9);
  const auto coordinate = [&](std::int32_t limit) { return static_cast<std::int32_t>(random() % (3 * limit)) - limit; };
  for (int round = 0; round < 5000; ++round) {
    const Point from{coordinate(kWidth), coordinate(kHeight)};
    Point to{coordinate(kWidth), coordinate(kHeight)};
    if (round % 3 == 1) to.x = from.x;
    if (round % 3 == 2) to.y = from.y;
    Pixels painted(kWidth * kHeight);
    PaintLine({painted.data(), kWidth, kHeight}, from, to, 1);
    ASSERT_EQ(painted, ByDefinition(from, to)) << from.x << ',' << from.y << " to " << to.x << ',' << to.y;
  }
}

TEST(Lines, CostNothingForAnyLength) {
  constexpr std::int32_t kFarLeft = INT32_MIN;
  constexpr std::int32_t kFarRight = INT32_MAX;
  const struct {
    Point from;
    Point to;
    Pixels pixels;
  } kCases[] = {
      {{kFarLeft, 1}, {kFarRight, 1}, {0, 0, 0, 1, 1, 1, 0, 0, 0}},
      {{1, kFarRight}, {1, kFarLeft}, {0, 1, 0, 0, 1, 0, 0, 1, 0}},
      {{kFarLeft, kFarLeft}, {kFarRight, kFarRight}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
      {{kFarLeft, 0}, {kFarRight, 2}, {0, 0, 0, 1, 1, 1, 0, 0, 0}},
      {{kFarRight, 0}, {kFarRight, 3}, {0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {{0, 0}, {kFarRight, kFarLeft}, {1, 0, 0, 0, 0, 0, 0, 0, 0}},
  };
  for (const auto& testCase : kCases) {
    Pixels painted(9);
    for (int i = 0; i < 1000; ++i) PaintLine({painted.data(), 3, 3}, testCase.from, testCase.to, 1);
    EXPECT_EQ(painted, testCase.pixels) << testCase.from.x << ',' << testCase.from.y;
  }
}

}  // namespace
}  // namespace tavimo::platform
