// What the capture window's procedure does with a block the input device has returned.
#pragma once

namespace tavimo::recording {

// Appends the block to the tape while tape recording is on, tells the host and its level bar, and hands the block back
// to the device. Does nothing while capture is not active.
void HandleReturnedBlock() noexcept;

}  // namespace tavimo::recording
