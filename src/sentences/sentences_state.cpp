#include "sentences/sentences_state.h"

namespace tavimo::sentences {

namespace {
constinit SentencesState sentencesState;
}  // namespace

SentencesState& State() noexcept { return sentencesState; }

void ResetState() noexcept { sentencesState = SentencesState{}; }

}  // namespace tavimo::sentences
