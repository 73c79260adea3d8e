#include "question_bank.h"

#include <array>

#include "question_files.h"
#include "refusal.h"
#include "tavimo.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kIndexRecordBytes = 52;
constexpr std::size_t kTitleRoom = 150;
constexpr int kLetters = 26;

class OpenBank {
 public:
  explicit OpenBank(const LessonSession& session) {
    const fs::path index = QuestionIndex(session);
    std::string path = EnginePath(index).value();
    std::error_code error;
    const std::uintmax_t indexBytes = fs::file_size(index, error);
    if (error) throw Refusal("its questions are not compiled");
    answers_.resize(static_cast<std::size_t>(indexBytes) / kIndexRecordBytes + 1);
    count_ = vcOpenQuestionIdx(path.c_str(), answers_.data());
    const std::uintmax_t textBytes = fs::file_size(fs::path(index).replace_extension(".wz"), error);
    if (count_ < 0 || vcOpenWzFile(path.data()) != 0 || error) {
      Close();
      throw Refusal("its questions cannot be read in " + Readable(fs::current_path() / "temp"));
    }
    room_.resize(static_cast<std::size_t>(textBytes) + 1);
  }
  OpenBank(const OpenBank&) = delete;
  OpenBank& operator=(const OpenBank&) = delete;
  ~OpenBank() { Close(); }

  [[nodiscard]] std::int32_t Count() const { return count_; }

  [[nodiscard]] std::string Question() { return Text(vcGetQuestionTxt(room_.data())); }
  [[nodiscard]] std::string Choices() { return Text(vcGetChoiceTxt(room_.data())); }
  [[nodiscard]] std::string Article(std::int32_t item) { return Text(vcGetArticleTxt(room_.data(), item)); }

 private:
  static void Close() {
    vcCloseWzFile();
    vcCloseQuestionIdx();
  }

  [[nodiscard]] std::string Text(std::int32_t /*characters*/) const { return Utf8FromGbk(room_.data()); }

  std::vector<std::int32_t> answers_;
  std::vector<char> room_;
  std::int32_t count_ = 0;
};

// The lesson's name is the section of its titles.
std::string TitleOf(const LessonSession& session, int passage) {
  const std::string name = Utf8(session.Recording().stem());
  std::string section(2 * name.size() + 1, '\0');
  if (tvGbkFromUtf8(name.c_str(), section.data(), static_cast<int>(section.size())) < 0) section[0] = '\0';
  std::array<char, kTitleRoom> title{};
  vcGetArticleTitle(section.c_str(), passage, title.data());
  return Utf8FromGbk(title.data());
}

// Gives the exercises their numbers, and questions their passage.
class Numbering {
 public:
  void Number(Exercise& exercise, std::size_t index) {
    if (exercise.IsQuestion()) {
      exercise.number = ++questions_;
      if (exercise.kind == ExerciseKind::PassageQuestion) exercise.passage = passage_;
    } else {
      exercise.number = ++passages_;
      passage_ = index;
    }
  }

 private:
  int questions_ = 0;
  int passages_ = 0;
  std::optional<std::size_t> passage_;
};

Exercise ReadExercise(OpenBank& bank, std::int32_t item) {
  Exercise exercise;
  std::int32_t answer = 0;
  const std::int32_t type = vcReadCurQuestion(item, &answer);
  const bool isQuestion = type == 0 || type == 3;
  if (type < 0 || type > 3 || (isQuestion && (answer < 0 || answer >= kLetters))) {
    throw Refusal("its compiled questions are damaged; tavimo questions compile mends them");
  }
  exercise.kind = static_cast<ExerciseKind>(type);
  exercise.sentence = item + 1;
  if (exercise.IsQuestion()) {
    exercise.answer = static_cast<char>('A' + answer);
    exercise.text = bank.Question();
    exercise.choices = bank.Choices();
  } else {
    exercise.text = bank.Article(item);
  }
  return exercise;
}

}  // namespace

std::vector<Exercise> ReadExercises(const LessonSession& session) {
  OpenBank bank(session);
  Numbering numbering;
  std::vector<Exercise> exercises;
  for (std::int32_t item = 0; item < bank.Count(); ++item) {
    Exercise exercise = ReadExercise(bank, item);
    numbering.Number(exercise, exercises.size());
    if (!exercise.IsQuestion()) exercise.title = TitleOf(session, exercise.number);
    exercises.push_back(std::move(exercise));
  }
  return exercises;
}

std::optional<fs::path> PictureOf(const LessonSession& session) {
  std::string found(session.EngineName().size() + 5, '\0');
  if (vcIfTxtGraphExist(session.EngineName().c_str(), found.data()) != 0) {
    found.resize(found.find('\0'));
    return FileBeside(session.Recording(), found.substr(found.rfind('.')));
  }
  // The engine does not know that an import has its source's files.
  for (const char* extension : {".jpg", ".bmp", ".gif", ".dib"}) {
    if (auto picture = FileBeside(session.Recording(), extension)) return picture;
  }
  return {};
}

}  // namespace tavimo::host
