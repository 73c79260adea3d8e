// `tavimo lesson`: the whole road of each recording in one go.
#include <iostream>
#include <set>

#include "comparison.h"
#include "exercise_list.h"
#include "options.h"
#include "question_files.h"
#include "recorder.h"
#include "refusal.h"
#include "sentence_finder.h"
#include "sentence_table.h"
#include "system.h"
#include "tape_recovery.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestPictureStem = 200;  // leaves room for what is added, within the 255 of a file system

struct Sentences {
  std::vector<std::uint32_t> startsMs;
  std::string origin;
};

// What the study file holds may have cost the learner work, so it is cut only where it holds nothing usable.
Sentences LoadOrCut(LessonSession& session, const Digest& digest) {
  std::vector<std::uint32_t> stored = session.LoadStudyFile();
  if (session.CanBeSentences(stored)) return {std::move(stored), "from its study file"};
  Cut cut = FindSentences(digest.levels, {}, {});
  if (cut.startsMs.size() >= 2) session.StoreStudyFile(cut.startsMs);
  return {std::move(cut.startsMs), DescribeParameters(cut)};
}

// "unit1-wave.png"; the second recording of that name gets "unit1-wave-2.png".
fs::path PictureFile(const fs::path& folder, const fs::path& recording, const char* kind, std::set<fs::path>& taken) {
  const std::string name = Shortened(Utf8(recording.stem()), kLongestPictureStem) + kind;
  fs::path file = folder / PathFromUtf8(name + ".png");
  for (int number = 2; !taken.insert(file).second; ++number) {
    file = folder / PathFromUtf8(name + "-" + std::to_string(number) + ".png");
  }
  return file;
}

// A learner's voice that came with the lesson takes the place of the microphone, at the pace at which it was spoken.
void RecordLearner(LessonSession& session, const Digest& digest, int sentence, const fs::path& learner,
                   const fs::path& picture) {
  const WaveHeader header = ReadWaveHeader(learner);
  if (!header.problem.empty()) throw Refusal(Readable(learner.filename()) + ": " + header.problem);
  (void)StretchOf(session, sentence);  // refuses what is no sentence
  RecordingRequest request;
  request.sentence = sentence;
  request.device = "file:" + Utf8(learner);
  request.lengthMs = header.DurationMs();
  const RecordingResult result = RecordTake(session, request);
  StopIfInterrupted();
  std::cout << "recorded: " << Describe(result.take) << '\n';
  std::cout << Describe(SaveComparison(session, digest.levels, sentence, ChooseTake(sentence, {}), picture));
  std::cout << "picture: " << Readable(picture) << '\n';
}

void ListExercises(LessonSession& session) {
  if (!FileBeside(session.Recording(), ".scr")) return;
  RefreshQuestions(session, {});
  PrintExercises(std::cout, session, ReadExercises(session));
}

void TakeLesson(const Options& options, const fs::path& file, std::set<fs::path>& taken) {
  LessonSession session(options.home, file);
  const Digest digest = OpenDigest(session, options.digestKind);
  const Sentences sentences = LoadOrCut(session, digest);
  PrintTable(std::cout, session, sentences.startsMs, sentences.origin);
  PictureRequest request;
  request.recordingMs = static_cast<std::int64_t>(digest.levels.size()) * kLevelMs;
  request.toMs = request.recordingMs;
  request.startsMs = sentences.startsMs;
  const fs::path picture = PictureFile(options.output, session.Recording(), "-wave", taken);
  SaveWavePicture(request, picture);
  std::cout << "picture: " << Readable(picture) << '\n';
  const fs::path learner = fs::path(session.Recording()).replace_extension(".learner.wav");
  std::error_code error;  // a name may be too long for an ending more
  if (fs::exists(learner, error)) {
    RecordLearner(session, digest, options.learnerSentence, learner,
                  PictureFile(options.output, session.Recording(), "-compare", taken));
  }
  ListExercises(session);
}

}  // namespace

int RunLesson(const Options& options) {
  RecoverAtStart(options.home);
  int exitCode = kDone;
  std::set<fs::path> taken;
  for (const fs::path& file : options.files) {
    StopIfInterrupted();
    try {
      TakeLesson(options, file, taken);
    } catch (const Refusal& refusal) {
      std::cerr << "tavimo: " << Readable(file.filename()) << ": " << refusal.what() << '\n';
      exitCode = kRefused;
    }
  }
  return exitCode;
}

}  // namespace tavimo::host
