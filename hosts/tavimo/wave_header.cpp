#include "wave_header.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

#include "system.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kChunkHeaderBytes = 8;
constexpr std::uint64_t kFormatBytes = 16;
constexpr std::uint64_t kExtensibleTagOffset = 24;
constexpr std::uint64_t kLongestData = 0x7FFFFFFF;  // the engine counts sound bytes in signed 32 bits
constexpr std::uint16_t kTagPcm = 1;
constexpr std::uint16_t kTagExtensible = 0xFFFE;
constexpr std::uint32_t kHighestRate = 1'000'000;

struct Chunk {
  std::uint64_t dataOffset = 0;
  std::uint64_t size = 0;
};

std::uint32_t LittleEndian(std::string_view bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return value;
}

// The bytes at an offset, fewer where the file ends before.
std::string ReadAt(std::ifstream& file, std::uint64_t offset, std::size_t count) {
  std::string bytes(count, '\0');
  file.clear();
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  return bytes;
}

// Walks the chunks from an offset to the end of the RIFF chunk that holds them.
std::optional<Chunk> FindChunk(std::ifstream& file, std::uint64_t offset, std::uint64_t end, std::string_view id) {
  while (offset + kChunkHeaderBytes <= end) {
    const std::string header = ReadAt(file, offset, kChunkHeaderBytes);
    if (header.size() < kChunkHeaderBytes) return {};
    const Chunk chunk{offset + kChunkHeaderBytes, LittleEndian(std::string_view(header).substr(4))};
    if (header.starts_with(id)) return chunk;
    offset = chunk.dataOffset + chunk.size + chunk.size % 2;
  }
  return {};
}

// What people call a file that is not RIFF/WAVE, by its first bytes.
std::string NameOfOtherFile(std::string_view start) {
  struct Magic {
    std::size_t offset;
    std::string_view bytes;
    const char* name;
  };
  static constexpr auto kMagics = std::to_array<Magic>({
      {0, "ID3", "it is an MP3 file; tavimo import makes a recording of it"},
      {0, "\xFF\xFB", "it is an MP3 file; tavimo import makes a recording of it"},
      {0, "\xFF\xF3", "it is an MP3 file; tavimo import makes a recording of it"},
      {0, "OggS", "it is an Ogg file; tavimo import makes a recording of it"},
      {0, "fLaC", "it is a FLAC file; tavimo import makes a recording of it"},
      {4, "ftyp", "it is an MP4 file; make an MP3, Ogg or FLAC file of it first"},
      {0, "FORM", "it is an AIFF file; tavimo import makes a recording of it"},
      {0, "RF64", "it is an RF64 file; tavimo import makes a recording of it"},
      {0, "RIFX", "it is a wave file with its bytes in the other order (RIFX)"},
      {0, "RIFF", "it is a RIFF file, but not a wave file"},
  });
  for (const Magic& magic : kMagics) {
    if (start.substr(std::min(magic.offset, start.size())).starts_with(magic.bytes)) return magic.name;
  }
  return "it is not a wave file";
}

std::string NameOfTag(std::uint32_t tag) {
  switch (tag) {
    case 2:
    case 0x11:
      return "ADPCM";
    case 3:
      return "floating point";
    case 6:
    case 7:
      return "telephone";
    case 0x55:
      return "MP3";
    default:
      return "compressed";
  }
}

std::string TagProblem(std::uint16_t tag) {
  if (tag == kTagExtensible) {
    return "it has the extensible header (tag 0xFFFE); tavimo import makes a recording of it";
  }
  return "it holds " + NameOfTag(tag) + " sound (tag " + std::to_string(tag) + "), not PCM of 8 or 16 bits";
}

std::string FormatProblem(const WaveHeader& header) {
  if (header.formatTag != kTagPcm) return TagProblem(header.formatTag);
  if (header.bitsPerSample != 8 && header.bitsPerSample != 16) {
    return "it has " + std::to_string(header.bitsPerSample) + " bits per sample, not 8 or 16";
  }
  if (header.channels != 1 && header.channels != 2) {
    return "it has " + std::to_string(header.channels) + " channels, not 1 or 2";
  }
  if (header.sampleRate < kLevelsPerSecond || header.sampleRate > kHighestRate) {
    return "its sample rate of " + std::to_string(header.sampleRate) + " Hz is no rate for sound";
  }
  return {};
}

std::string DataProblem(const WaveHeader& header) {
  if (header.storedDataLength > kLongestData) {
    return "its sound claims " + std::to_string(header.storedDataLength) +
           " bytes; a length of 2 GiB or more (or one left open by a stream) is too much for the engine";
  }
  return header.dataLength == 0 ? "it holds no sound" : "";
}

