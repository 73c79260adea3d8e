#include "support/bank.h"

#include <cstring>

#include "exercises/question_record.h"
#include "support/fuzz_ground.h"
#include "tavimo_host.h"

namespace tavimo::fuzz {

using exercises::QuestionRecord;

namespace {

// The room for a record's text; one that points outside the file has none.
std::size_t RoomFor(const QuestionRecord& record, std::size_t wzBytes) {
  const bool isInside = std::uint64_t{record.textOffset} + record.textLength <= wzBytes;
  return isInside ? record.textLength + std::size_t{1} : 1;
}

void ReadItem(std::int32_t index, const std::vector<QuestionRecord>& records, std::size_t wzBytes) {
  const QuestionRecord& record = records[static_cast<std::size_t>(index)];
  std::int32_t answer = 0;
  Check(vcReadCurQuestion(index, &answer) == record.type, "a record's type is the file's");
  ExactRoom text(RoomFor(record, wzBytes));
  for (const auto get : {vcGetQuestionTxt, vcGetChoiceTxt}) {
    const std::int32_t length = get(text.Data());
    Check(length >= 0 && std::strlen(text.Data()) < RoomFor(record, wzBytes), "a text has its length");
  }
  const bool hasPassage = record.passageIndex >= 0 && static_cast<std::size_t>(record.passageIndex) < records.size();
  const QuestionRecord passage = exercises::IsArticle(record) ? record
                                 : hasPassage                 ? records[static_cast<std::size_t>(record.passageIndex)]
                                                              : QuestionRecord{};
  ExactRoom article(exercises::IsArticle(passage) ? RoomFor(passage, wzBytes) : 1);
  vcGetArticleTxt(article.Data(), index);
}

}  // namespace

void ReadWholeBank(const std::vector<std::uint8_t>& index, std::size_t wzBytes) {
  std::vector<QuestionRecord> records;
  for (std::size_t at = 0; at + exercises::kQuestionRecordBytes <= index.size();
       at += exercises::kQuestionRecordBytes) {
    records.push_back(exercises::ReadQuestionRecord(index.data() + at));
  }
  for (std::int32_t i = 0; static_cast<std::size_t>(i) < records.size(); ++i) ReadItem(i, records, wzBytes);
  const VcWindow list = tvCreateWindow(TV_LIST_BOX, nullptr, nullptr);
  vcFillSentenceList(list);
  const auto lineCount = static_cast<std::size_t>(tvSendMessage(list, TV_LB_GETCOUNT, 0, 0));
  Check(lineCount <= records.size(), "an item has a line at most");
  tvDestroyWindow(list);
}

}  // namespace tavimo::fuzz
