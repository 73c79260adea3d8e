// Which end a device gets: the choice of the host, before that the environment variables TAVIMO_WAVE_INPUT and
// TAVIMO_WAVE_OUTPUT, before that the system's default device.
//
//   choice     input                                output
//   none       refused                              refused
//   host       tvFeedWaveInput                      tvAdvanceWaveOutput
//   file:PATH  the wave file, as real time          -
//   default    the system's default input           … output
//   NAME       an input with that name or, if       an output, likewise
//              there is none, that description
#pragma once

#include <memory>

#include "platform/common/audio_ends.h"
#include "platform/common/block_queue.h"

namespace tavimo::platform {

// Null takes the host's choice back. False, and the choice stays, when the text is empty or names a file that cannot be a
// microphone. Whether the system has the device turns out when it is opened.
bool ChooseDevice(AudioDirection direction, const char* choice) noexcept;

// Null when there is no such device. May throw std::bad_alloc.
std::unique_ptr<InputSource> OpenChosenSource(const WaveFormat& format, BlockQueue& queue);
std::unique_ptr<OutputSink> OpenChosenSink(const WaveFormat& format);

}  // namespace tavimo::platform
