// The sound server's client library, loaded when a device is first opened: the engine must load and work on a system
// without it, and cheaply. One list names the functions that are used.
#pragma once

#include <pulse/pulseaudio.h>

namespace tavimo::platform {

#define TAVIMO_PULSE_FUNCTIONS(FUNCTION) \
  FUNCTION(context_connect)              \
  FUNCTION(context_disconnect)           \
  FUNCTION(context_get_sink_info_list)   \
  FUNCTION(context_get_source_info_list) \
  FUNCTION(context_get_state)            \
  FUNCTION(context_new)                  \
  FUNCTION(context_rttime_new)           \
  FUNCTION(context_set_state_callback)   \
  FUNCTION(context_unref)                \
  FUNCTION(operation_cancel)             \
  FUNCTION(operation_get_state)          \
  FUNCTION(operation_unref)              \
  FUNCTION(rtclock_now)                  \
  FUNCTION(stream_connect_playback)      \
  FUNCTION(stream_connect_record)        \
  FUNCTION(stream_cork)                  \
  FUNCTION(stream_disconnect)            \
  FUNCTION(stream_drain)                 \
  FUNCTION(stream_drop)                  \
  FUNCTION(stream_flush)                 \
  FUNCTION(stream_get_state)             \
  FUNCTION(stream_get_timing_info)       \
  FUNCTION(stream_new)                   \
  FUNCTION(stream_peek)                  \
  FUNCTION(stream_readable_size)         \
  FUNCTION(stream_set_read_callback)     \
  FUNCTION(stream_set_state_callback)    \
  FUNCTION(stream_set_write_callback)    \
  FUNCTION(stream_unref)                 \
  FUNCTION(stream_update_timing_info)    \
  FUNCTION(stream_writable_size)         \
  FUNCTION(stream_write)                 \
  FUNCTION(threaded_mainloop_free)       \
  FUNCTION(threaded_mainloop_get_api)    \
  FUNCTION(threaded_mainloop_lock)       \
  FUNCTION(threaded_mainloop_new)        \
  FUNCTION(threaded_mainloop_signal)     \
  FUNCTION(threaded_mainloop_start)      \
  FUNCTION(threaded_mainloop_unlock)     \
  FUNCTION(threaded_mainloop_wait)       \
  FUNCTION(usec_to_bytes)

// Each function under its name without the library's prefix.
struct PulseLibrary {
#define TAVIMO_POINTER(name) decltype(&::pa_##name) name = nullptr;  // NOLINT(bugprone-macro-parentheses): declares it
  TAVIMO_PULSE_FUNCTIONS(TAVIMO_POINTER)
#undef TAVIMO_POINTER
};

// Null when the library or one of the functions is missing. It is never unloaded.
const PulseLibrary* LoadedPulse() noexcept;

}  // namespace tavimo::platform
