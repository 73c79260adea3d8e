// `tavimo play`: a sentence of a recording, as often as the learner wants to hear it.
#include <iostream>

#include "options.h"
#include "player.h"
#include "sentence_stretch.h"
#include "text.h"

namespace tavimo::host {

int RunPlay(const Options& options) {
  LessonSession session(options.home, options.files.front());
  const Stretch stretch = StretchOf(session, options.sentence.value());
  PlayRequest request;
  request.file = session.Recording();
  request.header = session.Header();
  request.startMs = stretch.startMs;
  request.endMs = stretch.endMs;
  request.device = options.device;
  request.times = options.repeat;
  request.gapMs = options.gapMs;
  Play(request);
  std::cout << "sentence " << *options.sentence << ": " << FormatTime(stretch.endMs - stretch.startMs) << " from "
            << FormatTime(stretch.startMs) << ", played " << (options.repeat == 1 ? "once" : "")
            << (options.repeat == 1 ? "" : std::to_string(options.repeat) + " times") << '\n';
  return kDone;
}

}  // namespace tavimo::host
