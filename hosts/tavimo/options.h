// What a person asked this program to do, and the commands that do it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "digest_maker.h"
#include "wave_picture.h"

namespace tavimo::host {

// What the program answers to whoever started it.
enum ExitCode : int { kDone = 0, kRefused = 1, kUsage = 2 };

enum class TableForm { ForPeople, Json };

struct Options {
  int (*command)(const Options&) = nullptr;
  std::filesystem::path home;  // absolute, as are the following
  std::vector<std::filesystem::path> files;
  std::filesystem::path output;  // the picture of wave, the pictures' folder of lesson
  DigestKind digestKind = DigestKind::Peak;
  std::optional<int> threshold;
  std::optional<int> silenceMs;
  TableForm tableForm = TableForm::ForPeople;
  WaveStyle style = WaveStyle::Half;
  std::int64_t fromMs = 0;
  std::optional<std::int64_t> toMs;
  int width = 1200;
  int height = 240;
};

int RunInfo(const Options& options);
int RunDigest(const Options& options);
int RunCut(const Options& options);
int RunWave(const Options& options);
int RunLesson(const Options& options);

}  // namespace tavimo::host
