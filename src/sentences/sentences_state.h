// The process-wide records of sentences and bookmarks.
#pragma once

#include "platform/files.h"
#include "sentences/bookmark_table.h"

namespace tavimo::sentences {

struct SentencesState {
  BookMarkTable bookMarkTable;     // of the recording opened last
  platform::FileStream studyFile;  // open from vcOpenSentenceFile to vcReadSentenceData
};

SentencesState& State() noexcept;

// Back to the state at load.
void ResetState() noexcept;

}  // namespace tavimo::sentences
