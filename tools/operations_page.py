#!/usr/bin/env python3
"""Writes the page of all operations, by name, each with the function behind it: operations_page.py EXTENSION."""
import json
import subprocess
import sys


def main():
    request = json.dumps({'jsonrpc': '2.0', 'id': 1, 'method': 'rpc.discover'})
    answer = subprocess.run([sys.argv[1]], input=request + '\n', capture_output=True, text=True, check=True)
    rows = []
    for owner in json.loads(answer.stdout)['result']['value']['classes']:
        for operation in owner['operations']:
            name = operation['name']
            function = f'kelspar::{owner["name"]}::{name.split(":")[0]}'
            arguments = ', '.join(operation['arguments']) or 'none'
            rows.append((name.lower(), f'| {name} | \\ref {function} "{owner["name"]}" | {arguments} | '
                                       f'{operation["result"]} |'))
    print('# Operations {#mainpage}\n\nEach by its full name, as the extension and `kelspar call` know it.\n')
    print('| operation | function | arguments | gives |\n|---|---|---|---|')
    for _, row in sorted(rows):
        print(row)


if __name__ == '__main__':
    main()
