// A digest of any bytes: drawn in every way, shortened, and cut into sentences.
#include <vector>

#include "support/fuzz_ground.h"
#include "support/host_values.h"
#include "tavimo.h"

using namespace tavimo;

namespace {

void Draw(FuzzedDataProvider& numbers) {
  const auto number = [&] { return numbers.ConsumeIntegral<std::int32_t>(); };
  const auto small = [&] { return numbers.ConsumeIntegralInRange<std::int32_t>(-2, 400); };
  const VcDc pane = fuzz::PaneWithoutFont();
  const std::int32_t height = small();
  const std::int32_t width = small();
  const std::int32_t start = number();
  const std::int32_t levels = small();
  vcDrawHalfDigestWave(pane, height, width, start, levels);
  vcDrawSrcDigestWave(pane, height, width, start, levels, 0);
  vcDrawManVoiceDigestWave(pane, height, width, start, levels, 1);
  vcDrawHalfDigestWave(pane, number(), number(), number(), number());
  vcDrawSrcDigestWave(pane, number(), number(), number(), number(), number());
  vcDrawManVoiceDigestWave(pane, number(), number(), number(), number(), number());
}

void Cut(std::size_t levels, FuzzedDataProvider& numbers) {
  vcSetSilentParam(numbers.ConsumeIntegral<std::int16_t>(), numbers.ConsumeIntegralInRange<std::int32_t>(-40, 3000));
  const std::int32_t count = vcMakeSentence();
  const auto written = fuzz::ReadFile("tmp.sen").size();
  fuzz::Check(count >= 2 ? written == 4 * static_cast<std::size_t>(count) : written == 0, "a table, or none");
  fuzz::Check(static_cast<std::size_t>(count) <= levels, "a sentence has a level at least");
  std::vector<std::uint32_t> starts(static_cast<std::size_t>(count));
  if (vcReadTmpIdx(starts.data(), count) != 0) return;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const bool isRising = i == 0 || starts[i] >= starts[i - 1];
    fuzz::Check(isRising && starts[i] % 40 == 0 && starts[i] < 40 * levels, "starts rise in steps of a level");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  auto [levels, numbers] = fuzz::FileWithNumbers(data, size, 2, 100);
  fuzz::WriteFile("temp/a.tmp", levels);
  fuzz::WriteFile("tmpwav/tmpmic.tmp", levels);
  fuzz::Check(vcOpenDigestFile("temp\\a.tmp") == static_cast<std::int32_t>(levels.size()),
              "a digest has a level for each byte");
  Cut(levels.size(), numbers);
  Draw(numbers);
  vcCloseDigestFile();
  vcAdjustDigestFile("temp\\a.tmp", numbers.ConsumeIntegralInRange<std::int32_t>(-100, 200'000));
  vcAdjustDigestFile("tmpwav\\tmpmic.tmp", numbers.ConsumeIntegral<std::int32_t>());
  fuzz::Check(fuzz::ReadFile("temp/a.tmp").size() <= levels.size(), "a digest only gets shorter");
  fuzz::CheckNothingIsLeft();
  return 0;
}
