// The door of exercises: the question compiler and the question bank.
#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <span>

#include "core/fixed_text.h"
#include "exercises/companion_files.h"
#include "exercises/compiler_messages.h"
#include "exercises/exercise_paths.h"
#include "exercises/exercises_state.h"
#include "exercises/question_compiler.h"
#include "exercises/question_index.h"
#include "exercises/sentence_list.h"
#include "exercises/wz_text.h"
#include "hostutil/file_utilities.h"
#include "hostutil/gbk_char_count.h"
#include "platform/files.h"
#include "platform/windows.h"
#include "tavimo.h"

namespace {

using namespace tavimo;
using core::TextOf;
using exercises::ExercisePath;
using exercises::State;
using platform::FileStream;
using platform::OpenMode;

// Compiles and tells the author; -1 after a fault, else the number of sentences.
std::int32_t Compile(const char* studyPath, const char* scriptPath) noexcept {
  State().listedItems.Forget();  // the bank that is open may be the one written anew
  const auto report = exercises::CompileQuestions(TextOf(studyPath), TextOf(scriptPath), State().compilerSpace);
  if (!report.isTextWhole) platform::ShowMessageBox("write error", "");
  if (report.fault == exercises::CompileFault::None) {
    platform::Beep();
    return report.sentenceCount;
  }
  const exercises::CompilerMessage message = exercises::MessageOf(report, TextOf(scriptPath));
  if (!message.IsEmpty()) platform::ShowMessageBox(message.CString(), "");
  return -1;
}

std::int32_t OpenIndex(std::string_view path, std::int32_t* answers, std::int32_t room) noexcept {
  State().questionIndex.Close();
  ExercisePath indexPath;
  if (path.size() < exercises::kShortestBankPath || path.size() > exercises::kLongestPath) return -1;
  const std::string_view stem = path.substr(0, exercises::BankStemLength(path));
  if (!indexPath.Assign(stem, std::string_view("tst"))) return -1;
  State().questionIndex = FileStream::Open(indexPath.CString(), OpenMode::Read);
  if (!State().questionIndex.IsOpen()) return -1;
  return exercises::ReadAnswers(State().questionIndex, answers, room, State().listedItems);
}

// A host in front of its list may close or open a bank at any line: nothing is held across a piece.
void AddKeptItems(VcWindow listBox) noexcept {
  exercises::ListPiece lines;
  const auto pieceAt = [](std::size_t first) {
    return State().listedItems.Piece(first, exercises::ListPiece::kMostItems);
  };
  std::size_t count = 0;
  for (auto piece = pieceAt(0); !piece.empty(); piece = pieceAt(count)) {
    count += piece.size();
    platform::AddToListBox(listBox, lines.LinesOf(piece));
  }
}

void AddItemsOfIndex(VcWindow listBox) noexcept {
  exercises::RecordReader reader(State().questionIndex);
  exercises::ListPiece lines;
  std::array<exercises::ListedItem, exercises::RecordReader::kMostRecords> items;
  static_assert(std::tuple_size_v<decltype(items)> == exercises::ListPiece::kMostItems);
  for (auto piece = reader.NextPiece(); !piece.empty(); piece = reader.NextPiece()) {
    std::ranges::transform(piece, items.begin(), exercises::ListedItemOf);
    platform::AddToListBox(listBox, lines.LinesOf(std::span(items).first(piece.size())));
  }
}

void CopyPath(const ExercisePath& path, char* room) noexcept {
  if (room != nullptr) std::memcpy(room, path.CString(), path.View().size() + 1);
}

std::int32_t CopyText(const exercises::TextStretch& stretch, char* buffer) noexcept {
  return buffer == nullptr ? 0 : exercises::CopyText(State().wzFile, stretch, buffer);
}

}  // namespace

