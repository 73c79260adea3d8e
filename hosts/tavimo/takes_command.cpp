// `tavimo takes`: what the learner has recorded; listed, played, removed.
#include <iomanip>
#include <iostream>

#include "moment.h"
#include "options.h"
#include "player.h"
#include "refusal.h"
#include "system.h"
#include "take_shelf.h"
#include "tape_recovery.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

std::string SentenceName(const Take& take) { return take.sentence == 0 ? "-" : std::to_string(take.sentence); }

std::string LengthOf(const Take& take) {
  const WaveHeader header = ReadWaveHeader(take.file);
  return header.problem.empty() ? FormatTime(header.DurationMs()) : header.problem;
}

void List(const Options& options, const LessonSession& session) {
  std::vector<Take> takes = ListTakes();
  std::erase_if(takes, [&](const Take& take) { return options.sentence && take.sentence != *options.sentence; });
  if (takes.empty()) {
    std::cout << "no take yet; tavimo record makes one\n";
    return;
  }
  std::cout << "sentence  take      length  recorded             file\n";
  for (const Take& take : takes) {
    std::cout << std::setw(8) << SentenceName(take) << std::setw(6) << take.number << "  " << std::setw(10)
              << LengthOf(take) << "  " << std::left << std::setw(19) << MomentOf(take.file) << std::right << "  "
              << Readable(session.Folder().Path() / take.file) << '\n';
  }
}

void PlayTake(const Options& options) {
  const Take take = ChooseTake(options.sentence, options.take);
  PlayRequest request;
  request.file = take.file;
  request.header = ReadWaveHeader(take.file);
  if (!request.header.problem.empty())
    throw Refusal(Readable(take.file) + " cannot be played: " + request.header.problem);
  request.endMs = request.header.DurationMs() + 1;  // the last part of a millisecond too
  request.device = options.device;
  Play(request);
  std::cout << "sentence " << SentenceName(take) << ", take " << take.number << " of " << MomentOf(take.file) << ": "
            << FormatTime(request.header.DurationMs()) << ", played once\n";
}

void Remove(const Options& options) {
  const Take take = ChooseTake(options.sentence, options.take);
  std::error_code error;
  if (!fs::remove(take.file, error))
    throw Refusal(Readable(take.file) + " cannot be removed (" + ReasonOf(error) + ")");
  std::cout << "removed " << Readable(take.file) << '\n';
}

}  // namespace

int RunTakes(const Options& options) {
  RecoverAtStart(options.home);
  const LessonSession session(options.home, options.files.front());
  if (options.takesAction == TakesAction::List) List(options, session);
  if (options.takesAction == TakesAction::Play) PlayTake(options);
  if (options.takesAction == TakesAction::Remove) Remove(options);
  return kDone;
}

}  // namespace tavimo::host
