#!/usr/bin/env python3
"""Makes from the one table of exports what other languages and the command-line host know of the engine: a Python module
over ctypes, and for C++ the table behind `tavimo call` and the wrappers behind `tavimo --trace`, which knows the host kit's
functions too, from their header. It checks nothing: tools/check_exports.py holds the table against the header."""
import argparse
import re
from pathlib import Path
from typing import NamedTuple

from check_exports import C_TYPES, c_type
from make_export_lists import Argument, read_table

PYTHON_TYPES = {'int32': 'c_int32', 'uint32': 'c_uint32', 'double': 'c_double', 'intptr': 'c_ssize_t',
                'uintptr': 'c_size_t', 'window': 'c_void_p', 'dc': 'c_void_p', 'text': 'c_char_p', 'bytes': 'c_void_p'}

COUNTED = 'result:'  # before the room of an array: the export answers how many values it wrote

PYTHON_HEAD = '''"""The engine's exports for Python, made from its table of exports; do not edit. Each function has the arguments of
include/tavimo.h: text is GBK bytes, windows and device contexts are handles of the host kit, and arrays are ctypes arrays
with the room the header asks for. What the engine writes into, text and bytes included, is a buffer of ctypes as well:

    engine = tavimo.load("libtavimo.so")
    engine.vcIsWaveFile(tavimo.path("lesson.wav"))
    path = ctypes.create_string_buffer(tavimo.path("temp/lesson.tst"), 260)
    engine.vcOpenWzFile(path)  # path.value ends in .wz now
"""
import ctypes


class PageIndexEntry(ctypes.Structure):
    _fields_ = [("text_offset", ctypes.c_uint32), ("first_word", ctypes.c_uint32)]


class Buffer:
    """The type of an argument for text or bytes that the engine writes: an array or a pointer of ctypes, or None."""

    @classmethod
    def from_param(cls, value):
        if isinstance(value, (bytes, str, int)):
            raise TypeError("the engine writes here, so this must be ctypes.create_string_buffer(SIZE)")
        return value


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
    if argument.kind in ('text', 'bytes'):  # bytes of Python never change, and POINTER(c_char) would take them
        return 'ctypes.c_void_p' if argument.flow == 'in' else 'Buffer'
    return f'ctypes.POINTER(ctypes.{PYTHON_TYPES[argument.kind]})'


def python_module(exports):
    lines = []
    for export in exports:
        result = 'ctypes.' + PYTHON_TYPES[export.result] if export.result else 'None'
        lines.append(f'    ("{export.name}", {result}, [{", ".join(map(python_type, export.arguments))}]),\n')
    return PYTHON_HEAD + ''.join(lines) + ']\n'


def cpp_kind(argument):
    flow = {'': 'Value', 'in': 'In', 'out': 'Out', 'inout': 'InOut'}[argument.flow]
    room = argument.room.removeprefix(COUNTED)
    return f'{{"{argument.name}", Flow::{flow}, Kind::{argument.kind.capitalize()}, "{room}"}}'


def call_function(export):
    """The arguments of an export as rows, and a function that calls it with them."""
    rows = ', '.join(map(cpp_kind, export.arguments))
    values = ', '.join(f'a.As<{c_type(argument)}>({i})' for i, argument in enumerate(export.arguments))
    call = f'{export.name}({values})'
    body = f'return Result({call});' if export.result else f'{call}; return Result();'
    used = 'a' if export.arguments else '/*a*/'
    return (f'constexpr std::array<ArgumentRow, {len(export.arguments)}> kArgumentsOf_{export.name}{{{{{rows}}}}};\n'
            f'std::string Call_{export.name}(Arguments& {used}) {{ {body} }}\n')


CALLS_HEAD = '''// Made from the table of exports; do not edit. Who includes this has a class Arguments, whose As<Type>(i) is argument i,
// and functions Result that make a text of what an export answers.
enum class Flow { Value, In, Out, InOut };
enum class Kind { Int32, Uint32, Double, Intptr, Uintptr, Window, Dc, Text, Bytes, Pages };
struct ArgumentRow {
  const char* name;
  Flow flow;
  Kind kind;
  const char* room;  // a number, or the name of the argument that has it
};
struct ExportRow {
  const char* name;
  std::span<const ArgumentRow> arguments;
  std::string (*call)(Arguments&);
};
'''


def calls(exports):
    """Plain tables: as one expression with vectors in it a sanitizer's build takes minutes."""
    rows = ''.join(f'    {{"{e.name}", kArgumentsOf_{e.name}, Call_{e.name}}},\n' for e in exports)
    return (CALLS_HEAD + ''.join(map(call_function, exports)) +
            f'constexpr std::array<ExportRow, {len(exports)}> kExports{{{{\n{rows}}}}};\n')


class Function(NamedTuple):
    """A function as its wrapper needs it: an export, or one of the kit's."""
    name: str
    symbol: str  # as the linker sees it
    convention: str
    result: str  # C type
    types: list  # C types of the arguments
    arguments: list


KIT_DECLARATION = re.compile(r'^VC_API ([\w* ]+?)(tv\w+)\(([^;]*?)\) VC_NOEXCEPT;', re.M)
# Called for every character or pixel: they would bury what a trace is for.
UNTRACED = {'tvGbkFromUtf8', 'tvUtf8FromGbk', 'tvFill', 'tvPixel'}
KIT_KINDS = {'VcWindow': 'window', 'VcDc': 'dc', 'int': 'int32', 'char': 'int32', 'uint32_t': 'uint32',
             'intptr_t': 'intptr', 'uintptr_t': 'uintptr'}


def kit_argument(c_type_, name):
    """What the kind of an argument of the kit's is: its header says of texts by their names what they are in."""
    text = 'text' if 'gbk' in name or name == 'path' else 'utf8'
    if c_type_ == 'const char*':
        return Argument(name, '', text, '')
    if c_type_ == 'char*':
        return Argument(name, 'out', text, '')
    if c_type_ == 'int32_t*':
        return Argument(name.split('[')[0], 'out', 'int32', name[name.find('[') + 1:-1] if '[' in name else '1')
    return Argument(name, '', KIT_KINDS.get(c_type_, 'opaque'), '')


def kit_functions(header):
    for result, name, parameters in KIT_DECLARATION.findall(header):
        if name in UNTRACED:
            continue
        pairs = [' '.join(p.split()).rpartition(' ')[::2] for p in parameters.split(',') if p != 'void']
        pairs = [(c + '*', n) if n.endswith(']') else (c, n) for c, n in pairs]
        yield Function(name, name, '', result.strip(), [c for c, _ in pairs], [kit_argument(c, n) for c, n in pairs])


def functions(exports, header, pointer_bytes):
    """The exports, decorated where the system decorates them, and the kit's functions."""
    def symbol(e):
        return f'{e.name}@{e.stack_bytes}' if pointer_bytes == 4 else e.name
    built = [Function(e.name, symbol(e), 'VC_CALL ', C_TYPES.get(e.result, 'void'), [c_type(a) for a in e.arguments],
                      e.arguments) for e in exports]
    return built + list(kit_functions(header))


def count_of(room, arguments):
    """How many values an array has once the call is done."""
    if room.startswith(COUNTED):
        return 'result'
    return room if room.isdigit() else 'a' + str([a.name for a in arguments].index(room))


def shown(i, argument, arguments):
    """An argument as text."""
    a, kind = f'a{i}', argument.kind
    if kind in ('text', 'utf8'):
        return f'Traced{kind.capitalize()}({a})'
    if argument.flow:
        return f'TracedArray({a}, {count_of(argument.room, arguments)})'
    if kind in ('window', 'dc'):
        return f'TracedHandle("{kind}", {a})'
    return f'TracedOpaque({a} == nullptr)' if kind == 'opaque' else f'std::to_string({a})'


def shown_call(function):
    """What goes in is taken down before the call, which may write over it; what comes out, after it."""
    before, texts = [], []
    failed = 'result == -1' if function.result in ('int', 'int32_t') else 'false'
    for i, argument in enumerate(function.arguments):
        if argument.flow != 'out':
            before.append(f'const std::string in{i} = {shown(i, argument, function.arguments)};')
        out = f'Out({failed}, [&] {{ return {shown(i, argument, function.arguments)}; }})'
        texts.append({'out': out, 'inout': f'in{i} + {out}'}.get(argument.flow, f'in{i}'))
    return ' '.join(before), ', '.join(texts)


RESULTS = {'VcWindow': 'TracedHandle("window", result)', 'VcDc': 'TracedHandle("dc", result)'}


def wrapper(function):
    declared = ', '.join(f'{c} a{i}' for i, c in enumerate(function.types))
    call = f'__real_{function.name}({", ".join(f"a{i}" for i in range(len(function.types)))})'
    before, texts = shown_call(function)
    if function.result == 'void':
        body = f'{call}; TraceCall("{function.name}", {{{texts}}}, "");'
    else:
        result = RESULTS.get(function.result, 'std::to_string(result)')
        body = f'const auto result = {call}; TraceCall("{function.name}", {{{texts}}}, {result}); return result;'
    head = f'{function.result} {function.convention}'
    return (f'{head}__real_{function.name}({declared}) VC_NOEXCEPT;\n'
            f'{head}__wrap_{function.name}({declared}) VC_NOEXCEPT {{\n'
            f'  if (!isTracing) return {call};\n  {before} {body}\n}}\n')


def wrappers(wrapped):
    return '// Made from the table of exports; do not edit.\n' + ''.join(map(wrapper, wrapped))


def wrap_options(wrapped):
    return ''.join(f'--wrap={function.symbol}\n' for function in wrapped)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--table', required=True)
    parser.add_argument('--python')
    parser.add_argument('--calls')
    parser.add_argument('--kit', help="the host kit's header, for the wrappers")
    parser.add_argument('--wrappers')
    parser.add_argument('--wrap-options')
    parser.add_argument('--pointer-bytes', type=int, default=8, help='4 for 32-bit Windows, whose names are decorated')
    arguments = parser.parse_args()
    exports = [e for e in read_table(arguments.table) if e.built]
    header = Path(arguments.kit).read_text(encoding='utf-8') if arguments.kit else ''
    wrapped = functions(exports, header, arguments.pointer_bytes)
    outputs = {arguments.python: lambda: python_module(exports), arguments.calls: lambda: calls(exports),
               arguments.wrappers: lambda: wrappers(wrapped),
               arguments.wrap_options: lambda: wrap_options(wrapped)}
    for path, make in outputs.items():
        if path:
            Path(path).write_text(make(), encoding='ascii')


if __name__ == '__main__':
    main()
