// What becomes of the learner's takes when sentences are deleted: those behind get other numbers, and their takes go with
// them. Names are relative to the lesson's working folder.
#pragma once

#include <filesystem>
#include <vector>

namespace tavimo::host {

// Moves all takes into the backup and gives those of the sentences that stay a second name under their new numbers.
// REQUIRES: the deleted sentences' numbers rise.
void MoveTakesAway(const std::filesystem::path& backup, const std::vector<int>& deletedSentences);

// Moves the backup's takes back, with those recorded since under the numbers their sentences had. Without takes in the
// backup it changes nothing, so that it can be done again after a kill.
void BringTakesBack(const std::filesystem::path& backup, const std::vector<int>& deletedSentences);

}  // namespace tavimo::host
