#!/usr/bin/env python3
"""Fails when an export of include/tavimo.h lacks a part of its promise: every comment carries @brief, one @param for each
parameter under its name and in its order ("@param height, width" serves two), @return unless the result is void, @failure
and @requires, in this order and none of them empty. Whether the promises are kept is for the tests."""
import re

import house
from check_exports import HEADER, declarations

TAG = re.compile(r'@(\w+)([^@]*)')
NAMES = re.compile(r'\s*(\w+(?:, \w+)*)\s+\S')


def comment_above(text, offset):
    """The /** comment that ends right above an offset, without its stars; None when something else stands there."""
    before = text[:offset].rstrip()
    start = before.rfind('/**')
    if not before.endswith('*/') or '*/' in before[start:-2]:
        return None
    return re.sub(r'^ *\*', '', before[start + 3:-2], flags=re.M)


def faults(comment, result, parameters):
    tags = TAG.findall(comment)
    documented = []
    for name, text in tags:
        if not text.strip():
            yield f'@{name} is empty'
        if name == 'param':
            found = NAMES.match(text)
            documented += found.group(1).split(', ') if found else ['a nameless one']
    declared = [re.search(r'(\w+)(\[\w*\])?$', parameter).group(1) for parameter in parameters]
    if documented != declared:
        yield f'documents the parameters {documented}, declares {declared}'
    order = [name for i, (name, _) in enumerate(tags) if name != 'param' or i == 0 or tags[i - 1][0] != 'param']
    expected = ['brief'] + ['param'] * bool(declared) + ['return'] * (result != 'void') + ['failure', 'requires']
    if order != expected:
        yield f'has the tags {order}, expected {expected}'


def rows():
    text = house.read(HEADER)
    for name, result, parameters, offset in declarations(text):
        line = house.line_of(text, offset)
        comment = comment_above(text, offset)
        if comment is None:
            yield HEADER, line, f'{name} has no comment'
            continue
        for fault in faults(comment, result, parameters):
            yield HEADER, line, f'{name} {fault}'


if __name__ == '__main__':
    house.report(list(rows()))
