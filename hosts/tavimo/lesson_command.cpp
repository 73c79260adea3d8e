// `tavimo lesson`: the whole road of each recording in one go.
#include <iostream>
#include <set>

#include "options.h"
#include "refusal.h"
#include "sentence_finder.h"
#include "sentence_table.h"
#include "system.h"
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
fs::path PictureFile(const fs::path& folder, const fs::path& recording, std::set<fs::path>& taken) {
  const std::string name = Shortened(Utf8(recording.stem()), kLongestPictureStem) + "-wave";
  fs::path file = folder / PathFromUtf8(name + ".png");
  for (int number = 2; !taken.insert(file).second; ++number) {
    file = folder / PathFromUtf8(name + "-" + std::to_string(number) + ".png");
  }
  return file;
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
  const fs::path picture = PictureFile(options.output, session.Recording(), taken);
  SaveWavePicture(request, picture);
  std::cout << "picture: " << Readable(picture) << '\n';
}

}  // namespace

int RunLesson(const Options& options) {
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
