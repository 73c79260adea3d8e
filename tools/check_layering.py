#!/usr/bin/env python3
"""Fails on an arrow of the house that points the wrong way. Only the back ends know the operating system; nobody reaches
past a platform header into a back end; the platform layer knows nothing of the engine; a room takes what it needs as
arguments, so it reads no other subsystem's state and shows no message; hosts and examples live on the public headers
alone. Includes and the compilers' platform names are all it looks at."""
import os
import re
from pathlib import Path

import house

# Each subsystem and those it builds on: whose headers its files may include.
BUILDS_ON = {
    'core': set(),
    'hostutil': {'core'},
    'recording': {'core'},
    'waveedit': {'core', 'hostutil', 'sentences'},  # deletion rewrites the study file
    'digest': {'core', 'hostutil', 'recording', 'waveedit'},
    'sentences': {'core', 'digest', 'hostutil', 'recording'},
    'exercises': {'core', 'hostutil', 'sentences'},
    'pages': {'core', 'hostutil'},
}
# Tests of one back end stand in a folder of its name. A host has at most one file for each system: what the C++ library
# has no words for. The benchmarks' limits are plain calls of the system they run on; so is what keeps a fuzzer in bounds.
MAY_KNOW_THE_PLATFORM = re.compile(
    r'src/platform/|bench/|tests/support/|tests/(platform|faults)/(linux|win32)/|fuzz/support/|hosts/\w+/system_(posix|win32)\.cpp$'
    r'|examples/windows_\w+\.c$')
MAY_NAME_THE_PLATFORM = re.compile(r'include/')  # the public headers say what a handle is on each platform
PUBLIC_HEADERS = {'tavimo.h', 'tavimo_host.h'}
# Files that are no door and include platform/windows.h all the same, each with its reason.
MAY_INCLUDE_WINDOWS = {
    'src/core/window_hook.h': 'standing in front of a window is what it is for',
}
PLATFORM_HEADER = re.compile(
    r'(sys|arpa|netinet|linux|bits|cairo|freetype2?|fontconfig|pulse|alsa)/'
    r'|(windows|winbase|windef|winuser|wingdi|mmsystem|mmreg|shellapi|shlobj|commctrl|io|direct|process'
    r'|unistd|fcntl|dirent|pthread|dlfcn|fnmatch|glob|poll|pwd|sched|semaphore|spawn|strings|syslog|termios|utime'
    r'|cairo(-\w+)?|ft2build|iconv|langinfo|alloca|endian|byteswap|features)\.h$', re.I)
PLATFORM_NAME = re.compile(r'\b(_WIN32|_WIN64|WIN32|__linux__|__linux|__unix__|__APPLE__|__MINGW\w*|_MSC_VER)\b')
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"]', re.M)


def subsystem(name):
    """The subsystem a file or an include below src/ belongs to; empty for none."""
    folder = name.removeprefix('src/').split('/')[0]
    return folder if folder in BUILDS_ON else ''


def platform_fault(name, included):
    back_end = included.startswith(('platform/linux/', 'platform/win32/'))
    if back_end and not name.startswith((f'src/{Path(included).parent}/', f'tests/{Path(included).parent}/')):
        return 'reaches past the platform headers into a back end'
    if PLATFORM_HEADER.match(included) and not MAY_KNOW_THE_PLATFORM.match(name):
        return 'is a platform header'
    if name.startswith('src/platform/') and subsystem(included):
        return 'points up: the platform layer knows nothing of the engine'
    return None


def room_fault(name, included):
    """What a file of a subsystem may not include; a door, the file that defines the exports, may do more than a room."""
    own = subsystem(name) if name.startswith('src/') else ''
    if not own or name.endswith('_exports.cpp'):
        return None
    if subsystem(included) and subsystem(included) not in BUILDS_ON[own] | {own}:
        return f'belongs to {subsystem(included)}, and {own} does not build on that'
    is_state = re.search(r'_state\.(h|cpp)$', name)
    if included.endswith('_state.h') and subsystem(included) != own and not is_state:
        return "is another subsystem's state: take what is needed as an argument"
    if included == 'platform/windows.h' and not is_state and name not in MAY_INCLUDE_WINDOWS:
        return 'is for doors: a room sends and shows nothing'
    return None


MADE_BY_THE_BUILD = ('engine_calls.inc', 'engine_wrappers.inc', 'lesson_page.inc')


def host_fault(name, quote, included):
    """Hosts and examples include the public headers, their own files and libraries."""
    if not name.startswith(('hosts/', 'examples/')) or included in PUBLIC_HEADERS:
        return None
    own = os.path.normpath(f'{Path(name).parent}/{included}')
    if quote == '"' and included in MADE_BY_THE_BUILD:
        return None
    if quote == '"' and not (own.split('/')[:2] == name.split('/')[:2] and (house.ROOT / own).is_file()):
        return 'is neither a public header nor a file of this host'
    if subsystem(included) or included.startswith('platform/'):
        return 'is inside the engine'
    return None


def faults(name, text):
    """(line, message) for every fault of one file; name is its path in the repository, with slashes."""
    code = house.without_comments(text, keep_strings=True)
    for match in INCLUDE.finditer(code):
        quote, included = match.groups()
        fault = platform_fault(name, included) or room_fault(name, included) or host_fault(name, quote, included)
        if fault:
            yield house.line_of(code, match.start()), f'{included} {fault}'
    if not MAY_KNOW_THE_PLATFORM.match(name) and not MAY_NAME_THE_PLATFORM.match(name):
        for match in PLATFORM_NAME.finditer(house.without_comments(text)):
            yield house.line_of(text, match.start()), f'{match.group()} belongs in src/platform'


if __name__ == '__main__':
    house.report([(path, *fault) for path in house.files(house.CODE) for fault in faults(path.as_posix(), house.read(path))])
