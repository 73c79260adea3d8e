#include "question_lint.h"

#include <algorithm>
#include <tuple>

#include "record_header.h"
#include "script_pieces.h"
#include "text.h"

namespace tavimo::host {

namespace {

enum class Body { Question, Choices, Passage };

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

bool HasAnswerLetter(std::string_view line) {
  if (line.size() < 3) return false;
  const char letter = line[2];
  return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

// Up to the first fault every step is the compiler's; behind it, what the author most likely meant.
class QuestionLint {
 public:
  QuestionLint(std::string_view gbk, std::optional<std::size_t> sentenceCount)
      : pieces_(PiecesOf(gbk)), sentenceCount_(sentenceCount) {}

  LintResult Run() {
    while (!IsDone()) {
      if (sentenceCount_ && IsAtEnd()) {
        ReportTooFew();
        break;
      }
      ++result_.recordCount;
      LintRecord();
    }
    if (!RestIsBlank()) {
      Note("the recording has no sentence for what follows here, and it is never read; take it out or cut anew");
    }
    NoteCutLines();
    const auto place = [](const Finding& finding) { return std::tuple(finding.line, finding.column); };
    std::stable_sort(result_.findings.begin(), result_.findings.end(),
                     [&](const Finding& left, const Finding& right) { return place(left) < place(right); });
    return std::move(result_);
  }

 private:
  bool IsAtEnd() const { return at_ == pieces_.size(); }
  bool IsDone() const { return sentenceCount_ ? result_.recordCount == *sentenceCount_ : RestIsBlank(); }
  std::string_view Line() const { return pieces_[at_].text; }
  Mark LineMark() const { return MarkOf(Line()); }

  bool RestIsBlank() const {
    return std::all_of(pieces_.begin() + static_cast<std::ptrdiff_t>(at_), pieces_.end(),
                       [](const ScriptPiece& piece) { return IsBlank(piece.text); });
  }

  void Add(Weight weight, const std::string& what, std::size_t columnInPiece = 1) {
    ScriptPiece piece;  // of an empty script
    if (!pieces_.empty()) piece = pieces_[std::min(at_, pieces_.size() - 1)];
    result_.findings.push_back({piece.line, piece.column + columnInPiece - 1, weight, what});
  }
  void Fault(const std::string& what, std::size_t columnInPiece = 1) { Add(Weight::Fault, what, columnInPiece); }
  void Note(const std::string& what) { Add(Weight::Note, what); }

  void ReportTooFew() {
    Fault("the script ends with " + Counted(result_.recordCount, "record") + ", and the recording has " +
          Counted(*sentenceCount_, "sentence") + "; every sentence needs a record");
  }

  void NoteCutLines() {
    for (at_ = 1; at_ < pieces_.size(); ++at_) {
      const bool isFirstCut = pieces_[at_].column > 1 && pieces_[at_ - 1].column == 1;
      if (!isFirstCut) continue;
      Note("the line is longer than " + std::to_string(kLongestPieceBytes) +
           " bytes, and the engine takes what follows here for a line of its own; break the line before");
    }
  }

  // "question 5, which begins in line 20"
  std::string ThisRecord() const {
    const std::string name = isPassage_ ? "the passage" : "question " + std::to_string(lastNumber_);
    return name + ", which begins in line " + std::to_string(recordLine_);
  }

  void LintRecord() {
    recordLine_ = pieces_[at_].line;
    if (!FindHeader()) return;
    LintBody(isPassage_ ? Body::Passage : Body::Question);
  }

  // Takes the record's header, or what stands in its place; false when the record ends with it.
  bool FindHeader() {
    if (LineMark() == Mark::None) {
      Fault(IsBlank(Line()) ? "an empty line stands between two records; take it out"
                            : "a record begins here, with a line such as ##N" + std::to_string(lastNumber_ + 1) +
                                  "T1; put one in front, or take the line out");
      SkipText();
    } else if (LineMark() == Mark::Answer) {
      Fault("an answer stands here without its question; take the line out");
    } else if (LineMark() == Mark::ChoiceMarker || LineMark() == Mark::MisspelledMarker) {
      Fault("choices stand here without their question; a line such as ##N" + std::to_string(lastNumber_ + 1) +
            "T1 begins it");
    }
    if (IsAtEnd()) return false;
    if (LineMark() == Mark::Answer) {
      ++at_;
      return false;
    }
    if (LineMark() == Mark::Header || LineMark() == Mark::Other) {
      TakeHeader();
    } else {
      BeginRecord(RecordKind::Question);
    }
    return true;
  }

  void TakeHeader() {
    const RecordHeader header = ReadRecordHeader(Line());
    recordLine_ = pieces_[at_].line;
    if (header.faultColumn != 0) {
      Fault(std::string(header.whatIsDue) + "; such a line reads ##N5T1", header.faultColumn);
    }
    BeginRecord(header.kind == RecordKind::Unknown ? GuessedKind() : header.kind);
    if (header.number != 0 && header.number != lastNumber_) {
      Fault("the number is " + std::to_string(lastNumber_) + " here" +
                (isPassage_ ? ", that of the last question before the passage" : "") + "; write it, or none at all",
            4);
    }
    if (header.kind == RecordKind::PassageQuestion && !hadPassage_) {
      Note("no passage stands before this question on a passage; type 1 is a question of its own");
    }
    hadPassage_ = hadPassage_ || isPassage_;
    ++at_;
  }

  void BeginRecord(RecordKind kind) {
    isPassage_ = kind == RecordKind::Passage;
    if (!isPassage_) ++lastNumber_;
  }

  // By the mark behind its text: only a passage ends there, and without a letter.
  RecordKind GuessedKind() const {
    std::size_t next = at_ + 1;
    while (next < pieces_.size() && MarkOf(pieces_[next].text) == Mark::None) ++next;
    const Mark mark = next < pieces_.size() ? MarkOf(pieces_[next].text) : Mark::None;
    return mark == Mark::Answer && !HasAnswerLetter(pieces_[next].text) ? RecordKind::Passage : RecordKind::Question;
  }

  void SkipText() {
    for (; !IsAtEnd() && LineMark() == Mark::None; ++at_) {
      if (Line().find('\0') != std::string_view::npos) Note("a zero byte ends the text for its readers; take it out");
    }
  }

  void LintBody(Body body) {
    for (SkipText(); !IsAtEnd(); SkipText()) {
      switch (LineMark()) {
        case Mark::Answer:
          CheckAnswer(body);
          ++at_;
          return;
        case Mark::Header:
          ReportMissingEnd(body);
          return;
        case Mark::ChoiceMarker:
        case Mark::MisspelledMarker:
          CheckMarker(body);
          if (body == Body::Question) body = Body::Choices;
          break;
        default:
          Fault("only marks begin with ##, and this is none; put a blank in front if it is text");
      }
      ++at_;
    }
    Fault("the script ends within " + ThisRecord() + "; " + StillDue(body));
  }

  static std::string StillDue(Body body) {
    if (body == Body::Passage) return "$$ is due at the end of a passage";
    return std::string(body == Body::Question ? "##XZ, the choices and " : "") + "$$ with the answer's letter " +
           (body == Body::Question ? "are" : "is") + " due at the end of a question";
  }

  void ReportMissingEnd(Body body) { Fault("in front of this line " + ThisRecord() + ", must end; " + StillDue(body)); }

  void CheckMarker(Body body) {
    if (body == Body::Passage) {
      Fault("a passage has no choices; give the record type 1 or 2, or end it with $$");
    } else if (body == Body::Choices) {
      Fault("the choices of " + ThisRecord() + ", have begun already; put $$ with the answer's letter in front");
    } else if (LineMark() == Mark::MisspelledMarker) {
      Fault("the line in front of the choices reads ##XZ, in capitals");
    }
  }

  void CheckAnswer(Body body) {
    const bool hasLetter = HasAnswerLetter(Line());
    if (body == Body::Question) {
      Fault(hasLetter ? "##XZ is missing in front of the choices of this question"
                      : "a question has ##XZ and choices before its $$ and a letter behind it; a passage has type 3");
    } else if (body == Body::Choices && !hasLetter) {
      Fault("the letter of the right choice is due behind $$, as in $$B", 3);
    }
  }

  std::vector<ScriptPiece> pieces_;
  std::optional<std::size_t> sentenceCount_;
  std::size_t at_ = 0;  // the piece in hand
  LintResult result_;
  std::size_t recordLine_ = 1;
  std::size_t lastNumber_ = 0;
  bool isPassage_ = false;  // the record in hand
  bool hadPassage_ = false;
};

}  // namespace

std::size_t LintResult::FaultCount() const {
  return static_cast<std::size_t>(std::count_if(
      findings.begin(), findings.end(), [](const Finding& finding) { return finding.weight == Weight::Fault; }));
}

LintResult LintQuestions(std::string_view gbk, std::optional<std::size_t> sentenceCount) {
  return QuestionLint(gbk, sentenceCount).Run();
}

}  // namespace tavimo::host
