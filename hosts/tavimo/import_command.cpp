// `tavimo import`: sound of any kind becomes a recording that the engine takes.
#include <iostream>

#include "importer.h"
#include "options.h"
#include "refusal.h"
#include "text.h"
#include "wave_header.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

bool IsRecordingAlready(const Options& options) {
  const bool isAsked = options.hasOutput || options.sampleRate || options.channels;
  return !isAsked && ReadWaveHeader(options.files.front()).problem.empty();
}

}  // namespace

int RunImport(const Options& options) {
  const fs::path& source = options.files.front();
  if (IsRecordingAlready(options)) {
    std::cout << Readable(source.filename()) << ": the engine takes it as it is\n";
    return kDone;
  }
  const fs::path recording = options.hasOutput ? options.output : RecordingFor(source);
  const Existing existing = options.force ? Existing::Replace : Existing::Keep;
  const Imported imported = Import({source, recording, existing, options.sampleRate, options.channels});
  const WaveHeader header = ReadWaveHeader(recording);
  std::cout << Readable(recording) << ": " << DescribeFormat(header) << ", " << FormatTime(imported.lengthMs) << '\n';
  if (!imported.isWhole) {
    std::cerr << "tavimo: " << Readable(source.filename())
              << " is damaged or cut off: " << FormatTime(imported.lengthMs) << " of "
              << FormatTime(imported.sourceLengthMs) << " could be decoded\n";
  }
  return kDone;
}

}  // namespace tavimo::host
