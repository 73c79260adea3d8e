// Implements pcm_file.h. The bytes of a frame are little-endian, its channels side by side:
//
//   bits  sample
//      8  one byte, 0x80 is silence
//     16  two bytes, signed
#include "platform/common/pcm_file.h"

#include <algorithm>

#include "platform/common/audio_ends.h"
#include "platform/common/engine_path.h"

namespace tavimo::platform {

namespace {

constexpr std::int32_t kFormatBytes = 16;

std::uint16_t ReadU16(const std::uint8_t* bytes) noexcept {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

int ReadSample(const std::uint8_t* bytes, const WaveFormat& format) noexcept {
  if (format.bitsPerSample == 8) return (bytes[0] - 0x80) * 256;
  return static_cast<std::int16_t>(ReadU16(bytes));
}

}  // namespace

std::optional<PcmFile> PcmFile::Open(const std::string& nativePath) noexcept {
  const std::optional<std::string> path = EnginePath(nativePath);
  std::optional<PcmFile> opened;
  if (!path) return opened;
  opened.emplace();
  opened->file_ = RiffFile::Open(path->c_str(), OpenMode::Read);
  if (!opened->file_.IsOpen() || !opened->ReadHeader()) opened.reset();
  return opened;
}

bool PcmFile::ReadHeader() noexcept {
  ChunkInfo riff;
  if (!file_.Descend(riff) || riff.id != FourCc("RIFF") || riff.formType != FourCc("WAVE")) return false;
  ChunkInfo chunk;
  chunk.id = FourCc("fmt ");
  std::uint8_t record[kFormatBytes];
  if (!file_.Find(chunk, riff) || chunk.size < kFormatBytes) return false;
  if (file_.Read(record, kFormatBytes) != kFormatBytes || !file_.Ascend(chunk)) return false;
  format_.formatTag = ReadU16(record);
  format_.channels = ReadU16(record + 2);
  format_.sampleRate = ReadU16(record + 4) | static_cast<std::uint32_t>(ReadU16(record + 6)) << 16;
  format_.bitsPerSample = ReadU16(record + 14);
  chunk.id = FourCc("data");
  if (!IsDeviceFormat(format_) || !file_.Find(chunk, riff)) return false;
  dataOffset_ = file_.Position();
  frameCount_ = std::min<std::int64_t>(chunk.size, file_.Length() - dataOffset_) / BytesPerFrame(format_);
  return true;
}

Frame PcmFile::At(std::int64_t index) noexcept {
  if (index >= frameCount_) return {};
  if (index < windowStart_ || index >= windowStart_ + windowCount_) MoveWindowTo(index);
  if (windowCount_ == 0) return {};
  const std::uint8_t* frame = window_.data() + (index - windowStart_) * BytesPerFrame(format_);
  const int left = ReadSample(frame, format_);
  return {left, format_.channels == 1 ? left : ReadSample(frame + format_.bitsPerSample / 8, format_)};
}

void PcmFile::MoveWindowTo(std::int64_t index) noexcept {
  const std::uint32_t frameBytes = BytesPerFrame(format_);
  file_.Seek(dataOffset_ + index * frameBytes, SeekFrom::Start);
  const std::int32_t byteCount = file_.Read(window_.data(), static_cast<std::int32_t>(window_.size()));
  windowStart_ = index;
  windowCount_ = std::max(byteCount, 0) / static_cast<std::int64_t>(frameBytes);
}

}  // namespace tavimo::platform
