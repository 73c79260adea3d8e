#!/usr/bin/env python3
"""Measures how long functions and files are, in lines from the first of a signature to the closing brace, and prints the
median, the ninetieth percentile and the longest function of each folder (aims: 10 and 30). It fails on a function of more
than 60 lines, unless the line above it says "// long:" and why, and on a file of more than 500 lines; the public headers
are one contract each and may be longer. It reads braces, not C++: whatever has parentheses before its brace and stands
in a file, a namespace or a class is a function."""
import re
import statistics
import sys
from collections import defaultdict

import house

FUNCTION_LIMIT = 60
FILE_LIMIT = 500
SCOPE = re.compile(r'^(inline\s+)?(namespace|extern|class|struct|union|enum)\b')
LEAD_IN = re.compile(r'\s*((public|private|protected)\s*:\s*)*')
CONSTRUCTOR_LIST = re.compile(r'\)[\w\s]*:(?!:)')


def nested_removed(text, pair):
    """Text without what stands between the two characters of pair, from the innermost outwards."""
    inner = re.compile(rf'\{pair[0]}[^{pair}]*\{pair[1]}')
    while inner.search(text):
        text = inner.sub(' ', text)
    return text


def kind_of_brace(head):
    """What an opening brace begins in a file, namespace or class: a scope, a function, or a value in braces."""
    head = re.sub(r'\b(__attribute__|alignas|__declspec|VC_\w+)\b(\s*\(\([^)]*\)\)|\s*\([^()]*\))?', ' ', head).strip()
    plain = re.sub(r'\boperator\s*(\(\)|[^\w\s(]+)', 'operator_', head)
    plain = re.sub(r'^template\s*', '', nested_removed(plain, '<>')).strip()
    if SCOPE.match(plain) and '(' not in plain:
        return 'scope'
    if '(' not in plain or '=' in nested_removed(plain, '()'):
        return 'value'
    if CONSTRUCTOR_LIST.search(plain) and re.search(r'[\w>]$', plain):
        return 'value'  # a member's initialiser: the constructor's own brace comes later
    return 'function'


def functions(text):
    """(first line, last line) of every function; ValueError when the braces do not balance."""
    code = house.without_comments(text)
    code = re.sub(r'^[ \t]*#(?:[^\n]*\\\n)*[^\n]*', lambda m: re.sub(r'[^\n]', ' ', m.group()), code, flags=re.M)
    stack, found, head_start, parentheses = [], [], 0, 0
    for token in re.finditer(r'[{};()]', code):
        at, sign = token.start(), token.group()
        if sign in '()':
            parentheses += 1 if sign == '(' else -1
        elif sign == '{':
            outside = all(kind == 'scope' for kind, _ in stack) and parentheses == 0
            first = LEAD_IN.match(code, head_start).end()
            kind = kind_of_brace(code[first:at]) if outside else 'inner'
            stack.append((kind, first))
        elif sign == '}':
            if not stack:
                raise ValueError(house.line_of(code, at))
            kind, first = stack.pop()
            if kind == 'function':
                found.append((house.line_of(code, first), house.line_of(code, at)))
        if (sign == '{' and stack[-1][0] == 'scope') or (sign == '}' and kind in ('scope', 'function')) or (
                sign == ';' and parentheses == 0 and all(k == 'scope' for k, _ in stack)):
            head_start = token.end()
    if stack:
        raise ValueError(house.line_of(code, len(code)))
    return found


def main():
    rows, lengths = [], defaultdict(list)
    for path in house.files(house.CODE):
        text = house.read(path)
        lines = text.splitlines()
        if len(lines) > FILE_LIMIT and path.parts[0] != 'include':
            rows.append((path, FILE_LIMIT, f'{len(lines)} lines, at most {FILE_LIMIT}'))
        try:
            found = functions(text)
        except ValueError as error:
            rows.append((path, error.args[0], 'the braces do not balance'))
            continue
        for first, last in found:
            lengths[path.parent.as_posix()].append(last - first + 1)
            reason = lines[first - 2] if first > 1 else ''
            if last - first + 1 > FUNCTION_LIMIT and not re.match(r'\s*// long: \w', reason):
                rows.append((path, first, f'a function of {last - first + 1} lines, at most {FUNCTION_LIMIT}'))
    for folder, values in sorted(lengths.items()):
        ninetieth = statistics.quantiles(values, n=10, method='inclusive')[8] if len(values) > 1 else values[0]
        print(f'{folder:24} {len(values):4} functions  median {statistics.median(values):4.0f}  '
              f'ninetieth percentile {ninetieth:4.0f}  longest {max(values):4}', file=sys.stderr)
    house.report(rows)


if __name__ == '__main__':
    main()
