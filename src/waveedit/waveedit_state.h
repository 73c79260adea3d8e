// The process-wide work space of wave editing: one conversion or deletion at a time.
#pragma once

#include "waveedit/transfer_buffers.h"

namespace tavimo::waveedit {

struct WaveeditState {
  TransferBuffers transferBuffers{};
};

WaveeditState& State() noexcept;

}  // namespace tavimo::waveedit