extern "C" {

std::int32_t VC_CALL vcConvertScrToTstWz(const char* study_path, const char* script_path) noexcept {
  return Compile(study_path, script_path) < 0 ? -1 : 0;
}

std::int32_t VC_CALL vcConvertScr(const char* path, char* wz_path, std::int32_t* answers) noexcept {
  ExercisePath script;
  ExercisePath study;
  ExercisePath wz;
  const std::string_view recording = TextOf(path);
  if (!exercises::ReplaceExtension(recording, ".scr", script) ||
      !exercises::ReplaceExtension(recording, ".zud", study) || !exercises::PathInTemp(recording, ".wz", wz) ||
      !hostutil::FileExists(script.CString()) || !hostutil::FileExists(study.CString())) {
    return -1;
  }
  CopyPath(wz, wz_path);
  const std::int32_t sentenceCount = Compile(study.CString(), script.CString());
  return sentenceCount < 0 ? -1 : OpenIndex(wz.View(), answers, sentenceCount);
}

std::int32_t VC_CALL vcOpenQuestionIdx(const char* path, std::int32_t* answers) noexcept {
  return OpenIndex(TextOf(path), answers, std::numeric_limits<std::int32_t>::max());
}

void VC_CALL vcCloseQuestionIdx() noexcept {
  State().questionIndex.Close();
  State().listedItems.Forget();
}

std::int32_t VC_CALL vcReadCurQuestion(std::int32_t index, std::int32_t* answer) noexcept {
  exercises::QuestionRecord& current = State().currentQuestion;
  static_cast<void>(exercises::ReadRecordAt(State().questionIndex, index, current));
  if (answer != nullptr) *answer = exercises::NormalisedAnswer(current);
  return current.type;
}

std::int32_t VC_CALL vcGetQuestionTxt(char* buffer) noexcept {
  return CopyText(exercises::QuestionPart(State().wzFile, State().currentQuestion), buffer);
}

std::int32_t VC_CALL vcGetChoiceTxt(char* buffer) noexcept {
  return CopyText(exercises::ChoicePart(State().wzFile, State().currentQuestion), buffer);
}

std::int32_t VC_CALL vcGetArticleTxt(char* buffer, std::int32_t index) noexcept {
  exercises::QuestionRecord article;
  const bool isThere = exercises::ReadArticleRecord(State().questionIndex, index, article);
  return CopyText(isThere ? exercises::WholeText(State().wzFile, article) : exercises::TextStretch{}, buffer);
}

void VC_CALL vcFillSentenceList(VcWindow list_box) noexcept {
  if (State().listedItems.AreThoseOf(State().questionIndex)) {
    AddKeptItems(list_box);
  } else {
    AddItemsOfIndex(list_box);
  }
}

std::int32_t VC_CALL vcOpenWzFile(char* path) noexcept {
  State().wzFile.Close();
  const std::string_view given = TextOf(path);
  if (given.size() < exercises::kShortestBankPath || given.size() > exercises::kLongestPath) return -1;
  std::memcpy(path + exercises::BankStemLength(given), "wz", sizeof "wz");
  State().wzFile = FileStream::Open(path, OpenMode::Read);
  return State().wzFile.IsOpen() ? 0 : -1;
}

void VC_CALL vcCloseWzFile() noexcept { State().wzFile.Close(); }

std::int32_t VC_CALL vcIfTxtGraphExist(const char* path, char* found_path) noexcept {
  ExercisePath found;
  const bool exists = exercises::FindPicture(TextOf(path), found);
  CopyPath(found, found_path);
  return exists ? 1 : 0;
}

std::int32_t VC_CALL vcGetWzFile(const char* path, char* found_path) noexcept {
  ExercisePath found;
  const bool exists = exercises::FindLessonText(TextOf(path), found);
  CopyPath(found, found_path);
  return exists ? hostutil::GbkCharCount(found.View()) : 0;
}

std::int32_t VC_CALL vcGetArticleTitle(const char* section, std::int32_t number, char* title) noexcept {
  if (title == nullptr) return 0;
  const int byteCount = exercises::ReadArticleTitle(section, number, title);
  return hostutil::GbkCharCount({title, static_cast<std::size_t>(byteCount)});
}

}  // extern "C"
