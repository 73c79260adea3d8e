#!/usr/bin/env python3
"""Makes from the one table of exports what other languages and the command-line host know of the engine: a Python module
over ctypes, and for C++ the table behind `tavimo call` and the wrappers behind `tavimo --trace`. It checks nothing:
tools/check_exports.py holds the table against the header."""
import argparse
from pathlib import Path

from check_exports import C_TYPES, c_type
from make_export_lists import read_table

PYTHON_TYPES = {'int32': 'c_int32', 'uint32': 'c_uint32', 'double': 'c_double', 'intptr': 'c_ssize_t',
                'uintptr': 'c_size_t', 'window': 'c_void_p', 'dc': 'c_void_p', 'text': 'c_char_p', 'bytes': 'c_void_p'}

PYTHON_HEAD = '''"""The engine's exports for Python, made from its table of exports; do not edit. Each function has the arguments of
include/tavimo.h: text is GBK bytes, windows and device contexts are handles of the host kit, and arrays are ctypes arrays
with the room the header asks for.

    engine = tavimo.load("libtavimo.so")
    engine.vcIsWaveFile(tavimo.path("lesson.wav"))
"""
import ctypes


class PageIndexEntry(ctypes.Structure):
    _fields_ = [("text_offset", ctypes.c_uint32), ("first_word", ctypes.c_uint32)]


def load(library):
    """The library with the types of all its exports set. The kit's functions are there too, without types."""
    engine = ctypes.CDLL(library)
    for name, result, arguments in EXPORTS:
        function = getattr(engine, name)
        function.restype, function.argtypes = result, arguments
    return engine


def path(native):
    """The engine's form of a path: GBK with backslashes. Needs no drive letter below the current directory."""
    return native.replace("/", "\\\\").encode("gbk")


EXPORTS = [
'''


def python_type(argument):
    if not argument.flow:
        return 'ctypes.' + PYTHON_TYPES[argument.kind]
    if argument.kind == 'pages':
        return 'ctypes.POINTER(PageIndexEntry)'
    if argument.kind in ('text', 'bytes'):
        return 'ctypes.' + PYTHON_TYPES[argument.kind]
    return f'ctypes.POINTER(ctypes.{PYTHON_TYPES[argument.kind]})'


def python_module(exports):
    lines = []
    for export in exports:
        result = 'ctypes.' + PYTHON_TYPES[export.result] if export.result else 'None'
        lines.append(f'    ("{export.name}", {result}, [{", ".join(map(python_type, export.arguments))}]),\n')
    return PYTHON_HEAD + ''.join(lines) + ']\n'


def cpp_kind(argument):
    flow = {'': 'Value', 'in': 'In', 'out': 'Out', 'inout': 'InOut'}[argument.flow]
    return f'{{"{argument.name}", Flow::{flow}, Kind::{argument.kind.capitalize()}, "{argument.room}"}}'


def call_function(export):
    """The arguments of an export as rows, and a function that calls it with them."""
    rows = ', '.join(map(cpp_kind, export.arguments))
    values = ', '.join(f'a.As<{c_type(argument)}>({i})' for i, argument in enumerate(export.arguments))
    call = f'{export.name}({values})'
    body = f'return Result({call});' if export.result else f'{call}; return Result();'
    used = 'a' if export.arguments else '/*a*/'
    return (f'constexpr std::array<ArgumentRow, {len(export.arguments)}> kArgumentsOf_{export.name}{{{{{rows}}}}};\n'
            f'std::string Call_{export.name}(Arguments& {used}) {{ {body} }}\n')


def calls(exports):
    """Plain tables: as one expression with vectors in it a sanitizer's build takes minutes."""
    rows = ''.join(f'    {{"{e.name}", kArgumentsOf_{e.name}, Call_{e.name}}},\n' for e in exports)
    return ('// Made from the table of exports; do not edit.\n' + ''.join(map(call_function, exports)) +
            f'constexpr std::array<ExportRow, {len(exports)}> kExports{{{{\n{rows}}}}};\n')


def wrapper(export):
    result = C_TYPES.get(export.result, 'void')
    declared = ', '.join(f'{c_type(a)} a{i}' for i, a in enumerate(export.arguments))
    names = ''.join(f', Traced(a{i})' for i in range(len(export.arguments)))
    values = ', '.join(f'a{i}' for i in range(len(export.arguments)))
    call = f'__real_{export.name}({values})'
    body = (f'{{ const auto result = {call}; TraceCall("{export.name}", {{{names[2:]}}}, Traced(result)); return result; }}'
            if export.result else f'{{ {call}; TraceCall("{export.name}", {{{names[2:]}}}, ""); }}')
    return (f'{result} __real_{export.name}({declared}) VC_NOEXCEPT;\n'
            f'{result} __wrap_{export.name}({declared}) VC_NOEXCEPT {body}\n')


def wrappers(exports):
    return '// Made from the table of exports; do not edit.\n' + ''.join(wrapper(e) for e in exports)


def wrap_options(exports):
    return ''.join(f'--wrap={e.name}\n' for e in exports)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--table', required=True)
    parser.add_argument('--python')
    parser.add_argument('--calls')
    parser.add_argument('--wrappers')
    parser.add_argument('--wrap-options')
    arguments = parser.parse_args()
    exports = [e for e in read_table(arguments.table) if e.built]
    outputs = {arguments.python: python_module, arguments.calls: calls, arguments.wrappers: wrappers,
               arguments.wrap_options: wrap_options}
    for path, make in outputs.items():
        if path:
            Path(path).write_text(make(exports), encoding='ascii')


if __name__ == '__main__':
    main()
