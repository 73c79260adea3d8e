// What `tavimo --trace` shows: every call of the engine and of the host kit that a command makes, with its arguments and its
// result, on standard error. The wrappers that notice the calls are made from the table of exports and the kit's header
// (tools/make_bindings.py) and put in their way by the linker.
//
// A value behind "→" was written by the call: a text in quotation marks, numbers in braces. "…" stands for what was not
// written, as the call failed, and for what only the program knows. Of equal lines in a row only the first is shown, and
// their number behind it.
#pragma once

#include <string>

namespace tavimo::host {

void TraceCalls();

// A line in brackets, for what the program does itself where another host would call the engine.
void TraceNote(const std::string& sentence);

}  // namespace tavimo::host
