#include "exercises/wz_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "hostutil/gbk_char_count.h"

namespace tavimo::exercises {

using platform::FileStream;
using platform::SeekFrom;

namespace {

// How many bytes of a stretch stand before its first zero byte; all of them when it has none.
std::int64_t BytesBeforeZero(FileStream& wz, const TextStretch& stretch) noexcept {
  std::array<char, 4096> piece;
  std::int64_t seen = 0;
  wz.Seek(stretch.offset, SeekFrom::Start);
  while (seen < stretch.byteCount) {
    const std::int64_t wanted = std::min<std::int64_t>(stretch.byteCount - seen, piece.size());
    const std::int64_t got = wz.Read(piece.data(), wanted);
    if (got <= 0) break;
    const void* zero = std::memchr(piece.data(), 0, static_cast<std::size_t>(got));
    if (zero != nullptr) return seen + (static_cast<const char*>(zero) - piece.data());
    seen += got;
  }
  return stretch.byteCount;
}

// The curly quotes of GBK become a straight one and a blank on its outer side, so that the text keeps its length. Goes
// by bytes: texts of before may hold quotes behind half a character.
void StraightenQuotes(char* text, std::size_t byteCount) noexcept {
  constexpr char kQuoteLead = '\xA1';
  constexpr char kLeftTrail = '\xB0';
  constexpr char kRightTrail = '\xB1';
  for (std::size_t i = 0; i + 1 < byteCount; ++i) {
    if (text[i] != kQuoteLead || (text[i + 1] != kLeftTrail && text[i + 1] != kRightTrail)) continue;
    const bool isLeft = text[i + 1] == kLeftTrail;
    text[i] = isLeft ? ' ' : '"';
    text[i + 1] = isLeft ? '"' : ' ';
  }
}

}  // namespace

TextStretch WholeText(const FileStream& wz, const QuestionRecord& record) noexcept {
  const TextStretch stretch{record.textOffset, record.textLength};
  return stretch.offset + stretch.byteCount <= wz.Length() ? stretch : TextStretch{};
}

TextStretch QuestionPart(FileStream& wz, const QuestionRecord& record) noexcept {
  TextStretch stretch = WholeText(wz, record);
  stretch.byteCount = BytesBeforeZero(wz, stretch);
  return stretch;
}

TextStretch ChoicePart(FileStream& wz, const QuestionRecord& record) noexcept {
  const TextStretch whole = WholeText(wz, record);
  const std::int64_t before = BytesBeforeZero(wz, whole);
  if (before == whole.byteCount) return {};
  return {whole.offset + before + 1, whole.byteCount - before - 1};
}

std::int32_t CopyText(FileStream& wz, const TextStretch& stretch, char* text) noexcept {
  wz.Seek(stretch.offset, SeekFrom::Start);
  text[std::max<std::int64_t>(wz.Read(text, stretch.byteCount), 0)] = '\0';
  const std::size_t byteCount = std::strlen(text);
  StraightenQuotes(text, byteCount);
  return hostutil::GbkCharCount({text, byteCount});
}

}  // namespace tavimo::exercises
