#!/usr/bin/env python3
"""What the kelspar program takes from its command line and says on a terminal.

Usage: command_line_words_test.py KELSPAR SOURCE_DIR
"""
import os
import pty
import subprocess

from command_line_case import PROGRAM, Case, main, run


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


if __name__ == '__main__':
    main()
