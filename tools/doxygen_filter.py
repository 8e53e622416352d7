#!/usr/bin/env python3
"""Makes documentation comments of plain ones, for Doxygen: doxygen_filter.py FILE.

Above a declaration "//" becomes "///", behind one "///<". Words that Doxygen or HTML would take for commands are
escaped; lines that are indented under a comment are code.
"""
import html
import re
import sys


def code(text):
    return html.escape(text).replace('\\', '&#92;').replace('@', '&#64;')


def escaped(text):
    """Words for commands escaped, `code` as an element: Doxygen ends it at some quotation marks."""
    parts = text.split('`')
    if len(parts) % 2 == 0:
        return re.sub(r'([\\@<>#&%$])', r'\\\1', text)
    return ''.join(f'<code>{code(part)}</code>' if i % 2 else re.sub(r'([\\@<>#&%$])', r'\\\1', part)
                   for i, part in enumerate(parts))


def converted(lines):
    code = ''  # the indent of the comment whose code is open
    for line in lines:
        comment = re.match(r'^(\s*)//( ?)(.*)$', line)
        is_code = bool(comment) and (comment[3].startswith('  ') or (bool(code) and not comment[3].strip()))
        if bool(code) != is_code:
            code = comment[1] + '/// ' if is_code else code
            yield code + (r'\code{.cpp}' if is_code else r'\endcode')
            code = code if is_code else ''
        if is_code:
            yield code + comment[3]
        elif comment:
            yield f'{comment[1]}/// {escaped(comment[3])}'
        else:
            behind = re.match(r'^([^"\']*[;,{}])\s+// (.*)$', line)
            yield f'{behind[1]}  ///< {escaped(behind[2])}' if behind else line


if __name__ == '__main__':
    with open(sys.argv[1], encoding='utf-8') as file:
        text = file.read()
    if sys.argv[1].endswith('.h'):
        text = '\n'.join(converted(text.splitlines())) + '\n'
    sys.stdout.write(text)
