#!/usr/bin/env python3
"""Writes the manual pages that follow from the programs themselves.

    manual_pages.py command KELSPAR VERSION      kelspar(1), from the program's own --help texts
    manual_pages.py operations EXTENSION VERSION kelspar(7), from the catalogue of operations
"""
import json
import re
import subprocess
import sys


def roff(text):
    text = text.replace('\\', '\\e').replace('-', '\\-')
    return re.sub(r"^([.'])", r'\\&\1', text, flags=re.M)


def help_of(program, *words):
    return subprocess.run([program, *words, '--help'], capture_output=True, text=True, check=True).stdout


def sections(text):
    """The help text by its headings: 'Options', 'Subcommands', 'Positionals'."""
    found, heading = {'': []}, ''
    for line in text.splitlines():
        match = re.match(r'^(\w[\w ]*):\s*$', line)
        if match:
            heading = match.group(1)
            found[heading] = []
        else:
            found[heading].append(line)
    return found


def entries(lines):
    """(term, text) pairs of an indented two-column list; what wraps belongs to the entry above."""
    for line in lines:
        if match := re.match(r'^  (\S.*?)(?:\s{2,}(\S.*))?$', line):
            yield [match.group(1), match.group(2) or '']
        elif line.strip() and not line.startswith('  '):
            yield [None, line.strip()]
        elif line.strip():
            yield ['', line.strip()]


def write_entries(lines, out):
    merged = []
    for term, text in entries(lines):
        if term == '' and merged:
            merged[-1][1] = (merged[-1][1] + ' ' + text).strip()
        elif term:
            merged.append([term, text])
    for term, text in merged:
        out.append('.TP\n.B ' + roff(term) + '\n' + (roff(text) or '\\&'))


def command_page(program, version):
    top = sections(help_of(program))
    names = [line.split()[0] for line in top['Subcommands'] if re.match(r'^  \S', line)]
    out = [f'.TH KELSPAR 1 "" "kelspar {version}" "User Commands"',
           '.SH NAME\nkelspar \\- turn stored e\\-mail content into text that can be shown',
           '.SH SYNOPSIS\n.B kelspar\n.I COMMAND\n.RI [ OPTION ...]\n.RI [ ARGUMENT ...]',
           '.SH DESCRIPTION',
           roff('Data goes to standard output or to the file given with -o, everything else to standard '
                'error. An output file is replaced whole or not at all. "-" is standard input.'),
           '.SH COMMANDS']
    for name in names:
        page = sections(help_of(program, name))
        title = ' '.join(line.strip() for line in page[''] if line.strip() and 'Usage:' not in line)
        out.append(f'.SS "kelspar {roff(name)}"\n{roff(title)}')
        for heading in ('Positionals', 'Options'):
            write_entries(page.get(heading, []), out)
    out.append('.SH EXIT STATUS')
    for status, meaning in [(0, 'All done.'), (1, 'An input is at fault.'), (2, 'The command line is.'),
                            (3, 'Of several inputs none could be read.'),
                            (4, 'The output cannot be written.')]:
        out.append(f'.TP\n.B {status}\n{meaning}')
    out.append('.SH SEE ALSO\n.BR kelspar\\-extension (1),\n.BR kelspar (7)')
    return out


def operations_page(extension, version):
    request = json.dumps({'jsonrpc': '2.0', 'id': 1, 'method': 'rpc.discover'})
    answer = subprocess.run([extension], input=request + '\n', capture_output=True, text=True, check=True)
    classes = json.loads(answer.stdout)['result']['value']['classes']
    out = [f'.TH KELSPAR 7 "" "kelspar {version}" "Miscellaneous"',
           '.SH NAME\nkelspar \\- the operations of the message\\-content library',
           '.SH DESCRIPTION',
           'Operations as',
           '.BR kelspar\\-extension (1)\nand\n.B kelspar call\nknow them.',
           'Each belongs to a class, or to a category that adds it to a type of value, its receiver.']
    for owner in classes:
        extends = f' (on {owner["extends"]})' if 'extends' in owner else ''
        out.append(f'.SH "{roff(owner["name"] + extends)}"')
        for operation in sorted(owner['operations'], key=lambda entry: entry['name']):
            arguments = ', '.join(operation['arguments']) or 'no arguments'
            if owner.get('extends') and operation['kind'] == 'class':
                arguments += '; no receiver'
            out.append(f'.TP\n.B {roff(operation["name"])}\n{roff(arguments)}. '
                       f'Gives {roff(operation["result"])}.')
    out.append('.SH SEE ALSO\n.BR kelspar (1),\n.BR kelspar\\-extension (1)')
    return out


if __name__ == '__main__':
    write = {'command': command_page, 'operations': operations_page}[sys.argv[1]]
    print('\n'.join(write(sys.argv[2], sys.argv[3])))
