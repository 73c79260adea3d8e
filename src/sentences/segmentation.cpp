#include "sentences/segmentation.h"

#include <algorithm>

#include "digest/block_levels.h"
#include "digest/level_reader.h"
#include "sentences/start_table.h"

namespace tavimo::sentences {

using digest::LevelReader;

namespace {

// One pass over the levels. The rule a sentence's end goes by: of the levels behind the sentence's first sound, the
// last `length` ones are all silent. Keeping them in a ring and looking at all of them after every level says the same
// as counting the silent levels in a row, which costs nothing for a long silence.
class SentenceScanner {
 public:
  SentenceScanner(platform::FileStream& digest, SilenceRule rule) noexcept : levels_(digest, 0), rule_(rule) {}

  // False when no further sentence starts. The start lies two levels before the first sound, so that a soft beginning
  // is heard.
  bool NextStart(std::uint32_t& startMs) noexcept {
    const auto isSound = [this](std::uint8_t level) { return level > rule_.threshold; };
    if (rule_.threshold < 0 || !PassUntil(isSound)) return false;
    const std::int64_t start = std::max<std::int64_t>(position_ - 3, 0);
    startMs = static_cast<std::uint32_t>(start * digest::kBlockMs);
    return true;
  }

  // False when the recording ends before the sentence does.
  bool PassSentence() noexcept {
    std::int32_t silentInARow = 0;
    return PassUntil([this, &silentInARow](std::uint8_t level) {
      silentInARow = level > rule_.threshold ? 0 : silentInARow + 1;
      return silentInARow == rule_.length;
    });
  }

 private:
  // Takes levels up to and including the first that ends says true of.
  template <typename Ends>
  bool PassUntil(Ends ends) noexcept {
    for (;;) {
      const auto ready = levels_.Ready();
      if (ready.empty()) return false;
      const auto found = std::find_if(ready.begin(), ready.end(), ends);
      const auto passed = found - ready.begin() + (found == ready.end() ? 0 : 1);
      levels_.Skip(static_cast<std::size_t>(passed));
      position_ += passed;
      if (found != ready.end()) return true;
    }
  }

  LevelReader levels_;
  SilenceRule rule_;
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
  SentenceScanner scanner(digest, rule);
  std::uint32_t startMs = 0;
  for (bool more = true; more && scanner.NextStart(startMs); more = scanner.PassSentence()) starts.Add(startMs);
  if (starts.Count() > 1) return starts.Finish(platform::ReplacementFile::Durability::Cached) ? starts.Count() : -1;
  starts.Abandon();
  platform::RemoveFile(kTmpSentences);
  return 0;
}

}  // namespace tavimo::sentences
