// Cutting a digest into sentences.
#include <random>

#include "core/little_endian.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using Starts = std::vector<std::uint32_t>;

class Segmentation : public EngineTest {
 protected:
  static std::int32_t Cut(std::int32_t threshold, std::int32_t length) {
    vcSetSilentParam(threshold, length * 40);
    return vcMakeSentence();
  }

  static Starts StartsIn(const char* path) {
    const Bytes bytes = ReadBytes(path);
    Starts starts;
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) starts.push_back(core::ReadU32(bytes.data() + at));
    return starts;
  }
};

TEST_F(Segmentation, FindsSentencesBetweenSilences) {
  const Bytes levels = {0, 0, 0, 50, 50, 0, 0, 0, 0, 60, 0, 0};
  const struct {
    Bytes levels;
    std::int32_t threshold, length;
    Starts starts;
  } cases[] = {
      {levels, 10, 3, {40, 280}},
      {levels, 10, 5, {}},  // one sentence is none
      {{50, 0, 0, 50}, 10, 2, {0, 40}},
      {{0, 0, 50, 0, 50}, 10, 1, {0, 80}},                    // a first sound within three levels
      {{50, 0, 50, 0, 50}, 10, 1, {0, 0, 80}},                // clamped twice
      {{0, 0, 0, 0, 10, 11, 10, 10, 11}, 10, 2, {120, 240}},  // a level equal to the threshold is silent
      {levels, -1, 3, {}},                                    // no level is ever sound
      {{}, 10, 1, {}},
      {Bytes(100, 90), 10, 1, {}},
  };
  for (const auto& c : cases) {
    WriteText("tmp.sen", "left over");
    OpenDigest(c.levels);
    EXPECT_EQ(Cut(c.threshold, c.length), static_cast<std::int32_t>(c.starts.size()));
    EXPECT_EQ(StartsIn("tmp.sen"), c.starts);
    EXPECT_EQ(Exists("tmp.sen"), !c.starts.empty());
  }
}

// The rule as it is told: a ring of the last levels, all of them looked at after every level.
Starts PlainRule(const Bytes& levels, int threshold, std::size_t length) {
  Starts starts;
  std::size_t at = 0;
  while (at < levels.size()) {
    while (at < levels.size() && levels[at] <= threshold) ++at;
    if (at == levels.size()) break;
    starts.push_back(at < 2 ? 0 : static_cast<std::uint32_t>((at - 2) * 40));
    Bytes ring;
    for (++at; at < levels.size(); ++at) {
      ring.push_back(levels[at]);
      if (ring.size() > length) ring.erase(ring.begin());
      if (ring.size() == length &&
          std::all_of(ring.begin(), ring.end(), [&](std::uint8_t level) { return level <= threshold; })) {
        ++at;
        break;
      }
    }
  }
  return starts.size() > 1 ? starts : Starts{};
}

TEST_F(Segmentation, AgreesWithTheRuleOfTheRing) {
  std::mt19937 random(4);
  for (int round = 0; round < 90; ++round) {
    const int threshold = round % 3 == 0 ? 10 : static_cast<int>(random() % 258);
    Bytes levels(random() % 40000);
    int level = 0;
    for (auto& value : levels) {
      if (random() % 6 == 0) level = static_cast<int>(random() % std::min(256, 2 * threshold + 2));
      value = static_cast<std::uint8_t>(level);
    }
    const std::size_t length = 1 + random() % (round % 2 == 0 ? 10 : 60);
    OpenDigest(levels);
    const Starts expected = PlainRule(levels, threshold, length);
    EXPECT_EQ(Cut(threshold, static_cast<std::int32_t>(length)), static_cast<std::int32_t>(expected.size()));
    EXPECT_EQ(StartsIn("tmp.sen"), expected)
        << levels.size() << " levels, threshold " << threshold << ", silence " << length;
  }
}

TEST_F(Segmentation, TakesSilencesUpTo1024Levels) {
  OpenDigest(Joined(With(Bytes(1025), 0, {90}), {90}));
  EXPECT_EQ(Cut(10, 1024), 2);
  for (const std::int32_t length : {1025, 0, -1}) {
    WriteText("tmp.sen", "of another recording");
    EXPECT_EQ(Cut(10, length), 0);
    EXPECT_FALSE(Exists("tmp.sen"));
  }
  vcSetSilentParam(10, 39);
  EXPECT_EQ(vcMakeSentence(), 0) << "39 ms are no level";
}

TEST_F(Segmentation, FailsWithoutADigestOrAPlaceForItsResult) {
  vcSetSilentParam(10, 120);
  EXPECT_EQ(vcMakeSentence(), -1);
  EXPECT_FALSE(Exists("tmp.sen"));
  OpenDigest({90, 0, 0, 0, 90, 0});
  std::filesystem::create_directory("tmp.sen");
  EXPECT_EQ(vcMakeSentence(), -1);
}

TEST_F(Segmentation, HandsItsStartsOverOnce) {
  OpenDigest({0, 0, 0, 50, 50, 0, 0, 0, 0, 60, 0, 0});
  ASSERT_EQ(Cut(10, 3), 2);
  Starts starts(4, 7);
  EXPECT_EQ(vcReadTmpIdx(starts.data(), 4), 0);
  EXPECT_EQ(starts, (Starts{40, 280, 7, 7})) << "values the file does not hold stay";
  EXPECT_FALSE(Exists("tmp.sen"));
  EXPECT_EQ(vcReadTmpIdx(starts.data(), 4), -1);
  WriteBytes("tmp.sen", {1, 0, 0, 0, 2, 0});
  EXPECT_EQ(vcReadTmpIdx(nullptr, 1), 0);
}

}  // namespace
}  // namespace tavimo::tests
