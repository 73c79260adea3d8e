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

constexpr std::uint32_t kData = FourCc("data");

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

// Where "data" is found in a file, its size; nothing when it is not found.
std::optional<std::pair<std::int64_t, std::uint32_t>> FindData(const Bytes& bytes) {
  tests::WriteBytes("a.wav", bytes);
  RiffFile file = RiffFile::Open("a.wav", OpenMode::Read);
  ChunkInfo riff;
  ChunkInfo data{kData, 0, 0, 0, 0};
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

TEST(Riff, MovesAndReadsWithinTheFile) {
  tests::ScratchFolder folder;
  tests::WriteText("a", "0123456789");
  RiffFile file = RiffFile::Open("a", OpenMode::Read);
  char bytes[8];
  EXPECT_EQ(file.Seek(3, SeekFrom::End), 7) << "from the end an offset counts backwards";
  EXPECT_EQ(file.Read(bytes, -1), -1);
  EXPECT_EQ(file.Seek(-1, SeekFrom::Start), -1);
  EXPECT_EQ(file.Seek(11, SeekFrom::End), -1);
  EXPECT_EQ(file.Position(), 7);
}

TEST(Riff, WhatLiesBeyond32BitsIsRefused) {
  tests::ScratchFolder folder;
  RiffFile file = RiffFile::Open("a.wav", OpenMode::Create);
  ChunkInfo riff{0, 0, FourCc("WAVE"), 0, 0};
  ChunkInfo data;
  ASSERT_TRUE(file.CreateRiff(riff) && file.CreateChunk(data));
  file.Seek(std::int64_t{1} << 33, SeekFrom::Start);
  ChunkInfo chunk;
  EXPECT_FALSE(file.CreateChunk(chunk));
  EXPECT_FALSE(file.Descend(chunk));
  EXPECT_FALSE(file.Ascend(riff));
  file.Seek(19, SeekFrom::Start);
  EXPECT_FALSE(file.Ascend(data)) << "before the chunk";
  EXPECT_EQ(tests::ReadBytes("a.wav").size(), 20u);
}

TEST(Riff, EveryFailedWriteIsNoticed) {
  tests::ScratchFolder folder;
  const auto writeTape = [] {
    RiffFile file = RiffFile::Open("tape.wav", OpenMode::Create);
    ChunkInfo riff;
    ChunkInfo data;
    bool isWhole = file.CreateRiff(riff) && file.CreateChunk(data) && file.Write("abc", 3) == 3;
    for (ChunkInfo* chunk : {&data, &riff}) isWhole = file.Ascend(*chunk) && isWhole;
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
