// `tavimo digest`: makes the working digest where there is none that is current.
#include "digest_maker.h"

#include <iostream>

#include "options.h"
#include "text.h"

namespace tavimo::host {

int RunDigest(const Options& options) {
  const LessonSession session(options.home, options.files.front());
  const Digest digest = OpenDigest(session, options.digestKind);
  std::cout << Readable(session.Recording().filename()) << ": " << digest.levels.size() << " levels, "
            << (options.digestKind == DigestKind::Peak ? "peak" : "exact") << (digest.wasFound ? ", current: " : ": ")
            << Readable(session.Folder().Path() / session.DigestPath()) << '\n';
  return kDone;
}

}  // namespace tavimo::host
