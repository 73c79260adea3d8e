#include "sentence_stretch.h"

#include <algorithm>

#include "refusal.h"

namespace tavimo::host {

Stretch StretchOf(LessonSession& session, int sentence) {
  const std::vector<std::uint32_t> starts = session.LoadStudyFile();
  if (!session.CanBeSentences(starts)) throw Refusal("it was not cut into sentences yet; tavimo cut does that");
  const auto number = static_cast<std::size_t>(sentence);
  if (sentence < 1 || number > starts.size()) {
    throw Refusal("it has no sentence " + std::to_string(sentence) + ", only 1 to " + std::to_string(starts.size()));
  }
  const std::int64_t end = number < starts.size() ? starts[number] : session.Header().DurationMs();
  return {starts[number - 1], std::max<std::int64_t>(end, starts[number - 1])};
}

}  // namespace tavimo::host
