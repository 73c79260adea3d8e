// Implements file_input.h with a thread of its own while it is started, which reads, converts and fills.
#include "platform/common/file_input.h"

#include <array>
#include <chrono>
#include <optional>

#include "platform/common/guarded.h"
#include "platform/threads.h"

namespace tavimo::platform {

namespace {

using std::chrono::steady_clock;

// Far below the 57 ms of one of the engine's blocks; above it the processor would only wake for nothing.
constexpr std::chrono::milliseconds kTick{10};

// The bytes written.
std::size_t WriteSample(int sample, const WaveFormat& format, std::uint8_t* bytes) noexcept {
  bytes[0] = static_cast<std::uint8_t>(format.bitsPerSample == 8 ? (sample >> 8) + 0x80 : sample);
  if (format.bitsPerSample == 8) return 1;
  bytes[1] = static_cast<std::uint8_t>(sample >> 8);
  return 2;
}

std::size_t WriteFrame(const Frame& frame, const WaveFormat& format, std::uint8_t* bytes) noexcept {
  if (format.channels == 1) return WriteSample((frame.left + frame.right) / 2, format, bytes);
  const std::size_t left = WriteSample(frame.left, format, bytes);
  return left + WriteSample(frame.right, format, bytes + left);
}

}  // namespace

std::unique_ptr<InputSource> FileInput::Open(const std::string& nativePath, const WaveFormat& format,
                                             BlockQueue& queue) {
  std::optional<PcmFile> file = PcmFile::Open(nativePath);
  return file ? std::make_unique<FileInput>(std::move(*file), format, queue) : nullptr;
}

bool FileInput::Start() noexcept {
  return Guarded(false, [this] {
    WithSignalsBlocked(
        [](void* self) {
          auto* input = static_cast<FileInput*>(self);
          input->thread_ = std::jthread([input](const std::stop_token& stop) { input->Run(stop); });
        },
        this);
    return true;
  });
}

void FileInput::Run(const std::stop_token& stop) noexcept {
  const steady_clock::time_point start = steady_clock::now();
  const std::int64_t firstFrame = nextFrame_;
  while (!stop.stop_requested()) {
    std::this_thread::sleep_for(kTick);
    const auto elapsed = std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now() - start);
    Deliver(firstFrame + elapsed.count() * format_.sampleRate / 1'000'000);
  }
}

void FileInput::Deliver(std::int64_t endFrame) noexcept {
  std::array<std::uint8_t, 1024> piece;
  const std::size_t frameBytes = BytesPerFrame(format_);
  while (nextFrame_ < endFrame) {
    std::size_t byteCount = 0;
    while (nextFrame_ < endFrame && byteCount + frameBytes <= piece.size()) {
      byteCount += WriteFrame(NextFrame(), format_, piece.data() + byteCount);
    }
    queue_.Fill({piece.data(), byteCount});  // what finds no block is lost, as from any microphone
  }
}

Frame FileInput::NextFrame() noexcept {
  const std::int64_t scaled = nextFrame_++ * file_.Format().sampleRate;
  const std::int64_t index = scaled / format_.sampleRate;
  const auto rest = static_cast<int>(scaled % format_.sampleRate);
  const Frame before = file_.At(index);
  if (rest == 0) return before;
  const Frame after = file_.At(index + 1);
  const auto between = [&](int from, int to) {
    return from + static_cast<int>(std::int64_t{to - from} * rest / format_.sampleRate);
  };
  return {between(before.left, after.left), between(before.right, after.right)};
}

}  // namespace tavimo::platform
