// RIFF files to the byte: what is written, what is found, and what broken files lead to.
#include "platform/riff.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/file_faults.h"
#include "support/wave_bytes.h"

namespace tavimo::platform {
namespace {

using tests::AppendLittleEndian;
using tests::AppendText;
using tests::Bytes;

constexpr std::uint32_t kFmt = FourCc("fmt ");
constexpr std::uint32_t kData = FourCc("data");

std::uint32_t FieldAt(const Bytes& bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | bytes.at(offset + i);
  return value;
}

// A tape on its way: "RIFF", a format chunk that was left, a data chunk that is open.
struct OpenTape {
  explicit OpenTape(int formatBytes = 18) {
    EXPECT_TRUE(file.CreateRiff(riff));
    sub.id = kFmt;
    sub.size = 18;
    EXPECT_TRUE(file.CreateChunk(sub));
    EXPECT_EQ(file.Write(Bytes(40, 1).data(), formatBytes), formatBytes);
    EXPECT_TRUE(file.Ascend(sub));
    sub.id = kData;
    EXPECT_TRUE(file.CreateChunk(sub));
  }
  void Finish() {
    EXPECT_TRUE(file.Ascend(sub));
    EXPECT_TRUE(file.Ascend(riff));
    EXPECT_TRUE(file.Close());
  }

