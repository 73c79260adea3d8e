// Implements pulse_connection.h.
#include "platform/linux/pulse_connection.h"

#include "platform/common/guarded.h"

namespace tavimo::platform {

namespace {

constexpr pa_usec_t kPatience = 3'000'000;  // in microseconds

struct Listing {
  const PulseConnection& connection;
  std::vector<PulseDevice> devices;
};

// Called once for each device, and once more behind the last.
template <class Info>
void OnDevice(pa_context*, const Info* info, int end, void* user) noexcept {
  Listing& listing = *static_cast<Listing*>(user);
  if (end != 0) {
    listing.connection.Signal();
    return;
  }
  Guarded(0, [&] {
    listing.devices.push_back({info->name, info->description ? info->description : ""});
    return 0;
  });
}

// Null when no thread is to be had.
pa_threaded_mainloop* StartedLoop(const PulseLibrary& pulse) noexcept {
  static pa_threaded_mainloop* started = nullptr;
  if (started) return started;
  pa_threaded_mainloop* loop = pulse.threaded_mainloop_new();
  if (!loop) return nullptr;
  if (pulse.threaded_mainloop_start(loop) == 0) return started = loop;
  pulse.threaded_mainloop_free(loop);
  return nullptr;
}

}  // namespace

std::unique_ptr<PulseConnection> PulseConnection::Open() {
  const PulseLibrary* pulse = LoadedPulse();
  pa_threaded_mainloop* loop = pulse ? StartedLoop(*pulse) : nullptr;
  if (!loop) return nullptr;
  auto connection = std::make_unique<PulseConnection>(*pulse, loop);
  return connection->Connect() ? std::move(connection) : nullptr;
}

bool PulseConnection::Connect() noexcept {
  const Lock lock(*this);
  context_ = pulse_.context_new(pulse_.threaded_mainloop_get_api(loop_), "Tavimo");
  if (!context_) return false;
  pulse_.context_set_state_callback(
      context_, [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->Signal(); }, this);
  if (pulse_.context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) return false;
  WaitUntil([this] {
    const pa_context_state_t state = pulse_.context_get_state(context_);
    return state == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state);
  });
  return pulse_.context_get_state(context_) == PA_CONTEXT_READY;
}

PulseConnection::~PulseConnection() {
  if (!context_) return;
  const Lock lock(*this);
  pulse_.context_set_state_callback(context_, nullptr, nullptr);
  pulse_.context_disconnect(context_);
  pulse_.context_unref(context_);
}

template <class Predicate>
bool PulseConnection::WaitUntil(Predicate isDone) noexcept {
  if (isDone()) return true;
  if (isLate_) return false;
  const pa_time_event_cb_t onDeadline = [](pa_mainloop_api*, pa_time_event*, const timeval*, void* user) {
    auto* self = static_cast<PulseConnection*>(user);
    self->isLate_ = true;
    self->Signal();
  };
  pa_time_event* deadline = pulse_.context_rttime_new(context_, pulse_.rtclock_now() + kPatience, onDeadline, this);
  while (!isDone() && !isLate_) pulse_.threaded_mainloop_wait(loop_);
  pulse_.threaded_mainloop_get_api(loop_)->time_free(deadline);
  return isDone();
}

bool PulseConnection::Finish(pa_operation* operation) noexcept {
  if (!operation) return false;
  WaitUntil([&] { return pulse_.operation_get_state(operation) != PA_OPERATION_RUNNING; });
  const bool isDone = pulse_.operation_get_state(operation) == PA_OPERATION_DONE;
  if (!isDone) pulse_.operation_cancel(operation);
  pulse_.operation_unref(operation);
  return isDone;
}

bool PulseConnection::WaitForStream(const pa_stream* stream) noexcept {
  WaitUntil([&] { return pulse_.stream_get_state(stream) != PA_STREAM_CREATING; });
  return pulse_.stream_get_state(stream) == PA_STREAM_READY;
}

std::vector<PulseDevice> PulseConnection::ListDevices(AudioDirection direction) {
  Listing listing{*this, {}};
  const Lock lock(*this);
  Finish(direction == AudioDirection::Input
             ? pulse_.context_get_source_info_list(context_, &OnDevice<pa_source_info>, &listing)
             : pulse_.context_get_sink_info_list(context_, &OnDevice<pa_sink_info>, &listing));
  return std::move(listing.devices);
}

}  // namespace tavimo::platform
