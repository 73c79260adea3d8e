#!/usr/bin/env python3
"""Holds three things against one another: the table of exports, the public header and the built library. The table has
every name once with a plausible size of arguments; the header declares exactly the built exports, in the table's order,
under their family's heading, with the stated arguments, which fill the stated stack bytes; the library exports exactly
the built names and the host kit's, and a second name has the address of the first; the guide's table of all exports has them
by family, and some test calls every one. What the comments say is check_header_tags.py's business."""
import argparse
import io
import re
import subprocess
import tokenize
from pathlib import Path

import house
from make_export_lists import kit_names, read_table

TABLE = Path('exports/tavimo.exports')
HEADER = Path('include/tavimo.h')
KIT = Path('include/tavimo_host.h')
GUIDE = Path('docs/host-guide.md')
IMPORTS = Path('exports/windows7.imports')
EXPORT_COUNT = 104
LARGEST_STACK_BYTES = 32
DECLARATION = re.compile(r'^VC_API\b([^;()]*?)\bVC_CALL\s+(\w+)\(([^;]*?)\)\s*VC_NOEXCEPT;', re.M)
WIDE_TYPE = re.compile(r'^(double|u?int64_t)\b(?!\s*\*)')

C_TYPES = {'int32': 'int32_t', 'uint32': 'uint32_t', 'double': 'double', 'intptr': 'intptr_t', 'uintptr': 'uintptr_t',
           'window': 'VcWindow', 'dc': 'VcDc', 'text': 'const char*'}
POINTED_TYPES = {'int32': 'int32_t', 'uint32': 'uint32_t', 'bytes': 'void', 'text': 'char', 'pages': 'VcPageIndexEntry'}


def c_type(argument):
    """What the header has for an argument of the table."""
    if not argument.flow:
        return C_TYPES[argument.kind]
    return ('const ' if argument.flow == 'in' else '') + POINTED_TYPES[argument.kind] + '*'


def parameters(text):
    """The parameters of a declaration, one string each; none for void."""
    return [] if text.split() == ['void'] else [' '.join(part.split()) for part in text.split(',')]


def declarations(text):
    """(name, result type, parameters, offset) of every export the header declares."""
    return [(m[2], ' '.join(m[1].split()), parameters(m[3]), m.start()) for m in DECLARATION.finditer(text)]


def table_rows(exports):
    lines = {}
    for number, line in enumerate(house.read(TABLE).splitlines(), 1):
        name = line.split('#')[0].split()[:1] if not line.startswith(' ') else []
        if name and name[0] in lines:
            yield TABLE, number, f'{name[0]} stands twice'
        elif name:
            lines[name[0]] = number
    if len(exports) != EXPORT_COUNT:
        yield TABLE, 1, f'{len(exports)} exports, {EXPORT_COUNT} expected'
    for export in exports:
        if export.stack_bytes % 4 or not 0 <= export.stack_bytes <= LARGEST_STACK_BYTES:
            yield TABLE, lines[export.name], f'{export.name}: {export.stack_bytes} stack bytes cannot be'
        first = next((e for e in exports if e.name == export.alias_of), None)
        if export.alias_of and (first is None or first.stack_bytes != export.stack_bytes or first.built < export.built):
            yield TABLE, lines[export.name], f'{export.name} is a second name of no such entry: {export.alias_of}'


def header_rows(exports, text):
    found = declarations(text)
    built = {e.name: e for e in exports if e.built}
    for name, result, arguments, offset in found:
        line = house.line_of(text, offset)
        if name not in built:
            yield HEADER, line, f'{name} is not a built export of the table'
            continue
        stack_bytes = sum(8 if WIDE_TYPE.match(a) else 4 for a in arguments)
        if stack_bytes != built[name].stack_bytes:
            yield HEADER, line, f'{name} takes {stack_bytes} stack bytes, the table says {built[name].stack_bytes}'
        stated = [f'{c_type(a)} {a.name}' for a in built[name].arguments]
        if stated != arguments or C_TYPES.get(built[name].result, 'void') != result:
            yield HEADER, line, f'{name} is declared with {result} ({arguments}), the table says {stated}'
        heading = text.rfind('/* ====', 0, offset)
        if built[name].family not in text[heading:text.find('*/', heading)]:
            yield HEADER, line, f'{name} does not stand under its family {built[name].family}'
    names = [name for name, *_ in found]
    for name in built:
        if names.count(name) != 1:
            yield HEADER, 1, f'{name} is declared {names.count(name)} times'
    common = [name for name in names if name in built]
    for name, expected in zip(common, [name for name in built if name in names]):
        if name != expected:
            yield HEADER, 1, f'{name} stands where the table has {expected}'
            break


def library_rows(exports, library):
    listing = subprocess.run(['nm', '-D', '--defined-only', library], capture_output=True, text=True)
    if listing.returncode != 0:
        yield library, 1, 'cannot be read: build it first'
        return
    addresses = {fields[2].split('@')[0]: fields[0] for fields in map(str.split, listing.stdout.splitlines())}
    wanted = [e.name for e in exports if e.built] + kit_names(house.ROOT / KIT)
    for name in wanted:
        if name not in addresses:
            yield library, 1, f'{name} is not exported'
    for name in sorted(set(addresses) - set(wanted)):
        yield library, 1, f'{name} is exported, but neither the table nor the kit has it'
    for export in exports:
        if export.built and export.alias_of and addresses.get(export.name) != addresses.get(export.alias_of):
            yield library, 1, f'{export.name} and {export.alias_of} are not the same entry'


