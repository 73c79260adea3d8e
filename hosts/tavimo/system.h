// What the C++ library has no words for: the terminal, Ctrl-C and the person's data folder. One source file for each
// system; nothing else in this program knows which system it runs on.
#pragma once

#include <filesystem>

namespace tavimo::host {

// Whether standard error is a terminal that a progress bar may be drawn on.
[[nodiscard]] bool ErrorsGoToTerminal();

// The folder in which programs keep what they know of this person's files; empty when the system names none.
[[nodiscard]] std::filesystem::path UserDataFolder();

// From here on Ctrl-C only raises a flag, and a closed pipe is a failed write instead of the program's death.
void HoldInterrupts();
[[nodiscard]] bool Interrupted();

// Throws Cancelled once Ctrl-C was pressed. For long work, between its steps.
void StopIfInterrupted();

// Ends the program the way Ctrl-C does, so that a shell loop around it stops too.
[[noreturn]] void EndAsInterrupted();

}  // namespace tavimo::host
