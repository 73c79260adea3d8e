// Stereo to mono, and cutting sentences out of a recording.

#include "platform/file_faults.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using platform::FaultPlan;
using Values = std::vector<std::uint32_t>;

class Editing : public EngineTest {
 protected:
  static std::int32_t Delete(Values& starts, const Values& flags, VcWindow bar = nullptr) {
    return vcDeleteSentenceInFile("a.wav", "zud\\a.zud", static_cast<std::int32_t>(starts.size()), flags.data(),
                                  starts.data(), bar);
  }
};

TEST_F(Editing, KeepsTheFirstChannelOfEveryFrame) {
  const struct {
    WaveSpec spec;
    Bytes stereo, mono;
  } cases[] = {
      {{1, 2, 11025, 8}, {1, 2, 3, 4, 5, 6}, {1, 3, 5}},
      {{1, 2, 11025, 8}, {1, 2, 3}, {1}},
      {{1, 2, 11025, 16}, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 5, 6}},
      {{1, 2, 11025, 16}, {1, 2, 3, 4, 5, 6}, {1, 2, 5}},  // the low byte of one more sample
      {{1, 2, 11025, 16}, {}, {}},
  };
  for (const auto& c : cases) {
    // A chunk behind the sound is no sound.
    WriteBytes("a.wav",
               RiffWave({Chunk("fmt ", FormatRecord(c.spec)), Chunk("data", c.stereo), Chunk("LIST", Bytes(40, 9))}));
    ASSERT_EQ(vcSteroToMono("a.wav", "b.wav"), 0);
    const Bytes format = Joined(FormatRecord({c.spec.tag, 1, c.spec.rate, c.spec.bits}), {0, 0});
    EXPECT_EQ(ReadBytes("b.wav"), RiffWave({Chunk("fmt ", format), Chunk("data", c.mono)}));
  }
}

TEST_F(Editing, ConvertsLongSoundAcrossPieces) {
  const Bytes stereo = Numbered(1'000'004);
  Bytes mono;
  for (std::size_t i = 0; i + 1 < stereo.size(); i += 4) mono.insert(mono.end(), {stereo[i], stereo[i + 1]});
  WriteBytes("a.wav", WaveFile({1, 2, 44100, 16}, stereo));
  ASSERT_EQ(vcSteroToMono("a.wav", "b.wav"), 0);
  EXPECT_EQ(Part(ReadBytes("b.wav"), 46, 46 + mono.size()), mono);
}

TEST_F(Editing, RefusesWhatItCannotConvert) {
  const Bytes old = {'o', 'l', 'd'};
  const struct {
    const char* what;
    Bytes bytes;
    std::int32_t result;
  } cases[] = {
      {"one channel", WaveFile({1, 1, 11025, 16}, Bytes(8)), 1},
      {"three channels", WaveFile({1, 3, 11025, 16}, Bytes(12)), -1},
      {"24 bits", WaveFile({1, 2, 11025, 24}, Bytes(12)), -1},
      {"a rate of 0", WaveFile({1, 2, 0, 16}, Bytes(12)), -1},
      {"no data", RiffWave({Chunk("fmt ", FormatRecord({1, 2, 11025, 16}))}), -1},
      {"no wave file", old, -1},
  };
  for (const auto& c : cases) {
    WriteBytes("a.wav", c.bytes);
    WriteBytes("b.wav", old);
    EXPECT_EQ(vcSteroToMono("a.wav", "b.wav"), c.result) << c.what;
    EXPECT_EQ(ReadBytes("b.wav"), old) << c.what;
  }
  const Bytes stereo = WaveFile({1, 2, 11025, 16}, Bytes(12));
  WriteBytes("a.wav", stereo);
  const std::pair<const char*, const char*> paths[] = {
      {"a.wav", ".\\A.wav"}, {"none.wav", "c.wav"}, {"a.wav", "none\\c.wav"}, {nullptr, nullptr}};
  for (const auto& [from, to] : paths) EXPECT_EQ(vcSteroToMono(from, to), -1);
  EXPECT_EQ(ReadBytes("a.wav"), stereo);
}

