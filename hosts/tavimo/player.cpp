#include "player.h"

#include <chrono>
#include <fstream>
#include <thread>
#include <vector>

#include "refusal.h"
#include "system.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPoll = std::chrono::milliseconds(20);
constexpr auto kLongestStandstill = std::chrono::seconds(5);

std::vector<char> ReadStretch(const PlayRequest& request) {
  const std::uint64_t first = request.header.ByteAt(request.startMs);
  std::vector<char> sound(static_cast<std::size_t>(request.header.ByteAt(request.endMs) - first));
  std::ifstream file(request.file, std::ios::binary);
  file.seekg(static_cast<std::streamoff>(request.header.dataOffset + first));
  if (!file.read(sound.data(), static_cast<std::streamsize>(sound.size()))) {
    throw Refusal("its sound cannot be read to the end");
  }
  if (sound.empty()) throw Refusal("there is no sound in it to play");
  return sound;
}

// Stops what plays whichever way the waiting ends.
struct StopAtEnd {
  StopAtEnd() = default;
  StopAtEnd(const StopAtEnd&) = delete;
  StopAtEnd& operator=(const StopAtEnd&) = delete;
  ~StopAtEnd() { tvStopPlaying(); }
};

void WaitUntilPlayed() {
  const StopAtEnd stop;
  Clock::time_point lastMove = Clock::now();
  for (int playedMs = tvPlayedMs(), before = -1; playedMs >= 0; playedMs = tvPlayedMs()) {
    if (playedMs != before) lastMove = Clock::now();
    before = playedMs;
    if (Clock::now() - lastMove > kLongestStandstill) throw Refusal("the loudspeaker stands still");
    StopIfInterrupted();
    std::this_thread::sleep_for(kPoll);
  }
}

void Pause(std::int64_t lengthMs) {
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(lengthMs);
  while (Clock::now() < end) {
    StopIfInterrupted();
    std::this_thread::sleep_for(std::min<Clock::duration>(kPoll, end - Clock::now()));
  }
}

void PlayOnce(const PlayRequest& request, const std::vector<char>& sound) {
  const WaveHeader& header = request.header;
  if (tvPlayWave(sound.data(), static_cast<int>(sound.size()), static_cast<int>(header.sampleRate),
                 header.bitsPerSample, header.channels) != 0) {
    throw Refusal("there is no loudspeaker to play it on; tavimo devices lists them");
  }
  // The device "host" waits to be told that something was heard; nobody hears it, so all of it was at once.
  if (request.device == "host") tvAdvanceWaveOutput(static_cast<std::uint32_t>(sound.size()));
  WaitUntilPlayed();
}

}  // namespace

void Play(const PlayRequest& request) {
  const std::vector<char> sound = ReadStretch(request);
  if (!request.device.empty() && tvUseWaveOutput(request.device.c_str()) != 0) {
    throw Refusal("'" + ReadableText(request.device) + "' is no device; tavimo devices lists them");
  }
  for (int time = 1; time <= request.times; ++time) {
    PlayOnce(request, sound);
    if (time < request.times) Pause(request.gapMs);
  }
}

}  // namespace tavimo::host
