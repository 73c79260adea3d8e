// The small files hosts keep their settings in: one opaque record per recording, and files of three numbers as text.
#pragma once

#include <array>
#include <cstdint>

namespace tavimo::sentences {

inline constexpr std::size_t kSoundParameterBytes = 20;

// Creates the file with the record and gives it the recording's file time; false when it cannot be written whole.
[[nodiscard]] bool WriteSoundParameters(const char* recordingPath, const char* parameterPath,
                                        const std::uint8_t* record) noexcept;

// Reads the record; what the file does not hold stays as it was. False when the file cannot be opened.
[[nodiscard]] bool ReadSoundParameters(const char* parameterPath, std::uint8_t* record) noexcept;

using ParameterValues = std::array<std::int32_t, 3>;

// Three lines, each a signed decimal number, CR and LF. False when the file cannot be written whole.
bool WriteParameterValues(const char* path, const ParameterValues& values) noexcept;

// Whether the file's first three lines begin with exactly these numbers. A line is at most 98 bytes with its line feed;
// what is longer goes on as the next line. A missing line matches nothing, a line without digits is 0.
[[nodiscard]] bool ParameterValuesMatch(const char* path, const ParameterValues& values) noexcept;

}  // namespace tavimo::sentences
