#include "tape.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "refusal.h"
#include "system.h"
#include "take_shelf.h"
#include "tavimo.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kNoteFile = "tmpwav/tmpmic.txt";
constexpr std::uint64_t kRiffSizeOffset = 4;
constexpr std::uint64_t kRiffSizeLeavesOut = 8;
constexpr std::uint64_t kChunkSizeBytes = 4;

void WriteSize(std::fstream& tape, std::uint64_t offset, std::uint64_t size) {
  std::array<char, kChunkSizeBytes> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(size >> (8 * i) & 0xFF);
  tape.seekp(static_cast<std::streamoff>(offset));
  tape.write(bytes.data(), bytes.size());
}

[[noreturn]] void RefuseToFinish() {
  throw Refusal("an unsaved recording in " + Readable(fs::current_path() / "tmpwav") + " cannot be finished");
}

void WriteSizes(const WaveHeader& header, std::uint64_t soundBytes) {
  std::error_code error;
  fs::resize_file(kTapeFile, header.dataOffset + soundBytes, error);
  std::fstream tape(kTapeFile, std::ios::binary | std::ios::in | std::ios::out);
  WriteSize(tape, kRiffSizeOffset, header.dataOffset + soundBytes - kRiffSizeLeavesOut);
  WriteSize(tape, header.dataOffset - kChunkSizeBytes, soundBytes);
  tape.close();
  if (!tape || error) RefuseToFinish();
}

void MoveTapeTo(const fs::path& file) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  if (vcSaveTapeFile(kTapeEngineName, EnginePath(file).value().c_str()) == 0) return;
  throw Refusal("a recording could not be kept as " + Readable(fs::current_path() / file) + "; it lies in " +
                Readable(fs::current_path() / kTapeFile));
}

}  // namespace

void WriteTapeNote(const TapeNote& note) {
  std::ofstream file(kNoteFile, std::ios::binary | std::ios::trunc);
  file << "sentence " << note.sentence << "\nstart " << note.startBytes << "\nrecording " << note.recording << '\n';
  file.close();
  if (!file) throw Refusal("nothing can be written in " + Readable(fs::current_path() / "tmpwav"));
}

TapeNote ReadTapeNote() {
  TapeNote note;
  std::ifstream file(kNoteFile, std::ios::binary);
  std::string word;
  if (!(file >> word >> note.sentence) || note.sentence < 1 || note.sentence > kLastTakeSentence) note.sentence = 0;
  if (!(file >> word >> note.startBytes)) note.startBytes = 0;
  if (file >> word) {
    file.ignore();
    // To the end of the file: a name may have a line feed in it.
    std::getline(file, note.recording, '\0');
    if (note.recording.ends_with('\n')) note.recording.pop_back();
  }
  return note;
}

std::uint64_t WholeFrames(std::uint64_t byteCount, const WaveHeader& header) {
  const std::uint64_t frameBytes = std::max<std::uint64_t>(header.channels * header.bitsPerSample / 8U, 2);
  return byteCount / frameBytes * frameBytes;
}

TapeState FinishTape() {
  std::error_code error;
  if (!fs::exists(kTapeFile, error)) return TapeState::Missing;
  const std::uint64_t fileLength = fs::file_size(kTapeFile, error);
  if (error) return TapeState::Damaged;
  if (fileLength <= std::max<std::uint64_t>(kTapeHeaderBytes, ReadTapeNote().startBytes)) return TapeState::Silent;
  const WaveHeader header = ReadWaveHeader(kTapeFile, Lengths::OfFile);
  if (header.HasFormat() && header.dataOffset != 0 && header.dataLength == 0) return TapeState::Silent;
  if (!header.problem.empty()) return TapeState::Damaged;
  const std::uint64_t soundBytes = WholeFrames(fileLength - header.dataOffset, header);
  if (soundBytes == 0) return TapeState::Silent;
  WriteSizes(header, soundBytes);
  return TapeState::Whole;
}

std::optional<KeptTake> KeepTape() {
  std::error_code error;
  const fs::file_time_type time = LastWriteTime(kTapeFile, error);  // when it was recorded, not when it was finished
  const TapeState state = FinishTape();
  if (state == TapeState::Silent || state == TapeState::Missing) {
    DiscardTape();
    return {};
  }
  const TapeNote note = ReadTapeNote();
  KeptTake take;
  take.sentence = note.sentence;
  take.recording = note.recording;
  if (state == TapeState::Damaged) {
    take.file = NewTakeFile(0, time, ".damaged");
  } else {
    take.file = NewTakeFile(HasRoomForTake(note.sentence) ? note.sentence : 0, time, ".wav");
    take.durationMs = ReadWaveHeader(kTapeFile).DurationMs();
  }
  MoveTapeTo(take.file);
  std::error_code ignored;
  fs::remove(kNoteFile, ignored);
  return take;
}

void DiscardTape() {
  std::error_code ignored;
  fs::remove(kTapeFile, ignored);
  fs::remove(kNoteFile, ignored);
}

}  // namespace tavimo::host
