// The study file of a recording: where it lies, what it holds, how it is read and stored. Which recording is meant and
// which bookmarks are current is the door's to know.
//
//   offset  size  content (numbers little-endian)
//        0   320  bookmark table
//      320    4N  sentence starts, unsigned 32-bit milliseconds; 1 to 3 bytes behind them are ignored
#pragma once

#include <cstdint>
#include <string_view>

#include "core/fixed_text.h"
#include "platform/files.h"
#include "sentences/bookmark_table.h"

namespace tavimo::sentences {

inline constexpr std::size_t kLongestStudyPath = 223;
using StudyPath = core::FixedText<kLongestStudyPath>;

struct StudyPaths {
  StudyPath beside;       // beside the recording
  StudyPath studyFolder;  // in the folder "zud" of the current directory; preferred, and the only one written
};

// False when the recording's path is empty, or it or a result is longer than 223 bytes. Goes by bytes.
[[nodiscard]] bool DeriveStudyPaths(std::string_view recordingPath, StudyPaths& paths) noexcept;

// Opens the study file into file and returns the number of its sentence starts, or -1 with file closed.
[[nodiscard]] std::int32_t OpenStudyFile(const StudyPaths& paths, platform::FileStream& file) noexcept;

// How many sentence starts an open study file holds; -1 when it is too short for one.
[[nodiscard]] std::int32_t CountStarts(const platform::FileStream& file) noexcept;

// Reads the table and count starts from the beginning of the file; what the file does not hold stays as it was.
void ReadStudyFile(platform::FileStream& file, BookMarkTable& table, std::uint32_t* startsMs,
                   std::int32_t count) noexcept;

// Reads the values index and index + 1, counted in 32-bit values from the start of the file, into two cells (null
// allowed). A value the file does not hold leaves its cell alone.
void ReadValuePair(platform::FileStream& file, std::int32_t index, std::uint32_t* first,
                   std::uint32_t* second) noexcept;

// Stores table and starts in the study folder, whole or not at all; with fewer than 2 starts the table alone, and
// without any bookmark time either the stored file is deleted. False when nothing could be stored.
bool StoreStudyFile(const StudyPaths& paths, const BookMarkTable& table, const std::uint32_t* startsMs,
                    std::int32_t count) noexcept;

}  // namespace tavimo::sentences
