#!/usr/bin/env python3
"""Proves that the checkers of the house rules can fail, and that what is right passes: tables of small texts, each with
what is wrong in it. Nothing here reads the repository's own files."""
import unittest

import check_exports
import check_functions
import check_hardening
import check_header_tags
import check_layering
import check_words
import house
from make_export_lists import Argument, Export

FUNCTIONS = [
    ('a function at the edge of the file', 'int f() {\n  return 1;\n}\n', [(1, 3)]),
    ('namespaces and classes are no functions', 'namespace a::b {\nclass C : public D {\n public:\n  int f() const {\n'
     '    return 1;\n  }\n};\n}\n', [(4, 6)]),
    ('a lambda belongs to its function', 'void f() {\n  auto g = [](int a) {\n    return a;\n  };\n}\n', [(1, 5)]),
    ('a lambda handed to a global', 'const auto g = [](int a) {\n  return a;\n};\n', []),
    ('a table of values', 'constexpr int kTable[] = {\n  F(1),\n};\nint f() {\n}\n', [(4, 5)]),
    ('initialisers in a constructor', 'C::C(int a) noexcept : a_{a}, b_(2), c_{\n  3} {\n  g();\n}\n', [(1, 4)]),
    ('an operator with an equals sign', 'bool operator==(C a,\n  C b) {\n  return true;\n}\n', [(1, 4)]),
    ('a template with defaults', 'template <int N = 3, class T = A<B>>\nT f(int a = 3) {\n}\n', [(1, 3)]),
    ('a braced default argument', 'void f(A a = {}) {\n}\nint g() { return 1; }\n', [(1, 2), (3, 3)]),
    ('braces in strings, characters and comments', 'void f() {  // {\n  g("}{\\"", \'{\', 1\'000, R"({)"); /* } */\n}\n', [(1, 3)]),
    ('macros with braces', '#define A(x) do { \\\n  x\nTEST(A, b) {\n  A(1);\n}\n', [(3, 5)]),
    ('a C block and an attribute', 'extern "C" {\nstruct __attribute__((packed)) S {\n  int a;\n};\nint f(struct S s) {\n}\n}\n',
     [(5, 6)]),
]

LAYERING = [
    ('src/core/time_model.cpp', '#include "core/core_state.h"\n#include <string>\n', 0),
    ('src/core/time_model.cpp', '#include <unistd.h>\n', 1),
    ('src/core/time_model.cpp', '// no _WIN32 here\n#ifdef _WIN32\n#endif\n', 1),
    ('src/core/time_model.cpp', '// #include <windows.h>\n', 0),
    ('src/core/time_model.cpp', '#include "platform/linux/paths.h"\n', 1),
    ('src/digest/block_levels.cpp', '#include "core/core_state.h"\n', 1),
    ('src/digest/block_levels.cpp', '#include "platform/windows.h"\n', 1),
    ('src/digest/digest_exports.cpp', '#include "core/core_state.h"\n#include "platform/windows.h"\n', 0),
    ('src/core/time_model.cpp', '#include "digest/block_levels.h"\n', 1),
    ('src/sentences/segmentation.cpp', '#include "digest/block_levels.h"\n', 0),
    ('src/platform/linux/files_linux.cpp', '#include <sys/stat.h>\n#include "platform/linux/paths.h"\n', 0),
    ('src/platform/win32/files_win32.cpp', '#include <windows.h>\n#include "platform/linux/paths.h"\n', 1),
    ('src/platform/common/riff.cpp', '#include "core/little_endian.h"\n', 1),
    ('hosts/tavimo/main.cpp', '#include "tavimo_host.h"\n#include <CLI/CLI.hpp>\n', 0),
    ('hosts/tavimo/main.cpp', '#include <unistd.h>\n', 1),
    ('hosts/tavimo/system_posix.cpp', '#include <unistd.h>\n', 0),
    ('hosts/tavimo/main.cpp', '#include "core/time_model.h"\n', 1),
    ('hosts/tavimo/main.cpp', '#include "../../src/core/time_model.h"\n', 1),
    ('tests/core/time_model_test.cpp', '#include "core/time_model.h"\n#include <dirent.h>\n', 1),
    ('tests/platform/linux/drives_test.cpp', '#include "platform/linux/drives.h"\n#include <unistd.h>\n', 0),
    ('tests/platform/drives_test.cpp', '#include "platform/linux/drives.h"\n', 1),
    ('tests/support/scratch_folder.cpp', '#include <unistd.h>\n', 0),
    ('include/tavimo.h', '#if defined(_WIN32)\n#endif\n', 0),
]

