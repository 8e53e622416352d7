#!/usr/bin/env python3
"""Counts test cases over all test programs: those that GoogleTest reports, one each for the others.

Prints 'N passed, N failed'. A program that broke off without its report counts as one failure.
"""
import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def main(folder):
    reports = {path.stem: path for path in pathlib.Path(folder).glob('*.xml')}
    programs = ElementTree.parse(reports.pop('ctest')).getroot()
    passed = failed = 0
    for program in programs.iter('testcase'):
        broken = program.get('status') != 'run'
        report = reports.get(program.get('name') + '_test')
        if report is None:
            passed, failed = passed + (not broken), failed + broken
            continue
        root = ElementTree.parse(report).getroot()
        bad = int(root.get('failures')) + int(root.get('errors'))
        failed += max(bad, broken)
        passed += int(root.get('tests')) - bad
    print(f'{passed} passed, {failed} failed')
    return 1 if failed or not passed else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1]))
