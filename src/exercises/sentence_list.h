// The lines of the host's list of items.
#pragma once

#include "platform/files.h"
#include "platform/windows.h"

namespace tavimo::exercises {

// Adds the line of every whole record of an index to a list box, in their order.
void FillSentenceList(platform::FileStream& index, VcWindow listBox) noexcept;

}  // namespace tavimo::exercises
