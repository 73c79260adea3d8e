#!/usr/bin/env python3
"""Runs the fuzz targets side by side and ends with a table: inputs tried, code reached, findings. The input of a finding is
kept in the folder findings of the build; the program then ends with 1. What a run learns stays in the folder corpus, so
that the next one goes on from there."""
import argparse
import concurrent.futures
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import NamedTuple

import house

FUZZ = house.ROOT / 'fuzz'
MEMORY = Path('/dev/shm')  # scratch files in memory, where there is such a place
LIMITS = ['-timeout=20', '-rss_limit_mb=1500']
# Bytes of the longest input: past a page of 4988 bytes, past a question's line of 7997. What is longer still, the targets make.
LONGEST = {'layout': 12000, 'pages': 12000, 'index': 20000, 'script': 20000, 'wz': 20000}
OTHERWISE_LONGEST = 4096
IS_MINUTES = re.compile(r'(?!0*\.?0*$)\d*\.?\d+')  # above 0
MOST_SECONDS = 7 * 24 * 3600
PROGRESS = re.compile(r'^#(\d+)\s.*\bcov: (\d+)', re.M)
FINDING = re.compile(r'^(?:BROKEN: .*|.*runtime error: .*|SUMMARY: .*|.*Test unit written to .*)$', re.M)


class Outcome(NamedTuple):
    target: str
    runs: int
    coverage: int
    finding: str  # empty when there is none


def targets():
    return [path.name.removesuffix('_fuzzer.cpp') for path in sorted(FUZZ.glob('*_fuzzer.cpp'))]


def command(target, program, build, seconds):
    corpus, findings = build / 'corpus' / target, build / 'findings' / target
    for folder in (corpus, findings):
        folder.mkdir(parents=True, exist_ok=True)
    options = [*LIMITS, f'-max_len={LONGEST.get(target, OTHERWISE_LONGEST)}', f'-max_total_time={seconds}',
               f'-artifact_prefix={findings}/']
    dictionary = FUZZ / f'{target}.dict'
    if dictionary.exists():
        options.append(f'-dict={dictionary}')
    seeds = FUZZ / 'seeds' / target
    return [str(program), *options, str(corpus), *([str(seeds)] if seeds.exists() else [])]


def run(target, build, seconds, programs):
    """One target in a scratch folder of its own, which goes away even when the program died in it."""
    scratch = tempfile.mkdtemp(prefix='tavimo-fuzz-', dir=MEMORY if os.access(MEMORY, os.W_OK) else None)
    suppressions = house.ROOT / 'tests' / 'leak_sanitizer.supp'
    environment = os.environ | {'TMPDIR': scratch, 'UBSAN_OPTIONS': 'print_stacktrace=1',
                                'ASAN_OPTIONS': 'quarantine_size_mb=16:malloc_context_size=8',
                                'LSAN_OPTIONS': f"suppressions='{suppressions}':print_suppressions=0"}
    try:
        done = subprocess.run(command(target, programs / f'fuzz_{target}', build, seconds), env=environment,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
    finally:
        shutil.rmtree(scratch, ignore_errors=True)
    log = done.stderr.decode('utf-8', 'replace')
    (build / 'findings' / f'{target}.log').write_text(log, encoding='utf-8')
    runs, coverage = PROGRESS.findall(log)[-1] if PROGRESS.search(log) else (0, 0)
    finding = '' if done.returncode == 0 else '\n'.join(FINDING.findall(log)) or f'ended with {done.returncode}'
    if not finding and int(runs) == 0:
        finding = 'no input was tried'
    return Outcome(target, int(runs), int(coverage), finding)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--build', type=Path, required=True, help='the build folder of the preset fuzz')
    parser.add_argument('--programs', type=Path, help='where the targets lie, if not in the build folder')
    parser.add_argument('--jobs', type=int, default=1, help='how many targets run at a time')
    parser.add_argument('words', nargs='*', help=f'targets ({", ".join(targets())}) and minutes for each of them')
    arguments = parser.parse_args()
    numbers = [word for word in arguments.words if re.match(r'[\d.]', word)]
    chosen = [word for word in arguments.words if word not in numbers] or targets()
    for target in chosen:
        if target not in targets():
            parser.error(f'no target named {target}; there are {", ".join(targets())}')
    if len(numbers) > 1 or (numbers and not IS_MINUTES.fullmatch(numbers[0])):
        parser.error('minutes are one number above 0, such as 10 or 0.5')
    seconds = max(1, round(float(numbers[0]) * 60)) if numbers else 60
    if seconds > MOST_SECONDS:
        parser.error(f'{numbers[0]} minutes are more than a week')
    programs = arguments.programs or arguments.build / 'fuzz'
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        outcomes = list(pool.map(lambda t: run(t, arguments.build, seconds, programs), chosen))
    for outcome in outcomes:
        if outcome.finding:
            print(f'{outcome.target}:\n{outcome.finding}\n')
    print(f'{"target":12} {"runs":>12} {"coverage":>9}  findings ({seconds} s each)')
    for outcome in outcomes:
        print(f'{outcome.target:12} {outcome.runs:12,} {outcome.coverage:9,}  {"1" if outcome.finding else "none"}')
    sys.exit(any(outcome.finding for outcome in outcomes))


if __name__ == '__main__':
    main()
