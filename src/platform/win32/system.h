// The system's own headers, in the form and the order every file of this back end takes them: wide functions, Windows 7
// and no more. The build sets what they must be told (src/windows.cmake). Not for anything else.
#pragma once

// The first one has to come first.
// clang-format off
#include <windows.h>
#include <mmsystem.h>
#include <shellapi.h>
#include <commctrl.h>
// clang-format on