# Written in pieces, so that this file passes the check itself.
WORDS = [
    ('as the ' 'spec' ' says', 1), ('see ' 'Part' ' 3.1', 1), ('a fix for ' 'issue' ' 12', 1), ('closes ' '#' '7', 1),
    ('/wo' 'rk/main', 1), ('cd /ro' 'ot', 1), ('TO' 'DO later', 1), ('pypi' '.org', 1), ('Spec' 'ification', 1),
    ('part 3 of the lesson; %#04x; #include; mkdtemp XXXXXX; hosts/work; a special case; colour #336699', 0),
]

PARAMETERS = ['int32_t height', 'int32_t width']
GOOD_TAGS = ' @brief x.\n @param height, width the area.\n @return 1.\n @failure none.\n @requires nothing. '
TAGS = [
    ('complete', GOOD_TAGS, 'int32_t', 0),
    ('a result that is void has no @return', GOOD_TAGS, 'void', 1),
    ('no @requires', GOOD_TAGS.replace('@requires', ''), 'int32_t', 1),
    ('another order', GOOD_TAGS.replace('@failure', '@x').replace('@return', '@failure').replace('@x', '@return'), 'int32_t', 1),
    ('a parameter under another name', GOOD_TAGS.replace('width', 'breadth'), 'int32_t', 1),
    ('an empty promise', GOOD_TAGS.replace('@failure none.', '@failure '), 'int32_t', 1),
]

TABLE = [Export('vcA', 'first', 4, True, '', [Argument('window', '', 'window', '')], [], ''),
         Export('vcB', 'first', 12, True, '', [Argument('path', '', 'text', ''), Argument('seconds', '', 'double', '')],
                [], 'int32'),
         Export('vcC', 'first', 4, False, '', [], [], '')]
HEADING = '/* ====\n * first: things\n * ==== */\n'
DECLARED_A = 'VC_API void VC_CALL vcA(VcWindow window) VC_NOEXCEPT;\n'
DECLARED_B = 'VC_API int32_t VC_CALL vcB(const char* path,\n    double seconds) VC_NOEXCEPT;\n'
EXPORTS = [
    ('as the table says', HEADING + DECLARED_A + DECLARED_B, 0),
    ('one missing', HEADING + DECLARED_A, 1),
    ('one twice', HEADING + DECLARED_A + DECLARED_A + DECLARED_B, 2),
    ('another order', HEADING + DECLARED_B + DECLARED_A, 1),
    ('one that is only planned', HEADING + DECLARED_A + DECLARED_B + DECLARED_A.replace('vcA', 'vcC'), 1),
    ('arguments of another size', HEADING + DECLARED_A + DECLARED_B.replace('double', 'float'), 2),
    ('an argument of another kind', HEADING + DECLARED_A + DECLARED_B.replace('const char', 'char'), 1),
    ('another result', HEADING + DECLARED_A + DECLARED_B.replace('int32_t', 'double'), 1),
    ('under another family', HEADING.replace('first', 'second') + DECLARED_A + DECLARED_B, 2),
]

GUIDE_ROW = '## All exports\n| family | exports |\n|---|---|\n| first | `vcA`, `vcB` |\n'
GUIDES = [
    ('as the table says', GUIDE_ROW, 0),
    ('one in prose only', '`vcB`\n' + GUIDE_ROW.replace(', `vcB`', ''), 1),
    ('one under another family', GUIDE_ROW.replace(', `vcB`', '') + '| second | `vcB` |\n', 2),
    ('one that does not exist', GUIDE_ROW.replace('`vcB`', '`vcB`, `vcGhost`'), 1),
    ('one that is only planned', GUIDE_ROW.replace('`vcB`', '`vcB`, `vcC`'), 1),
]
CALLED = [
    ([('.cpp', 'vcA(); vcB();')], 0), ([('.cpp', 'vcA(); // vcB()'), ('.py', 'call("vcA")  # vcB\n')], 1),
    ([('.cpp', 'vcA();'), ('.py', 'call("vcB")\n')], 0),
]

KNOWN_IMPORTS = {'kernel32.dll Sleep', 'tavimo.dll vcA'}
IMPORTS = [
    ({'kernel32.dll': ['Sleep'], 'tavimo.dll': ['vcA']}, 0), ({'kernel32.dll': ['Sleep', 'WaitOnAddress']}, 1),
    ({'api-ms-win-core-synch-l1-2-0.dll': ['Sleep']}, 1), ({'kernel32.dll': []}, 1), ({}, 1),
]
HARD_LINUX = ('  Machine:                           Advanced Micro Devices X86-64\n'
              '  Type:                              DYN (Position-Independent Executable file)\n'
              '  GNU_STACK      0x000000 0x0000000000000000 0x0000000000000000 0x000000 0x000000 RW  0x10\n'
              '  GNU_RELRO      0x04ddc8\n 0x000000000000001e (FLAGS)              BIND_NOW\n'
              '  3: FUNC UND __stack_chk_fail@GLIBC_2.4\n'
              '  4: FUNC UND __memcpy_chk@GLIBC_2.3.4\n')
