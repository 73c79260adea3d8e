// The question compiler, and a bank of questions opened.
#include <benchmark/benchmark.h>

#include "job.h"
#include "limits.h"
#include "tavimo.h"
#include "tavimo_host.h"

namespace tavimo::bench {

namespace {

constexpr std::int64_t kRecordBytes = 52;

void Compile() { Expect(vcConvertScrToTstWz(kQuestionStudy, kQuestions) == 0, "vcConvertScrToTstWz"); }

Measurement MeasureCompile(const Inputs&) {
  tvSetBeepHandler([](void*) {}, nullptr);
  return MeasureBulk({Compile, [] { SortLines(kQuestions, "limit.txt"); }, LengthOf(kQuestions), {}});
}

// As a host shows a bank: its list box emptied and filled anew.
Measurement MeasureBank(const Inputs&) {
  tvSetBeepHandler([](void*) {}, nullptr);
  Compile();
  constexpr const char* kIndex = "temp/questions.tst";
  const std::int64_t length = LengthOf(kIndex);
  std::vector<std::int32_t> answers(static_cast<std::size_t>(length / kRecordBytes));
  const VcWindow list = tvCreateWindow(TV_LIST_BOX, nullptr, nullptr);
  const auto open = [&] {
    Expect(vcOpenQuestionIdx("temp\\questions.tst", answers.data()) == std::ssize(answers), "vcOpenQuestionIdx");
    tvSendMessage(list, TV_LB_RESETCONTENT, 0, 0);
    vcFillSentenceList(list);
    Expect(tvSendMessage(list, TV_LB_GETCOUNT, 0, 0) == std::ssize(answers), "vcFillSentenceList");
  };
  return MeasureBulk({open, [=] { benchmark::DoNotOptimize(ReadOnce(kIndex)); }, length, {}});
}

}  // namespace

std::vector<Job> QuestionJobs() {
  return {{.name = "compile",
           .what = "questions compiled, 60,000 records",
           .inputs = {Input::Questions},
           .growth = Growth::Proportional,
           .mostTimes = 2,
           .measure = MeasureCompile},
          {.name = "bank",
           .what = "bank of 60,000 opened and listed",
           .inputs = {Input::Questions},
           .growth = Growth::Proportional,
           .mostTimes = 3,
           .measure = MeasureBank}};
}

}  // namespace tavimo::bench
