// The bank as a host uses it, over banks that were compiled and over such as anything may have damaged.
#include <array>
#include <chrono>
#include <cstdlib>
#include <random>
#include <string>

#include "exercises/question_files.h"
#include "exercises/question_record.h"
#include "platform/gbk_literal.h"
#include "support/message_boxes.h"

namespace tavimo::tests {
namespace {

using namespace platform::literals;
using namespace std::string_view_literals;

// A host's buffer, marked so that a write behind its room shows.
struct Buffer {
  explicit Buffer(std::size_t byteCount) : room(byteCount), bytes(byteCount + 16, '\x5A') {}
  std::string Text() {
    EXPECT_EQ(bytes.substr(room), std::string(16, '\x5A'));
    return bytes.c_str();
  }
  std::size_t room;
  std::string bytes;
};

std::ptrdiff_t linesSeen = 0;

std::intptr_t VC_CALL CountLines(VcWindow window, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) {
  if (message == TV_LB_ADDSTRING) ++linesSeen;
  return tvDefaultProc(window, message, wparam, lparam);
}

class QuestionBank : public EngineTest {
 protected:
  // Opens a bank that is written out by hand.
  static void Open(const std::vector<Item>& items, std::string_view wz) {
    WriteBytes("temp/b.tst", IndexFile(items));
    WriteText("temp/b.wz", wz);
    char path[] = "temp\\b.wz";
    EXPECT_EQ(vcOpenQuestionIdx(path, nullptr), static_cast<std::int32_t>(items.size()));
    EXPECT_EQ(vcOpenWzFile(path), 0);
  }
  static std::string Text(std::int32_t(VC_CALL* get)(char*), std::size_t room) {
    Buffer buffer(room);
    get(buffer.bytes.data());
    return buffer.Text();
  }
  static std::string Question(std::size_t room) { return Text(vcGetQuestionTxt, room); }
  static std::string Choices(std::size_t room) { return Text(vcGetChoiceTxt, room); }
  static std::string Article(std::int32_t index, std::size_t room) {
    Buffer buffer(room);
    const std::int32_t length = vcGetArticleTxt(buffer.bytes.data(), index);
    EXPECT_EQ(length == 0, buffer.Text().empty());
    return buffer.Text();
  }
  static std::vector<std::string> Lines() {
    const Window list(TV_LIST_BOX);
    vcFillSentenceList(list);
    return LinesOf(list);
  }

