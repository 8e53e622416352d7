#!/usr/bin/env python3
"""The files that the kelspar program writes: whole, with the modes of their kind, over none that was to stay.

Usage: command_line_files_test.py KELSPAR SOURCE_DIR
"""
import collections
import os
import pathlib
import subprocess

from command_line_case import KELSPAR, Case, main, run


class Files(Case):
    def modes(self, folder):
        return collections.Counter(path.stat().st_mode & 0o777 for path in folder.iterdir())

    def test_many_threads_keep_the_mask(self):
        for i in range(1500):
            self.mail(f'in/{i}.eml', b'Subject: s\n\nb\n')
        for mask, mode in [(0o077, 0o600), (0o022, 0o644)]:
            out = self.path / f'out{mask}'
            command = [KELSPAR, 'convert', *map(str, (self.path / 'in').iterdir()), '--output-dir', out, '--jobs', '8']
            result = subprocess.run(command, capture_output=True, preexec_fn=lambda: os.umask(mask))
            self.assertEqual(result.returncode, 0, result.stderr[-1000:])
            folder = out / str(self.path / 'in')[1:]
            self.assertEqual(self.modes(folder), {mode: 1500})

    def test_inputs_of_one_output_do_not_replace_each_other(self):
        self.mail('x', b'Subject: upper\n\nb\n'), self.mail('sub/x', b'Subject: lower\n\nb\n')
        for _ in range(20):
            out = self.path / 'out'
            result = subprocess.run([KELSPAR, 'convert', 'x', '../x', '--output-dir', out], cwd=self.path / 'sub',
                                    capture_output=True)
            self.assertEqual(result.returncode, 4, result.stderr)
            self.assertEqual(result.stderr.count(b'x.txt: is there already (--force replaces it)\n'), 1)
            self.assertIn(b'1 of 2 converted, 1 failed', result.stderr)
            self.assertEqual([path.name for path in out.iterdir()], ['x.txt'])
            (out / 'x.txt').unlink()

    def test_a_link_is_written_through(self):
        real, link = self.path / 'deep' / 'real.txt', self.path / 'link.txt'
        real.parent.mkdir()
        real.write_text('old')
        link.symlink_to('deep/real.txt')
        self.assertEqual(run('convert', self.sample, '-o', link).returncode, 0)
        self.assertTrue(link.is_symlink())
        self.assertTrue(real.read_text().startswith('Dear neighbours'))
        real.unlink()
        self.assertEqual(run('convert', self.sample, '-o', link).returncode, 0)
        self.assertTrue(real.read_text().startswith('Dear neighbours'))
        self.assertEqual([path.name for path in real.parent.iterdir()], ['real.txt'])
        loop = self.path / 'loop'
        loop.symlink_to('loop')
        self.assert_fails(run('convert', self.sample, '-o', loop), 4, 'loop', 'cannot be written')

    def test_links_count_as_files_that_are_there(self):
        mail = self.mail()
        place = self.path / 'out' / (str(mail)[1:] + '.txt')
        place.parent.mkdir(parents=True)
        place.symlink_to(self.path / 'elsewhere.txt')
        self.assert_fails(run('convert', mail, '--output-dir', self.path / 'out'), 4, 'is there already')
        self.assertFalse((self.path / 'elsewhere.txt').exists())

    def test_a_file_that_may_not_be_written_stays(self):
        out = self.path / 'out.txt'
        out.write_text('old')
        out.chmod(0o444)
        self.assert_fails(run('convert', self.sample, '-o', out), 4, 'out.txt', 'Permission denied')
        self.assertEqual(out.read_text(), 'old')

    def test_names_of_any_length(self):
        out = self.path / ('n' * 251 + '.txt')
        self.assertEqual(run('convert', self.sample, '-o', out).returncode, 0)
        self.assertEqual(list(self.path.iterdir()), [out])
        self.assert_fails(run('convert', self.sample, '-o', self.path / ('n' * 256)), 4, 'too long')
        self.assertEqual(list(self.path.iterdir()), [out])


if __name__ == '__main__':
    main()
