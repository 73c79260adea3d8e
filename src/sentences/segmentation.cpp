#include "sentences/segmentation.h"

#include <algorithm>
#include <bit>
#include <span>

#include "core/little_endian.h"
#include "digest/block_levels.h"
#include "digest/level_reader.h"
#include "sentences/start_table.h"

namespace tavimo::sentences {

using digest::LevelReader;

namespace {

using Levels = std::span<const std::uint8_t>;

constexpr std::size_t kWordLevels = 8;  // looked at together
constexpr std::uint64_t kHighBits = 0x8080808080808080;

constexpr std::uint64_t InEachByte(std::uint64_t byte) noexcept { return byte * 0x0101010101010101; }

// Which levels are sounds. The rule: those above the threshold.
class SoundTest {
 public:
  // REQUIRES: threshold >= 0.
  explicit SoundTest(std::int32_t threshold) noexcept
      : threshold_(std::min(threshold, 255)),
        isLow_(threshold_ < 128 ? ~std::uint64_t{0} : 0),
        addend_(InEachByte(static_cast<std::uint64_t>((threshold_ < 128 ? 127 : 255) - threshold_))) {}

  [[nodiscard]] bool IsSound(std::uint8_t level) const noexcept { return level > threshold_; }

  // The high bit of each byte tells whether that level is a sound, the first level's byte the lowest. The lower seven
  // bits with what the threshold lacks to 127 (or, less 128, to 255) reach the high bit when they are above it; a high
  // bit of the level's own decides for a low threshold and has to be there for a high one.
  [[nodiscard]] std::uint64_t SoundsAmong(const std::uint8_t* word) const noexcept {
    const std::uint64_t levels = core::ReadU64(word);
    const std::uint64_t lower = (levels & ~kHighBits) + addend_;
    return ((lower & levels) | ((lower | levels) & isLow_)) & kHighBits;
  }

 private:
  std::int32_t threshold_;
  std::uint64_t isLow_;
  std::uint64_t addend_;
};

// One pass over the levels. The rule a sentence's end goes by: of the levels behind the sentence's first sound, the
// last `length` ones are all silent. Keeping them in a ring and looking at all of them after every level says the same
// as counting the silent levels in a row, which costs nothing for a long silence.
class SentenceScanner {
 public:
  // REQUIRES: a threshold of at least 0.
  SentenceScanner(platform::FileStream& digest, SilenceRule rule) noexcept
      : levels_(digest, 0), length_(rule.length), test_(rule.threshold) {}

  // False when no further sentence starts. The start lies two levels before the first sound, so that a soft beginning
  // is heard.
  bool NextStart(std::uint32_t& startMs) noexcept {
    if (!PassUntil([this](Levels levels) { return FirstSound(levels); })) return false;
    const std::int64_t start = std::max<std::int64_t>(position_ - 3, 0);
    startMs = static_cast<std::uint32_t>(start * digest::kBlockMs);
    return true;
  }

  // False when the recording ends before the sentence does.
  bool PassSentence() noexcept {
    silentInARow_ = 0;
    return PassUntil([this](Levels levels) { return EndOfSilence(levels); });
  }

 private:
  // Takes levels up to and including the one at the index that find gives; find gives the levels' size for none.
  template <typename Find>
  bool PassUntil(Find find) noexcept {
    for (;;) {
      const Levels ready = levels_.Ready();
      if (ready.empty()) return false;
      const std::size_t found = find(ready);
      const std::size_t passed = std::min(found + 1, ready.size());
      levels_.Skip(passed);
      position_ += static_cast<std::int64_t>(passed);
      if (found != ready.size()) return true;
    }
  }

  [[nodiscard]] std::size_t FirstSound(Levels levels) const noexcept {
    std::size_t i = 0;
    for (; i + kWordLevels <= levels.size(); i += kWordLevels) {
      const std::uint64_t sounds = test_.SoundsAmong(&levels[i]);
      if (sounds != 0) return i + BytesBelow(sounds);
    }
    while (i < levels.size() && !test_.IsSound(levels[i])) ++i;
    return i;
  }

  // The level with which the silence is as long as asked for. Eight levels that hold a sound hold no such silence
  // between two sounds, unless a very short one is asked for.
  [[nodiscard]] std::size_t EndOfSilence(Levels levels) noexcept {
    constexpr std::int32_t kLongestInside = kWordLevels - 2;
    if (length_ <= kLongestInside) return EndOfSilencePlainly(levels);
    std::size_t i = 0;
    for (; i + kWordLevels <= levels.size(); i += kWordLevels) {
      const std::uint64_t sounds = test_.SoundsAmong(&levels[i]);
      const auto lacking = static_cast<std::size_t>(length_ - silentInARow_);
      if (BytesBelow(sounds) >= lacking) return i + lacking - 1;
      const auto behind = static_cast<std::int32_t>(std::countl_zero(sounds)) / 8;
      silentInARow_ = sounds == 0 ? silentInARow_ + behind : behind;
    }
    return i + EndOfSilencePlainly(levels.subspan(i));
  }

  [[nodiscard]] std::size_t EndOfSilencePlainly(Levels levels) noexcept {
    std::size_t i = 0;
    for (; i < levels.size(); ++i) {
      silentInARow_ = test_.IsSound(levels[i]) ? 0 : silentInARow_ + 1;
      if (silentInARow_ == length_) break;
    }
    return i;
  }

  // 8 when there is no sound.
  static std::size_t BytesBelow(std::uint64_t sounds) noexcept {
    return static_cast<std::size_t>(std::countr_zero(sounds)) / 8;
  }

  LevelReader levels_;
  std::int32_t length_;
  SoundTest test_;
  std::int32_t silentInARow_ = 0;
  std::int64_t position_ = 0;  // levels passed
};

}  // namespace

std::int32_t MakeSentences(platform::FileStream& digest, SilenceRule rule) noexcept {
  if (rule.length < 1 || rule.length > kLongestSilence) {
    platform::RemoveFile(kTmpSentences);  // it would be taken for this recording's
    return 0;
  }
  StartTableWriter starts;
  if (!starts.Begin(kTmpSentences)) return -1;
  SentenceScanner scanner(digest, {std::max(rule.threshold, 0), rule.length});
  std::uint32_t startMs = 0;
  for (bool more = rule.threshold >= 0; more && scanner.NextStart(startMs); more = scanner.PassSentence())
    starts.Add(startMs);
  if (starts.Count() > 1) return starts.Finish(platform::ReplacementFile::Durability::Cached) ? starts.Count() : -1;
  starts.Abandon();
  platform::RemoveFile(kTmpSentences);
  return 0;
}

}  // namespace tavimo::sentences
