// Values that a careless or hostile host hands to an export: numbers at the edges of what is meant and far outside, paths of
// files that are there, of folders and of nothing, texts that are no GBK.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <string>

namespace tavimo::fuzz {

std::int64_t AnyNumber(FuzzedDataProvider& input);
double AnyFraction(FuzzedDataProvider& input);

// A path that stays in the scratch folder, or any text: no export knows the one from the other.
std::string AnyText(FuzzedDataProvider& input);

// One of the files that a lesson consists of.
const char* LessonPath(FuzzedDataProvider& input);

}  // namespace tavimo::fuzz
