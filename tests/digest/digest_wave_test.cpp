// Digests drawn as waveforms, checked pixel by pixel in a real picture.

#include "support/engine_test.h"
#include "support/picture.h"

namespace tavimo::tests {
namespace {

using Rows = std::pair<int, int>;
using Columns = std::vector<Rows>;
constexpr Rows kNone(-1, -1);

Columns BlackOf(const Picture& picture, int first, int end) {
  Columns columns;
  for (int x = first; x < end; ++x) columns.push_back(picture.BlackRows(x));
  return columns;
}

class DigestWave : public EngineTest {};

TEST_F(DigestWave, HalfStandsOnItsBaseLine) {
  OpenDigest({128, 64, 1, 0});
  const Picture picture(6, 100);
  vcDrawHalfDigestWave(picture.dc, 100, 4, 0, 1);
  EXPECT_EQ(BlackOf(picture, 0, 5), (Columns{{0, 99}, {50, 99}, {99, 99}, {99, 99}, kNone}))
      << "a level of 1 is 0.78 pixels";
}

TEST_F(DigestWave, HalfShowsTheEndOfTheRecordingInRed) {
  OpenDigest({64, 64, 128});
  const Picture picture(4, 4);
  tvSelectPen(picture.dc, 0x12000000);  // black: no colour has a highest byte
  vcDrawHalfDigestWave(picture.dc, 4, 4, 0, 2);
  EXPECT_EQ(picture.Rows(), (std::vector<std::string>{".r..", ".r..", "#r..", "####"}));
  vcDrawHalfDigestWave(picture.dc, 4, 4, 0, 2);
  EXPECT_EQ(tvPixel(picture.dc, 0, 2), kBlack) << "the host's pen is selected again";
  const Picture late(3, 3);
  vcDrawHalfDigestWave(late.dc, 3, 3, -1, 1);
  EXPECT_EQ(late.Rows(), (std::vector<std::string>{"r..", "r..", "###"})) << "a negative time is past the end";
}

TEST_F(DigestWave, HalfStartsAtTheLevelOfItsTime) {
  Bytes levels(60, 0);
  levels[25] = 128;
  OpenDigest(levels);
  for (const bool formatIsSet : {false, true}) {
    if (formatIsSet) core::State().tapeFormat.samplesPerLevel = 441;
    const Picture picture(2, 8);
    vcDrawHalfDigestWave(picture.dc, 8, 2, 1000, 1);
    EXPECT_EQ(BlackOf(picture, 0, 2), (Columns{{0, 7}, {7, 7}}));
  }
}

TEST_F(DigestWave, FullIsCentredOrStandsOnTheBottomAndEndsEarlyWithTheRecording) {
  const struct {
    Bytes levels;
    int width, height, spacing, isOnBottom, first;
    Columns columns;
  } cases[] = {
      {{128, 128, 64, 64}, 4, 101, 2, 0, 0, {{0, 100}, {13, 87}, {25, 75}, {25, 75}, kNone}},
      {{128, 0, 64, 64}, 6, 100, 1, 1, 0, {{0, 99}, {50, 99}, kNone, {75, 99}, {50, 99}}},
      {{64, 64, 64}, 8, 9, 1, 0, 5, {{2, 6}, {4, 4}}},  // only the middle line goes on
      {{64, 64, 64}, 8, 8, 1, 1, 5, {{3, 7}, kNone}},   // one pixel taller before an early end
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    OpenDigest(c.levels);
    const Picture picture(c.width + 1, c.height);
    vcDrawSrcDigestWave(picture.dc, c.height, c.width, 0, c.spacing, c.isOnBottom);
    EXPECT_EQ(BlackOf(picture, c.first, c.first + static_cast<int>(c.columns.size())), c.columns);
  }
}

TEST_F(DigestWave, FullStartsAtTheLevelThatCoversItsTime) {
  OpenDigest({0, 128, 128, 128});
  for (const std::int32_t startMs : {39, 40, -1}) {
    const Picture picture(2, 9);
    vcDrawSrcDigestWave(picture.dc, 9, 2, startMs, 1, 0);
    EXPECT_EQ(picture.BlackRows(0), startMs == 40 ? Rows(0, 8) : Rows(4, 4)) << startMs;
  }
}

TEST_F(DigestWave, ShowsNothingOfAnEarlierDrawing) {
  OpenDigest(Bytes(3000, 128));
  const Picture wide(2100, 9);
  vcDrawSrcDigestWave(wide.dc, 9, 2100, 0, 1, 0);
  EXPECT_EQ(wide.BlackRows(2047), Rows(0, 8));
  EXPECT_EQ(wide.BlackRows(2048), kNone) << "the first 2048 columns are drawn";
  OpenDigest({32, 32});
  for (const std::int32_t width : {4, 5}) {
    const Picture picture(6, 9);
    vcDrawSrcDigestWave(picture.dc, 9, width, 0, 1, 0);
    EXPECT_EQ(picture.BlackRows(width - 1), Rows(3, 5)) << width;
  }
}

TEST_F(DigestWave, DrawsNothingFromNonsense) {
  const Picture picture(4, 4);
  const std::vector<std::string> blank(4, "....");
  vcDrawHalfDigestWave(picture.dc, 4, 4, 0, 1);
  vcDrawSrcDigestWave(picture.dc, 4, 4, 0, 1, 0);
  EXPECT_EQ(picture.Rows(), blank) << "no digest is open";
  OpenDigest(Bytes(100, 128));
  for (const std::int32_t bad : {0, -1, -2147483647 - 1}) {
    vcDrawHalfDigestWave(picture.dc, bad, 4, 0, 1);
    vcDrawHalfDigestWave(picture.dc, 4, bad, 0, 1);
    vcDrawHalfDigestWave(picture.dc, 4, 4, 0, bad);
    vcDrawSrcDigestWave(picture.dc, bad, 4, 0, 1, 0);
    vcDrawSrcDigestWave(picture.dc, 4, bad, 0, 1, 1);
    vcDrawSrcDigestWave(picture.dc, 4, 4, 0, bad, 0);
  }
  EXPECT_EQ(picture.Rows(), blank);
  vcDrawHalfDigestWave(nullptr, 4, 4, 0, 1);
  constexpr std::int32_t kHuge = 2147483647;
  vcDrawHalfDigestWave(picture.dc, kHuge, kHuge, 0, 1);
  vcDrawSrcDigestWave(picture.dc, kHuge, kHuge, kHuge, kHuge, 0);
  vcDrawSrcDigestWave(picture.dc, kHuge, 40, 0, 1, 1);
  OpenDigest(Bytes(100, 255));  // no level of a digest, but a file may hold anything
  vcDrawHalfDigestWave(picture.dc, kHuge, 40, 0, 1);
  vcDrawSrcDigestWave(picture.dc, kHuge, 40, 0, 1, 0);
}

}  // namespace
}  // namespace tavimo::tests