TEST_F(Editing, DeletesSentencesAndShiftsTheOthers) {
  const WaveSpec spec{1, 1, 11025, 8};
  const Bytes sound = Numbered(40000);
  WriteBytes("a.wav", WaveFile(spec, sound));
  vcOpenSentenceFile("none.wav");
  for (std::size_t slot : {0u, 3u}) core::WriteU32(sentences::State().bookMarkTable.records[slot].bytes.data(), 77);
  sentences::State().bookMarkTable.records[0].bytes[4] = 'x';
  Values starts = {0, 1000, 2500};
  ASSERT_EQ(Delete(starts, {0, 1, 0}), 0);
  EXPECT_EQ(starts, (Values{0, 0xFFFFFFFF, 1000}));
  EXPECT_EQ(ReadBytes("a.wav"), WaveFile(spec, Joined(Part(sound, 0, 11024), Part(sound, 11024 + 16536, 40000))));
  EXPECT_EQ(ReadBytes("zud/a.zud"), Joined(With(Bytes(320), 48, {77}), {0, 0, 0, 0, 0xE8, 3, 0, 0}));
  EXPECT_TRUE(NamesIn("tmpwav").empty());
}

TEST_F(Editing, KeepsWhatLiesBeforeTheFirstSentence) {
  const WaveSpec spec{1, 1, 1000, 8};  // a byte a millisecond
  const Bytes sound = Numbered(5000);
  constexpr std::uint32_t kGone = 0xFFFFFFFF;
  const struct {
    Values starts, flags;
    Bytes left;
    Values startsAfter;
  } cases[] = {
      {{400, 1000, 3000}, {1, 0, 0}, Joined(Part(sound, 0, 400), Part(sound, 1000, 5000)), {kGone, 400, 2400}},
      {{400, 1000, 3000}, {0, 0, 1}, Part(sound, 0, 3000), {400, 1000, kGone}},
      {{400, 1000, 3000}, {1, 1, 1}, Part(sound, 0, 400), {kGone, kGone, kGone}},
      {{400, 1000, 3000}, {0, 0, 0}, sound, {400, 1000, 3000}},
      {{0, 0, 2000}, {1, 0, 0}, sound, {kGone, 0, 2000}},   // an empty sentence
      {{0, 8000, 9000}, {1, 0, 1}, {}, {kGone, 0, kGone}},  // past the end
      {{0, 8000, 9000}, {0, 1, 0}, sound, {0, kGone, 8000}},
      {{700}, {0}, sound, {700}},
      {{700}, {1}, Part(sound, 0, 700), {kGone}},
  };
  for (const auto& c : cases) {
    WriteBytes("a.wav", WaveFile(spec, sound));
    Values starts = c.starts;
    ASSERT_EQ(Delete(starts, c.flags), 0);
    EXPECT_EQ(ReadBytes("a.wav"), WaveFile(spec, c.left));
    EXPECT_EQ(starts, c.startsAfter);
  }
}

std::vector<std::uintptr_t> positions;
std::intptr_t range = 0;

std::intptr_t VC_CALL ProgressProc(VcWindow, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) {
  if (message == TV_PBM_SETRANGE) range = lparam;
  if (message == TV_PBM_SETPOS) positions.push_back(wparam);
  return 0;
}

TEST_F(Editing, ShowsItsProgress) {
  const Window bar(TV_PROGRESS_BAR, nullptr, ProgressProc);
  positions.clear();
  WriteBytes("a.wav", WaveFile({1, 1, 1000, 8}, Bytes(5000)));
  Values starts = {0, 100, 200, 300, 400};
  ASSERT_EQ(Delete(starts, {0, 1, 0, 1, 0}, bar), 0);
  EXPECT_EQ(range, 0x640000);
  EXPECT_EQ(positions, (std::vector<std::uintptr_t>{0, 0, 25, 50, 75}));
  positions.clear();
  WriteBytes("a.wav", WaveFile({1, 1, 1024, 8}, Bytes(64 * 1024)));
  starts = {0, 25000, 25000 + 1000};
  ASSERT_EQ(Delete(starts, {0, 1, 0}, bar), 0);  // 25 blocks: reports after blocks 0, 10 and 20, then the sentences
  EXPECT_EQ(positions, (std::vector<std::uintptr_t>{0, 0, 20, 40, 0, 50}));
}

