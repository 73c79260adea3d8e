#!/usr/bin/env python3
"""Makes the linker's lists from the one table of exports.

The table (exports/tavimo.exports) names every export; this writes what each linker wants of it: an ELF version
script with the engine's names and those of the host kit's header, the options that give an entry its second name,
and the .def files for Windows. It checks nothing: tools/check_exports.py does.
"""
import argparse
import re
from pathlib import Path
from typing import NamedTuple


class Argument(NamedTuple):
    name: str
    flow: str  # "", "in", "out" or "inout"; only the first is a value and no pointer to some
    kind: str
    room: str  # empty for a value


class Export(NamedTuple):
    name: str
    family: str
    stack_bytes: int
    built: bool
    alias_of: str  # empty when the name has an entry of its own
    arguments: list
    files: list
    result: str  # empty when there is none


def argument(fields):
    name, *kind = fields
    if kind[0] in ('in', 'out', 'inout'):
        return Argument(name, kind[0], kind[1], kind[2].strip('[]'))
    return Argument(name, '', kind[0], '')


def read_table(path):
    rows = []
    for line in Path(path).read_text(encoding='utf-8').splitlines():
        fields = line.split('#')[0].split()
        if not fields:
            continue
        if not line.startswith(' '):
            name, family, stack_bytes, state, *alias = fields
            rows.append(Export(name, family, int(stack_bytes), state == 'built', alias[0] if alias else '', [], [], ''))
        elif fields[0] == '->':
            rows[-1] = rows[-1]._replace(result=fields[1])
        elif fields[0] == 'files':
            rows[-1].files.extend(fields[1:])
        else:
            rows[-1].arguments.append(argument(fields))
    return rows


def kit_names(header):
    return re.findall(r'^VC_API[^;(]*?\b(tv\w+)\(', Path(header).read_text(encoding='utf-8'), re.M)


def version_script(exports, kit):
    names = [e.name for e in exports if e.built] + kit
    return '{\n  global:\n' + ''.join(f'    {name};\n' for name in names) + '  local: *;\n};\n'


def decorated(export, name, pointer_bytes):
    """A name as the linker of a platform knows it: 32-bit Windows decorates the callee-removes convention."""
    return f'_{name}@{export.stack_bytes}' if pointer_bytes == 4 else name


def alias_options(exports):
    return ''.join(f'--defsym={e.name}={e.alias_of}\n' for e in exports if e.built and e.alias_of)


def alias_script(exports, pointer_bytes):
    """The same as a script of the linker, which takes decorated names in quotes; options do not."""
    return ''.join(f'"{decorated(e, e.name, pointer_bytes)}" = "{decorated(e, e.alias_of, pointer_bytes)}";\n'
                   for e in exports if e.built and e.alias_of)


def module_definition(exports):
    """The list for the DLL itself: undecorated names, second names on the same entry."""
    lines = ['LIBRARY tavimo', 'EXPORTS']
    lines += [f'  {e.name} = {e.alias_of}' if e.alias_of else f'  {e.name}' for e in exports if e.built]
    return '\n'.join(lines) + '\n'


def import_definition(exports, pointer_bytes):
    """The list from which the import library is made: in 32 bits decorated symbols for undecorated names."""
    names = [decorated(e, e.name, pointer_bytes).removeprefix('_') for e in exports if e.built]
    return 'LIBRARY tavimo\nEXPORTS\n' + ''.join(f'  {name}\n' for name in names)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--table', required=True)
    parser.add_argument('--kit', help='header of the host kit, for the version script')
    parser.add_argument('--pointer-bytes', type=int, default=8, help='4 for 32-bit Windows, whose names are decorated')
    parser.add_argument('--version-script')
    parser.add_argument('--aliases')
    parser.add_argument('--alias-script')
    parser.add_argument('--def', dest='definition')
    parser.add_argument('--import-def', dest='import_definition')
    arguments = parser.parse_args()
    exports = read_table(arguments.table)
    outputs = {
        arguments.version_script: lambda: version_script(exports, kit_names(arguments.kit)),
        arguments.aliases: lambda: alias_options(exports),
        arguments.alias_script: lambda: alias_script(exports, arguments.pointer_bytes),
        arguments.definition: lambda: module_definition(exports),
        arguments.import_definition: lambda: import_definition(exports, arguments.pointer_bytes),
    }
    for path, make in outputs.items():
        if path:
            Path(path).write_text(make(), encoding='ascii')


if __name__ == '__main__':
    main()
