// Implements pulse_output.h. A device that plays nothing, as the engine's own does, asks nothing of the server.
#include "platform/linux/pulse_output.h"

#include <algorithm>
#include <utility>

namespace tavimo::platform {

using Lock = PulseConnection::Lock;

std::unique_ptr<OutputSink> PulseOutput::Open(const std::string& device, const WaveFormat& format) {
  auto output = std::make_unique<PulseOutput>();
  const bool isOpen = output->stream_.Open(AudioDirection::Output, device, format, &OnRoom, output.get());
  return isOpen ? std::move(output) : nullptr;
}

bool PulseOutput::Play(std::vector<std::uint8_t> sound) noexcept {
  {
    const Lock lock(stream_.Connection());
    sound_ = std::move(sound);
    WriteMore();
    if (paused_ == Paused::Yes) return true;
  }
  return stream_.SetFlow(PulseStream::Flow::Run);
}

void PulseOutput::OnRoom(pa_stream*, std::size_t, void* user) noexcept { static_cast<PulseOutput*>(user)->WriteMore(); }

void PulseOutput::WriteMore() noexcept {
  const PulseLibrary& pulse = stream_.Pulse();
  const std::size_t room = pulse.stream_writable_size(stream_.Stream());
  const std::size_t byteCount = std::min(room, sound_.size() - written_);
  if (room == static_cast<std::size_t>(-1) || byteCount == 0) return;
  if (pulse.stream_write(stream_.Stream(), sound_.data() + written_, byteCount, nullptr, 0, PA_SEEK_RELATIVE) < 0)
    return;
  written_ += byteCount;
  if (written_ < sound_.size()) return;
  // Tells the server that no more will come; a sound shorter than its buffer would otherwise wait for the rest.
  if (pa_operation* operation = pulse.stream_drain(stream_.Stream(), nullptr, nullptr))
    pulse.operation_unref(operation);
}

void PulseOutput::SetPaused(Paused paused) noexcept {
  {
    const Lock lock(stream_.Connection());
    if (std::exchange(paused_, paused) == paused || sound_.empty()) return;
  }
  stream_.SetFlow(paused == Paused::Yes ? PulseStream::Flow::Hold : PulseStream::Flow::Run);
}

void PulseOutput::Reset() noexcept {
  bool isSoundOnItsWay = false;
  {
    const Lock lock(stream_.Connection());
    isSoundOnItsWay = written_ > 0;
    sound_.clear();
    written_ = 0;
    heard_ = 0;
    paused_ = Paused::No;
  }
  if (isSoundOnItsWay) stream_.Flush();
}

// The server's clock runs on while nothing is written and for a while after a pause; what it has read, less what is
// still on its way to the ear, does not. Never backwards, never past what was written.
bool PulseOutput::GetPlayedBytes(std::uint32_t& byteCount) noexcept {
  const Lock lock(stream_.Connection());
  if (written_ > 0) {
    const pa_timing_info* times = stream_.Times();
    if (!times) return false;
    const auto bytesIn = [this](pa_usec_t time) {
      return static_cast<std::int64_t>(stream_.Pulse().usec_to_bytes(time, &stream_.Samples()));
    };
    const std::int64_t latency = bytesIn(times->sink_usec);
    const std::int64_t onItsWay =
        times->playing ? latency
                       : std::max<std::int64_t>(0, latency - static_cast<std::int64_t>(times->since_underrun));
    const auto written = static_cast<std::int64_t>(written_);
    heard_ = std::min(std::max(times->read_index - onItsWay, heard_), written);
  }
  byteCount = static_cast<std::uint32_t>(heard_);
  return true;
}

}  // namespace tavimo::platform
