#include "lesson_page.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <sstream>

#include "new_file.h"
#include "page_data.h"
#include "peak_digest.h"
#include "progress_bar.h"
#include "refusal.h"
#include "take_shelf.h"
#include "text.h"
#include "web_sound.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostColumns = 200;                     // of a wave
constexpr const char* kNoTitle = "\xE6\x96\x87\xE7\xAB\xA0";  // 文章, the engine's for a passage without one

#include "lesson_page.inc"  // kTemplate
constexpr std::string_view kDataPlace = "/*LESSON*/";

template <typename Item, typename ToJson>
std::string List(const std::vector<Item>& items, ToJson toJson) {
  std::string json = "[";
  for (const Item& item : items) {
    if (json.size() > 1) json += ',';
    json += toJson(item);
  }
  json += ']';
  return json;
}

// The loudest level of each column.
std::string WaveJson(const std::uint8_t* first, const std::uint8_t* last) {
  const auto count = static_cast<std::size_t>(last - first);
  const std::size_t columns = std::min(count, kMostColumns);
  std::vector<int> wave;
  for (std::size_t i = 0; i < columns; ++i) {
    wave.push_back(*std::max_element(first + i * count / columns, first + (i + 1) * count / columns));
  }
  return List(wave, [](int level) { return std::to_string(level); });
}

std::string WaveJson(const std::vector<std::uint8_t>& levels) {
  return WaveJson(levels.data(), levels.data() + levels.size());
}

// "A. tea": the letter that is expected next, and something behind it that is no word.
bool BeginsWithLetter(const std::string& line, char letter) {
  const std::size_t at = line.find_first_not_of(" \t");
  if (at == std::string::npos || std::toupper(static_cast<unsigned char>(line[at])) != letter) return false;
  return at + 1 == line.size() || std::isalnum(static_cast<unsigned char>(line[at + 1])) == 0;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

const char* KindOf(const Exercise& exercise) {
  if (exercise.kind == ExerciseKind::Passage) return "passage";
  return exercise.kind == ExerciseKind::Dialogue ? "dialogue" : "question";
}

std::string ExerciseJson(const Exercise& exercise) {
  const std::string choices = List(SplitChoices(exercise.choices), [](const Choice& choice) {
    return "{\"letter\":\"" + std::string(1, choice.letter) + "\",\"text\":" + JsonText(ReadableText(choice.text)) +
           "}";
  });
  std::string text;
  for (const std::string& line : LinesOf(exercise.text)) {
    if (!text.empty()) text += '\n';
    text += ReadableText(line);
  }
  const std::string answer = exercise.answer == 0 ? "" : std::string(1, exercise.answer);
  return std::string("{\"kind\":\"") + KindOf(exercise) + "\",\"text\":" + JsonText(text) +
         ",\"title\":" + JsonText(exercise.title == kNoTitle ? "" : ReadableText(exercise.title)) + ",\"answer\":\"" +
         answer + "\",\"choices\":" + choices + "}";
}

const char* MediaTypeOf(const fs::path& picture) {
  std::string extension = Utf8(picture.extension());
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
  if (extension == ".jpg") return "image/jpeg";
  return extension == ".gif" ? "image/gif" : "image/bmp";
}

}  // namespace

std::vector<Choice> SplitChoices(const std::string& choices) {
  const std::vector<std::string> lines = LinesOf(choices);
  const bool areLettered = !lines.empty() && BeginsWithLetter(lines.front(), 'A');
  std::vector<Choice> split;
  for (const std::string& line : lines) {
    const auto next = static_cast<char>('A' + split.size());
    if (!areLettered || BeginsWithLetter(line, next)) {
      split.push_back({next, line});
    } else {
      split.back().text += '\n' + line;
    }
  }
  return split;
}

