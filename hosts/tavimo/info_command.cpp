// `tavimo info`: what a file is and what the engine will do with it, in one line. Makes nothing.
#include <iostream>

#include "lesson_session.h"
#include "options.h"
#include "tavimo.h"
#include "text.h"
#include "wave_header.h"

namespace tavimo::host {

namespace {

struct Answer {
  std::string line;
  bool isUsable = false;
};

Answer Examine(const std::filesystem::path& file) {
  const WaveHeader header = ReadWaveHeader(file);
  if (!header.problem.empty()) {
    const std::string format = header.HasFormat() ? DescribeFormat(header) + "; " : "";
    return {format + "the engine cannot use it: " + header.problem};
  }
  // The engine has the last word, so that this never promises what it then refuses. A name that it cannot take gets its
  // link only when there is work to do.
  const auto name = UsableEngineName(IdentityOf(file));
  if (name && vcIsWaveFile(name->c_str()) == 0) {
    return {DescribeFormat(header) + "; the engine does not take it for a PCM wave file"};
  }
  std::string line =
      DescribeFormat(header) + ", " + FormatTime(header.DurationMs()) + "; the engine digests, cuts and draws it";
  if (!name) line += ", by a link, because it cannot take this name or its path";
  if (header.IsTruncated()) {
    line += ", as far as it goes: its header promises " + std::to_string(header.storedDataLength) +
            " bytes of sound, " + std::to_string(header.dataLength) + " are there";
  }
  return {line, true};
}

}  // namespace

int RunInfo(const Options& options) {
  int exitCode = kDone;
  for (const auto& file : options.files) {
    const Answer answer = Examine(file);
    std::cout << Readable(file.filename()) << ": " << answer.line << '\n';
    if (!answer.isUsable) exitCode = kRefused;
  }
  return exitCode;
}

}  // namespace tavimo::host