std::string FileProblem(const fs::path& path, std::ifstream& file) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) return status.type() == fs::file_type::none ? ReasonOf(error) : "there is no such file";
  if (fs::is_directory(status)) return "it is a folder";
  if (!fs::is_regular_file(status)) return "it is not a plain file";
  if (fs::file_size(path, error) == 0) return "it is empty";
  errno = 0;
  file.open(path, std::ios::binary);
  if (!file) return "it cannot be read (" + std::generic_category().message(errno) + ")";
  return {};
}

void ReadFormat(std::string_view bytes, WaveHeader& header) {
  header.formatTag = static_cast<std::uint16_t>(LittleEndian(bytes.substr(0, 2)));
  header.channels = static_cast<std::uint16_t>(LittleEndian(bytes.substr(2, 2)));
  header.sampleRate = LittleEndian(bytes.substr(4, 4));
  header.blockAlign = static_cast<std::uint16_t>(LittleEndian(bytes.substr(12, 2)));
  header.bitsPerSample = static_cast<std::uint16_t>(LittleEndian(bytes.substr(14, 2)));
  const bool isExtensible = header.formatTag == kTagExtensible && bytes.size() >= kExtensibleTagOffset + 2;
  header.codedTag =
      isExtensible ? static_cast<std::uint16_t>(LittleEndian(bytes.substr(kExtensibleTagOffset, 2))) : header.formatTag;
}

// Fills the header step by step and returns the first thing that is wrong; what the engine does not take may be there whole.
std::string ReadChunks(std::ifstream& file, std::uint64_t fileLength, Lengths lengths, WaveHeader& header) {
  const std::string start = ReadAt(file, 0, 12);
  const bool isWave = start.size() == 12 && start.starts_with("RIFF") && start.ends_with("WAVE");
  if (!isWave) return NameOfOtherFile(start);
  const std::uint64_t storedEnd = kChunkHeaderBytes + LittleEndian(std::string_view(start).substr(4, 4));
  const std::uint64_t end = lengths == Lengths::OfFile ? fileLength : std::min(fileLength, storedEnd);
  const auto format = FindChunk(file, 12, end, "fmt ");
  if (!format) return "it has no format chunk";
  const std::uint64_t wanted = std::min(format->size, kExtensibleTagOffset + 2);
  const std::string bytes = ReadAt(file, format->dataOffset, static_cast<std::size_t>(wanted));
  if (bytes.size() < kFormatBytes) return "its format chunk is cut short";
  ReadFormat(bytes, header);
  const auto data = FindChunk(file, format->dataOffset + format->size + format->size % 2, end, "data");
  if (data) {
    header.dataOffset = data->dataOffset;
    const std::uint64_t held = fileLength - std::min(data->dataOffset, fileLength);
    header.storedDataLength = lengths == Lengths::OfFile ? held : data->size;
    header.dataLength = std::min(header.storedDataLength, held);
  }
  if (std::string problem = FormatProblem(header); !problem.empty()) return problem;
  if (!data) return "it has no data chunk, so no sound";
  return DataProblem(header);
}

}  // namespace

std::uint64_t WaveHeader::BlockBytes() const {
  return std::uint64_t{sampleRate} / kLevelsPerSecond * channels * bitsPerSample / 8;
}

std::uint64_t WaveHeader::LevelCount() const { return (dataLength + BlockBytes() - 1) / BlockBytes(); }

std::int64_t WaveHeader::DurationMs() const {
  return static_cast<std::int64_t>(dataLength * 1000 / (std::uint64_t{sampleRate} * channels * bitsPerSample / 8));
}

std::uint64_t WaveHeader::ByteAt(std::int64_t timeMs) const {
  const std::uint64_t frame = std::uint64_t{sampleRate} * static_cast<std::uint64_t>(timeMs) / 1000;
  const std::uint64_t frameBytes = std::uint64_t{channels} * bitsPerSample / 8;
  return std::min(frame * frameBytes, dataLength / frameBytes * frameBytes);
}

WaveHeader ReadWaveHeader(const fs::path& path, Lengths lengths) {
  WaveHeader header;
  std::ifstream file;
  header.problem = FileProblem(path, file);
  if (!header.problem.empty()) return header;
  std::error_code error;
  const std::uint64_t fileLength = fs::file_size(path, error);
  header.problem = error ? ReasonOf(error) : ReadChunks(file, fileLength, lengths, header);
  return header;
}

std::string DescribeFormat(const WaveHeader& header) {
  const std::string channels = header.channels == 1   ? "mono"
                               : header.channels == 2 ? "stereo"
                                                      : std::to_string(header.channels) + " channels";
  return std::to_string(header.bitsPerSample) + "-bit " + channels + ", " + std::to_string(header.sampleRate) + " Hz";
}

}  // namespace tavimo::host
