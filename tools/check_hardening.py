#!/usr/bin/env python3
"""Reads from built files, programs and libraries for Linux or Windows, whether they have what cmake/Hardening.cmake asks
for. What a compiler was told says little: a flag may be overridden, and a library linked in may lack it. A Windows file has
lost its names and holds the text of a failed stack check in any case, so for that the objects it was linked of are read."""
import argparse
import pathlib
import re
import subprocess

import house

WINDOWS_MARKS = {'HIGH_ENTROPY_VA': 'addresses of the whole 64-bit space', 'DYNAMIC_BASE': 'addresses that change',
                 'NX_COMPAT': 'data that is never run'}


def listing(*command):
    return subprocess.run(command, capture_output=True, text=True, errors='replace', check=True).stdout


# The first bytes of a function that indirect jumps may lead to. The file's own mark says nothing: it is only set where the
# system's start files have them too, which they lack on Debian 12. Those that are linked in have a handful.
LANDING_PLACE = b'\xf3\x0f\x1e\xfa'
FEWEST_LANDING_PLACES = 50


def linux_faults(text, content):
    """What is missing, by the listing of readelf -hldW --dyn-syms and by the file itself."""
    stack = re.search(r'GNU_STACK\s.*?\s(R[WE ]{2})\s+0x', text)
    found = {
        'tables that are read-only once it runs (relro)': 'GNU_RELRO' in text,
        'all names bound at the start (now)': bool(re.search(r'\bBIND_NOW\b|Flags:.*\bNOW\b', text)),
        'a stack that is never run': bool(stack) and 'E' not in stack[1],
        'addresses that change (position-independent code)': 'Type:                              DYN' in text,
        'checked stacks (stack protector)': '__stack_chk_fail' in text,
        'checked buffers (fortify)': bool(re.search(r'\b__\w+_chk\b', text.replace('__stack_chk_fail', ''))),
    }
    if 'X86-64' in text:
        found['checked jumps (control-flow protection)'] = content.count(LANDING_PLACE) >= FEWEST_LANDING_PLACES
    return [what for what, is_there in found.items() if not is_there]


def windows_faults(text):
    """What is missing, by the listing of objdump -p."""
    is_wide = 'pei-x86-64' in text
    missing = [what for mark, what in WINDOWS_MARKS.items()
               if not re.search(rf'^\s+{mark}$', text, re.M) and (is_wide or mark != 'HIGH_ENTROPY_VA')]
    if not re.search(r'Entry 5 [0-9a-f]*[1-9a-f][0-9a-f]* [0-9a-f]+ Base Relocation Directory', text):
        missing.append('the list of its addresses, without which they cannot change')
    return missing


def objects_faults(contents):
    """What is missing, by the object files themselves. One whose functions have no buffers needs no check."""
    checked = sum(b'__stack_chk_fail' in content for content in contents)
    return [] if checked * 4 >= len(contents) > 0 else ['checked stacks (stack protector)']


def faults(path):
    with open(path, 'rb') as file:
        content = file.read()
    if content.startswith(b'MZ'):
        return windows_faults(listing('x86_64-w64-mingw32-objdump', '-p', path))
    return linux_faults(listing('readelf', '-hldW', '--dyn-syms', path), content)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('files', nargs='+')
    parser.add_argument('--objects', nargs='*', default=[], type=pathlib.Path, help='folders of the objects for Windows')
    arguments = parser.parse_args()
    found = [(path, 1, f'has no {what}') for path in arguments.files for what in faults(path)]
    for folder in arguments.objects:
        contents = [path.read_bytes() for path in folder.rglob('*.obj')]
        found += [(folder, 1, f'has no {what}') for what in objects_faults(contents)]
    house.report(found)


if __name__ == '__main__':
    main()
