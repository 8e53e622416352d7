#!/usr/bin/env python3
"""Runs the README's examples as they stand there, in Python, JavaScript and the shell, and compares its table of
operations with the extension's catalogue.

    readme_test.py README EXTENSION KELSPAR
"""
import json
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile

RUN = {'python': ['python3', '-'], 'javascript': ['node', '-']}


def check_commands(text, kelspar, folder, scratch):
    """Commands of the indented blocks; lines that follow one are its output, "..." is any lines."""
    ran = 0
    for command, output in re.findall(r'^    \$ ((?:.*\\\n)*.*)\n((?:    (?!\$).*\n)*)', text, re.M):
        if not command.startswith('./run convert'):
            continue
        arguments = command.replace('\\\n', ' ').split()[1:]
        if '-o' in arguments:
            place = arguments.index('-o') + 1
            output_name = arguments[place]
            arguments[place] = f'{scratch}/{output_name}'
        result = subprocess.run([kelspar, *arguments], cwd=folder, text=True, capture_output=True, timeout=60)
        lines = [line[4:] for line in output.splitlines()]
        pattern = '.*'.join(re.escape(piece) for piece in '\n'.join(lines).split('...'))
        if result.returncode != 0 or not re.fullmatch(pattern, result.stdout.strip('\n'), re.S):
            sys.exit(f'{command}: {result.stdout!r}, not {lines}\n{result.stderr}')
        if '-o' in arguments:
            check_picture(text[text.index(command) + len(command):], scratch, output_name, folder)
        ran += 1
    return ran


def picture_size(path):
    header = pathlib.Path(path).read_bytes()[:24]  # PNG: the first chunk holds width and height
    return struct.unpack('>II', header[16:24])


def check_picture(behind, scratch, name, folder):
    """The picture that follows a command shows the first page of the document that it makes."""
    shown = re.match(r'\n+!\[[^]]*\]\(([^)]*)\)', behind)
    if not shown or pathlib.Path(shown[1]).stem != pathlib.Path(name).stem:
        sys.exit(f'{name}: no picture of it follows')
    page = f'{scratch}/page'
    subprocess.run(['pdftoppm', '-r', '60', '-singlefile', '-png', f'{scratch}/{name}', page], check=True, timeout=60)
    if picture_size(folder / shown[1]) != picture_size(page + '.png'):
        sys.exit(f'{shown[1]}: {picture_size(folder / shown[1])}, not {picture_size(page + ".png")}')


def check_table(text, extension):
    request = json.dumps({'jsonrpc': '2.0', 'id': 1, 'method': 'rpc.discover'})
    answer = subprocess.run([extension], input=request + '\n', text=True, capture_output=True, timeout=60).stdout
    catalogue = {each['name']: sorted(operation['name'] for operation in each['operations'])
                 for each in json.loads(answer)['result']['value']['classes']}
    rows = re.findall(r'^\| `(\w+)` \| [^|]* \| (`[^|]*`) \|$', text, re.M)
    table = {name: sorted(re.findall('`([^`]*)`', operations)) for name, operations in rows}
    for name in sorted(catalogue.keys() | table.keys()):
        if catalogue.get(name) != table.get(name):
            sys.exit(f'{name}: the table says {table.get(name)}, the catalogue {catalogue.get(name)}')


def main(readme, extension, kelspar):
    text = pathlib.Path(readme).read_text()
    check_table(text, extension)
    with tempfile.TemporaryDirectory() as scratch:
        if check_commands(text, kelspar, pathlib.Path(readme).parent, scratch) < 3:
            sys.exit('too few commands were found')
    blocks = re.findall(r'^```(\w+)\n(.*?)^```$', text, re.M | re.S)
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
