// A wave file of any bytes: examined, summarised, taken apart, recorded into and cut, each with numbers of the input's.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <vector>

#include "support/fuzz_ground.h"
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
  fuzz::ExactRoom buffer(static_cast<std::size_t>(numbers.ConsumeIntegralInRange<std::int32_t>(1, 300)));
  vcExtractWaveSeg(kWave, "part.wav", numbers.ConsumeIntegral<std::uint32_t>(),
                   numbers.ConsumeIntegral<std::uint32_t>(), buffer.Data(), 1);
  CheckUnchanged(wave);
  fuzz::WriteFile("tmpwav/tmpmic.wav", wave);
  if (vcSetVisualWaveDataMan(0) >= 0) vcDrawManWave(fuzz::PaneWithoutFont(), numbers.ConsumeIntegral<std::int32_t>());
}

// The learner's voice goes on in a file that was there; what was in it before the place stays.
void Record(const Bytes& wave, FuzzedDataProvider& numbers) {
  const std::int32_t duration = vcAppendTapeFile(kWave);
  CheckUnchanged(wave);
  if (duration < 0) return;
  const VcWindow window = tvCreateWindow(TV_WINDOW, nullptr, nullptr);
  vcSetWaveInAndOutWndProc(0, window);
  vcSetFilePosByTime(numbers.ConsumeIntegral<std::int32_t>());
  vcGetWfOutTimePos();
  if (numbers.ConsumeBool()) vcGotoFileEnd();
  const std::int32_t begin = vcTimeToOffset(0);
  std::int32_t format[3] = {};
  vcGetFileFormat(&format[0], &format[1], &format[2]);
  vcWaveInOpenForTape(format[0], format[1], format[2]);
  vcRecordTape();
  const Bytes sound(1256, 0x55);
  for (int i = numbers.ConsumeIntegralInRange<int>(0, 3); i > 0; --i) {
    tvFeedWaveInput(sound.data(), static_cast<int>(sound.size()));
    tvDispatchMessages(0);
  }
  vcStopRecordTape();
  vcWaveInCloseForTape();
  vcCloseWaveFile(numbers.ConsumeIntegralInRange<std::int32_t>(1, 3));
  tvDestroyWindow(window);
  const Bytes now = fuzz::ReadFile(kWave);
  fuzz::Check(now.size() >= wave.size() && begin >= 0, "a recording never gets shorter");
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
  // The numbers stand behind the file, so that a seed is a wave file as it is.
  constexpr std::size_t kMostNumbers = 48;
  const std::size_t split = size - std::min(size / 4, kMostNumbers);
  FuzzedDataProvider numbers(data + split, size - split);
  const Bytes wave(data, data + split);
  fuzz::WriteFile(kWave, wave);
  Read(wave, numbers);
  Record(wave, numbers);
  Delete(wave, numbers);
  fuzz::CheckNothingIsLeft();
  return 0;
}
