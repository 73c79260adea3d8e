// The known name that a misspelled one probably stands for.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace tavimo::host {

// How many letters must be changed, added or left out to make one word of the other.
[[nodiscard]] inline std::size_t EditDistance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t changed = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

// REQUIRES: names is not empty.
[[nodiscard]] inline std::string NearestName(std::string_view word, const std::vector<std::string>& names) {
  return *std::min_element(names.begin(), names.end(), [word](const std::string& left, const std::string& right) {
    return EditDistance(word, left) < EditDistance(word, right);
  });
}

}  // namespace tavimo::host
