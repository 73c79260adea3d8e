// `tavimo lesson`: the whole road of each recording in one go.
#include <iostream>
#include <optional>
#include <set>
#include <sstream>

#include "bookmark_list.h"
#include "comparison.h"
#include "exercise_list.h"
#include "lesson_files.h"
#include "lesson_lock.h"
#include "lesson_page.h"
#include "options.h"
#include "question_files.h"
#include "recorder.h"
#include "refusal.h"
#include "script_pages.h"
#include "sentence_finder.h"
#include "sentence_table.h"
#include "stopwatch.h"
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
fs::path OutputFile(const fs::path& folder, const fs::path& recording, const std::string& kind,
                    const std::string& extension, std::set<fs::path>& taken) {
  const std::string name = Shortened(Utf8(recording.stem()), kLongestPictureStem) + kind;
  fs::path file = folder / PathFromUtf8(name + extension);
  for (int number = 2; !taken.insert(file).second; ++number) {
    std::ostringstream numbered;
    numbered << name << '-' << number << extension;
    file = folder / PathFromUtf8(numbered.str());
  }
  return file;
}

fs::path PictureFile(const fs::path& folder, const fs::path& recording, const char* kind, std::set<fs::path>& taken) {
  return OutputFile(folder, recording, kind, ".png", taken);
}

// A learner's voice that came with the lesson takes the place of the microphone, at the pace at which it was spoken.
void RecordLearner(LessonSession& session, const Digest& digest, int sentence, const fs::path& learner,
                   const fs::path& picture) {
  const WaveHeader header = ReadWaveHeader(learner);
  if (!header.problem.empty()) throw Refusal(header.problem);
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

// What lies beside the recording must not cost the learner the rest of the lesson.
template <typename Work>
bool TryPart(const fs::path& file, Work work) try {
  work();
  return true;
} catch (const Refusal& refusal) {
  std::cerr << "tavimo: " << Readable(file.filename()) << ": " << refusal.what() << '\n';
  return false;
}

bool AddExercises(LessonSession& session, LessonPage& page) {
  const auto script = FileBeside(session.Recording(), ".scr");
  if (!script) return true;
  return TryPart(session.Recording(), [&] {  // a refusal names the script itself
    const std::vector<Exercise> exercises = LoadExercises(session, {});
    PrintExercises(std::cout, session, exercises);
    page.AddExercises(exercises);
  });
}

bool AddPicture(const LessonSession& session, LessonPage& page) {
  const auto picture = PictureOf(session);
  return !picture || TryPart(*picture, [&] { page.AddPicture(*picture); });
}

bool AddScript(const Options& options, const fs::path& recording, LessonPage& page) {
  const auto script = FileBeside(recording, ".txt");
  if (!script) return true;
  return TryPart(*script, [&] {
    int count = 0;
    DrawScriptPages(options.home, *script, [&](const ScriptPage& scriptPage) {
      page.AddScriptPage(scriptPage);
      ++count;
    });
    std::cout << Readable(script->filename()) << ": " << Counted(static_cast<std::size_t>(count), "page") << '\n';
  });
}

bool AddTakeOfLearner(const Options& options, LessonSession& session, const Digest& digest, std::set<fs::path>& taken) {
  const auto learner = FileBeside(session.Recording(), ".learner.wav");
  if (!learner || HasTake(options.learnerSentence)) return true;
  return TryPart(*learner, [&] {
    RecordLearner(session, digest, options.learnerSentence, *learner,
                  PictureFile(options.output, session.Recording(), "-compare", taken));
  });
}

// A recording of one sentence is worth playing too.
std::vector<std::uint32_t> SentencesOfPage(const Sentences& sentences) {
  return sentences.startsMs.empty() ? std::vector<std::uint32_t>{0} : sentences.startsMs;
}

struct Opened {
  Digest digest;
  Sentences sentences;
};

Opened OpenLesson(const Options& options, LessonSession& session, Stopwatch& stopwatch) {
  Digest digest = OpenDigest(session, options.digestKind);
  stopwatch.End("digest");
  Sentences sentences = LoadOrCut(session, digest);
  stopwatch.End("cut");
  return {std::move(digest), std::move(sentences)};
}

// The part of the road that needs the recording open. False when some of it could not be done.
bool TakeRecording(const Options& options, const fs::path& file, std::set<fs::path>& taken,
                   std::optional<LessonPage>& page, Stopwatch& stopwatch) {
  LessonSession session(options.home, file);
  const LessonLock lock("lesson.lock", kChangingElsewhere, WhenHeld::Wait);  // what one makes the others find
  stopwatch.End("open");
  const auto [digest, sentences] = OpenLesson(options, session, stopwatch);
  PrintTable(std::cout, session, sentences.startsMs, sentences.origin);
  PictureRequest request;
  request.recordingMs = static_cast<std::int64_t>(digest.levels.size()) * kLevelMs;
  request.toMs = request.recordingMs;
  request.startsMs = sentences.startsMs;
  const fs::path picture = PictureFile(options.output, session.Recording(), "-wave", taken);
  SaveWavePicture(request, picture);
  std::cout << "picture: " << Readable(picture) << '\n';
  stopwatch.End("picture");
  bool isWhole = AddTakeOfLearner(options, session, digest, taken);
  page.emplace(session, digest.levels, SentencesOfPage(sentences));
  (void)session.LoadStudyFile();
  page->AddBookmarks(Bookmarks(session));
  isWhole = AddExercises(session, *page) && isWhole;
  return AddPicture(session, *page) && isWhole;
}

// One lesson is lesson.html; several have their names before it.
fs::path PageFile(const Options& options, const fs::path& recording, std::size_t lessonCount,
                  std::set<fs::path>& taken) {
  if (lessonCount == 1) return options.output / "lesson.html";
  return OutputFile(options.output, recording, "-lesson", ".html", taken);
}

bool TakeLesson(const Options& options, const fs::path& file, const fs::path& pageFile, std::set<fs::path>& taken,
                Stopwatch& stopwatch) {
  std::optional<LessonPage> page;
  const bool isRecordingDone = TakeRecording(options, file, taken, page, stopwatch);
  StopIfInterrupted();
  const bool isScriptDone = AddScript(options, file, *page);
  page->Save(pageFile);
  std::cout << "page: " << Readable(pageFile) << '\n';
  stopwatch.End("page");
  return isRecordingDone && isScriptDone;
}

std::vector<LessonRecording> AllRecordings(const std::vector<fs::path>& names) {
  std::vector<LessonRecording> all;
  for (const fs::path& name : names) {
    const std::vector<LessonRecording> recordings = LessonRecordings(name);
    all.insert(all.end(), recordings.begin(), recordings.end());
  }
  return all;
}

}  // namespace

int RunLesson(const Options& options) {
  Stopwatch stopwatch(options.isTimed ? Stopwatch::Printing::On : Stopwatch::Printing::Off);
  RecoverAtStart(options.home);
  int exitCode = kDone;
  std::set<fs::path> taken;
  const std::vector<LessonRecording> lessons = AllRecordings(options.files);
  stopwatch.End("start");
  for (const LessonRecording& lesson : lessons) {
    StopIfInterrupted();
    bool isWhole = false;
    const bool isDone = TryPart(lesson.file, [&] {
      if (!lesson.problem.empty()) throw Refusal(lesson.problem);
      const fs::path page = PageFile(options, lesson.file, lessons.size(), taken);
      isWhole = TakeLesson(options, lesson.file, page, taken, stopwatch);
    });
    if (!isDone || !isWhole) exitCode = kRefused;
  }
  return exitCode;
}

}  // namespace tavimo::host
