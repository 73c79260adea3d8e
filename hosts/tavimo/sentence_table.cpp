#include "sentence_table.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

#include "text.h"

namespace tavimo::host {

namespace {

// A sentence runs to the start of the next one, the last to the end of the recording. At a sample rate that 25 does not
// divide levels are a little shorter than 40 ms, and a start may lie behind that end.
std::int64_t LengthMs(const LessonSession& session, const std::vector<std::uint32_t>& startsMs, std::size_t index) {
  const std::int64_t end = index + 1 < startsMs.size() ? startsMs[index + 1] : session.Header().DurationMs();
  return std::max<std::int64_t>(end - startsMs[index], 0);
}

std::string CountedSentences(std::size_t count) {
  if (count == 0) return "no sentence";
  return count == 1 ? "one sentence" : std::to_string(count) + " sentences";
}

}  // namespace

void PrintTable(std::ostream& out, const LessonSession& session, const std::vector<std::uint32_t>& startsMs,
                const std::string& origin) {
  out << Readable(session.Recording().filename()) << ": " << CountedSentences(startsMs.size()) << " in "
      << FormatTime(session.Header().DurationMs()) << " (" << origin << ")\n";
  if (startsMs.empty()) return;
  out << "   no.       start      length\n";
  for (std::size_t i = 0; i < startsMs.size(); ++i) {
    out << std::setw(6) << i + 1 << std::setw(12) << FormatTime(startsMs[i]) << std::setw(12)
        << FormatTime(LengthMs(session, startsMs, i)) << '\n';
  }
}

void PrintJson(std::ostream& out, const LessonSession& session, const Cut& cut) {
  out << "{\"recording\": " << Quoted(Readable(session.Recording()))
      << ", \"length_ms\": " << session.Header().DurationMs() << ", \"threshold\": " << cut.threshold
      << ", \"silence_ms\": " << cut.silenceMs << ", \"stored\": " << (cut.startsMs.size() < 2 ? "false" : "true")
      << ", \"sentences\": [";
  for (std::size_t i = 0; i < cut.startsMs.size(); ++i) {
    out << (i == 0 ? "" : ", ") << "{\"number\": " << i + 1 << ", \"start_ms\": " << cut.startsMs[i]
        << ", \"length_ms\": " << LengthMs(session, cut.startsMs, i) << '}';
  }
  out << "]}\n";
}

std::string DescribeParameters(const Cut& cut) {
  return "threshold " + std::to_string(cut.threshold) + ", silence " + std::to_string(cut.silenceMs) + " ms";
}

}  // namespace tavimo::host
