#!/usr/bin/env python3
"""What the command line costs from start to end, in time and memory, against its limits.

Usage: command_line.py KELSPAR FOLDER [RUNS]

FOLDER holds messages. Each figure is the best of RUNS (5): the machine's noise only adds. Exits with 1 when a
limit is missed.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time


def measured(command, stdin=b''):
    """Seconds and peak KiB of one run."""
    with tempfile.TemporaryFile() as given, open(os.devnull, 'wb') as nowhere:
        given.write(stdin)
        given.seek(0)
        start = time.perf_counter()
        process = subprocess.Popen(command, stdin=given, stdout=nowhere, stderr=nowhere)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode not in (0, 1):
        sys.exit(f'{command[:4]} ended with {process.returncode}')
    return seconds, usage.ru_maxrss


def best(runs, *arguments):
    results = [measured(*arguments) for _ in range(runs)]
    return min(seconds for seconds, _ in results), max(memory for _, memory in results)


def main():
    kelspar, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    messages = sorted((p for p in folder.iterdir() if p.is_file()), key=lambda p: p.stat().st_size)
    names = [str(p) for p in messages]
    small = next(p for p in messages if p.stat().st_size >= 1000)
    rows = []

    def row(what, value, limit, unit):
        rows.append((what, value, limit, unit))
        print(f'{what:<56} {value:9.1f} {unit:<3}  limit {limit:7.1f}  {"ok" if value < limit else "MISSED"}')

    row('one small message to text', 1000 * best(4 * runs, [kelspar, 'convert', str(small)])[0], 30, 'ms')
    for form, limit in (('text', 3), ('pdf', 30)):
        with tempfile.TemporaryDirectory() as out:
            command = [kelspar, 'convert', *names, '--to', form, '--output-dir', out, '--force']
            row(f'{len(names)} messages to {form}', best(runs, command)[0], limit, 's')

    # Memory: what a job holds beyond the program itself, in sizes of the largest message.
    _, idle = best(runs, [kelspar, 'convert', str(small)])
    largest = messages[-1].stat().st_size / 1024
    for form, limit in (('text', 10), ('html', 16), ('json', 20)):
        _, memory = best(runs, [kelspar, 'convert', names[-1], '--to', form])
        row(f'the largest message ({largest:.0f} KiB) to {form}: memory', (memory - idle) / largest, limit, 'x')
    for jobs in (1, 2):
        lines = ''.join(name + '\n' for name in names).encode() * 10
        _, memory = best(1, [kelspar, 'stream', '--jobs', str(jobs)], lines)
        row(f'stream of {10 * len(names)}, {jobs} at a time: memory a job', (memory - idle) / largest / jobs, 40, 'x')
    sys.exit(any(value >= limit for _, value, limit, _ in rows))


if __name__ == '__main__':
    main()
