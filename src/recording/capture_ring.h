// The ring of four blocks that circulate between the input device and the engine. Moves blocks and counts them; what is
// done with a block's sound, and who is told, is the door's.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/audio.h"

namespace tavimo::recording {

inline constexpr std::size_t kCaptureBlocks = 4;
inline constexpr std::size_t kCaptureBlockBytes = 1256;

struct CaptureRing {
  platform::WaveInput inputDevice = 0;
  std::array<std::uint8_t, kCaptureBlocks * kCaptureBlockBytes> buffers{};
  std::array<platform::WaveBlock, kCaptureBlocks> headers{};  // header i describes block i
  std::int32_t nextIndex = 0;                                 // the block expected back next
  std::int32_t queuedCount = 0;                               // since the device was opened
  std::int32_t returnedCount = 0;                             // handled since the device was opened
  std::int32_t waitingReturns = 0;                            // returned, and not yet taken up
  std::uint32_t session = 0;                                  // another one for each opening of the device
  bool isHandling = false;                                    // a returned block is being handled
  bool captureActive = false;                                 // returned blocks are handled
  bool tapeWriting = false;                                   // and appended to the tape
  bool paused = false;
};

// Starts the open device and queues the four blocks. False when one could not be queued: the device goes on with those
// before it.
[[nodiscard]] bool BeginCapture(CaptureRing& ring) noexcept;

// The sound of the block expected back next: all of it, whatever the device says it recorded.
[[nodiscard]] std::span<const std::uint8_t> NextBlock(const CaptureRing& ring) noexcept;

enum class RequeueFault {
  None,
  NotPrepared,  // the block is queued again all the same
  NoMemory,     // the block is not queued again, and the next one is expected in its place
};

struct RequeueFaults {
  RequeueFault preparing = RequeueFault::None;
  bool notQueued = false;
};

// Hands the block expected back next to the device once more.
[[nodiscard]] RequeueFaults RequeueNextBlock(CaptureRing& ring) noexcept;

// Takes back every block that is still with the device and closes it. Messages about them are the door's to remove
// between StopCapture and ReleaseCapture.
void StopCapture(CaptureRing& ring) noexcept;
void ReleaseCapture(CaptureRing& ring) noexcept;

}  // namespace tavimo::recording
