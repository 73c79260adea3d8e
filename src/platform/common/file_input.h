// A wave file as a microphone: its sound in the device's format at the pace of real time, then silence for ever. Stopped,
// it waits where it is. Converts simply: halves of a pair of channels are averaged, rates are met on straight lines.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/common/audio_ends.h"
#include "platform/common/block_queue.h"
#include "platform/common/pcm_file.h"

namespace tavimo::platform {

class FileInput final : public InputSource {
 public:
  // Null when the file is no PcmFile. May throw std::bad_alloc.
  static std::unique_ptr<InputSource> Open(const std::string& nativePath, const WaveFormat& format, BlockQueue& queue);

  FileInput(PcmFile file, const WaveFormat& format, BlockQueue& queue) noexcept
      : queue_(queue), file_(std::move(file)), format_(format) {}

  bool Start() noexcept override;
  void Stop() noexcept override { thread_ = {}; }

 private:
  void Run(const std::stop_token& stop) noexcept;
  void Deliver(std::int64_t endFrame) noexcept;
  Frame NextFrame() noexcept;

  BlockQueue& queue_;
  PcmFile file_;
  const WaveFormat format_;
  std::int64_t nextFrame_ = 0;  // in the device's rate
  std::jthread thread_;         // uses all of the above; goes first, and ends with its object
};

}  // namespace tavimo::platform
