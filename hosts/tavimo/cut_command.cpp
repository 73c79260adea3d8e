// `tavimo cut`: finds the sentences, prints them, and stores them beside the bookmarks.
#include <iostream>

#include "edit_journal.h"
#include "options.h"
#include "sentence_finder.h"
#include "sentence_table.h"
#include "text.h"

namespace tavimo::host {

int RunCut(const Options& options) {
  LessonSession session(options.home, options.files.front());
  const Digest digest = OpenDigest(session, options.digestKind);
  const Cut cut = FindSentences(digest.levels, options.threshold, options.silenceMs);
  const LessonLock lock(kEditLockFile, kChangingElsewhere);  // or a deletion's new starts would be stored over
  const bool isWorthStoring = cut.startsMs.size() >= 2;      // one sentence is the whole recording
  if (isWorthStoring) {
    session.LoadStudyFile();  // for its bookmarks, which are stored with the starts
    session.StoreStudyFile(cut.startsMs);
  }
  if (options.tableForm == TableForm::Json) {
    PrintJson(std::cout, session, cut);
    return kDone;
  }
  PrintTable(std::cout, session, cut.startsMs, DescribeParameters(cut));
  if (!isWorthStoring) std::cout << "Fewer than two sentences are not stored; its study file stays as it was.\n";
  return kDone;
}

}  // namespace tavimo::host
