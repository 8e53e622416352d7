"""What the tests of the kelspar program share: running it, a folder for each test, a message.

A test file ends in main(), which takes KELSPAR SOURCE_DIR from the command line.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

KELSPAR = os.path.abspath(sys.argv[1])
SOURCE = pathlib.Path(sys.argv[2])


def run(*arguments, stdin=b'', **environment):
    arguments = [each if isinstance(each, bytes) else str(each) for each in arguments]
    return subprocess.run([KELSPAR, *arguments], input=stdin, capture_output=True, timeout=60,
                          env=os.environ | {'LC_ALL': 'C'} | environment)


class Case(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.folder.name)
        self.sample = SOURCE / 'samples' / 'invitation.rtfz'

    def tearDown(self):
        self.folder.cleanup()

    def assert_fails(self, result, status, *words):
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertEqual(result.stdout, b'')
        message = result.stderr.decode()
        for word in words:
            self.assertIn(word, message)
        return message

    MAIL = (b'From: =?utf-8?Q?J=C3=B6rg?= <j@example.org>\nTo: Ann <a@example.org>\n'
            b'Date: Tue, 1 Apr 2003 14:00:00 +0200\nSubject: =?utf-8?Q?caf=C3?= =?utf-8?Q?=A9?=\n'
            b'Content-Type: multipart/mixed; boundary=x\n\n--x\nContent-Type: text/html\n\n'
            b'<p>Hello <b>there</b><script>bad()</script><img src="http://e.org/x"><img src="cid:i@j">\n--x\n'
            b'Content-Type: image/png\nContent-Id: <i@j>\nContent-Transfer-Encoding: base64\n\n'
            b'iVBORw0KGgo=\n--x\nContent-Type: text/x; name="../../evil.txt"\n\nboo\n--x--\n')

    def mail(self, name='a.eml', content=MAIL):
        path = self.path / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        return path


def main():
    unittest.main(argv=sys.argv[:1])
