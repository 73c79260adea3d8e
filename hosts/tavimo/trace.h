// What `tavimo --trace` shows: every call of the engine that a command makes, with its arguments and its result, on
// standard error. The wrappers that notice the calls are made from the table of exports (tools/make_bindings.py) and put in
// their way by the linker.
#pragma once

namespace tavimo::host {

void TraceCalls();

}  // namespace tavimo::host
