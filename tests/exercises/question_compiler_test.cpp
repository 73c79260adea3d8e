// Question scripts compiled through the export: what is written, and what the author is told.

#include "exercises/compiler_messages.h"
#include "exercises/question_files.h"
#include "platform/file_faults.h"
#include "support/message_boxes.h"

namespace tavimo::tests {
namespace {

using namespace std::string_view_literals;

class QuestionCompiler : public EngineTest {
 protected:
  std::int32_t Compile(std::string_view script, std::size_t sentenceCount) {
    WriteText("a.scr", script);
    WriteStudyFile("a.zud", sentenceCount);
    return vcConvertScrToTstWz("a.zud", "a.scr");
  }
  // The text of the one box that was shown.
  std::string Told() {
    const std::vector<Box> shown = boxes.Take();
    EXPECT_TRUE(shown.size() == 1 && shown[0].caption.empty());
    return shown.empty() ? "" : shown[0].text;
  }
  static std::string Wz() { return ReadText("temp/a.wz"); }

  MessageBoxes boxes;
  Beeps beeps;
};

constexpr std::string_view kScript =
    "##N0T3\r\nAnn goes home.\r\n$$\r\n"
    "##N1T2 an author's note\r\nWhere to?\r\n##XZ\r\nA. home\r\nB. out\r\n$$b) home\r\n"
    "##n2t1\n##XZ choices\nA\n$$Z\n"
    "##NT3\n$$\n"
    "##NT2\nlast\n##XZ\n$$A";

TEST_F(QuestionCompiler, WritesRecordsAndTexts) {
  EXPECT_EQ(Compile(kScript, 5), 0);
  EXPECT_TRUE(boxes.Take().empty());
  EXPECT_EQ(beeps.count, 1);
  EXPECT_EQ(Wz(), "Ann goes home.\r\nWhere to?\r\n\0A. home\r\nB. out\r\n\0A\nlast\n\0"sv);
  const Bytes index = ReadBytes("temp/a.tst");
  EXPECT_EQ(index, IndexFile({{2, 0, 0, 16, 0, -1},
                              {3, 1, 16, 29, 0, 0},
                              {0, 25, 45, 3, 0, 1},
                              {2, 0, 48, 0, 0, 1},
                              {3, 0, 48, 6, 3, 2}}));
  EXPECT_EQ(Part(index, 52, 104), Joined({3, 0, 0, 0, 1, 0, 0, 0, 16, 0, 0, 0, 29, 0, 0, 0}, Bytes(36)));
  EXPECT_EQ(Compile("##NT2\n##XZ\n$$A", 1), 0) << "a question of no passage";
  EXPECT_EQ(ReadBytes("temp/a.tst"), IndexFile({{3, 0, 0, 1, 0, 0}}));
}

TEST_F(QuestionCompiler, MakesAsManyRecordsAsThereAreSentences) {
  EXPECT_EQ(Compile(kScript, 2), 0);
  EXPECT_EQ(ReadBytes("temp/a.tst").size(), 104u);
  EXPECT_EQ(Compile("no script at all", 0), 0);
  EXPECT_TRUE(Exists("temp/a.wz") && ReadBytes("temp/a.wz").empty() && ReadBytes("temp/a.tst").empty());
  EXPECT_EQ(beeps.count, 2);
  EXPECT_EQ(Compile(kScript, 6), -1);
  EXPECT_EQ(Told(), u8".scr 文件异常结束，大概是最后一题输入错误。"_gbk);
  EXPECT_EQ(ReadBytes("temp/a.tst").size(), 260u) << "what was compiled so far stays";
  EXPECT_EQ(beeps.count, 2);
}

TEST_F(QuestionCompiler, NamesTheLineAtFault) {
  const char* kEnds = u8".scr 文件异常结束，大概是最后一题输入错误。"_gbk;
  const char* kHeader = u8"不对了，该行本应该是题号和题目类型的."_gbk;
  const char* kMarker = u8"不对了，该行恐怕应该是 ##XZ 才对."_gbk;
  const char* kAnswer = u8"不对了，该行恐怕应该是 $$答案才对."_gbk;
  const struct {
    std::string script, quoted, advice;  // without a quoted line the whole message
  } kCases[] = {
      {"##NT1\nq\n##XZ\na\n$$A\nstray\n", u8"6行：stray\n"_gbk, kHeader},
      {"\r\n", u8"1行：\r\n"_gbk, kHeader},
      {"##N1T4\n", u8"1行：##N1T4\n"_gbk, kHeader},
      {"##N1T", u8"1行：##N1T"_gbk, kHeader},
      {"##N-1T1\n", u8"1行：##N-1T1\n"_gbk, kHeader},
      {"##N2T1\n", u8"1行：##N2T1\n"_gbk, u8"不对了，该行的题号应是 1 才对."_gbk},
      {"##N4294967297T1\n", u8"1行：##N4294967297T1\n"_gbk, u8"不对了，该行的题号应是 1 才对."_gbk},
      {"##N0T3\n$$\n##N1T3\n", u8"3行：##N1T3\n"_gbk, u8"不对了，该行的题号应是 0 才对."_gbk},
      {"##NT1\nq\n$$A\n", u8"3行：$$A\n"_gbk, kMarker},
      {"##NT1\n##XZ\n$$\n", u8"3行：$$\n"_gbk, kAnswer},
      {"##NT1\n##XZ\n$$1\n", u8"3行：$$1\n"_gbk, kAnswer},
      {"##NT3\n\n##N1T1\n", u8"3行：##N1T1\n"_gbk, kAnswer},
      {"", "", kEnds},
      {"##NT3\npassage", "", kEnds},
      {"##NT1\n##XZ\na\n", "", kEnds},
      {"##NT1\nq\n##XZ\n", "", u8".scr 文件异常结束，大概是最后一题没有输入错误。"_gbk},
  };
  for (const auto& [script, quoted, advice] : kCases) {
    EXPECT_EQ(Compile(script, 9), -1) << script;
    EXPECT_EQ(Told(), quoted.empty() ? advice : std::string(u8"文件a.scr的第"_gbk) + quoted + advice) << script;
  }
}

TEST_F(QuestionCompiler, CutsTheQuotedLineOfALongMessage) {
  std::string line = "##x";
  while (line.size() < 400) line += u8"长"_gbk;
  EXPECT_EQ(Compile(line + "\n", 1), -1);
  const std::string advice = u8"不对了，该行本应该是题号和题目类型的."_gbk;
  EXPECT_EQ(Told(), u8"文件a.scr的第1行："_gbk + line.substr(0, 263) + advice)
      << "318 bytes: half a character is not shown";
  std::filesystem::create_directory("b");
  const std::string inFolder = "b" + std::string(240, '\\') + "a.scr";
  WriteText("b/a.scr", line + "\n");
  EXPECT_EQ(vcConvertScrToTstWz("a.zud", inFolder.c_str()), -1);
  EXPECT_EQ(Told(), u8"文件"_gbk + inFolder + u8"的第1行："_gbk + line.substr(0, 23) + advice);
  EXPECT_EQ(Compile("##\0z\n"sv, 1), -1);
  EXPECT_EQ(Told(), u8"文件a.scr的第1行：##"_gbk + advice);
  exercises::CompileReport report;
  report.fault = exercises::CompileFault::NoHeader;
  EXPECT_EQ(exercises::MessageOf(report, line).View(),
            u8"文件"_gbk + line.substr(line.size() - 268) + u8"的第0行："_gbk + advice);
}

TEST_F(QuestionCompiler, ReadsLongLinesInPieces) {
  const std::string text(7997, 'x');
  EXPECT_EQ(Compile("##NT3\n" + text + text + "\n$$\n", 1), 0);
  EXPECT_EQ(Wz(), text + text + "\n");
  EXPECT_EQ(Compile("##NT1\n" + text + "##XZ\n" + text + "$$B\n##NT3\n", 2), -1);
  EXPECT_EQ(ReadBytes("temp/a.tst"), IndexFile({{0, 1, 0, 15995, 0, 0}})) << "a mark counts where a piece begins";
  boxes.Take();
  EXPECT_EQ(Compile("##NT1\n" + text + "$$\n", 1), -1);
  EXPECT_EQ(Told(), std::string(u8"文件a.scr的第3行：$$\n不对了，该行恐怕应该是 ##XZ 才对."_gbk));
  EXPECT_EQ(Compile("##NT3\na\0b\n$$\n"sv, 1), 0);
  EXPECT_EQ(Wz(), "a\0b\n"sv) << "zero bytes are text";
}

TEST_F(QuestionCompiler, TakesAHundredThousandRecords) {
  std::string script, wz;
  std::vector<Item> items;
  for (std::int32_t i = 0; i < 100'000; ++i) {
    const std::string question = std::to_string(i) + std::string(static_cast<std::size_t>(i % 97), 'q') + "?\r\n";
    script += "##N" + std::to_string(i + 1) + "T1\r\n" + question + "##XZ\r\nA. yes\r\n$$" +
              static_cast<char>('A' + i % 26) + "\r\n";
    items.push_back(
        {0, i % 26, static_cast<std::uint32_t>(wz.size()), static_cast<std::uint32_t>(question.size() + 9), 0, i});
    wz += question + '\0' + "A. yes\r\n";
  }
  EXPECT_EQ(Compile(script, items.size()), 0);
  EXPECT_TRUE(Wz() == wz);
  EXPECT_TRUE(ReadBytes("temp/a.tst") == IndexFile(items));
}

TEST_F(QuestionCompiler, LeavesTheOutputsWhenAnInputIsMissing) {
  WriteText("temp/a.tst", "before");
  WriteText("a.scr", kScript);
  WriteStudyFile("a.zud", 1);
  WriteBytes("short.zud", Bytes(319));
  const std::string tooLong = std::string(255, '.') + "\\a.scr";
  const std::string longName = std::string(256, 'n');
  const std::pair<const char*, const char*> kCases[] = {
      {"none.zud", "a.scr"}, {"a.zud", "none.scr"},      {"short.zud", "a.scr"},     {nullptr, "a.scr"},
      {"a.zud", nullptr},    {"a.zud", tooLong.c_str()}, {tooLong.c_str(), "a.scr"}, {"a.zud", longName.c_str()}};
  for (const auto& [study, script] : kCases) EXPECT_EQ(vcConvertScrToTstWz(study, script), -1);
  EXPECT_TRUE(boxes.Take().empty());
  EXPECT_EQ(ReadBytes("temp/a.tst").size(), 6u);
  EXPECT_EQ(NamesIn("temp"), (std::vector<std::string>{"a.tst"}));
}

TEST_F(QuestionCompiler, TellsOfOutputsThatCannotBeWritten) {
  const char* kCannotCreate = u8"无法创建新文件，可能是磁盘空间不够。"_gbk;
  WriteText("temp/a.wz", kScript);
  WriteStudyFile("a.zud", 1);
  EXPECT_EQ(vcConvertScrToTstWz("a.zud", "temp\\a.wz"), -1) << "the script is not emptied";
  EXPECT_EQ(Told(), kCannotCreate);
  EXPECT_EQ(Wz(), kScript);
  std::filesystem::remove_all("temp");
  EXPECT_EQ(Compile(kScript, 1), -1);
  EXPECT_EQ(Told(), kCannotCreate);

  std::filesystem::create_directory("temp");
  std::int32_t writeErrors = 0;
  for (std::int64_t n = 1; n <= 12; ++n) {
    const platform::FaultPlan fault = platform::FaultPlan::FailAt(n);
    const std::int32_t result = Compile(kScript, 5);
    for (const Box& box : boxes.Take()) {
      if (box.text != "write error") continue;
      EXPECT_EQ(result, 0);
      ++writeErrors;
    }
  }
  EXPECT_EQ(writeErrors, 2) << "the texts' only piece, and closing";
}

}  // namespace
}  // namespace tavimo::tests
