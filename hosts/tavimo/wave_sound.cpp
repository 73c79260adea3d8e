#include "wave_sound.h"

#include <array>
#include <bit>
#include <fstream>
#include <vector>

#include "wave_header.h"

namespace tavimo::host {

namespace {

constexpr std::uint16_t kPcm = 1;
constexpr std::uint16_t kFloat = 3;
constexpr int kMostChannels = 64;
constexpr std::uint32_t kHighestRate = 1'000'000;

using ToNumber = float (*)(const unsigned char* bytes);

template <int byteCount>
std::uint64_t Bits(const unsigned char* bytes) {
  std::uint64_t bits = 0;
  for (int i = byteCount; i-- > 0;) bits = bits << 8 | bytes[i];
  return bits;
}

float FromUnsignedByte(const unsigned char* bytes) { return static_cast<float>(bytes[0] - 128) / 128; }

// Moved to the top of 32 bits, which gives it its sign and its scale.
template <int byteCount>
float FromInteger(const unsigned char* bytes) {
  const auto top = static_cast<std::uint32_t>(Bits<byteCount>(bytes) << (32 - 8 * byteCount));
  return static_cast<float>(static_cast<double>(static_cast<std::int32_t>(top)) / 2147483648.0);
}

float FromFloat(const unsigned char* bytes) { return std::bit_cast<float>(static_cast<std::uint32_t>(Bits<4>(bytes))); }
float FromDouble(const unsigned char* bytes) { return static_cast<float>(std::bit_cast<double>(Bits<8>(bytes))); }

// By how many whole bytes a sample takes.
ToNumber ConverterFor(std::uint16_t coding, int sampleBytes) {
  constexpr std::array<ToNumber, 5> kFromPcm{nullptr, FromUnsignedByte, FromInteger<2>, FromInteger<3>, FromInteger<4>};
  if (coding == kPcm && sampleBytes <= 4) return kFromPcm[static_cast<std::size_t>(sampleBytes)];
  if (coding != kFloat) return nullptr;
  return sampleBytes == 4 ? FromFloat : sampleBytes == 8 ? FromDouble : nullptr;
}

class WaveSound : public SoundSource {
 public:
  WaveSound(const std::filesystem::path& file, const WaveHeader& header, ToNumber convert)
      : file_(file, std::ios::binary),
        header_(header),
        convert_(convert),
        sampleBytes_((std::size_t{header.bitsPerSample} + 7) / 8),
        bytesLeft_(header.dataLength) {
    file_.seekg(static_cast<std::streamoff>(header.dataOffset));
  }

  [[nodiscard]] int SampleRate() const override { return static_cast<int>(header_.sampleRate); }
  [[nodiscard]] int Channels() const override { return header_.channels; }
  [[nodiscard]] std::int64_t FrameCount() const override {
    return static_cast<std::int64_t>(header_.storedDataLength / FrameBytes());
  }
  [[nodiscard]] bool IsCountEstimated() const override { return false; }
  [[nodiscard]] bool IsSixteenBits() const override { return header_.codedTag == kPcm && sampleBytes_ <= 2; }
  [[nodiscard]] bool IsDamaged() const override { return file_.bad(); }

  std::int64_t Read(std::span<float> samples) override {
    const std::size_t frames = samples.size() / header_.channels;
    bytes_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(frames * FrameBytes(), bytesLeft_)));
    file_.read(reinterpret_cast<char*>(bytes_.data()), static_cast<std::streamsize>(bytes_.size()));
    const std::size_t got = static_cast<std::size_t>(file_.gcount()) / FrameBytes();
    for (std::size_t i = 0; i < got * header_.channels; ++i) samples[i] = convert_(bytes_.data() + i * sampleBytes_);
    bytesLeft_ -= got * FrameBytes();
    return static_cast<std::int64_t>(got);
  }

 private:
  [[nodiscard]] std::size_t FrameBytes() const { return header_.channels * sampleBytes_; }

  std::ifstream file_;
  WaveHeader header_;
  ToNumber convert_;
  std::size_t sampleBytes_;
  std::uint64_t bytesLeft_;
  std::vector<unsigned char> bytes_;
};

// What a stream could not know in advance, and what a program that died did not write: the sound goes on to the file's end.
bool IsLengthOpen(const WaveHeader& header) {
  constexpr std::uint64_t kLeastOpen = 0xFFFFF000;
  return header.storedDataLength == 0 || header.storedDataLength >= kLeastOpen;
}

}  // namespace

std::unique_ptr<SoundSource> OpenWaveSound(const std::filesystem::path& file) {
  WaveHeader header = ReadWaveHeader(file);
  if (header.dataOffset == 0 || header.channels < 1 || header.channels > kMostChannels || header.sampleRate < 1 ||
      header.sampleRate > kHighestRate) {
    return nullptr;
  }
  const int sampleBytes = (header.bitsPerSample + 7) / 8;
  const ToNumber convert = ConverterFor(header.codedTag, sampleBytes);
  // Samples may lie in wider places than their bits need.
  if (convert == nullptr || header.blockAlign != header.channels * sampleBytes) return nullptr;
  if (IsLengthOpen(header)) {
    std::error_code error;
    const std::uint64_t fileLength = std::filesystem::file_size(file, error);
    if (error) return nullptr;
    header.storedDataLength = header.dataLength = fileLength - std::min(header.dataOffset, fileLength);
  }
  return std::make_unique<WaveSound>(file, header, convert);
}

}  // namespace tavimo::host
