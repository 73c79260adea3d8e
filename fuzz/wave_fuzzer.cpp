// A wave file of any bytes: examined, summarised, taken apart, recorded into and cut, each with numbers of the input's.
#include <algorithm>
#include <vector>

#include "support/fuzz_ground.h"
#include "support/host_values.h"
#include "tavimo.h"
#include "tavimo_host.h"

using namespace tavimo;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kWave = "a.wav";

void CheckUnchanged(const Bytes& wave) { fuzz::Check(fuzz::ReadFile(kWave) == wave, "a source is never changed"); }

void Read(const Bytes& wave, FuzzedDataProvider& numbers) {
  vcIsWaveFile(kWave);
  fuzz::WriteFile("temp/a.tmp", {1, 2, 3});
  const std::int32_t made = vcSimpleMakeDigestFile(kWave, kWave, "temp\\a.tmp", nullptr);
  const std::size_t levels = fuzz::ReadFile("temp/a.tmp").size();
  fuzz::Check(made == 1 ? levels <= wave.size() : levels == 3, "a digest is whole, or the old one");
  const std::int32_t mono = vcSteroToMono(kWave, "mono.wav");
  if (mono == 0) fuzz::Check(vcSteroToMono("mono.wav", "again.wav") == 1, "one channel is one channel");
  const auto room = numbers.ConsumeIntegralInRange<std::int32_t>(1, 300);
  fuzz::ExactRoom buffer(static_cast<std::size_t>(room));
  vcExtractWaveSeg(kWave, "part.wav", numbers.ConsumeIntegral<std::uint32_t>(),
                   numbers.ConsumeIntegral<std::uint32_t>(), buffer.Data(), room);
  CheckUnchanged(wave);
  fuzz::WriteFile("tmpwav/tmpmic.wav", wave);
  if (vcSetVisualWaveDataMan(0) >= 0) vcDrawManWave(fuzz::PaneWithoutFont(), numbers.ConsumeIntegral<std::int32_t>());
}

// Sound of which no two blocks are alike.
Bytes Voice(std::size_t blocks) {
  Bytes sound(1256 * blocks);
  for (std::size_t i = 0; i < sound.size(); ++i) sound[i] = static_cast<std::uint8_t>(i ^ i >> 8);
  return sound;
}

// What was said stands in the tape in one piece where the learner was, and the sound before it stays.
void CheckTape(const Bytes& before, const Bytes& said, std::size_t soundBegin, std::size_t position) {
  const Bytes now = fuzz::ReadFile(kWave);
  fuzz::Check(now.size() >= before.size(), "a recording never gets shorter");
  if (said.empty()) return;
  const auto at = [&](std::size_t offset) { return now.begin() + static_cast<std::ptrdiff_t>(offset); };
  fuzz::Check(now.size() >= position + said.size() && std::equal(said.begin(), said.end(), at(position)),
              "what was said is in the tape");
  const std::size_t keptEnd = std::min(before.size(), position);
  fuzz::Check(
      soundBegin >= keptEnd || std::equal(at(soundBegin), at(keptEnd), before.begin() + (at(soundBegin) - at(0))),
      "and the sound before it is as it was");
}

// The learner's voice goes on in a file that was there.
void Record(const Bytes& wave, FuzzedDataProvider& numbers) {
  const std::int32_t duration = vcAppendTapeFile(kWave);
  CheckUnchanged(wave);
  if (duration < 0) return;
  const VcWindow window = tvCreateWindow(TV_WINDOW, nullptr, nullptr);
  vcSetWaveInAndOutWndProc(0, window);
  const auto time = numbers.ConsumeIntegral<std::int32_t>();
  vcSetFilePosByTime(time);
  vcGetWfOutTimePos();
  const bool isAtEnd = numbers.ConsumeBool();
  if (isAtEnd) vcGotoFileEnd();
  const std::int32_t begin = vcTimeToOffset(0);
  const std::int32_t place = vcTimeToOffset(time);
  std::int32_t format[3] = {};
  vcGetFileFormat(&format[0], &format[1], &format[2]);
  const bool isOpen = vcWaveInOpenForTape(format[0], format[1], format[2]) == 1;
  vcRecordTape();
  const Bytes voice = Voice(isOpen ? numbers.ConsumeIntegralInRange<std::size_t>(0, 3) : 0);
  // All at once fills blocks that no message has brought to the tape yet.
  const std::size_t portion = numbers.ConsumeBool() ? 1256 : std::max<std::size_t>(voice.size(), 1);
  for (std::size_t at = 0; at < voice.size(); at += portion) {
    const int taken = tvFeedWaveInput(voice.data() + at, static_cast<int>(portion));
    fuzz::Check(taken == static_cast<int>(portion), "four blocks take the sound");
    tvDispatchMessages(0);
  }
  vcStopRecordTape();
  vcWaveInCloseForTape();
  vcCloseWaveFile(numbers.ConsumeIntegralInRange<std::int32_t>(1, 3));
  tvDestroyWindow(window);
  fuzz::Check(begin >= 0, "sound begins behind the head");
  // A position before the sound would be in the head, and what lies far out the disk does not take.
  const std::int64_t position = isAtEnd ? static_cast<std::int64_t>(wave.size()) : place;
  const bool isInReach =
      position >= begin && position + static_cast<std::int64_t>(voice.size()) <= std::int64_t{fuzz::kLargestFile};
  CheckTape(wave, isInReach ? voice : Bytes(), static_cast<std::size_t>(begin), static_cast<std::size_t>(position));
}

void Delete(const Bytes& wave, FuzzedDataProvider& numbers) {
  std::vector<std::uint32_t> starts(numbers.ConsumeIntegralInRange<std::size_t>(1, 6));
  std::vector<std::uint32_t> flags(starts.size());
  std::uint32_t start = 0;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    starts[i] = start +=
        numbers.ConsumeBool() ? numbers.ConsumeIntegral<std::uint8_t>() : numbers.ConsumeIntegral<std::uint32_t>();
    flags[i] = numbers.ConsumeIntegralInRange<std::uint32_t>(0, 1);
  }
  fuzz::WriteFile(kWave, wave);
  const std::vector<std::uint32_t> before = starts;
  const std::int32_t result = vcDeleteSentenceInFile(kWave, "zud\\a.zud", static_cast<std::int32_t>(starts.size()),
                                                     flags.data(), starts.data(), nullptr);
  if (result == 0) {
    const auto left = static_cast<std::size_t>(
        std::count_if(starts.begin(), starts.end(), [](std::uint32_t s) { return s != 0xFFFFFFFF; }));
    fuzz::Check(fuzz::ReadFile("zud/a.zud").size() == 320 + 4 * left, "the study file has the sentences that are left");
  } else {
    CheckUnchanged(wave);
    fuzz::Check(starts == before && fuzz::ReadFile("zud/a.zud").empty(), "a refusal changes nothing");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  auto [wave, numbers] = fuzz::FileWithNumbers(data, size, 4, 48);
  fuzz::WriteFile(kWave, wave);
  Read(wave, numbers);
  Record(wave, numbers);
  Delete(wave, numbers);
  fuzz::CheckNothingIsLeft();
  return 0;
}