  MessageBoxes boxes;
  Beeps beeps;
};

TEST_F(QuestionBank, ServesALesson) {
  WriteText("lesson1.scr", std::string("##NT3\nText.\n$$\n##NT2\n") + u8"他说“走”\n"_gbk +
                               "##XZ\nA\nB\n$$b\n##NT2\n##XZ\nC\n$$B\n##NT1\nq\n##XZ\n$$a\n");
  WriteStudyFile("lesson1.zud", 4);
  Buffer wzPath(sizeof "lesson1.wav" + 9);
  std::array<std::int32_t, 5> answers{7, 7, 7, 7, 7};
  ASSERT_EQ(vcConvertScr((scratch.Root() / "lesson1.wav").generic_string().c_str(), nullptr, nullptr), -1)
      << "backslashes divide paths";
  ASSERT_EQ(vcConvertScr(".\\lesson1.wav", wzPath.bytes.data(), answers.data()), 4);
  EXPECT_EQ(wzPath.Text(), "temp\\lesson1.wz");
  EXPECT_EQ(answers, (std::array<std::int32_t, 5>{-1, 1, 1, 0, 7}));
  ASSERT_EQ(vcOpenWzFile(wzPath.bytes.data()), 0);
  EXPECT_EQ(Lines(), (std::vector<std::string>{u8"  短文"_gbk, "No.1", "No.2", "No.3"}));
  std::int32_t answer = 9;
  EXPECT_EQ(vcReadCurQuestion(1, &answer), 3);
  EXPECT_EQ(answer, 1);
  EXPECT_EQ(Question(16), std::string(u8"他说"_gbk) + " \"" + u8"走"_gbk + "\" \n");
  EXPECT_EQ(Choices(16), "A\nB\n");
  char text[16];
  EXPECT_EQ(vcGetQuestionTxt(text), 8);
  EXPECT_EQ(vcReadCurQuestion(2, nullptr), 3);
  EXPECT_EQ(Question(4), "");
  EXPECT_EQ(Choices(4), "C\n");
  EXPECT_EQ(Article(0, 7), "Text.\n");
  EXPECT_EQ(Article(2, 7), "Text.\n") << "the passage that a question belongs to";
  EXPECT_EQ(vcReadCurQuestion(4, &answer), 3) << "past the end the item in hand stays";
  WriteText("lesson1.scr", "##NT1\nq\n##XZ\n$$b\n##NT1\nq\n##XZ\n$$b\n##NT1\nq\n##XZ\n$$b\n##NT1\nq\n##XZ\n$$b\n");
  ASSERT_EQ(vcConvertScrToTstWz("lesson1.zud", "lesson1.scr"), 0);
  EXPECT_EQ(Lines(), (std::vector<std::string>{"No.1", "No.2", "No.3", "No.4"})) << "compiled anew under the open bank";
  vcCloseWzFile();
  EXPECT_EQ(Question(4), "");
  vcCloseQuestionIdx();
  vcCloseQuestionIdx();
  EXPECT_EQ(Article(0, 7), "");
  EXPECT_TRUE(Lines().empty());
}

TEST_F(QuestionBank, RefusesToCompileWhatIsNotThere) {
  WriteText("a.scr", "");
  EXPECT_EQ(vcConvertScr("a.wav", nullptr, nullptr), -1);
  EXPECT_EQ(vcConvertScr(nullptr, nullptr, nullptr), -1);
  EXPECT_EQ(vcConvertScr(std::string(300, 'a').c_str(), nullptr, nullptr), -1);
  EXPECT_TRUE(NamesIn("temp").empty());
  WriteStudyFile("a.zud", 0);
  EXPECT_EQ(vcConvertScr("a.wav", nullptr, nullptr), 0);
  // A recording without an extension in a folder with a dot: script and outputs take the folder's name, the index that
  // is opened does not, and must not fill more answers than there are sentences.
  std::filesystem::create_directory("set.2");
  WriteText("set.scr", "");
  WriteStudyFile("set.zud", 0);
  Buffer wzPath(20);
  EXPECT_EQ(vcConvertScr("set.2\\lesson", wzPath.bytes.data(), nullptr), -1);
  EXPECT_EQ(wzPath.Text(), "temp\\lesson.wz");
  EXPECT_TRUE(Exists("temp/set.tst"));
  WriteBytes("temp/lesson.tst", IndexFile({{}, {}}));
  std::int32_t answer = 7;
  EXPECT_EQ(vcConvertScr("set.2\\lesson", nullptr, &answer), 2);
  EXPECT_EQ(answer, 7);
  EXPECT_TRUE(boxes.Take().empty());
}

TEST_F(QuestionBank, ReadsAnswersInBothCases) {
  const std::vector<Item> items = {{0, 1},  {3, 33}, {0, 25}, {0, 57}, {0, 26},
                                   {0, 31}, {0, -5}, {1, 3},  {2, 33}, {9, 2}};
  Open(items, "");
  std::array<std::int32_t, 10> answers{};
  EXPECT_EQ(vcOpenQuestionIdx("temp\\b.tst", answers.data()), 10);
  EXPECT_EQ(answers, (std::array<std::int32_t, 10>{1, 1, 25, 25, -6, -1, -5, -1, -1, 2}));
  std::int32_t answer = 0;
  EXPECT_EQ(vcReadCurQuestion(1, &answer), 3);
  EXPECT_EQ(answer, 1);
}

TEST_F(QuestionBank, ListsAndReadsLongDialogues) {
  Open({{1, 0, 0, 4}, {3, 0, 4, 3, 0, 0}, {7, 0, 0, 4}, {0, 0, 4, 3, 1, 2147483647}}, "Hi!\nq\0c"sv);
  EXPECT_EQ(Lines(), (std::vector<std::string>{u8"  长对话"_gbk, "No.1", "No.-2147483648"}));
  EXPECT_EQ(Article(0, 5), "Hi!\n");
  EXPECT_EQ(Article(1, 5), "Hi!\n");
  EXPECT_EQ(Article(3, 5), "") << "its passage is a question";
  vcReadCurQuestion(0, nullptr);
  EXPECT_EQ(Question(5), "Hi!\n") << "no zero byte: all of it, and not the next record's";
  EXPECT_EQ(Choices(5), "");
}

TEST_F(QuestionBank, StraightensCurlyQuotes) {
  const struct {
    std::string wz, shown;
    std::int32_t length;
  } kCases[] = {
      {"\xA1\xB0"
       "a\xA1\xB1",
       " \"a\" ", 5},
      {"\xA1\xA1\xB0\xB1", "\xA1 \"\xB1", 3},
      {"\xB0\xA1\xB0\xA1", "\xB0 \"\xA1", 3},
      {"x\xA1", "x\xA1", 3},
      {"", "", 0},
  };
  for (const auto& [wz, shown, length] : kCases) {
    Open({{2, 0, 0, static_cast<std::uint32_t>(wz.size())}}, wz);
    Buffer buffer(wz.size() + 1);
    EXPECT_EQ(vcGetArticleTxt(buffer.bytes.data(), 0), length);
    EXPECT_EQ(buffer.Text(), shown);
  }
}

TEST_F(QuestionBank, GivesNoTextForARecordThatPointsOutside) {
  constexpr std::uint32_t kMost = 0xFFFFFFFF;
  const Item kOutside[] = {{0, 0, 0, 5},         {0, 0, 5, 0},     {0, 0, 4, 1},
                           {0, 0, kMost, kMost}, {0, 0, 0, kMost}, {0, 0, kMost, 0}};
  for (Item item : kOutside) {
    item.passage = -1;
    Item article = item;
    article.type = 2;
    Open({item, article}, "q\0c\n"sv);
    vcReadCurQuestion(0, nullptr);
    EXPECT_EQ(Question(1) + Choices(1) + Article(0, 1) + Article(1, 1), "");
  }
  Open({{0, 0, 0, 2}}, "q\0c\n"sv);
  vcReadCurQuestion(0, nullptr);
  EXPECT_EQ(Question(3) + "|" + Choices(3), "q|") << "the choices end with the record";
  for (const std::int32_t index : {-1, 1, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(Article(index, 1), "");
    EXPECT_EQ(vcReadCurQuestion(index, nullptr), 0);
  }
  EXPECT_EQ(vcGetQuestionTxt(nullptr) + vcGetChoiceTxt(nullptr) + vcGetArticleTxt(nullptr, 0), 0);
  WriteBytes("temp/b.tst", Bytes(103, 1));
  EXPECT_EQ(vcOpenQuestionIdx("temp\\b.tst", nullptr), 1);
  WriteBytes("temp/b.tst", Bytes(51, 1));
  EXPECT_EQ(vcOpenQuestionIdx("temp\\b.tst", nullptr), 0);
}

TEST_F(QuestionBank, ChangesTheEndingsOfPaths) {
  for (const char* name : {"x.tst", "x.wz", "tst", "wz", ".tst", ".wz"}) WriteText(name, "");
  const struct {
    std::string path, afterwards;
    std::int32_t result;
  } kCases[] = {{"x.tst", "x.wz", 0}, {"x.wz", "x.wz", 0},   {"x.a", "wz", 0},
                {".wz", ".wz", 0},    {"a.z", "wz", 0},      {"ab", "ab", -1},
                {"", "", -1},         {"y.tst", "y.wz", -1}, {"C.abc", "C.wz", -1}};
  for (const auto& [path, afterwards, result] : kCases) {
    Buffer buffer(path.size() + 1);
    path.copy(buffer.bytes.data(), path.size());
    buffer.bytes[path.size()] = 0;
    EXPECT_EQ(vcOpenWzFile(buffer.bytes.data()), result) << path;
    EXPECT_EQ(buffer.Text(), afterwards);
    EXPECT_EQ(vcOpenQuestionIdx(path.c_str(), nullptr), result) << path;
  }
  EXPECT_EQ(vcOpenWzFile(nullptr), -1);
  EXPECT_EQ(vcOpenQuestionIdx(nullptr, nullptr), -1);
  EXPECT_EQ(vcOpenQuestionIdx(("." + std::string(255, '\\') + "x.wz").c_str(), nullptr), -1) << "260 bytes";
}

TEST_F(QuestionBank, FindsWhatLiesBesideALesson) {
  std::filesystem::create_directory("a.b");
  for (const char* name : {"1.gif", "1.bmp", "2.dib", "1.rtf", "1.txt", "2.rtf", "a.b/3.wz", ".wz"})
    WriteText(name, "");
  using Finder = std::int32_t(VC_CALL*)(const char*, char*);
  const struct {
    Finder find;
    std::string path, found;
    std::int32_t result;
  } kCases[] = {{vcIfTxtGraphExist, "1.wav", "1.bmp", 1},
                {vcIfTxtGraphExist, "2", "2.dib", 1},
                {vcIfTxtGraphExist, "3.wav", "3.dib", 0},
                {vcIfTxtGraphExist, "a.b\\2", "a.dib", 0},
                {vcIfTxtGraphExist, "", "", 0},
                {vcGetWzFile, "1.wav", "1.txt", 5},
                {vcGetWzFile, "2.wav", "2.rtf", 5},
                {vcGetWzFile, "a.b\\3", "a.b\\3.wz", 8},
                {vcGetWzFile, ".abc", ".wz", 3},
                {vcGetWzFile, "\\none", "\\none.rtf", 0},
                {vcGetWzFile, std::string(256, 'n'), "", 0}};
  for (const auto& [find, path, found, result] : kCases) {
    Buffer buffer(path.size() + 5);
    EXPECT_EQ(find(path.c_str(), buffer.bytes.data()), result) << path;
    EXPECT_EQ(buffer.Text(), found);
    EXPECT_EQ(find(path.c_str(), nullptr), result);
  }
}

TEST_F(QuestionBank, ReadsTitlesFromTheProfile) {
  const auto title = [](const char* section, std::int32_t number) {
    Buffer buffer(150);
    const std::int32_t length = vcGetArticleTitle(section, number, buffer.bytes.data());
    return std::to_string(length) + buffer.Text();
  };
  const std::string none = std::string("2") + u8"文章"_gbk;
  EXPECT_EQ(title("unit1", 1), none);
  WriteText("article.txt", std::string("[Unit1]\n1=") + u8"狐狸"_gbk + "\n-2=" + std::string(300, 'x') + "\n");
  EXPECT_EQ(title("unit1", 1), std::string("2") + u8"狐狸"_gbk);
  EXPECT_EQ(title("unit1", -2), "149" + std::string(149, 'x'));
  EXPECT_EQ(title("unit1", 2), none);
  EXPECT_EQ(title(nullptr, 1), none);
  EXPECT_EQ(vcGetArticleTitle("unit1", 1, nullptr), 0);
}

TEST_F(QuestionBank, ListsItemsNumberedInWhateverOrder) {
  std::mt19937 random(7);
  std::string index;
  std::vector<std::string> lines;
  exercises::QuestionRecord record;
  for (int i = 0; i < 20000; ++i) {
    record.type = static_cast<std::int32_t>(random() % 50 == 0 ? random() % 6 : 0);
    const bool isNext = random() % 20 != 0;
    const auto jump = static_cast<std::uint32_t>(random() % 2 == 0 ? random() : 0xFFFFFFF0 + random() % 32);
    record.ordinal = static_cast<std::int32_t>(isNext ? static_cast<std::uint32_t>(record.ordinal) + 1 : jump);
    const exercises::QuestionRecordBytes bytes = exercises::WriteQuestionRecord(record);
    index.append(bytes.begin(), bytes.end());
    if (record.type > exercises::kPassageQuestion) continue;
    const auto number = static_cast<std::int32_t>(static_cast<std::uint32_t>(record.ordinal) + 1);
    lines.push_back(record.type == exercises::kLongDialogue ? u8"  长对话"_gbk
                    : record.type == exercises::kPassage    ? u8"  短文"_gbk
                                                            : "No." + std::to_string(number));
  }
  WriteText("x.tst", index);
  ASSERT_EQ(vcOpenQuestionIdx("x.tst", nullptr), 20000);
  EXPECT_EQ(Lines(), lines);
  // What was kept at the open counts no longer once the file has another time: the items are read again, changed or not.
  auto touch = [hours = 0]() mutable {
    std::filesystem::last_write_time("x.tst",
                                     std::filesystem::file_time_type::clock::now() + std::chrono::hours(++hours));
  };
  touch();
  EXPECT_EQ(Lines(), lines);
  const Window hooked(TV_LIST_BOX, nullptr, &CountLines);
  linesSeen = 0;
  vcFillSentenceList(hooked);
  EXPECT_EQ(LinesOf(hooked), lines);
  EXPECT_EQ(linesSeen, std::ssize(lines)) << "a host in front of its list box sees every line";
  ASSERT_EQ(vcOpenQuestionIdx("x.tst", nullptr), 20000);
  WriteText("x.tst", std::string(index.rbegin(), index.rend()));
  touch();
  EXPECT_NE(Lines(), lines) << "another program wrote the index anew";

  record.type = 7;
  const exercises::QuestionRecordBytes unknown = exercises::WriteQuestionRecord(record);
  WriteText("x.tst", std::string(unknown.begin(), unknown.end()));
  ASSERT_EQ(vcOpenQuestionIdx("x.tst", nullptr), 1);
  EXPECT_TRUE(Lines().empty());
}

}  // namespace
}  // namespace tavimo::tests
