#include "recording/capture_ring.h"

namespace tavimo::recording {

using platform::WaveBlock;

namespace {

std::size_t Offset(std::size_t index) noexcept { return index * kCaptureBlockBytes; }

void LayOutHeader(CaptureRing& ring, std::size_t index) noexcept {
  WaveBlock& header = ring.headers[index];
  header.data = reinterpret_cast<char*>(ring.buffers.data() + Offset(index));
  header.bufferLength = kCaptureBlockBytes;
  header.flags = 0;
  header.loops = 0;
}

std::size_t NextIndex(const CaptureRing& ring) noexcept { return static_cast<std::size_t>(ring.nextIndex); }

std::int32_t Following(std::int32_t index) noexcept { return (index + 1) % static_cast<std::int32_t>(kCaptureBlocks); }

}  // namespace

bool BeginCapture(CaptureRing& ring) noexcept {
  ring.queuedCount = 0;
  ring.returnedCount = 0;
  ring.nextIndex = 0;
  ring.waitingReturns = 0;
  ++ring.session;
  ring.captureActive = true;
  platform::StartWaveInput(ring.inputDevice);
  for (std::size_t i = 0; i < kCaptureBlocks; ++i) {
    LayOutHeader(ring, i);
    if (platform::PrepareBlock(ring.inputDevice, ring.headers[i]) != platform::kAudioOk) return false;
    ++ring.queuedCount;
    if (platform::QueueBlock(ring.inputDevice, ring.headers[i]) != platform::kAudioOk) return false;
  }
  return true;
}

std::span<const std::uint8_t> NextBlock(const CaptureRing& ring) noexcept {
  return std::span(ring.buffers).subspan(Offset(NextIndex(ring)), kCaptureBlockBytes);
}

RequeueFaults RequeueNextBlock(CaptureRing& ring) noexcept {
  const std::size_t index = NextIndex(ring);
  WaveBlock& header = ring.headers[index];
  platform::UnprepareBlock(ring.inputDevice, header);
  LayOutHeader(ring, index);
  RequeueFaults faults;
  const platform::AudioResult prepared = platform::PrepareBlock(ring.inputDevice, header);
  if (prepared != platform::kAudioOk) {
    faults.preparing = prepared == platform::kAudioNoMemory ? RequeueFault::NoMemory : RequeueFault::NotPrepared;
  }
  if (faults.preparing == RequeueFault::NoMemory) return faults;
  ++ring.queuedCount;
  faults.notQueued = platform::QueueBlock(ring.inputDevice, header) != platform::kAudioOk;
  ring.nextIndex = Following(ring.nextIndex);
  return faults;
}

void StopCapture(CaptureRing& ring) noexcept {
  ring.captureActive = false;
  platform::StopWaveInput(ring.inputDevice);
  platform::ResetWaveInput(ring.inputDevice);
}

void ReleaseCapture(CaptureRing& ring) noexcept {
  std::int32_t index = ring.nextIndex;
  for (std::int32_t count = ring.returnedCount; count < ring.queuedCount; ++count) {
    platform::UnprepareBlock(ring.inputDevice, ring.headers[static_cast<std::size_t>(index)]);
    index = Following(index);
  }
  platform::CloseWaveInput(ring.inputDevice);
  ring.inputDevice = 0;
}

}  // namespace tavimo::recording
