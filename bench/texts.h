// The texts the jobs read, from a fixed seed. Written in GBK; each line ends with CR and LF.
#pragma once

#include <cstdint>
#include <filesystem>

namespace tavimo::bench {

// Paragraphs of English and Chinese, some of both.
void WriteScript(const std::filesystem::path& file, std::int64_t byteCount);

// Questions, passages and questions about them, and a study file with a sentence for each record.
void WriteQuestions(const std::filesystem::path& script, const std::filesystem::path& study, std::int64_t byteCount);

}  // namespace tavimo::bench
