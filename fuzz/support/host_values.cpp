#include "support/host_values.h"

#include <limits>

#include "support/fuzz_ground.h"

namespace tavimo::fuzz {

namespace {

constexpr std::int64_t kNumbers[] = {
    0,    1,    2,     3,     4,     5,     7,         8,          10,         16,         20,         40,
    79,   80,   100,   128,   150,   320,   400,       599,        600,        1000,       1256,       2048,
    4988, 8000, 11025, 32767, 44100, 65535, 0x7FFFFFF, 0x3FFFFFFF, 0x7FFFFFFE, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
constexpr double kFractions[] = {0,
                                 -1,
                                 0.5,
                                 1e300,
                                 -1e300,
                                 2147483647.5,
                                 std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::denorm_min()};

constexpr const char* kPaths[] = {"a.wav",
                                  "a.scr",
                                  "a.zud",
                                  "a.txt",
                                  "a.nor",
                                  "a.pag",
                                  "a.mrk",
                                  "a.tmp",
                                  "a.par",
                                  "temp\\a.tmp",
                                  "temp\\a.par",
                                  "temp\\a.tst",
                                  "temp\\a.wz",
                                  "zud\\a.zud",
                                  "tmp.sen",
                                  "tmpwav\\tmpmic.wav",
                                  "tmpwav\\tmpmic.tmp",
                                  "article.txt",
                                  "tmpwav\\tmpdest.wav",
                                  "b.wav"};

constexpr const char* kOtherTexts[] = {"",      "temp",    "temp\\",     "none\\a.wav", "C:\\a.wav", "D:\\b.wav",
                                       "*.*",   "A.WAV",   ".\\a.wav",   "unit1",       ".",         "\xA1\xB0\xA1\xB1",
                                       "a\x81", "\x81\\a", "a.wav\\b.x", "C:"};

}  // namespace

std::int64_t AnyNumber(FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
      return input.ConsumeIntegral<std::uint8_t>();
    case 1:
      return input.ConsumeIntegral<std::int64_t>();
    case 2:
      return -input.PickValueInArray(kNumbers);
    default:
      return input.PickValueInArray(kNumbers);
  }
}

double AnyFraction(FuzzedDataProvider& input) {
  return input.ConsumeBool() ? input.PickValueInArray(kFractions) : static_cast<double>(AnyNumber(input));
}

const char* LessonPath(FuzzedDataProvider& input) { return input.PickValueInArray(kPaths); }

std::string AnyText(FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange<int>(0, 15)) {
    case 0:
      return HarmlessPath(input.ConsumeRandomLengthString(64));
    case 1:
      return std::string(input.ConsumeIntegralInRange<std::size_t>(90, 600), 'x') + ".wav";
    case 2:
    case 3:
      return input.PickValueInArray(kOtherTexts);
    default:
      return LessonPath(input);
  }
}

}  // namespace tavimo::fuzz
