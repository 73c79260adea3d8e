// A small lesson with everything that lies beside a recording, for tests that look at all of it at once.
#pragma once

namespace tavimo::tests {

// In the current directory, which has the engine's working folders: a.wav (six seconds at 1000 Hz, 8 bits), stereo.wav, a
// learner's recording, a digest, a study file of two sentences with a bookmark in zud and beside the recording, questions,
// a script, sound parameters, a profile of titles.
void WriteLesson();

}  // namespace tavimo::tests
