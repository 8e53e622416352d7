#!/usr/bin/env python3
"""What the kelspar program takes from its command line and says on a terminal.

Usage: command_line_words_test.py KELSPAR SOURCE_DIR
"""
import os
import pty
import subprocess
import tty

from command_line_case import KELSPAR, Case, main, run


class Words(Case):
    def test_brackets_are_part_of_the_word(self):
        self.assertEqual(run('header', '[list]', '[a,b]', '[]', 'x').stdout, b'[list]\n[a,b]\n[]\nx\n')
        self.assertEqual(run('header', '[list]').stdout, b'[list]\n')
        os.chdir(self.path)
        for name in ('[draft]', '[a,b]'):
            self.mail(name)
            for command in (('convert', '--no-header'), ('text',), ('text', '--')):
                self.assertEqual(run(*command, name).stdout, b'Hello there\n')
            self.assertIn(b'Format: eml\n', run('info', name).stdout)
            self.assertEqual(run('convert', name, '-o', '[out]').returncode, 0)
            self.assertTrue((self.path / '[out]').is_file())
        self.assertIn('[x]', self.assert_fails(run('convert', '[draft]', '--to', '[x]'), 2))

    def on_terminal(self, *arguments):
        """What a terminal gets on standard output and error, and the exit status."""
        ours, theirs = pty.openpty()
        tty.setraw(theirs)
        process = subprocess.Popen([KELSPAR, *arguments], stdin=subprocess.DEVNULL, stdout=theirs, stderr=theirs)
        os.close(theirs)
        shown = b''
        try:
            while piece := os.read(ours, 65536):
                shown += piece
        except OSError:  # how a terminal says that nobody holds its other side any more
            pass
        os.close(ours)
        return shown, process.wait(60)

    def test_terminals_get_no_controls(self):
        word = '=?utf-8?q?=1B[31m=C2=9B1m?='
        self.assertEqual(self.on_terminal('header', '--exact', word), (b' [31m 1m\n', 0))
        self.assertEqual(run('header', '--exact', word).stdout, b'\x1b[31m\xc2\x9b1m\n')
        name = self.path / 'a\x1b[31m\nb.eml'
        name.write_bytes(self.MAIL)
        for arguments in [('date', '\x1b[31m'), ('address', '\x1b[31m'), ('convert', '\x1b[31m'),
                          ('info', '\x1b[31m'), ('\x1b[31m',), ('convert', name, '--output-dir', self.path / 'o'),
                          ('convert', name, '--to', 'html', '-o', '/dev/null'), ('info', name, name)]:
            shown, _ = self.on_terminal(*arguments)
            self.assertIn(b' [31m', shown)
            self.assertNotIn(b'\x1b', shown)
        for arguments in [('date', '\x1b[31m'), ('convert', self.path / 'x\ny')]:
            self.assertNotRegex(run(*arguments).stderr, rb'\x1b|\n(?!kelspar: |$)')


if __name__ == '__main__':
    main()
