#!/usr/bin/env python3
"""The command line under limits that sanitizers cannot live with.

Usage: limits_test.py KELSPAR
"""
import os
import resource
import subprocess
import sys
import tempfile
import unittest

KELSPAR = sys.argv.pop()
MEGABYTE = 1 << 20


class Limits(unittest.TestCase):
    def test_stream_does_with_the_threads_that_there_are(self):
        def limit():
            # Stacks so large that there is room for a few of them, and much left besides.
            resource.setrlimit(resource.RLIMIT_STACK, (256 * MEGABYTE, 256 * MEGABYTE))
            resource.setrlimit(resource.RLIMIT_AS, (1800 * MEGABYTE, 1800 * MEGABYTE))

        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, 'a.eml')
            with open(path, 'w', encoding='ascii') as mail:
                mail.write('Subject: a\n\ntext\n')
            result = subprocess.run([KELSPAR, 'stream', '--jobs', '200'], timeout=60, capture_output=True,
                                    input=f'{path}\n'.encode() * 3000, preexec_fn=limit)
            self.assertEqual(result.stdout.count(b'\n'), 3000, result.stderr)
            self.assertEqual(result.returncode, 0)


if __name__ == '__main__':
    unittest.main()
