// Wave input that fills queued blocks, and wave output with a position in played bytes.
//
// Callers guarantee: the user-interface thread; a queued block and its bytes stay where they are until it is returned.
// A back end checks: every handle (0 and closed ones do nothing), the format, blocks that were not prepared. Its own
// thread only fills queued blocks, in the order queued, and posts kMessageWaveInData; it takes no lock that the
// user-interface thread holds for long and calls nothing of the engine.
//
// Results are the platform's codes: 0 is success.
#pragma once

#include <cstdint>

#include "tavimo.h"

namespace tavimo::platform {

using AudioResult = std::uint32_t;
inline constexpr AudioResult kAudioOk = 0;
inline constexpr AudioResult kAudioNoDevice = 2;
inline constexpr AudioResult kAudioInvalidHandle = 5;
inline constexpr AudioResult kAudioNoMemory = 7;
inline constexpr AudioResult kAudioBadFormat = 32;
inline constexpr AudioResult kAudioStillQueued = 33;
inline constexpr AudioResult kAudioUnprepared = 34;

// What a device must know of a format; 8-bit samples are unsigned, 16-bit ones signed and little-endian.
struct WaveFormat {
  std::uint16_t formatTag = 0;  // 1 = PCM, the only one devices take
  std::uint16_t channels = 0;
  std::uint32_t sampleRate = 0;
  std::uint16_t bitsPerSample = 0;
};

inline constexpr std::uint32_t kBlockDone = 1;      // returned
inline constexpr std::uint32_t kBlockPrepared = 2;  // may be queued
inline constexpr std::uint32_t kBlockQueued = 16;   // the device's until it is returned

// A block for the input device; field by field the platform's own record.
struct WaveBlock {
  char* data = nullptr;
  std::uint32_t bufferLength = 0;
  std::uint32_t bytesRecorded = 0;
  std::uintptr_t user = 0;
  std::uint32_t flags = 0;
  std::uint32_t loops = 0;
  WaveBlock* next = nullptr;
  std::uintptr_t reserved = 0;
};

using WaveInput = std::uintptr_t;   // 0: none
using WaveOutput = std::uintptr_t;  // 0: none

// Opens the input device that is chosen (the default one unless the host chose). Each block that is full comes back as
// kMessageWaveInData posted to window, wParam the device, lParam the block. A refusal leaves device as it was.
[[nodiscard]] AudioResult OpenWaveInput(WaveInput& device, const WaveFormat& format, VcWindow window) noexcept;

// Starts before any block is queued are allowed; sound without a block to go to is lost.
AudioResult StartWaveInput(WaveInput device) noexcept;

// Returns the block that is being filled, with the bytes so far and the rest silent; empty blocks stay queued.
AudioResult StopWaveInput(WaveInput device) noexcept;

// Stops and returns every queued block; none is returned later.
AudioResult ResetWaveInput(WaveInput device) noexcept;
AudioResult CloseWaveInput(WaveInput device) noexcept;

[[nodiscard]] AudioResult PrepareBlock(WaveInput device, WaveBlock& block) noexcept;
AudioResult UnprepareBlock(WaveInput device, WaveBlock& block) noexcept;
[[nodiscard]] AudioResult QueueBlock(WaveInput device, WaveBlock& block) noexcept;

// Opens the output device that is chosen; it plays what is queued on it, and the engine queues nothing.
[[nodiscard]] AudioResult OpenWaveOutput(WaveOutput& device, const WaveFormat& format) noexcept;
AudioResult PauseWaveOutput(WaveOutput device) noexcept;
AudioResult RestartWaveOutput(WaveOutput device) noexcept;
AudioResult ResetWaveOutput(WaveOutput device) noexcept;
AudioResult CloseWaveOutput(WaveOutput device) noexcept;

// The bytes played since the device was opened, wrapping at 32 bits. False for no device, and for one that answers in
// another unit.
[[nodiscard]] bool GetPlayedBytes(WaveOutput device, std::uint32_t& byteCount) noexcept;

}  // namespace tavimo::platform
