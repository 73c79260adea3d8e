#include "score_file.h"

#include <array>
#include <fstream>
#include <vector>

#include "content_hash.h"
#include "moment.h"
#include "refusal.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kTitleLine = "moment\tquestion\tsentence\tanswered\tright answer\tresult\ttext\n";
constexpr std::array<const char*, 3> kOutcomes{"right", "wrong", "skipped"};  // in the order of Outcome

enum Field : std::size_t { kQuestion = 1, kResult = 5, kText = 6, kFieldCount = 7 };

// A question that was moved or changed starts anew.
std::string KeyOf(const std::string& number, const std::string& textHash) { return number + " " + textHash; }

std::string TextHash(const Exercise& question) {
  const std::string whole = question.text + '\0' + question.choices + '\0' + question.answer;
  return ContentHash(whole.data(), whole.size());
}

std::vector<std::string> FieldsOf(const std::string& line) {
  std::vector<std::string> fields{""};
  for (const char byte : line) {
    if (byte == '\t') {
      fields.emplace_back();
    } else {
      fields.back() += byte;
    }
  }
  return fields;
}

}  // namespace

ScoreFile::ScoreFile(fs::path path) : path_(std::move(path)) {
  std::ifstream file(path_, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    endsWithLine_ = !file.eof();
    const std::vector<std::string> fields = FieldsOf(line);
    if (fields.size() != kFieldCount) continue;
    for (const Outcome outcome : {Outcome::Right, Outcome::Wrong}) {
      const bool isThis = fields[kResult] == kOutcomes[static_cast<std::size_t>(outcome)];
      if (isThis) last_[KeyOf(fields[kQuestion], fields[kText])] = outcome;
    }
  }
}

std::optional<Outcome> ScoreFile::LastOutcome(const Exercise& question) const {
  const auto found = last_.find(KeyOf(std::to_string(question.number), TextHash(question)));
  return found == last_.end() ? std::nullopt : std::optional(found->second);
}

void ScoreFile::Add(const Exercise& question, char given, Outcome outcome) {
  const bool isNew = !fs::exists(path_);
  std::ofstream file(path_, std::ios::binary | std::ios::app);
  const std::string answered(given == 0 ? 0 : 1, given);
  file << (isNew ? kTitleLine : "") << (endsWithLine_ ? "" : "\n") << MomentOf(fs::file_time_type::clock::now()) << '\t'
       << question.number << '\t' << question.sentence << '\t' << answered << '\t' << question.answer << '\t'
       << kOutcomes[static_cast<std::size_t>(outcome)] << '\t' << TextHash(question) << '\n';
  endsWithLine_ = true;
  if (!file.flush()) throw Refusal("the score cannot be written in " + Readable(path_));
}

}  // namespace tavimo::host
