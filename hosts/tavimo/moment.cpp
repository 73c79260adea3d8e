#include "moment.h"

#include <array>
#include <chrono>
#include <ctime>
#include <tuple>

#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMomentLength = 19;  // 2026-11-23_19-05-30

}  // namespace

std::string MomentName(fs::file_time_type time) {
  const auto moment = std::chrono::file_clock::to_sys(time);
  const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(moment));
  std::array<char, 40> text{};
  const std::tm* local = std::localtime(&seconds);
  if (local == nullptr || std::strftime(text.data(), text.size(), "%Y-%m-%d_%H-%M-%S", local) == 0) return "undated";
  return text.data();
}

fs::path UnusedDatedName(const fs::path& folder, fs::file_time_type time, const char* extension) {
  const std::string name = MomentName(time);
  fs::path path = folder / (name + extension);
  for (int number = 2; fs::exists(fs::symlink_status(path)); ++number) {
    path = folder / (name + "-" + std::to_string(number) + extension);
  }
  return path;
}

bool IsOlderName(const fs::path& left, const fs::path& right) {
  const auto key = [](const fs::path& path) {
    const std::string stem = Utf8(path.stem());
    return std::tuple(stem.substr(0, kMomentLength), stem.size(), stem);
  };
  return key(left) < key(right);
}

std::string MomentOf(const fs::path& path) {
  std::string text = Utf8(path.stem()).substr(0, kMomentLength);
  if (text.size() != kMomentLength) return text;
  text[10] = ' ';
  text[13] = text[16] = ':';
  return text;
}

std::string MomentOf(fs::file_time_type time) { return MomentOf(fs::path(MomentName(time))); }

}  // namespace tavimo::host
