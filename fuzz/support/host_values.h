// Values that a careless or hostile host hands to an export: numbers at the edges of what is meant and far outside, paths of
// files that are there, of folders and of nothing, texts that are no GBK.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support/fuzz_ground.h"

namespace tavimo::fuzz {

// An input of which the end, a share of it, is numbers for the arguments. They stand behind the file, so that a seed is a file
// as it is.
struct FileWithNumbers {
  FileWithNumbers(const std::uint8_t* data, std::size_t size, std::size_t share, std::size_t mostNumbers)
      : FileWithNumbers(data, size, size - std::min(size / share, mostNumbers)) {}

  std::vector<std::uint8_t> file;  // stretched
  FuzzedDataProvider numbers;

 private:
  FileWithNumbers(const std::uint8_t* data, std::size_t size, std::size_t split)
      : file(Stretched(data, split)), numbers(data + split, size - split) {}
};

std::int64_t AnyNumber(FuzzedDataProvider& input);
double AnyFraction(FuzzedDataProvider& input);

// A path that stays in the scratch folder, or any text: no export knows the one from the other.
std::string AnyText(FuzzedDataProvider& input);

// One of the files that a lesson consists of.
const char* LessonPath(FuzzedDataProvider& input);

}  // namespace tavimo::fuzz
