#include "hostutil/program_family.h"

#include <span>

#include "platform/gbk_literal.h"

namespace tavimo::hostutil {

using namespace platform::literals;

namespace {

struct Exclusion {
  const char* title;    // of the program that runs
  const char* message;  // to the learner
};

constexpr const char* kPlayerTitle = "kelvo-player";
constexpr const char* kRecorderTitle = "kelvo-recorder";
constexpr const char* kReviewerTitle = u8"Tavimo-复习机"_gbk;

constexpr Exclusion kPlayerExclusions[] = {
    {kRecorderTitle, u8"您已经启动了“Tavimo—录音机”，要关掉它才能启动“Tavimo”"_gbk},
};
constexpr Exclusion kRecorderExclusions[] = {
    {kPlayerTitle, u8"您已经启动了“Tavimo”，要关掉它才能启动“录音机”"_gbk},
    {kReviewerTitle, u8"您已经启动了“Tavimo—复习机”，要关掉它才能启动“录音机”"_gbk},
};
constexpr Exclusion kReviewerExclusions[] = {
    {kRecorderTitle, u8"您已经启动了“Tavimo—录音机”，要关掉它才能启动“复习机”"_gbk},
};

std::span<const Exclusion> ExclusionsOf(std::int32_t program) noexcept {
  if (program == 0) return kPlayerExclusions;
  if (program == 1) return kRecorderExclusions;
  return kReviewerExclusions;
}

}  // namespace

const char* ReasonNotToRun(std::int32_t program, bool (*titleExists)(const char*)) noexcept {
  for (const Exclusion& exclusion : ExclusionsOf(program)) {
    if (titleExists(exclusion.title)) return exclusion.message;
  }
  return nullptr;
}

}  // namespace tavimo::hostutil
