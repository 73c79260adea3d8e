// `tavimo compare`: what the learner said under what was to be said.
#include <iostream>

#include "comparison.h"
#include "options.h"
#include "tape_recovery.h"
#include "text.h"

namespace tavimo::host {

int RunCompare(const Options& options) {
  RecoverAtStart(options.home);
  LessonSession session(options.home, options.files.front());
  (void)StretchOf(session, options.sentence.value());  // says that it was not cut before it says that no take is there
  const Take take = ChooseTake(options.sentence, options.take);
  const Digest digest = OpenDigest(session, options.digestKind);
  std::cout << Describe(SaveComparison(session, digest.levels, *options.sentence, take, options.output))
            << "picture: " << Readable(options.output) << '\n';
  return kDone;
}

}  // namespace tavimo::host
