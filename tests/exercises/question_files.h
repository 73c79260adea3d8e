// Question indexes and study files by hand, and the beeps of a compilation.
#pragma once

#include <vector>

#include "support/engine_test.h"

namespace tavimo::tests {

// The fields of an index record that are not always 0.
struct Item {
  std::int32_t type = 0, answer = 0;
  std::uint32_t offset = 0, length = 0;
  std::int32_t passage = 0, ordinal = 0;
};

inline Bytes IndexFile(const std::vector<Item>& items) {
  Bytes bytes;
  for (const Item& item : items) {
    for (const auto value : {static_cast<std::uint32_t>(item.type), static_cast<std::uint32_t>(item.answer),
                             item.offset, item.length, static_cast<std::uint32_t>(item.passage), 0u, 0u, 0u, 0u,
                             static_cast<std::uint32_t>(item.ordinal), 0u, 0u, 0u}) {
      AppendLittleEndian(bytes, value, 4);
    }
  }
  return bytes;
}

inline void WriteStudyFile(const std::filesystem::path& path, std::size_t sentenceCount) {
  WriteBytes(path, Bytes(320 + 4 * sentenceCount));
}

class Beeps {
 public:
  Beeps() {
    tvSetBeepHandler([](void* user) { ++static_cast<Beeps*>(user)->count; }, this);
  }
  Beeps(const Beeps&) = delete;
  Beeps& operator=(const Beeps&) = delete;
  ~Beeps() { tvSetBeepHandler(nullptr, nullptr); }
  int count = 0;
};

}  // namespace tavimo::tests
