// Implements limits.h.
#include "limits.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace tavimo::bench {

namespace {

constexpr std::size_t kPieceBytes = 256 * 1024;

class Descriptor {
 public:
  Descriptor(const char* path, int flags) : value_(open(path, flags | O_CLOEXEC, 0666)) {
    if (value_ < 0) throw std::runtime_error(std::string("cannot open ") + path);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(value_); }
  operator int() const { return value_; }

 private:
  int value_;
};

std::vector<char>& Piece() {
  static std::vector<char> piece(kPieceBytes);
  return piece;
}

void WriteAll(int descriptor, const char* bytes, std::size_t byteCount) {
  if (write(descriptor, bytes, byteCount) != static_cast<ssize_t>(byteCount)) throw std::runtime_error("cannot write");
}

}  // namespace

std::int64_t ReadOnce(const char* path) {
  const Descriptor file(path, O_RDONLY);
  std::vector<char>& piece = Piece();
  std::int64_t sum = 0;
  while (read(file, piece.data(), piece.size()) > 0) sum += piece[0];
  return sum;
}

std::int64_t LengthOf(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 ? status.st_size : 0;
}

void ReadInto(const char* path, std::span<std::uint8_t> bytes) {
  const Descriptor file(path, O_RDONLY);
  if (read(file, bytes.data(), bytes.size()) != std::ssize(bytes)) throw std::runtime_error("cannot read");
}

void CopyRanges(const char* from, const char* to, const std::vector<ByteRange>& ranges) {
  const Descriptor source(from, O_RDONLY);
  const Descriptor target(to, O_WRONLY | O_CREAT | O_TRUNC);
  std::vector<char>& piece = Piece();
  for (const auto& [offset, length] : ranges) {
    for (std::int64_t done = 0; done < length;) {
      const auto wanted = std::min(piece.size(), static_cast<std::size_t>(length - done));
      const ssize_t got = pread(source, piece.data(), wanted, offset + done);
      if (got <= 0) return;
      WriteAll(target, piece.data(), static_cast<std::size_t>(got));
      done += got;
    }
  }
}

void KeepEverySecondSample(const char* from, const char* to) {
  const Descriptor source(from, O_RDONLY);
  const Descriptor target(to, O_WRONLY | O_CREAT | O_TRUNC);
  std::vector<char>& piece = Piece();
  static std::vector<std::uint16_t> kept(kPieceBytes / 4);
  for (ssize_t got = 0; (got = read(source, piece.data(), piece.size())) > 0;) {
    const auto frames = static_cast<std::size_t>(got) / 4;
    for (std::size_t i = 0; i < frames; ++i) {
      std::uint32_t frame = 0;
      std::memcpy(&frame, piece.data() + 4 * i, sizeof frame);
      kept[i] = static_cast<std::uint16_t>(frame);  // its left sample comes first: the machine is little-endian
    }
    WriteAll(target, reinterpret_cast<const char*>(kept.data()), 2 * frames);
  }
}

std::int64_t CountSounds(std::span<const std::uint8_t> levels, std::uint8_t threshold) {
  return std::count_if(levels.begin(), levels.end(), [=](std::uint8_t level) { return level > threshold; });
}

void FillColumns(std::span<const std::uint8_t> levels, std::size_t levelsPerColumn, std::size_t width,
                 std::size_t height, std::uint32_t* pixels) {
  constexpr std::size_t kFullScale = 128;
  for (std::size_t x = 0; x < width && (x + 1) * levelsPerColumn <= levels.size(); ++x) {
    std::size_t sum = 0;
    for (std::size_t i = 0; i < levelsPerColumn; ++i) sum += levels[x * levelsPerColumn + i];
    const std::size_t filled = sum / levelsPerColumn * height / kFullScale;
    for (std::size_t y = height - filled; y < height; ++y) pixels[y * width + x] = 0;
  }
}

std::int64_t FillLines(const char* path, std::span<const std::int32_t, 256> advances, std::int32_t width) {
  const Descriptor file(path, O_RDONLY);
  std::vector<char>& piece = Piece();
  std::int64_t lines = 0;
  std::int32_t filled = 0;
  for (ssize_t got = 0; (got = read(file, piece.data(), piece.size())) > 0;) {
    for (ssize_t i = 0; i < got; ++i) {
      const auto byte = static_cast<unsigned char>(piece[static_cast<std::size_t>(i)]);
      filled += advances[byte];
      if (filled < width && byte != '\n') continue;
      filled = 0;
      ++lines;
    }
  }
  return lines;
}

void SortLines(const char* from, const char* to) {
  const Descriptor source(from, O_RDONLY);
  const Descriptor target(to, O_WRONLY | O_CREAT | O_TRUNC);
  std::vector<char>& piece = Piece();
  static std::vector<char> texts(kPieceBytes);
  std::size_t kept = 0;
  for (ssize_t got = 0; (got = read(source, piece.data() + kept, piece.size() - kept)) > 0;) {
    const char* line = piece.data();
    const char* end = line + kept + got;
    std::size_t textBytes = 0;
    while (const void* feed = std::memchr(line, '\n', static_cast<std::size_t>(end - line))) {
      const auto length = static_cast<std::size_t>(static_cast<const char*>(feed) - line) + 1;
      if (std::memcmp(line, "##", 2) != 0 && std::memcmp(line, "$$", 2) != 0) {
        std::memcpy(texts.data() + textBytes, line, length);
        textBytes += length;
      }
      line += length;
    }
    WriteAll(target, texts.data(), textBytes);
    kept = static_cast<std::size_t>(end - line);
    std::memmove(piece.data(), line, kept);
  }
}

BlockFile::BlockFile(const char* path) : descriptor_(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
  if (descriptor_ < 0) throw std::runtime_error(std::string("cannot open ") + path);
}

BlockFile::~BlockFile() { close(descriptor_); }

std::int64_t BlockFile::Append(std::span<const std::uint8_t> block) {
  WriteAll(descriptor_, reinterpret_cast<const char*>(block.data()), block.size());
  std::int64_t sum = 0;
  for (std::size_t i = 0; i + 2 <= block.size(); i += 2) {
    std::int16_t sample = 0;
    std::memcpy(&sample, block.data() + i, 2);
    sum += std::abs(sample);
  }
  return sum;
}

}  // namespace tavimo::bench
