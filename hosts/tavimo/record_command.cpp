// `tavimo record`: the learner says a sentence of a lesson.
#include <iostream>

#include "options.h"
#include "recorder.h"
#include "sentence_stretch.h"
#include "tape_recovery.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr std::int64_t kUsualSilenceMs = 2000;

RecordingRequest RequestFor(const Options& options) {
  RecordingRequest request;
  request.sentence = options.sentence.value();
  request.device = options.device;
  request.lengthMs = options.lengthMs;
  // A pause does not end a take whose length was asked for.
  request.silenceMs = options.silenceLengthMs;
  if (!request.silenceMs && !request.lengthMs) request.silenceMs = kUsualSilenceMs;
  if (options.append) request.start = TakeStart::AtEnd;
  if (options.atMs) {
    request.start = TakeStart::AtTime;
    request.atMs = *options.atMs;
  }
  return request;
}

}  // namespace

int RunRecord(const Options& options) {
  RecoverAtStart(options.home);
  LessonSession session(options.home, options.files.front());
  const RecordingRequest request = RequestFor(options);
  (void)StretchOf(session, request.sentence);  // refuses what is no sentence
  const RecordingResult result = RecordTake(session, request);
  std::cout << Describe(result.take) << '\n';
  if (!result.hasSpeech) std::cout << "Nothing louder than the room was heard; is it the right microphone?\n";
  if (result.end == TakeEnd::DeviceGone) std::cerr << "tavimo: the microphone went silent; what came before is kept\n";
  if (result.end == TakeEnd::DiskFull) std::cerr << "tavimo: the disk is full; what was recorded before is kept\n";
  return result.end == TakeEnd::DeviceGone || result.end == TakeEnd::DiskFull ? kRefused : kDone;
}

}  // namespace tavimo::host
