// `tavimo questions quiz`: plays the sentences, asks their questions, tells right from wrong and keeps the score.
#include <algorithm>
#include <iostream>

#include "exercise_list.h"
#include "options.h"
#include "player.h"
#include "question_files.h"
#include "refusal.h"
#include "score_file.h"
#include "sentence_stretch.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kScores = "scores.tsv";

// Plays sentences until the first that cannot be played: without a loudspeaker the questions go on.
class SentencePlayer {
 public:
  SentencePlayer(LessonSession& session, const Options& options)
      : session_(session), device_(options.device), isSilent_(options.isSilent) {}

  void PlaySentence(int sentence) {
    if (isSilent_) return;
    try {
      const Stretch stretch = StretchOf(session_, sentence);
      Play({session_.Recording(), session_.Header(), stretch.startMs, stretch.endMs, device_});
    } catch (const Refusal& refusal) {
      isSilent_ = true;
      std::cerr << "tavimo: " << refusal.what() << "; the questions go on without sound\n";
    }
  }

 private:
  LessonSession& session_;
  std::string device_;
  bool isSilent_;
};

struct Tally {
  std::size_t right = 0;
  std::size_t wrong = 0;
  std::size_t skipped = 0;
  std::size_t rightBefore = 0;
  std::size_t answeredBefore = 0;  // of those answered now

  void Count(Outcome outcome, std::optional<Outcome> before) {
    ++(outcome == Outcome::Right ? right : outcome == Outcome::Wrong ? wrong : skipped);
    if (outcome == Outcome::Skipped || !before) return;
    ++answeredBefore;
    if (*before == Outcome::Right) ++rightBefore;
  }

  [[nodiscard]] std::string Text() const {
    std::string text = "score: " + std::to_string(right) + " right, " + std::to_string(wrong) + " wrong, " +
                       std::to_string(skipped) + " skipped";
    if (answeredBefore > 0) {
      text +=
          "; the time before " + std::to_string(rightBefore) + " right of the same " + std::to_string(answeredBefore);
    }
    return text + "\n";
  }
};

std::string Trimmed(const std::string& line) {
  const std::size_t first = line.find_first_not_of(" \t\r");
  return first == std::string::npos ? "" : line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
}

enum class Reply { Letter, Skip, Again, End };

struct Answer {
  Reply reply = Reply::End;
  char letter = 0;
};

class Quiz {
 public:
  Quiz(LessonSession& session, const Options& options)
      : exercises_(LoadExercises(session, {options.script, options.encoding})),
        scores_(fs::absolute(kScores)),
        player_(session, options),
        onlyWrong_(options.onlyWrong) {}

  void Run() {
    questionCount_ = static_cast<std::size_t>(std::count_if(
        exercises_.begin(), exercises_.end(), [this](const Exercise& exercise) { return IsAsked(exercise); }));
    if (questionCount_ == 0) {
      std::cout << (onlyWrong_ ? "no question was answered wrong the last time\n" : "it has no question\n");
      return;
    }
    std::cout << Counted(questionCount_, "question") << "; answer with a letter. Enter skips, a point plays again, "
              << "q ends.\n";
    try {
      AskAll();
    } catch (const Cancelled&) {
      wasInterrupted_ = true;
    }
    std::cout << '\n' << tally_.Text() << std::flush;
    if (wasInterrupted_) throw Cancelled();
  }

 private:
  [[nodiscard]] bool IsAsked(const Exercise& exercise) const {
    return exercise.IsQuestion() && (!onlyWrong_ || scores_.LastOutcome(exercise) == Outcome::Wrong);
  }

  void AskAll() {
    for (std::size_t i = 0; i < exercises_.size(); ++i) {
      StopIfInterrupted();
      const Exercise& exercise = exercises_[i];
      if (!exercise.IsQuestion() && !onlyWrong_) ShowPassage(i);
      if (!IsAsked(exercise)) continue;
      if (exercise.passage) ShowPassage(*exercise.passage);
      if (!Ask(exercise)) return;
    }
  }

  // Once, however many questions it has.
  void ShowPassage(std::size_t index) {
    if (shownPassage_ == index) return;
    shownPassage_ = index;
    const Exercise& passage = exercises_[index];
    std::cout << '\n' << NameOf(passage) << " (sentence " << passage.sentence << ")\n";
    PrintText(std::cout, passage.text);
    std::cout << std::flush;
    player_.PlaySentence(passage.sentence);
  }

  // False when the learner ends the quiz.
  bool Ask(const Exercise& question) {
    std::cout << '\n'
              << NameOf(question) << " (sentence " << question.sentence << "), " << ++askedCount_ << " of "
              << questionCount_ << '\n';
    PrintText(std::cout, question.text);
    PrintText(std::cout, question.choices);
    std::cout << std::flush;
    player_.PlaySentence(question.sentence);
    Answer answer = NextAnswer();
    for (; answer.reply == Reply::Again; answer = NextAnswer()) player_.PlaySentence(question.sentence);
    if (answer.reply == Reply::End) return false;
    Judge(question, answer);
    return true;
  }

  void Judge(const Exercise& question, const Answer& answer) {
    const bool isRight = answer.letter == question.answer;
    const Outcome outcome = answer.reply == Reply::Skip ? Outcome::Skipped : isRight ? Outcome::Right : Outcome::Wrong;
    if (outcome == Outcome::Right) std::cout << "right\n";
    if (outcome == Outcome::Wrong) std::cout << "wrong; the answer is " << question.answer << '\n';
    if (outcome == Outcome::Skipped) std::cout << "skipped\n";
    tally_.Count(outcome, scores_.LastOutcome(question));
    scores_.Add(question, answer.letter, outcome);
  }

  Answer NextAnswer() {
    for (;;) {
      std::cout << "answer: " << std::flush;
      const std::optional<std::string> line = input_.Next();
      wasInterrupted_ = Interrupted();
      if (!line) return {};
      const std::string word = Trimmed(*line);
      if (word.empty()) return {Reply::Skip};
      if (word == "q") return {};
      if (word == ".") return {Reply::Again};
      const char letter = word[0] >= 'a' && word[0] <= 'z' ? static_cast<char>(word[0] - 'a' + 'A') : word[0];
      if (word.size() == 1 && letter >= 'A' && letter <= 'Z') return {Reply::Letter, letter};
      std::cout << "an answer is one letter\n";
    }
  }

  std::vector<Exercise> exercises_;
  ScoreFile scores_;
  SentencePlayer player_;
  InputLines input_;
  Tally tally_;
  std::optional<std::size_t> shownPassage_;
  std::size_t questionCount_ = 0;
  std::size_t askedCount_ = 0;
  bool onlyWrong_;
  bool wasInterrupted_ = false;
};

}  // namespace

int RunQuestionsQuiz(const Options& options) {
  LessonSession session(options.home, options.files.front());
  Quiz(session, options).Run();
  return kDone;
}

}  // namespace tavimo::host
