// `tavimo wave`: a picture of a recording, or of a stretch of it.
#include <iostream>

#include "options.h"
#include "refusal.h"
#include "text.h"

namespace tavimo::host {

int RunWave(const Options& options) {
  LessonSession session(options.home, options.files.front());
  const Digest digest = OpenDigest(session, options.digestKind);
  PictureRequest request;
  request.style = options.style;
  request.recordingMs = static_cast<std::int64_t>(digest.levels.size()) * kLevelMs;
  request.fromMs = options.fromMs;
  request.toMs = options.toMs.value_or(request.recordingMs);
  request.width = options.width;
  request.height = options.height;
  if (request.fromMs >= request.recordingMs) {
    throw Refusal("it ends at " + FormatTime(session.Header().DurationMs()) + ", before --from " +
                  FormatTime(options.fromMs));
  }
  request.startsMs = session.LoadStudyFile();
  if (!session.CanBeSentences(request.startsMs)) request.startsMs.clear();
  const PictureSize size = SaveWavePicture(request, options.output);
  std::cout << Readable(options.output) << ": " << size.width << " x " << size.height << " pixels, ";
  if (request.startsMs.empty()) {
    std::cout << "no sentences stored yet (tavimo cut finds them)\n";
  } else {
    std::cout << request.startsMs.size() << " sentences\n";
  }
  return kDone;
}

}  // namespace tavimo::host
