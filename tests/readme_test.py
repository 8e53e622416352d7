#!/usr/bin/env python3
"""Runs the README's examples in Python and JavaScript as they stand there: readme_test.py README EXTENSION"""
import os
import pathlib
import re
import subprocess
import sys

RUN = {'python': ['python3', '-'], 'javascript': ['node', '-']}


def main(readme, extension):
    blocks = re.findall(r'^```(\w+)\n(.*?)^```$', pathlib.Path(readme).read_text(), re.M | re.S)
    path = str(pathlib.Path(extension).resolve().parent) + os.pathsep + os.environ['PATH']
    ran = []
    for language, code in blocks:
        if language not in RUN:
            continue
        result = subprocess.run(RUN[language], input=code, text=True, capture_output=True, timeout=60,
                                env={**os.environ, 'PATH': path})
        expected = re.findall(r'(?:#|//) (.*)$', code, re.M)  # what each comment says is printed
        if result.returncode != 0 or result.stdout.splitlines() != expected:
            sys.exit(f'{language}: {result.stdout!r}, not {expected}\n{result.stderr}')
        ran.append(language)
    print(*ran)
    return sorted(ran) != sorted(RUN)


if __name__ == '__main__':
    sys.exit(main(*sys.argv[1:]))
