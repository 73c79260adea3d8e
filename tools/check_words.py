#!/usr/bin/env python3
"""Fails on words that do not belong in the repository: references to the documents the system was written from, numbers
of issues, folders of one machine, hosts of package registries, and marks of unfinished work. A reader who clones the
house has none of these at hand. The patterns below are spelled so that they do not match themselves."""
import re

import house

FORBIDDEN = [
    (r'[s]pecifications?\b|\b[s]pec\.md|\bthe [s]pec\b', 'names a document the reader does not have'),
    (r'\b[P]arts? \d\.\d', 'names a document the reader does not have'),
    (r'\b[i]ssues? #?\d|(?<![\w&#%])[#]\d{1,2}\b', 'names an issue by number'),
    (r'(?<![\w.~])/[w]ork\b|(?<![\w.~])/[r]oot\b|/tmp/[b]ash_jobs', 'names a folder of one machine'),
    (r'\b(pypi|npmjs|crates|rubygems|nuget|conan|hackage|anaconda|maven)[.](org|io|com)\b'
     r'|\b(proxy[.]golang|deb[.]debian|files[.]pythonhosted|registry[.]yarnpkg)[.]', 'names a package registry'),
    (r'(?-i:\b([T]ODO|[F]IXME|[X]XX)\b)', 'marks unfinished work'),
]
# Titles of published documents that a comment may cite.
CITED = ('Multimedia Programming Interface and Data ' 'Spec' 'ifications',)


PATTERNS = [(re.compile(pattern, re.I), message) for pattern, message in FORBIDDEN]


def faults(line):
    """A message for every forbidden word of one line."""
    for title in CITED:
        line = line.replace(title, '')
    for pattern, message in PATTERNS:
        found = pattern.search(line)
        if found:
            yield f'"{found.group()}" {message}'


def rows():
    for path in house.files():
        text = house.read(path)
        for number, line in enumerate(text.splitlines() if '\0' not in text else [], 1):
            for fault in faults(line):
                yield path, number, fault


if __name__ == '__main__':
    house.report(list(rows()))