TEST_F(Editing, RefusesTablesThatMakeNoSense) {
  const Bytes before = WaveFile({1, 1, 1000, 8}, Numbered(5000));
  WriteBytes("a.wav", before);
  Values starts = {0, 2000, 1000};
  EXPECT_EQ(Delete(starts, {0, 1, 0}), -1) << "decreasing";
  EXPECT_EQ(starts, (Values{0, 2000, 1000}));
  const Values flags = {1};
  for (const std::int32_t count : {0, -1}) {
    EXPECT_EQ(vcDeleteSentenceInFile("a.wav", "zud\\a.zud", count, flags.data(), starts.data(), nullptr), -1);
  }
  EXPECT_EQ(vcDeleteSentenceInFile("a.wav", "zud\\a.zud", 1, nullptr, starts.data(), nullptr), -1);
  EXPECT_EQ(vcDeleteSentenceInFile("a.wav", "zud\\a.zud", 1, flags.data(), nullptr, nullptr), -1);
  EXPECT_EQ(vcDeleteSentenceInFile("none.wav", "zud\\a.zud", 1, flags.data(), starts.data(), nullptr), -1);
  EXPECT_EQ(vcDeleteSentenceInFile(nullptr, nullptr, 1, flags.data(), starts.data(), nullptr), -1);
  fs::remove("tmpwav");
  EXPECT_EQ(vcDeleteSentenceInFile("a.wav", "zud\\a.zud", 1, flags.data(), starts.data(), nullptr), -1);
  EXPECT_EQ(ReadBytes("a.wav"), before);
  EXPECT_FALSE(Exists("zud/a.zud"));
}

TEST_F(Editing, RefusesWhatWouldLoseTheRecording) {
  const Bytes file = WaveFile({}, Numbered(40000));
  Values starts = {0, 100, 200};
  for (const std::uint8_t highByte : Bytes{0x80, 0xFF}) {  // 2 GiB and more, as streams and long recordings have it
    WriteBytes("a.wav", With(file, 43, {highByte}));
    EXPECT_EQ(Delete(starts, {0, 1, 0}), -1);
    EXPECT_EQ(ReadBytes("a.wav"), With(file, 43, {highByte}));
  }
  WriteBytes("a.wav", file);
  const Values flags = {0, 1, 0};
  EXPECT_EQ(vcDeleteSentenceInFile("a.wav", ".\\A.wav", 3, flags.data(), starts.data(), nullptr), -1);
  EXPECT_EQ(ReadBytes("a.wav"), file);
}

TEST_F(Editing, LeavesTheRecordingOldOrNewWhateverFails) {
  const WaveSpec spec{1, 1, 1000, 8};
  const Bytes sound = Numbered(5000);
  const Bytes before = WaveFile(spec, sound);
  const Bytes after = WaveFile(spec, Joined(Part(sound, 0, 1000), Part(sound, 3000, 5000)));
  for (const auto fault : {platform::FileFault::Fails, platform::FileFault::EndsEarly}) {
    bool reached = true;
    for (std::int64_t n = 1; reached; ++n) {
      WriteBytes("a.wav", before);
      WriteText("zud/a.zud", "old");
      Values starts = {0, 1000, 3000};
      std::int32_t result = 0;
      {
        const FaultPlan plan = FaultPlan::FailAt(n, fault);
        result = Delete(starts, {0, 1, 0});
        reached = plan.OperationsMade() >= n;
      }
      const Bytes now = ReadBytes("a.wav");
      if (result == 0) {
        EXPECT_EQ(now, after) << "operation " << n;
        continue;
      }
      EXPECT_EQ(now, before) << "operation " << n;
      EXPECT_EQ(starts, (Values{0, 1000, 3000}));
      EXPECT_EQ(ReadBytes("zud/a.zud").size(), 3u);
    }
  }
}

}  // namespace
}  // namespace tavimo::tests
