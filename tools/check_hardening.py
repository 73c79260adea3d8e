#!/usr/bin/env python3
"""Reads from built files, programs and libraries for Linux or Windows, whether they have what cmake/Hardening.cmake asks
for. What a compiler was told says little: a flag may be overridden, and a library linked in may lack it."""
import argparse
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


def windows_faults(text, content):
    """What is missing, by the listing of objdump -p and by the file itself, which has lost its names."""
    is_wide = 'pei-x86-64' in text
    missing = [what for mark, what in WINDOWS_MARKS.items()
               if not re.search(rf'^\s+{mark}$', text, re.M) and (is_wide or mark != 'HIGH_ENTROPY_VA')]
    if not re.search(r'Entry 5 [0-9a-f]*[1-9a-f][0-9a-f]* [0-9a-f]+ Base Relocation Directory', text):
        missing.append('the list of its addresses, without which they cannot change')
    if b'stack smashing detected' not in content:
        missing.append('checked stacks (stack protector)')
    return missing


def faults(path):
    with open(path, 'rb') as file:
        content = file.read()
    if content.startswith(b'MZ'):
        return windows_faults(listing('x86_64-w64-mingw32-objdump', '-p', path), content)
    return linux_faults(listing('readelf', '-hldW', '--dyn-syms', path), content)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('files', nargs='+')
    house.report([(path, 1, f'has no {what}') for path in parser.parse_args().files for what in faults(path)])


if __name__ == '__main__':
    main()
