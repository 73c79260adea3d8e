// Implements texts.h.
#include "texts.h"

#include <array>
#include <fstream>
#include <random>
#include <string>

namespace tavimo::bench {

namespace {

constexpr std::array<const char*, 24> kWords{"the",      "lesson",   "morning", "and",       "water",   "children",
                                             "remember", "to",       "of",      "garden",    "listen",  "again",
                                             "a",        "sentence", "in",      "was",       "teacher", "she",
                                             "window",   "I",        "because", "yesterday", "go",      "night"};

class TextMaker {
 public:
  std::size_t Below(std::size_t bound) { return random_() % bound; }

  void AddEnglish(std::string& line, std::size_t words) {
    for (std::size_t i = 0; i < words; ++i) {
      line += kWords[Below(kWords.size())];
      line += i + 1 == words ? "." : Below(9) == 0 ? ", " : " ";
    }
  }

  // Characters of the first level of GB 2312: first bytes B0 to D6, second bytes A1 to FE.
  void AddChinese(std::string& line, std::size_t characters) {
    for (std::size_t i = 0; i < characters; ++i) {
      line += static_cast<char>(0xB0 + Below(0xD7 - 0xB0));
      line += static_cast<char>(0xA1 + Below(0xFF - 0xA1));
    }
    line += "\xA1\xA3";  // the full stop
  }

  void AddParagraph(std::string& line) {
    const std::size_t kind = Below(3);
    if (kind != 1) AddEnglish(line, 6 + Below(60));
    if (kind != 0) AddChinese(line, 8 + Below(80));
  }

 private:
  std::mt19937 random_{1};
};

class QuestionWriter {
 public:
  QuestionWriter(std::ofstream& script, TextMaker& maker) : script_(script), maker_(maker) {}

  void WriteRecord() {
    record_.clear();
    const bool isPassage = ++records_ % 50 == 1;
    if (!isPassage) ++questions_;
    Line("##N" + std::to_string(questions_) + "T" + (isPassage ? "3" : records_ % 50 < 5 ? "2" : "1"));
    if (isPassage) {
      for (int i = 0; i < 4; ++i) TextLine(12);
      Line("$$");
    } else {
      TextLine(4);
      Line("##XZ");
      for (const char* letter : {"A. ", "B. ", "C. ", "D. "}) TextLine(2, letter);
      Line(std::string("$$") + static_cast<char>('A' + maker_.Below(4)));
    }
    script_ << record_;
  }

  [[nodiscard]] int Records() const { return records_; }

 private:
  void Line(const std::string& line) { record_ += line + "\r\n"; }
  void TextLine(std::size_t words, std::string line = {}) {
    if (maker_.Below(4) == 0) {
      maker_.AddChinese(line, words * 2);
    } else {
      maker_.AddEnglish(line, words + maker_.Below(words));
    }
    Line(line);
  }

  std::ofstream& script_;
  TextMaker& maker_;
  std::string record_;
  int records_ = 0;
  int questions_ = 0;
};

}  // namespace

void WriteScript(const std::filesystem::path& file, std::int64_t byteCount) {
  std::ofstream out(file, std::ios::binary);
  TextMaker maker;
  std::string line;
  for (std::int64_t written = 0; written < byteCount; written += static_cast<std::int64_t>(line.size())) {
    line = "@@";
    maker.AddParagraph(line);
    line += "\r\n";
    out << line;
  }
}

void WriteQuestions(const std::filesystem::path& script, const std::filesystem::path& study, std::int64_t byteCount) {
  constexpr std::size_t kBookmarkBytes = 320;
  constexpr std::size_t kStartBytes = 4;
  std::ofstream out(script, std::ios::binary);
  TextMaker maker;
  QuestionWriter questions(out, maker);
  while (out.tellp() < byteCount) questions.WriteRecord();
  const auto records = static_cast<std::size_t>(questions.Records());
  std::ofstream(study, std::ios::binary) << std::string(kBookmarkBytes + kStartBytes * records, '\0');
}

}  // namespace tavimo::bench
