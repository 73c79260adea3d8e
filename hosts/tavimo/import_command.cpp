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

// Beside the source, so that the lesson's other files are found with it. A source that is a .wav file keeps its name.
fs::path RecordingFor(const fs::path& source) {
  const fs::path beside = fs::path(source).replace_extension(".wav");
  if (beside.filename() != source.filename()) return beside;
  return source.parent_path() / PathFromUtf8(Utf8(source.stem()) + "-16bit.wav");
}

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