def guide_rows(exports, text):
    """The guide's table of all exports has each family with its exports, in the header's order."""
    table = text[text.rfind('\n## '):]
    rows = re.findall(r'^\| ([\w-]+) \| (`.*) \|$', table, re.M)
    found = {family: re.findall(r'`(\w+)`', names) for family, names in rows}
    wanted = {}
    for export in filter(lambda e: e.built, exports):
        wanted.setdefault(export.family, []).append(export.name)
    for family in {**wanted, **found}:
        left, right = wanted.get(family, []), found.get(family, [])
        if left != right:
            odd = ', '.join(sorted(set(left) ^ set(right))) or 'the order'
            yield GUIDE, 1, f'the table of all exports is not that of the header: {family}: {odd}'


def without_python_comments(text):
    tokens = tokenize.generate_tokens(io.StringIO(text).readline)
    return ' '.join(token.string for token in tokens if token.type != tokenize.COMMENT)


def test_rows(exports, texts):
    """An export that no test names may be broken. What a comment says of it tests nothing."""
    without = {'.py': without_python_comments}
    code = '\n'.join(without.get(suffix, house.without_comments)(text) for suffix, text in texts)
    for export in exports:
        if export.built and not re.search(rf'\b{export.name}\b', code):
            yield Path('tests'), 1, f'{export.name} is called by no test'


def dll_listing(dll):
    """The names a DLL exports with their addresses, and the functions it imports by library; None when it is unreadable."""
    listing = subprocess.run(['x86_64-w64-mingw32-objdump', '-p', dll], capture_output=True, text=True)
    if listing.returncode != 0:
        return None
    text = listing.stdout
    addresses = dict(re.findall(r'\[ *(\d+)\] \+base\[ *\d+\] +([0-9a-f]+) Export RVA', text))
    names = re.findall(r'^\s+\[ *(\d+)\] (\w\S*)$', text, re.M)
    exported = {name: addresses.get(number) for number, name in names}
    imported = {}
    for part in text.split('DLL Name: ')[1:]:
        library, _, rest = part.partition('\n')
        functions = re.findall(r'^\t[0-9a-f]+\t +(?:\d+|<none>)\s+(\w+)', rest.split('\n\n')[0], re.M)
        imported[library.strip().lower()] = functions
    return exported, imported


def import_rows(path, imported, known):
    """Every function that is imported must be known to be there, on the oldest system that counts."""
    if not imported:
        yield path, 1, 'imports nothing, which cannot be'
    for library, functions in imported.items():
        if not functions:
            yield path, 1, f'the functions imported from {library} cannot be read'
        for name in functions:
            if f'{library} {name}' not in known:
                yield path, 1, f'imports {name} from {library}, which {IMPORTS} does not have'


def dll_rows(exports, dll):
    """What is wrong with a DLL: its names, undecorated; its second names; what it imports."""
    found = dll_listing(dll)
    if found is None:
        yield dll, 1, 'cannot be read: build it first'
        return
    exported, imported = found
    wanted = [e.name for e in exports if e.built]
    for name in sorted(set(wanted) ^ set(exported)):
        yield dll, 1, f'{name} is ' + ('not exported' if name in wanted else 'exported, but not in the table')
    for export in exports:
        if export.alias_of and exported.get(export.name) != exported.get(export.alias_of):
            yield dll, 1, f'{export.name} and {export.alias_of} are not the same entry'
    yield from import_rows(dll, imported, set(house.read(IMPORTS).split('\n')))


def program_rows(exports, program):
    """What is wrong with a program for Windows: it imports the system's functions and the engine's, by undecorated names."""
    found = dll_listing(program)
    if found is None:
        yield program, 1, 'cannot be read: build it first'
        return
    own = {f'tavimo.dll {e.name}' for e in exports if e.built}
    yield from import_rows(program, found[1], own.union(house.read(IMPORTS).split('\n')))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--library', help='the built library; without it, table and header alone are compared')
    parser.add_argument('--dll', help='a built tavimo.dll')
    parser.add_argument('--program', help='a program built for Windows that uses it')
    arguments = parser.parse_args()
    library = arguments.library
    exports = read_table(house.ROOT / TABLE)
    texts = [(path.suffix, house.read(path)) for path in house.files(('.cpp', '.c', '.py'), 'tests')]
    rows = [*table_rows(exports), *header_rows(exports, house.read(HEADER)), *guide_rows(exports, house.read(GUIDE)),
            *test_rows(exports, texts)]
    if library:
        rows += library_rows(exports, library)
    if arguments.dll:
        rows += dll_rows(exports, arguments.dll)
    if arguments.program:
        rows += program_rows(exports, arguments.program)
    house.report(rows)


if __name__ == '__main__':
    main()