  RiffFile file = RiffFile::Open("tape.wav", OpenMode::Create);
  ChunkInfo riff{0, 0, FourCc("WAVE"), 0, 0};
  ChunkInfo sub;
};

TEST(Riff, WritesSizesAndPadsWhenAChunkIsLeft) {
  tests::ScratchFolder folder;
  {
    OpenTape tape(2);
    EXPECT_EQ(tape.file.Write("\x7F", 1), 1);
    tape.Finish();
    EXPECT_EQ(tape.sub.size, 1u);
    EXPECT_EQ(tape.sub.flags, 0u);
    EXPECT_EQ(tape.riff.size, 24u);
  }
  const Bytes expected = {'R', 'I', 'F', 'F', 24, 0, 0,   0,   'W', 'A', 'V', 'E', 'f', 'm', 't',  ' ',
                          2,   0,   0,   0,   1,  1, 'd', 'a', 't', 'a', 1,   0,   0,   0,   0x7F, 0};
  EXPECT_EQ(tests::ReadBytes("tape.wav"), expected);
  const struct {
    int dataBytes;
    std::size_t fileBytes;
    std::uint32_t riffSize;
  } cases[] = {{0, 46, 38}, {1, 48, 40}, {1256, 1302, 1294}};
  for (const auto& test : cases) {
    OpenTape tape;
    const Bytes sound(static_cast<std::size_t>(test.dataBytes), 7);
    EXPECT_EQ(tape.file.Write(sound.data(), test.dataBytes), test.dataBytes);
    tape.Finish();
    const Bytes bytes = tests::ReadBytes("tape.wav");
    ASSERT_EQ(bytes.size(), test.fileBytes);
    EXPECT_EQ(FieldAt(bytes, 4), test.riffSize);
    EXPECT_EQ(FieldAt(bytes, 16), 18u);
    EXPECT_EQ(FieldAt(bytes, 42), static_cast<std::uint32_t>(test.dataBytes));
  }
}

Bytes RiffWithSize(std::uint32_t size, const std::vector<Bytes>& chunks) {
  Bytes little;
  AppendLittleEndian(little, size, 4);
  return tests::With(tests::RiffWave(chunks), 4, little);
}

Bytes Header(std::string_view id, std::uint32_t size) {
  Bytes header;
  AppendText(header, id);
  AppendLittleEndian(header, size, 4);
  return header;
}

TEST(Riff, DescendsIntoWhateverBeginsAtThePosition) {
  tests::ScratchFolder folder;
  const Bytes riff = Header("RIFF", 0xFFFFFFFF);
  const Bytes wave = {'W', 'A', 'V', 'E'};
  const struct {
    Bytes bytes;
    std::optional<std::int64_t> position;
    std::uint32_t formType;
  } cases[] = {{{}, std::nullopt, 0},
               {Bytes(riff.begin(), riff.begin() + 7), std::nullopt, 0},
               {riff, 12, 0},
               {tests::RiffWave({}), 12, FourCc("WAVE")},
               {Header("LIST", 4), 12, 0},
               {Header("RIFX", 4), 8, 0},
               {Header("riff", 4), 8, 0}};
  for (const auto& test : cases) {
    tests::WriteBytes("a", test.bytes);
    RiffFile file = RiffFile::Open("a", OpenMode::Read);
    ChunkInfo chunk;
    EXPECT_EQ(file.Descend(chunk), test.position.has_value());
    EXPECT_EQ(file.Position(), test.position.value_or(0));
    EXPECT_EQ(chunk.formType, test.formType);
    EXPECT_EQ(chunk.dataOffset, test.position ? 8u : 0u);
  }
}

// Where "data" is found in a file, its size; nothing when it is not found.
std::optional<std::pair<std::int64_t, std::uint32_t>> FindData(const Bytes& bytes) {
  tests::WriteBytes("a.wav", bytes);
  RiffFile file = RiffFile::Open("a.wav", OpenMode::Read);
  ChunkInfo riff;
  ChunkInfo data;
  data.id = kData;
  if (!file.Descend(riff) || !file.Find(data, riff)) return std::nullopt;
  EXPECT_EQ(data.dataOffset, file.Position());
  EXPECT_EQ(data.flags, 0u);
  return std::pair(file.Position(), data.size);
}

TEST(Riff, FindsAChunkWhereTheSizesLeadToIt) {
  tests::ScratchFolder folder;
  const Bytes odd = tests::Chunk("odd ", {1, 2, 3});
  const Bytes data = tests::Chunk("data", {9, 9});
  const auto at = [](std::int64_t offset, std::uint32_t size) { return std::optional(std::pair(offset, size)); };
  const struct {
    const char* name;
    Bytes bytes;
    std::optional<std::pair<std::int64_t, std::uint32_t>> found;
  } cases[] = {{"behind an odd chunk and its pad byte", tests::RiffWave({odd, data}), at(32, 2)},
               {"behind an odd chunk without its pad byte", tests::RiffWave({Bytes(odd.begin(), odd.end() - 1), data}),
                std::nullopt},
               {"header cut short", tests::RiffWave({odd, Bytes(data.begin(), data.begin() + 6)}), std::nullopt},
               {"header and nothing else", tests::RiffWave({Header("data", 0xFFFFFFFF)}), at(20, 0xFFFFFFFF)},
               {"skipped size past the end", tests::RiffWave({Header("huge", 0x7FFFFFFF), data}), std::nullopt},
               {"skipped size that wraps to nothing", tests::RiffWave({Header("wrap", 0xFFFFFFFF), data}), at(28, 2)},
               {"skipped size that leads back",
                tests::RiffWave({Header("zero", 40), Bytes(40), Header("back", 0xFFFFFFE0), data}), std::nullopt},
               {"parent that ends inside the header", RiffWithSize(4 + 12 + 1, {odd, data}), at(32, 2)},
               {"parent that ends before the header", RiffWithSize(4 + 12, {odd, data}), std::nullopt},
               {"parent of an unfinished tape", RiffWithSize(0, {data}), std::nullopt},
               {"parent size beyond the file", RiffWithSize(0x80000000, {odd, data}), at(32, 2)},
               {"parent size whose end wraps", RiffWithSize(0xFFFFFFF8, {data}), std::nullopt}};
  for (const auto& test : cases) EXPECT_EQ(FindData(test.bytes), test.found) << test.name;
}

TEST(Riff, SearchesFromThePositionOn) {
  tests::ScratchFolder folder;
  tests::WriteBytes("a.wav", tests::RiffWave({tests::Chunk("data", {1, 2}), tests::Chunk("fmt ", {3}),
                                              tests::Chunk("data", {4, 5})}));
  RiffFile file = RiffFile::Open("a.wav", OpenMode::Read);
  ChunkInfo riff;
  ASSERT_TRUE(file.Descend(riff));
  ChunkInfo chunk;
  chunk.id = kFmt;
  file.Seek(0, SeekFrom::Start);
  EXPECT_FALSE(file.Find(chunk, riff)) << "the position lies before the parent";
  file.Seek(12, SeekFrom::Start);
  ASSERT_TRUE(file.Find(chunk, riff));
  char bytes[20];
  EXPECT_EQ(file.Read(bytes, sizeof bytes), 12) << "not held to the chunk";
  EXPECT_TRUE(file.Ascend(chunk));
  EXPECT_EQ(file.Position(), 32);
  chunk.id = kData;
  ASSERT_TRUE(file.Find(chunk, riff)) << "the one behind, not the one in front";
  EXPECT_EQ(file.Position(), 40);
  EXPECT_TRUE(file.Ascend(chunk));
  EXPECT_EQ(file.Position(), 42);
  EXPECT_FALSE(file.Find(chunk, riff));
  chunk.size = 0x80000000;
  file.Seek(5, SeekFrom::Start);
  EXPECT_TRUE(file.Ascend(chunk));
  EXPECT_EQ(file.Position(), 5) << "an end that is no file position is not gone to";
  EXPECT_EQ(tests::ReadBytes("a.wav").size(), 42u);
}

TEST(Riff, AMillionTinyChunksCostFewReads) {
  tests::ScratchFolder folder;
  Bytes bytes = Header("RIFF", 8'000'012);
  AppendText(bytes, "WAVE");
  for (int i = 0; i < 1'000'000; ++i) bytes.insert(bytes.end(), {'t', 'i', 'n', 'y', 0, 0, 0, 0});
  AppendText(bytes, "data");
  AppendLittleEndian(bytes, 0, 4);
  const FaultPlan plan = FaultPlan::Watch();
  EXPECT_TRUE(FindData(bytes).has_value());
  EXPECT_LT(plan.OperationsMade(), 2100);
}

TEST(Riff, AReadOnlyFileIsNotWrittenTo) {
  tests::ScratchFolder folder;
  const Bytes before = tests::RiffWave({tests::Chunk("data", {1, 2})});
  tests::WriteBytes("a.wav", before);
  {
    RiffFile file = RiffFile::Open("a.wav", OpenMode::Read);
    ChunkInfo chunk;
    EXPECT_FALSE(file.CreateRiff(chunk));
    EXPECT_EQ(file.Write("x", 1), -1);
    EXPECT_FALSE(file.Ascend(chunk)) << "the chunk was created, and its size cannot be written";
  }
  EXPECT_EQ(tests::ReadBytes("a.wav"), before);
}

TEST(Riff, MovesAndReadsWithinTheFile) {
  tests::ScratchFolder folder;
  tests::WriteText("a", "0123456789");
  RiffFile file = RiffFile::Open("a", OpenMode::Read);
  char bytes[8];
  EXPECT_EQ(file.Seek(4, SeekFrom::End), 6) << "from the end an offset counts backwards";
  EXPECT_EQ(file.Read(bytes, 8), 4);
  EXPECT_EQ(file.Read(bytes, 8), 0);
  EXPECT_EQ(file.Read(bytes, -1), -1);
  EXPECT_EQ(file.Seek(-3, SeekFrom::Current), 7);
  EXPECT_EQ(file.Seek(-1, SeekFrom::Start), -1);
  EXPECT_EQ(file.Seek(11, SeekFrom::End), -1);
  EXPECT_EQ(file.Position(), 7);
}

TEST(Riff, WhatLiesBeyond32BitsIsRefused) {
  tests::ScratchFolder folder;
  OpenTape tape;
  tape.file.Seek(std::int64_t{1} << 33, SeekFrom::Start);
  ChunkInfo chunk;
  EXPECT_FALSE(tape.file.CreateChunk(chunk));
  EXPECT_FALSE(tape.file.Descend(chunk));
  EXPECT_FALSE(tape.file.Ascend(tape.riff));
  tape.file.Seek(45, SeekFrom::Start);
  EXPECT_FALSE(tape.file.Ascend(tape.sub)) << "before the chunk";
  EXPECT_EQ(tests::ReadBytes("tape.wav").size(), 46u);
}

TEST(Riff, EveryFailedWriteIsNoticed) {
  tests::ScratchFolder folder;
  const auto writeTape = [] {
    RiffFile file = RiffFile::Open("tape.wav", OpenMode::Create);
    ChunkInfo riff;
    ChunkInfo data;
    bool isWhole = file.CreateRiff(riff) && file.CreateChunk(data) && file.Write("abc", 3) == 3;
    isWhole = file.Ascend(data) && isWhole;
    isWhole = file.Ascend(riff) && isWhole;
    return file.Close() && isWhole;
  };
  std::int64_t operations = 0;
  {
    const FaultPlan plan = FaultPlan::Watch();
    EXPECT_TRUE(writeTape());
    operations = plan.OperationsMade();
  }
  EXPECT_GE(operations, 8);
  for (std::int64_t n = 1; n <= operations; ++n) {
    const FaultPlan plan = FaultPlan::FailAt(n);
    EXPECT_FALSE(writeTape()) << n;
  }
}

}  // namespace
}  // namespace tavimo::platform
