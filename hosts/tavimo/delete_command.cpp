// `tavimo delete` and `tavimo undo`: sentences that the learner does not want, cut out of the recording and put back.
#include <iostream>

#include "edit_journal.h"
#include "options.h"
#include "sentence_remover.h"
#include "text.h"

namespace tavimo::host {

int RunDelete(const Options& options) {
  LessonSession session(options.home, options.files.front());
  const Deletion deletion = DeleteSentences(session, options.sentences);
  std::cout << Readable(session.Recording().filename()) << ": " << Counted(deletion.sentencesLeft, "sentence")
            << " left";
  if (deletion.bookmarksLost > 0)
    std::cout << ", " << Counted(deletion.bookmarksLost, "bookmark") << " gone with the others";
  std::cout << "\nbackup: " << Readable(session.Folder().Path() / deletion.backup)
            << "\ntavimo undo brings it all back\n";
  return kDone;
}

int RunUndo(const Options& options) {
  LessonSession session(options.home, options.files.front());
  const UndoneEdit undone = UndoNewestEdit(session.Files(), options.force ? LaterChanges::Lose : LaterChanges::Refuse);
  std::cout << Readable(session.Recording().filename()) << ": the deletion of " << undone.moment << " is undone, "
            << Counted(undone.sentences.size(), "sentence") << " back\n";
  return kDone;
}

}  // namespace tavimo::host
