// Times and byte offsets, through the exports, with the format and the data offset of an open tape.
#include <climits>

#include "core/time_model.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using core::PcmFormat;

constexpr PcmFormat kSixteenMono22050{1, 1, 22050, 44100, 2, 16};
constexpr PcmFormat kEightMono11025{1, 1, 11025, 11025, 1, 8};
constexpr PcmFormat kSixteenStereo44100{1, 2, 44100, 176400, 4, 16};

class TimeModel : public EngineTest {
 protected:
  static void Use(const PcmFormat& format, std::int32_t dataOffset) {
    core::State().currentFormat = format;
    core::State().currentWaveFile.dataOffset = dataOffset;
  }
};

TEST_F(TimeModel, ConvertsTimesToEvenOffsetsTowardZero) {
  const struct {
    PcmFormat format;
    std::int32_t timeMs, offset;
  } cases[] = {
      {kSixteenMono22050, 0, 46},
      {kSixteenMono22050, 1, 46 + 44},      // 44.1
      {kSixteenMono22050, -1, 46 - 44},     // -44.1
      {kEightMono11025, 1, 46 + 10},        // 11.025, then even
      {kEightMono11025, -1, 46 - 10},       // -11 moves up to -10
      {kEightMono11025, 5000, 46 + 55124},  // 55125, then even
      {kSixteenStereo44100, 1, 46 + 176},   // 176.4: between the channels of a frame
      {kSixteenMono22050, 3600000, 46 + 158760000},
      {{}, 1000, 46},  // no bytes per second
      {kSixteenStereo44100, INT_MAX, INT_MAX},
      {kSixteenStereo44100, INT_MIN, INT_MIN + 46},
  };
  for (const auto& c : cases) {
    Use(c.format, 46);
    EXPECT_EQ(vcTimeToOffset(c.timeMs), c.offset) << c.format.sampleRate << " Hz, " << c.timeMs << " ms";
    vcSetFilePosByTime(c.timeMs);
    EXPECT_EQ(core::State().currentWaveFile.filePosition, c.offset);
  }
}

TEST_F(TimeModel, ConvertsFileOffsetsToTimes) {
  EXPECT_EQ(core::FileOffsetToTime(kSixteenMono22050, 46, 46 + 44100), 1000);
  EXPECT_EQ(core::FileOffsetToTime(kEightMono11025, 46, 46 + 55124), 4999);
  EXPECT_EQ(core::FileOffsetToTime(kEightMono11025, 46, 45), 0) << "before the sound";
  EXPECT_EQ(core::FileOffsetToTime(kEightMono11025, 46, -2000000000), 0);
  EXPECT_EQ(core::FileOffsetToTime({}, 46, 5000), 0) << "no bytes per second";
}

TEST_F(TimeModel, ConvertsByteCountsInTheFormatTheHostNames) {
  const struct {
    std::int32_t format[3], byteCount, timeMs;
  } cases[] = {{{22050, 16, 2}, 88200, 1000},
               {{22050, 16, 2}, -88200, -1000},
               {{-22050, 16, 2}, 88200, -1000},
               {{22050, 0, 2}, 88200, 0},
               {{0x10000, 0x10000, 2}, 88200, 0}};
  for (const auto& c : cases) EXPECT_EQ(vcOffsetToTime(c.format, c.byteCount), c.timeMs) << c.format[0];
  EXPECT_EQ(vcOffsetToTime(nullptr, 88200), 0);
}

TEST_F(TimeModel, SetsPositionsByOffsetUnchanged) {
  vcSetFilePosByOffset(-7);
  EXPECT_EQ(core::State().currentWaveFile.filePosition, -7);
  vcGotoRecordStartPos(0);
  EXPECT_EQ(core::State().currentWaveFile.filePosition, 0);
  EXPECT_EQ(&vcGotoRecordStartPos, &vcSetFilePosByTime);
}

}  // namespace
}  // namespace tavimo::tests
