// `tavimo pages build`: a script broken into pages. Its marks go along where the pages are other ones than before.
#include <algorithm>
#include <iostream>
#include <set>

#include "options.h"
#include "refusal.h"
#include "script_words.h"
#include "text.h"

namespace tavimo::host {

namespace {

using Places = std::set<std::size_t>;  // where marked words begin in the text

bool HasMarks(const ScriptSession& session) {
  const auto marks = session.ReadMarks();
  return std::any_of(marks.begin(), marks.end(), [](std::uint8_t byte) { return byte != 0; });
}

std::vector<ScriptWord> AllWords(ScriptSession& session) { return ReadWords(session, 0, session.PageCount() - 1); }

// None where the pages of before cannot be laid out again: the font may be gone.
Places MarkedPlaces(ScriptSession& session, const EngineText& text) try {
  Places places;
  if (!session.OpenEarlier(text) || !HasMarks(session)) return {};
  for (const ScriptWord& word : AllWords(session)) {
    if (word.IsMarked()) places.insert(word.start);
  }
  return places;
} catch (const Refusal&) {
  return {};
}

// The engine numbers a word that a page's end cuts twice, so that on other pages the words behind it have other numbers,
// by which the marks are kept.
void MoveMarks(ScriptSession& session, const Places& places) {
  std::vector<ScriptWord> missing;
  std::vector<ScriptWord> wrong;
  for (const ScriptWord& word : AllWords(session)) {
    const bool isWanted = places.contains(word.start);
    if (isWanted != word.IsMarked()) (isWanted ? missing : wrong).push_back(word);
  }
  // Around a page's end two words may share a number: rather a mark too many than one lost.
  SetMarks(session, wrong, Mark::Off);
  SetMarks(session, missing, Mark::On);
}

std::string Counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

int RunPagesBuild(const Options& options) {
  const PageSetup& setup = options.pageSetup;
  ScriptSession session(options.home, options.files.front());
  const EngineText text = ReadEngineText(options.files.front(), setup);
  const Places places = MarkedPlaces(session, text);
  session.Build(setup, text);
  if (!places.empty()) MoveMarks(session, places);
  std::cerr << text.lost;
  std::cout << Readable(options.files.front().filename()) << ": " << NameOf(text.encoding) << ", "
            << Counted(text.lineCount, "line");
  if (text.mendedLineEnds > 0) std::cout << " (line ends made CR LF in the working copy)";
  std::cout << '\n'
            << Counted(static_cast<std::size_t>(session.PageCount()), "page") << " of " << setup.width << " x "
            << setup.height << " pixels in " << ReadableText(setup.font) << " " << setup.sizePx << '\n';
  if (!places.empty()) std::cout << Counted(places.size(), "marked word") << " kept\n";
  return kDone;
}

}  // namespace tavimo::host
