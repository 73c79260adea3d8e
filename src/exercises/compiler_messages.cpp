#include "exercises/compiler_messages.h"

#include <array>
#include <charconv>

#include "platform/gbk_literal.h"
#include "platform/text.h"

namespace tavimo::exercises {

using namespace platform::literals;

namespace {

// The last bytes of a text, at most limit, without half a character.
std::string_view LastWholeCharacters(std::string_view text, std::size_t limit) noexcept {
  std::size_t skipped = 0;
  while (text.size() > limit + skipped) skipped += platform::IsLeadByte(text[skipped]) ? 2 : 1;
  return skipped < text.size() ? text.substr(skipped) : std::string_view{};
}

class Decimal {
 public:
  explicit Decimal(std::int64_t value) noexcept
      : length_(static_cast<std::size_t>(std::to_chars(digits_.data(), digits_.data() + digits_.size(), value).ptr -
                                         digits_.data())) {}
  [[nodiscard]] std::string_view View() const noexcept { return {digits_.data(), length_}; }

 private:
  std::array<char, 20> digits_{};
  std::size_t length_;
};

// "Line so-and-so of the file is wrong", and what ought to be there.
CompilerMessage LineMessage(const CompileReport& report, std::string_view path, std::string_view advice,
                            std::string_view number = {}, std::string_view adviceEnd = {}) noexcept {
  const std::string_view fileWord = u8"文件"_gbk;
  const std::string_view lineWord = u8"的第"_gbk;
  const std::string_view colon = u8"行："_gbk;
  const std::string_view wrong = u8"不对了，"_gbk;
  const Decimal lineNumber(report.lineNumber);
  std::size_t room = CompilerMessage::kRoom;
  for (const std::string_view part : {fileWord, lineWord, lineNumber.View(), colon, wrong, advice, number, adviceEnd}) {
    room -= part.size();
  }
  path = LastWholeCharacters(path, room);
  room -= path.size();
  // A zero would end the message before the advice.
  const std::string_view line = report.line.substr(0, report.line.find('\0'));
  CompilerMessage message;
  static_cast<void>(
      message.Assign(fileWord, path, lineWord, lineNumber.View(), colon,
                     line.size() <= room ? line : line.substr(0, platform::WholeCharacterBytes(line, room)), wrong,
                     advice, number, adviceEnd));
  return message;
}

CompilerMessage Plain(const char* text) noexcept {
  CompilerMessage message;
  static_cast<void>(message.Assign(std::string_view(text)));
  return message;
}

}  // namespace

CompilerMessage MessageOf(const CompileReport& report, std::string_view scriptPath) noexcept {
  switch (report.fault) {
    case CompileFault::None:
    case CompileFault::CannotRead:
      return {};
    case CompileFault::CannotCreate:
      return Plain(u8"无法创建新文件，可能是磁盘空间不够。"_gbk);
    case CompileFault::ScriptEnds:
      return Plain(u8".scr 文件异常结束，大概是最后一题输入错误。"_gbk);
    case CompileFault::ScriptEndsAfterMarker:
      return Plain(u8".scr 文件异常结束，大概是最后一题没有输入错误。"_gbk);
    case CompileFault::NoHeader:
      return LineMessage(report, scriptPath, u8"该行本应该是题号和题目类型的."_gbk);
    case CompileFault::WrongNumber:
      return LineMessage(report, scriptPath, u8"该行的题号应是 "_gbk, Decimal(report.expectedNumber).View(),
                         u8" 才对."_gbk);
    case CompileFault::NoChoiceMarker:
      return LineMessage(report, scriptPath, u8"该行恐怕应该是 ##XZ 才对."_gbk);
    case CompileFault::NoAnswer:
      return LineMessage(report, scriptPath, u8"该行恐怕应该是 $$答案才对."_gbk);
  }
  return {};
}

}  // namespace tavimo::exercises