LessonPage::LessonPage(const LessonSession& session, const std::vector<std::uint8_t>& levels,
                       const std::vector<std::uint32_t>& startsMs)
    : title_(Readable(session.Recording().stem())),
      lengthMs_(session.Header().DurationMs()),
      sound_(WebSound(session.Recording(), session.Header())) {
  const auto levelAt = [&](std::int64_t timeMs) {
    return levels.data() + std::min(static_cast<std::size_t>(timeMs / kLevelMs), levels.size());
  };
  for (std::size_t i = 0; i < startsMs.size(); ++i) {
    Sentence sentence;
    sentence.startMs = startsMs[i];
    sentence.endMs = std::max<std::int64_t>(i + 1 < startsMs.size() ? startsMs[i + 1] : lengthMs_, startsMs[i]);
    sentence.wave = WaveJson(levelAt(sentence.startMs), levelAt(sentence.endMs));
    AddTake(sentence, static_cast<int>(i) + 1);
    sentences_.push_back(std::move(sentence));
  }
}

// The newest one; a take that cannot be played is none.
void LessonPage::AddTake(Sentence& sentence, int number) {
  std::vector<Take> takes = ListTakes();
  std::erase_if(takes, [number](const Take& take) { return take.sentence != number; });
  if (takes.empty()) return;
  const fs::path& file = takes.back().file;
  const WaveHeader header = ReadWaveHeader(file);
  if (!header.problem.empty()) return;
  ProgressBar progress(Readable(file.filename()));
  sentence.take = "{\"sound\":" + JsonText(WebSound(file, header)) +
                  ",\"wave\":" + WaveJson(PeakLevels(file, header, progress)) +
                  ",\"length_ms\":" + std::to_string(header.DurationMs()) + "}";
}

void LessonPage::AddBookmarks(const std::vector<Bookmark>& bookmarks) {
  bookmarks_ = List(bookmarks, [](const Bookmark& bookmark) {
    return "{\"time_ms\":" + std::to_string(bookmark.timeMs) +
           ",\"label\":" + JsonText(ReadableText(Utf8FromGbk(bookmark.gbkLabel))) + "}";
  });
}

void LessonPage::AddExercises(const std::vector<Exercise>& exercises) {
  for (const Exercise& exercise : exercises) {
    const auto index = static_cast<std::size_t>(exercise.sentence) - 1;
    if (index < sentences_.size()) sentences_[index].exercise = ExerciseJson(exercise);
  }
}

void LessonPage::AddPicture(const fs::path& picture) {
  const std::string bytes = FileBytes(picture);
  if (bytes.empty()) throw Refusal("it is empty");
  picture_ = JsonText(DataUrl(bytes, MediaTypeOf(picture)));
}

void LessonPage::AddScriptPage(const ScriptPage& page) {
  const std::string lines = List(page.lines, [](const auto& runs) { return List(runs, JsonText); });
  pages_.push_back("{\"picture\":" + JsonText(DataUrl(FileBytes(page.png), "image/png")) + ",\"lines\":" + lines + "}");
}

std::string LessonPage::SentencesJson() const {
  int number = 0;
  const auto orNull = [](const std::string& json) { return json.empty() ? std::string("null") : json; };
  return List(sentences_, [&](const Sentence& sentence) {
    return "{\"number\":" + std::to_string(++number) + ",\"start_ms\":" + std::to_string(sentence.startMs) +
           ",\"end_ms\":" + std::to_string(sentence.endMs) + ",\"wave\":" + sentence.wave +
           ",\"take\":" + orNull(sentence.take) + ",\"exercise\":" + orNull(sentence.exercise) + "}\n";
  });
}

void LessonPage::Save(const fs::path& file) const {
  const std::string data = "{\"title\":" + JsonText(title_) + ",\"length_ms\":" + std::to_string(lengthMs_) +
                           ",\"sound\":" + JsonText(sound_) + ",\"sentences\":" + SentencesJson() +
                           ",\"pages\":" + List(pages_, [](const std::string& page) { return page; }) +
                           ",\"bookmarks\":" + (bookmarks_.empty() ? "[]" : bookmarks_) + ",\"picture\":" + picture_ +
                           "}";
  const std::size_t place = kTemplate.find(kDataPlace);
  NewFile page(file);
  page.Write(kTemplate.data(), place);
  page.Write(data.data(), data.size());
  const std::string_view rest = kTemplate.substr(place + kDataPlace.size());
  page.Write(rest.data(), rest.size());
  page.PutInPlace();
}

}  // namespace tavimo::host
