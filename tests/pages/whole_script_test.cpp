// What is done to every byte of a script, many bytes at a time, against the rule for one byte.
#include <gtest/gtest.h>

#include <random>

#include "pages/byte_kinds.h"
#include "pages/script_scrambling.h"
#include "pages/word_count.h"
#include "support/scratch_folder.h"

namespace tavimo::pages {
namespace {

using tests::Bytes;

std::uint32_t WordsByteByByte(const Bytes& text) {
  std::uint32_t words = 0;
  bool wasInWord = false;
  for (const std::uint8_t byte : text) {
    if (IsWordByte(byte) && !wasInWord) ++words;
    wasInWord = IsWordByte(byte);
  }
  return words;
}

TEST(WholeScript, IsCountedAndUnscrambledAsByteByByte) {
  std::mt19937 random(3);
  for (int round = 0; round < 500; ++round) {
    Bytes text(random() % 300);
    for (std::uint8_t& byte : text) byte = static_cast<std::uint8_t>(random() % 2 == 0 ? random() : 'a' + random() % 3);
    EXPECT_EQ(CountWords(text), WordsByteByByte(text));

    const std::uint64_t offset = (std::uint64_t{random()} << 8) + random() % 200;
    Bytes expected = text;
    for (std::size_t i = 0; i < text.size(); ++i)
      expected[i] ^= kScrambleKey[static_cast<std::size_t>((offset + i) % kScrambleKeyBytes)];
    Unscramble(text, offset, Scrambling::Scrambled);
    ASSERT_EQ(text, expected) << "at " << offset;
  }
}

}  // namespace
}  // namespace tavimo::pages
