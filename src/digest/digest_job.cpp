#include "digest/digest_job.h"

#include "core/text_compare.h"
#include "platform/files.h"
#include "platform/utility.h"

namespace tavimo::digest {

namespace {

class JobObserver final : public SummaryObserver {
 public:
  explicit JobObserver(DigestJob& job) noexcept : job_(job) {}

  Continue OnPiece(const SummaryProgress& progress) noexcept override {
    const auto percent = static_cast<std::int32_t>(static_cast<double>(progress.bytesDone) * 100.0 /
                                                   static_cast<double>(progress.dataLength));
    if (percent > highest_) {
      highest_ = percent;
      job_.percentage.store(kWorkerRuns | percent);
    }
    return job_.cancelRequested.load() != 0 ? Continue::No : Continue::Yes;
  }

 private:
  DigestJob& job_;
  std::int32_t highest_ = 0;
};

bool WaveIsTemporary(const DigestJob& job) noexcept {
  return core::CompareIgnoringCase(job.sourcePath.View(), job.wavePath.View()) != 0 &&
         !platform::IsSameFile(job.sourcePath.CString(), job.wavePath.CString());
}

}  // namespace

bool BeginJob(DigestJob& job, const char* source, const char* wave, const char* digest) noexcept {
  if ((job.percentage.load() & kWorkerRuns) != 0) return false;
  if (!job.sourcePath.Assign(core::TextOf(source)) || !job.wavePath.Assign(core::TextOf(wave)) ||
      !job.digestPath.Assign(core::TextOf(digest)) || job.sourcePath.IsEmpty() || job.wavePath.IsEmpty() ||
      job.digestPath.IsEmpty()) {
    return false;
  }
  job.cancelRequested.store(0);
  job.percentage.store(kWorkerRuns);
  return true;
}

void AbandonJob(DigestJob& job) noexcept { job.percentage.store(0); }

void RunJob(DigestJob& job, SummaryWorkspace& workspace) noexcept {
  JobObserver observer(job);
  const char* digestPath = job.digestPath.CString();
  const bool wouldReplaceSource = platform::IsSameFile(job.sourcePath.CString(), digestPath);
  const SummaryEnd end = wouldReplaceSource ? SummaryEnd::CannotBegin
                                            : SummarizeWave(job.wavePath.CString(), digestPath, workspace, observer);
  if (end == SummaryEnd::CannotBegin) return job.percentage.store(0);
  if (end == SummaryEnd::Written) {
    platform::SetSameFileTime(job.sourcePath.CString(), digestPath);
  } else {
    platform::RemoveFile(digestPath);  // an earlier digest must not pass for the one that was asked for
  }
  if (WaveIsTemporary(job)) platform::RemoveFile(job.wavePath.CString());
  job.percentage.store(kJobDone);
}

}  // namespace tavimo::digest
