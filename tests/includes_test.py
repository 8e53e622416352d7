#!/usr/bin/env python3
"""Reads the #include lines of all code: rooms include lower rooms only, units what they build on, and
the libraries beneath are seen in platform/**/*.cpp alone."""
import pathlib
import re
import sys

FLOORS = ['foundation', 'unicode', 'calendar', 'dispatch', 'loading', 'richtext', 'graphics', 'runtime']
UNITS = {
    'BitKelspar': set(),
    'TimeKelspar': set(),
    'StringKelspar': set(),
    'RTFKelspar': set(),
    'WebKelspar': {'StringKelspar'},
    'EmailUtilities': {'WebKelspar', 'StringKelspar'},
    'MailKelspar': {'BitKelspar', 'TimeKelspar', 'StringKelspar', 'RTFKelspar', 'WebKelspar',
                    'EmailUtilities'},
}
# Who is allowed what besides its own folder; tests, benchmarks and fuzz targets may see everything.
PROGRAMS = {'host', 'extension'}
BENEATH = re.compile(r'<(unicode/|glib|gio/|pango/|cairo|gdk-pixbuf|curl/|nlohmann/)')
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"][^>"]+)[>"]', re.M)


def public_headers(root):
    headers = set()
    for cmake in root.rglob('CMakeLists.txt'):
        text = cmake.read_text()
        for block in re.findall(r'HEADERS\s+((?:[\w.]+\.h\s*)+)', text):
            headers |= {str((cmake.parent / name).relative_to(root)) for name in block.split()}
    return headers


def is_test(path):
    return path.name.endswith('_test.cpp') or path.parts[0] in {'tests', 'fuzz', 'bench'}


def faults(root, path, public):
    relative = path.relative_to(root)
    top = relative.parts[0]
    for included in INCLUDE.findall(path.read_text(errors='replace')):
        name = included[1:]
        if BENEATH.match(included) and not (top == 'platform' and path.suffix == '.cpp'):
            yield f'includes {name}>, which only platform/**/*.cpp may'
        if included[0] == '<':
            continue
        parts = pathlib.PurePath(name).parts
        if parts[0] == 'platform':
            if top == 'platform' and FLOORS.index(parts[1]) > FLOORS.index(relative.parts[1]):
                yield f'includes {name}, which stands higher'
        elif parts[0] in UNITS:
            if top == 'platform' or (top in UNITS and parts[0] != top and parts[0] not in UNITS[top]):
                yield f'includes {name}, which it does not build on'
        elif parts[0] != top:
            yield f'includes {name}, which is none of its rooms'
        if top in PROGRAMS and parts[0] not in PROGRAMS and name not in public:
            yield f'includes {name}, which is no public header'
        if str(relative) in public and name not in public:
            yield f'is public and includes {name}, which is not'


def main(root):
    public = public_headers(root)
    bad = count = 0
    for top in ['platform', 'extension', 'host', *UNITS]:
        for path in sorted((root / top).rglob('*')):
            if path.suffix not in {'.h', '.cpp'} or is_test(path.relative_to(root)):
                continue
            count += 1
            for fault in faults(root, path, public):
                print(f'{path.relative_to(root)} {fault}')
                bad += 1
    print(f'{count} files read, {bad} faults')
    return 1 if bad or count < 50 else 0


if __name__ == '__main__':
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
