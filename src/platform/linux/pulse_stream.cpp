// Implements pulse_stream.h.
#include "platform/linux/pulse_stream.h"

#include <algorithm>
#include <optional>

namespace tavimo::platform {

namespace {

constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);

// Half a block of the engine: blocks then come back as steadily as they fill.
constexpr std::uint32_t kFragmentBytes = 628;
constexpr std::uint32_t kPlaybackPerSecond = 10;  // 100 ms on their way to the ear

void OnDone(pa_stream*, int, void* connection) noexcept { static_cast<const PulseConnection*>(connection)->Signal(); }

// The name of the device that is meant, first by name and then by description; empty for the server's default.
std::optional<std::string> ServerName(PulseConnection& connection, AudioDirection direction,
                                      const std::string& device) {
  if (device == "default") return "";
  const std::vector<PulseDevice> devices = connection.ListDevices(direction);
  for (const auto field : {&PulseDevice::name, &PulseDevice::description}) {
    const auto found =
        std::find_if(devices.begin(), devices.end(), [&](const PulseDevice& d) { return d.*field == device; });
    if (found != devices.end()) return found->name;
  }
  return std::nullopt;
}

}  // namespace

bool PulseStream::Open(AudioDirection direction, const std::string& device, const WaveFormat& format,
                       pa_stream_request_cb_t onRequest, void* user) {
  connection_ = PulseConnection::Open();
  if (!connection_) return false;
  const std::optional<std::string> name = ServerName(*connection_, direction, device);
  if (!name) return false;
  samples_ = {format.bitsPerSample == 8 ? PA_SAMPLE_U8 : PA_SAMPLE_S16LE, format.sampleRate,
              static_cast<std::uint8_t>(format.channels)};
  const PulseConnection::Lock lock(*connection_);
  stream_ = Pulse().stream_new(connection_->Context(), "sound", &samples_, nullptr);
  if (!stream_) return false;
  Pulse().stream_set_state_callback(
      stream_, [](pa_stream*, void* connection) { static_cast<const PulseConnection*>(connection)->Signal(); },
      connection_.get());
  const bool isInput = direction == AudioDirection::Input;
  (isInput ? Pulse().stream_set_read_callback : Pulse().stream_set_write_callback)(stream_, onRequest, user);
  return Connect(direction, name->empty() ? nullptr : name->c_str());
}

bool PulseStream::Connect(AudioDirection direction, const char* device) noexcept {
  pa_buffer_attr sizes{kServersChoice, kServersChoice, kServersChoice, kServersChoice, kServersChoice};
  constexpr auto kFlags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_START_CORKED);
  int result = 0;
  if (direction == AudioDirection::Input) {
    sizes.fragsize = kFragmentBytes;
    result = Pulse().stream_connect_record(stream_, device, &sizes, kFlags);
  } else {
    const std::uint32_t frameBytes = samples_.channels * (samples_.format == PA_SAMPLE_U8 ? 1u : 2u);
    sizes.tlength = samples_.rate / kPlaybackPerSecond * frameBytes;
    result = Pulse().stream_connect_playback(stream_, device, &sizes, kFlags, nullptr, nullptr);
  }
  return result >= 0 && connection_->WaitForStream(stream_);
}

PulseStream::~PulseStream() {
  if (!stream_) return;
  const PulseConnection::Lock lock(*connection_);
  Pulse().stream_set_state_callback(stream_, nullptr, nullptr);
  Pulse().stream_set_read_callback(stream_, nullptr, nullptr);
  Pulse().stream_set_write_callback(stream_, nullptr, nullptr);
  Pulse().stream_disconnect(stream_);
  Pulse().stream_unref(stream_);
}

bool PulseStream::SetFlow(Flow flow) noexcept {
  const PulseConnection::Lock lock(*connection_);
  return connection_->Finish(Pulse().stream_cork(stream_, flow == Flow::Hold ? 1 : 0, &OnDone, connection_.get()));
}

void PulseStream::Flush() noexcept {
  const PulseConnection::Lock lock(*connection_);
  connection_->Finish(Pulse().stream_flush(stream_, &OnDone, connection_.get()));
}

const pa_timing_info* PulseStream::Times() noexcept {
  const bool isCurrent = connection_->Finish(Pulse().stream_update_timing_info(stream_, &OnDone, connection_.get()));
  return isCurrent ? Pulse().stream_get_timing_info(stream_) : nullptr;
}

}  // namespace tavimo::platform
