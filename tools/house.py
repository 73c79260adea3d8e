"""What the checkers share: where the repository is, which files belong to it, what C++ text means without its comments
and strings, and how rows are reported. It checks nothing itself."""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SKIPPED_FOLDERS = {'build', '.git', '.cache', '__pycache__'}
CODE = ('.c', '.cpp', '.h')


def files(suffixes=None, under='.'):
    """The repository's files as paths relative to ROOT, sorted; without build trees."""
    found = []
    for path in sorted((ROOT / under).rglob('*')):
        name = path.relative_to(ROOT)
        if path.is_file() and not SKIPPED_FOLDERS.intersection(name.parts):
            if suffixes is None or path.suffix in suffixes:
                found.append(name)
    return found


def read(path):
    """Text as it stands; bytes that are no UTF-8 become Latin-1, so that every line can be searched."""
    content = (ROOT / path).read_bytes()
    try:
        return content.decode('utf-8')
    except UnicodeDecodeError:
        return content.decode('latin-1')


_NOISE = re.compile(
    r'//(?:[^\n\\]|\\.|\\\n)*'  # a comment to the end of its line
    r'|/\*.*?\*/'
    r'|R"([^()\\ ]{0,16})\(.*?\)\1"'
    r'|"(?:[^"\\\n]|\\.)*"'
    r"|(?<![0-9A-Fa-f])'(?:[^'\\\n]|\\.)+'",  # not the separators of 1'000
    re.S)


def without_comments(text, keep_strings=False):
    """C or C++ text with comments and the contents of strings replaced by blanks; every line keeps its number."""
    def blank(match):
        if keep_strings and match.group().startswith('"'):
            return match.group()
        return re.sub(r'[^\n]', ' ', match.group())
    return _NOISE.sub(blank, text)


def line_of(text, offset):
    return text.count('\n', 0, offset) + 1


def report(rows):
    """Prints rows of (file, line, message) and ends the program: 1 when there is a row, else 0."""
    for path, line, message in rows:
        print(f'{path}:{line}: {message}')
    sys.exit(1 if rows else 0)