HARD_WINDOWS = ('tavimo.dll:     file format pei-x86-64\n\t\t\t\t\tHIGH_ENTROPY_VA\n\t\t\t\t\tDYNAMIC_BASE\n\t\t\t\t\tNX_COMPAT\n'
                'Entry 5 0000000000151000 00000a34 Base Relocation Directory [.reloc]\n')
HARDENING_OF_LINUX = ['GNU_RELRO', 'BIND_NOW', 'RW  0x10', 'DYN', '__stack_chk_fail', '__memcpy_chk']
HARDENING_OF_WINDOWS = ['HIGH_ENTROPY_VA', 'DYNAMIC_BASE', 'NX_COMPAT', '151000']


class Checkers(unittest.TestCase):
    def test_functions_are_found_with_their_lines(self):
        for name, text, expected in FUNCTIONS:
            with self.subTest(name):
                self.assertEqual(check_functions.functions(text), expected)
        self.assertRaises(ValueError, check_functions.functions, 'void f() {\n')

    def test_arrows_that_point_the_wrong_way_are_found(self):
        for name, text, expected in LAYERING:
            with self.subTest(name, text=text):
                self.assertEqual(len(list(check_layering.faults(name, text))), expected)

    def test_forbidden_words_are_found(self):
        for line, expected in WORDS:
            with self.subTest(line):
                self.assertEqual(len(list(check_words.faults(line))), expected)

    def test_promises_that_lack_a_tag_are_found(self):
        for name, comment, result, expected in TAGS:
            with self.subTest(name):
                self.assertEqual(bool(list(check_header_tags.faults(comment, result, PARAMETERS))), bool(expected))

    def test_a_header_that_differs_from_the_table_is_found(self):
        for name, text, expected in EXPORTS:
            with self.subTest(name):
                self.assertEqual(len(list(check_exports.header_rows(TABLE, text))), expected)

    def test_exports_missing_in_the_guide_or_the_tests_are_found(self):
        for name, text, expected in GUIDES:
            with self.subTest(name):
                self.assertEqual(len(list(check_exports.guide_rows(TABLE, '\n' + text))), expected)
        for texts, expected in CALLED:
            with self.subTest(texts):
                self.assertEqual(len(list(check_exports.test_rows(TABLE, texts))), expected)

    def test_imports_that_an_old_system_lacks_are_found(self):
        for imported, expected in IMPORTS:
            with self.subTest(imported):
                self.assertEqual(len(list(check_exports.import_rows('x.dll', imported, KNOWN_IMPORTS))), expected)

    def test_files_that_were_built_without_a_hardening_are_found(self):
        landing_places = check_hardening.LANDING_PLACE * check_hardening.FEWEST_LANDING_PLACES
        self.assertEqual(check_hardening.linux_faults(HARD_LINUX, landing_places), [])
        self.assertEqual(len(check_hardening.linux_faults(HARD_LINUX, landing_places[4:])), 1)
        for mark in HARDENING_OF_LINUX:
            with self.subTest(mark):
                text = HARD_LINUX.replace(mark, 'RWE 0x10' if ' ' in mark else '')
                self.assertEqual(len(check_hardening.linux_faults(text, landing_places)), 1)
        protected = [b'__stack_chk_fail', b'', b'', b'']
        self.assertEqual(check_hardening.objects_faults(protected), [])
        self.assertEqual([len(check_hardening.objects_faults(objects)) for objects in ([], protected[1:])], [1, 1])
        self.assertEqual(check_hardening.windows_faults(HARD_WINDOWS), [])
        for mark in HARDENING_OF_WINDOWS:
            with self.subTest(mark):
                self.assertEqual(len(check_hardening.windows_faults(HARD_WINDOWS.replace(mark, '0'))), 1)

    def test_blanking_keeps_the_numbers_of_lines(self):
        text = 'a /* b\n c */ "d\\"e" // f\ng'
        self.assertEqual(house.without_comments(text).split(), ['a', 'g'])
        self.assertEqual(house.without_comments(text).count('\n'), text.count('\n'))


if __name__ == '__main__':
    unittest.main()
