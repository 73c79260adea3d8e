// Every file operation of an export fails in turn: afterwards each file of the learner's is the old one or the new one,
// and no other file is left.
#include <functional>

#include "platform/file_faults.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using platform::FaultExtent;
using platform::FaultPlan;
using platform::FileFault;

class LostNothing : public EngineTest {
 protected:
  // Runs the work once for every operation it makes, each time from prepared ground with that operation failing, and
  // hands over to check.
  static void ForEveryFault(const std::function<void()>& prepare, const std::function<void()>& work,
                            const std::function<void(std::int64_t)>& check) {
    prepare();
    std::int64_t operations = 0;
    {
      const FaultPlan watch = FaultPlan::Watch();
      work();
      operations = watch.OperationsMade();
    }
    ASSERT_GT(operations, 2);
    for (const FaultExtent extent : {FaultExtent::OneOperation, FaultExtent::AllFromThere}) {
      for (const FileFault fault : {FileFault::Fails, FileFault::EndsEarly}) {
        for (std::int64_t n = 1; n <= operations; ++n) {
          prepare();
          {
            const FaultPlan plan = FaultPlan::FailAt(n, fault, extent);
            work();
          }
          check(n);
        }
      }
    }
  }
};

TEST_F(LostNothing, WhenAStudyFileIsStored) {
  const Bytes before(328, 1);
  Bytes after(320);
  after.insert(after.end(), {0, 0, 0, 0, 0x90, 1, 0, 0});
  const std::uint32_t starts[] = {0, 400};
  ForEveryFault([&] { WriteBytes("zud/unit1.zud", before); }, [&] { vcWriteExtraFileData("D:\\unit1.wav", starts, 2); },
                [&](std::int64_t n) {
                  const Bytes now = ReadBytes("zud/unit1.zud");
                  EXPECT_TRUE(now == before || now == after) << "operation " << n << ", " << now.size() << " bytes";
                });
  vcWriteExtraFileData("D:\\unit1.wav", starts, 2);
  EXPECT_EQ(NamesIn("zud"), (std::vector<std::string>{"unit1.zud"})) << "the next writer clears what a kill left";
}

TEST_F(LostNothing, WhenADigestIsMade) {
  const Bytes wave = WaveFile({}, Bytes(600'000, 0x30));
  Bytes after(681, 48);  // 680 whole blocks and a rest
  std::int32_t result = 0;
  ForEveryFault(
      [&] {
        WriteBytes("a.wav", wave);
        WriteText("temp/a.tmp", "before");
      },
      [&] { result = vcSimpleMakeDigestFile("a.wav", "a.wav", "temp\\a.tmp", nullptr); },
      [&](std::int64_t n) {
        const Bytes now = ReadBytes("temp/a.tmp");
        // A file that ends early is a shorter recording: its digest is whole all the same.
        EXPECT_TRUE(result == 1 ? now.size() <= after.size() : now.size() == 6) << "operation " << n;
        EXPECT_EQ(ReadBytes("a.wav"), wave);
      });
  EXPECT_EQ(vcSimpleMakeDigestFile("a.wav", "a.wav", "temp\\a.tmp", nullptr), 1);
  EXPECT_EQ(ReadBytes("temp/a.tmp"), after);
  EXPECT_EQ(NamesIn("temp"), (std::vector<std::string>{"a.tmp"}));
}

TEST_F(LostNothing, WhenADigestIsShortened) {
  const Bytes before(100, 7);
  ForEveryFault([&] { WriteBytes("temp/a.tmp", before); }, [&] { vcAdjustDigestFile("temp\\a.tmp", 2000); },
                [&](std::int64_t n) {
                  const std::size_t size = ReadBytes("temp/a.tmp").size();
                  EXPECT_TRUE(size == 100 || size == 50) << "operation " << n << ", " << size << " bytes";
                });
}

TEST_F(LostNothing, WhenARecordingIsCutIntoSentences) {
  std::int32_t count = 0;
  ForEveryFault(
      [&] {
        WriteBytes("temp/a.tmp", {90, 0, 0, 0, 90, 0, 0, 0, 90});
        WriteText("tmp.sen", "before");
      },
      [&] {
        vcOpenDigestFile("temp\\a.tmp");
        vcSetSilentParam(10, 80);
        count = vcMakeSentence();
        vcCloseDigestFile();
      },
      [&](std::int64_t n) {
        const Bytes now = ReadBytes("tmp.sen");
        const bool isWhole = now.size() == static_cast<std::size_t>(count) * 4;
        const bool isOldOrGone = now.empty() || now.size() == 6;
        EXPECT_TRUE(count > 1 ? isWhole : isOldOrGone) << "operation " << n << ", result " << count;
      });
}

}  // namespace
}  // namespace tavimo::tests
