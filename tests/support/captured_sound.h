// A window that takes an input device's messages and blocks that know their place: the ground of the tests of devices.
#pragma once

#include <chrono>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/audio.h"
#include "support/engine_test.h"

namespace tavimo::tests {

inline constexpr std::uint32_t kMmWimOpen = 0x3BE;
inline constexpr std::uint32_t kMmWimClose = 0x3BF;
inline constexpr std::uint32_t kMmWimData = 0x3C0;

// A block of a device with its bytes, all 0xEE until a device writes them.
struct OwnBlock : platform::WaveBlock {
  explicit OwnBlock(std::uint32_t byteCount = 1256) : bytes(byteCount, 0xEE) {
    data = reinterpret_cast<char*>(bytes.data());
    bufferLength = byteCount;
  }
  OwnBlock(OwnBlock&&) = default;
  Bytes bytes;
};

struct DeviceMessage {
  std::uint32_t number;
  platform::WaveInput device;
  OwnBlock* block;
  friend bool operator==(const DeviceMessage&, const DeviceMessage&) = default;
};

// The messages since the last call, of all windows made with RecordMessages.
inline std::vector<DeviceMessage> recordedMessages;
inline std::intptr_t VC_CALL RecordMessages(VcWindow, std::uint32_t message, std::uintptr_t wparam,
                                            std::intptr_t lparam) {
  recordedMessages.push_back({message, wparam, static_cast<OwnBlock*>(reinterpret_cast<platform::WaveBlock*>(lparam))});
  return 0;
}
inline std::vector<DeviceMessage> TakeMessages(int timeoutMs = 0) {
  tvDispatchMessages(timeoutMs);
  return std::exchange(recordedMessages, {});
}

// The blocks that came back since the last call, in their order; waits up to timeoutMs for a first one.
inline std::vector<OwnBlock*> TakeBlocks(int timeoutMs = 0) {
  std::vector<OwnBlock*> blocks;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  do {
    for (const DeviceMessage& message : TakeMessages(timeoutMs > 0 ? 1 : 0)) {
      if (message.number == kMmWimData) blocks.push_back(message.block);
    }
  } while (blocks.empty() && std::chrono::steady_clock::now() < end);
  return blocks;
}

// An open input device that is closed with its test, with a ring of blocks.
struct InputRig {
  explicit InputRig(const platform::WaveFormat& format, std::size_t blockCount = 4, std::uint32_t blockBytes = 1256) {
    for (std::size_t i = 0; i < blockCount; ++i) blocks.emplace_back(blockBytes);
    result = platform::OpenWaveInput(device, format, window);
  }
  InputRig(const InputRig&) = delete;
  InputRig& operator=(const InputRig&) = delete;
  ~InputRig() {
    platform::ResetWaveInput(device);
    platform::CloseWaveInput(device);
    TakeMessages();
  }
  platform::AudioResult Queue(OwnBlock& block) const {
    const platform::AudioResult prepared = platform::PrepareBlock(device, block);
    return prepared != platform::kAudioOk ? prepared : platform::QueueBlock(device, block);
  }
  void QueueAll() {
    for (OwnBlock& block : blocks) EXPECT_EQ(Queue(block), platform::kAudioOk);
  }

  Window window{TV_WINDOW, nullptr, RecordMessages};
  platform::WaveInput device = 0;
  platform::AudioResult result = platform::kAudioOk;
  std::vector<OwnBlock> blocks;
};

}  // namespace tavimo::tests
