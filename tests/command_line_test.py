#!/usr/bin/env python3
"""The kelspar program from outside: outputs, exit statuses, errors of one line, no half-written files.

Usage: command_line_test.py KELSPAR SOURCE_DIR
"""
import base64
import json
import os
import pathlib
import re
import resource
import subprocess

from command_line_case import KELSPAR, SOURCE, Case, main, run


class CommandLine(Case):
    def setUp(self):
        super().setUp()
        self.rtf = (SOURCE / 'samples' / 'invitation.rtf').read_bytes()

    def test_rtf_is_what_was_compressed(self):
        self.assertEqual(run('convert', self.sample, '--to', 'rtf').stdout, self.rtf)

    def test_text_is_the_default(self):
        text = run('convert', self.sample).stdout.decode()
        self.assertTrue(text.startswith('Dear neighbours,\n'))

    def test_html_declares_what_it_is_written_in(self):
        html = run('convert', self.sample, '--to', 'html').stdout.decode()
        self.assertIn('charset=utf-8', html)
        self.assertIn('<b>Saturday, 21 June</b>', html)

    def test_standard_input_and_plain_rtf(self):
        result = run('convert', '-', stdin=b'{\\rtf1 one\\par two}')
        self.assertEqual((result.returncode, result.stdout), (0, b'one\ntwo\n'))

    def test_output_file_is_replaced_whole(self):
        out = self.path / 'out.txt'
        out.write_text('old')
        out.chmod(0o640)
        self.assertEqual(run('convert', self.sample, '-o', out).returncode, 0)
        self.assertTrue(out.read_text().startswith('Dear neighbours'))
        self.assertEqual(out.stat().st_mode & 0o777, 0o640)
        self.assertEqual(os.listdir(self.path), ['out.txt'])

    def test_inputs_at_fault_leave_no_file(self):
        out = self.path / 'out.txt'
        for content, word in [(b'', 'empty'), (b'hello', 'neither'), (b'\0' * 8 + b'LZFu', 'too short'),
                              (b'\0' * 8 + b'LZFu' + b'\0' * 40, 'damaged')]:
            bad = self.path / 'bad.bin'
            bad.write_bytes(content)
            message = self.assert_fails(run('convert', bad, '-o', out), 1, 'bad.bin', word)
            self.assertEqual(message.count('\n'), 1 + message.count('ERROR'))
            self.assertFalse(out.exists())

    def test_colours_with_their_lines(self):
        result = run('colours', SOURCE / 'samples' / 'colours.rtf')
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual([line.split() for line in result.stdout.decode().splitlines()], [
            ['0', 'automatic', 'table'],
            ['1', '#000000', 'table'],
            ['2', '#1F497D', '#1F497D', 'lines', '8,', '17'],
            ['3', '#C00000', 'rgb(192,0,0)', 'line', '11'],
            ['4', '#008000', 'green', 'line', '14'],
            ['5', '#FFA500', 'orange', 'line', '20']])

    def test_colours_print_nothing_that_a_terminal_obeys(self):
        body = b'{\\rtf1 htmltag148 <span color:\x1b[31mred>}\nhtmltag148 <span color:brown>}'
        output = run('colours', '-', stdin=body).stdout
        self.assertEqual(output.decode().split(), ['0', '#000000', '?[31mred', '(not', 'known)', 'line', '1',
                                                   '1', '#000000', 'brown', '(not', 'known)', 'line', '2'])

    def test_rtf_with_its_colours(self):
        rtf = run('convert', SOURCE / 'samples' / 'colours.rtf', '--to', 'rtf', '--colours').stdout
        self.assertIn(b'\\red192\\green0\\blue0;\\red0\\green128\\blue0;', rtf)
        self.assertIn(b'\\htmlrtf0 \\cf4  Green by its name', rtf)
        self.assert_fails(run('convert', self.sample, '--colours'), 2, '--to rtf')

    def test_arrays_as_arguments(self):
        result = run('call', 'generateRTFColourBlockArray:fromLineArray:', '--class', 'RTFKelspar',
                     '[{"Index":0,"RTFColour":""}]', '["<span color:red>","<span color:red>"]')
        blocks = json.loads(result.stdout)['out'][0]
        self.assertEqual([block['RTFColour'] for block in blocks], ['', '\\red255\\green0\\blue0'])

    def test_missing_input(self):
        self.assert_fails(run('convert', self.path / 'none'), 1, 'none', 'No such file')

    def test_folder_as_input(self):
        self.assert_fails(run('convert', self.path), 1, 'Is a directory')

    def test_html_inputs(self):
        page = self.path / 'page.htm'
        page.write_bytes('<meta charset=koi8-r><h1>а</h1><script>x()</script><p>b'.encode('koi8-r'))
        self.assertEqual(run('convert', page).stdout.decode(), 'а\n\nb\n')
        html = run('convert', page, '--to', 'html').stdout.decode()
        self.assertIn('<h1>а</h1>', html)
        self.assertNotIn('x()', html)
        self.assertTrue(run('convert', page, '--to', 'rtf').stdout.startswith(b'{\\rtf1'))
        self.assertTrue(run('convert', page, '--to', 'pdf').stdout.startswith(b'%PDF-'))
        self.assert_fails(run('convert', page, '--to', 'json'), 1, 'is no message')

    def test_text_of_anything(self):
        for content, text in [(b'{\\rtf1 one\\par two}', 'one\ntwo\n'), (b'<p>one<p>two', 'one\n\ntwo\n'),
                              (b'Subject: s\n\none\n', 'one\n'),
                              (self.sample.read_bytes(), run('convert', self.sample).stdout.decode())]:
            self.assertEqual(run('text', stdin=content).stdout.decode(), text)
        self.assertEqual(run('text', self.mail(), self.mail()).stdout, b'Hello there\n' * 2)
        self.assert_fails(run('text', stdin=b'hello'), 1, 'standard input', 'neither')
        self.assertEqual(run('text', '--charset', 'koi8-r', stdin=b'<p>\xc1').stdout.decode(), 'а\n')

    def test_rtf_without_html(self):
        self.assert_fails(run('convert', '-', '--to', 'html', stdin=b'no mail at all'), 1, 'standard input')

    def test_output_that_cannot_be_written(self):
        self.assert_fails(run('convert', self.sample, '-o', self.path / 'no' / 'out'), 4, 'cannot be written')

    def test_full_device(self):
        self.assert_fails(run('convert', self.sample, '-o', '/dev/full'), 4, '/dev/full')

    def test_usage(self):
        self.assert_fails(run(), 2)
        self.assert_fails(run('convert'), 2)
        self.assert_fails(run('convert', self.sample, '--to', 'docx'), 2)
        self.assert_fails(run('frobnicate', '--to', 'pdf'), 2, '"frobnicate" is no command')

    def test_several_inputs_of_which_none_can_be_read(self):
        out = self.path / 'out'
        result = run('convert', self.path / 'a', self.path / 'b', '--output-dir', out)
        self.assertEqual(result.returncode, 3)
        result = run('convert', self.path / 'a', self.sample, '--output-dir', out)
        self.assertEqual(result.returncode, 1)

    def test_pdf(self):
        result = run('convert', self.sample, '--to', 'pdf')
        self.assertEqual(result.returncode, 0)
        self.assertTrue(result.stdout.startswith(b'%PDF-'))

    PARTY_IMAGES = [('street@kelspar', 'street.jpg', 640, 360), ('plan@kelspar', 'plan.png', 720, 400)]

    def party(self, *arguments):
        given = []
        for identifier, name, _, _ in self.PARTY_IMAGES:
            given += ['--attachment', f'{identifier}={SOURCE / "samples" / name}']
        return run('convert', *given, SOURCE / 'samples' / 'street_party.rtf', *arguments)

    def test_images_of_the_command_line_stand_in_the_pages(self):
        out = self.path / 'party.pdf'
        self.assertEqual(self.party('--to', 'pdf', '-o', out).returncode, 0)
        subprocess.run(['qpdf', '--check', out], check=True, capture_output=True)
        images = subprocess.run(['pdfimages', '-list', out], check=True, capture_output=True, text=True)
        found = [tuple(map(int, line.split()[3:5])) for line in images.stdout.splitlines()[2:]]
        for _, _, width, height in self.PARTY_IMAGES:
            self.assertIn((width, height), found)

    def test_images_of_the_command_line_in_rtf(self):
        rtf = self.party('--to', 'rtf').stdout
        self.assertTrue(rtf.startswith(b'{\\rtf1'))
        self.assertIn(b'\\jpegblip', rtf)
        self.assertIn(b'\\pngblip', rtf)
        self.assertIn((SOURCE / 'samples' / 'plan.png').read_bytes().hex().encode()[:120], rtf)
        body = self.path / 'party.rtf'
        body.write_bytes(rtf)
        self.assertEqual(run('convert', body, '--to', 'text').stdout, self.party('--to', 'text').stdout)

    def test_images_of_the_command_line_in_text_and_html(self):
        text = self.party().stdout.decode()
        self.assertTrue(text.startswith('Street party on Lime Street\n'))
        self.assertNotIn('\ufffc', text)
        html = self.party('--to', 'html').stdout.decode()
        self.assertIn('src="data:image/jpeg;base64,', html)
        self.assertIn('src="data:image/png;base64,', html)

    def test_images_of_the_command_line_that_are_none(self):
        out = self.path / 'party.pdf'
        body = SOURCE / 'samples' / 'street_party.rtf'
        for argument, status, words in [
                ('plan', 2, ['CID=FILE']), ('=plan.png', 2, ['CID=FILE']), ('plan=', 2, ['CID=FILE']),
                (f'plan={self.path / "absent"}', 1, ['absent']),
                (f'plan={body}', 1, ['street_party.rtf', 'no image'])]:
            result = run('convert', body, '--to', 'pdf', '-o', out, '--attachment', argument)
            self.assertEqual(len(self.assert_fails(result, status, *words).splitlines()), 1)
            self.assertFalse(out.exists())
        self.assert_fails(run('convert', body, '--to', 'rtf', '--attachment', f'a={body}'), 1)
        plan = SOURCE / 'samples' / 'plan.png'
        self.assert_fails(run('convert', body, '--to', 'json', '--attachment', f'a={plan}'), 2, '--to')
        self.assert_fails(run('convert', body, '--cut-pages'), 2, '--to pdf')

    def test_lines_at_page_ends(self):
        # Lines of 13.5 points: a multiple of 715 points cuts one, and the cut one is on both pages.
        rtf = b'{\\rtf1\\ansi\\sl-270\\slmult0 ' + b'\\par '.join(b'line%d.' % i for i in range(80)) + b'}'
        texts = {}
        for mode in [(), ('--cut-pages',)]:
            pdf = run('convert', '-', '--to', 'pdf', *mode, stdin=rtf).stdout
            (self.path / 'lines.pdf').write_bytes(pdf)
            text = subprocess.run(['pdftotext', self.path / 'lines.pdf', '-'], check=True, capture_output=True)
            texts[mode] = text.stdout.split()
            self.assertEqual(texts[mode], [b'line%d.' % i for i in range(80)])

    def test_a_pdf_that_cannot_be_written_leaves_nothing(self):
        result = self.party('--to', 'pdf', '-o', self.path / 'no' / 'folder.pdf')
        self.assert_fails(result, 4, 'folder.pdf')
        self.assertEqual(list(self.path.iterdir()), [])

    def test_html_of_rtf_that_encapsulates_none(self):
        html = run('convert', '-', '--to', 'html', stdin=b'{\\rtf1 a{\\b b}}').stdout.decode()
        self.assertIn('<html', html)
        self.assertIn('b</b>', html)

    def test_help_and_version(self):
        for arguments in [('--help',), ('convert', '--help'), ('--version',)]:
            result = run(*arguments)
            self.assertEqual(result.returncode, 0)
            self.assertIn(b'kelspar', result.stdout + b'kelspar' * (arguments[0] == 'convert'))

    def test_transition(self):
        counted = run('transition', '0:12', '--duration', '3')
        self.assertEqual((counted.returncode, counted.stdout), (0, b'0:10\n0:11\n0:12\n'))
        spun = run('transition', '5:7', '--style', 'spin', '--duration', '2')
        self.assertEqual(spun.stdout, b'/:/\n-:-\n\\:\\\n5:7\n')
        self.assertEqual(run('transition', 'none').stdout, b'none\n')
        self.assert_fails(run('transition', '1', '--style', 'jump'), 2, 'jump')

    def test_date(self):
        os.environ['TZ'] = 'UTC'
        result = run('date', 'Thu, 01 Jan 1970 00:00:00 +0000', '1970-01-02')
        self.assertEqual(result.stdout.decode(), '1970-01-01T00:00:00Z\n1970-01-02T00:00:00Z\n')
        result = run('date', '--from', 'mapi', '116444736000000000', '--to', 'mime')
        self.assertEqual(result.stdout.decode(), 'Thu, 01 Jan 1970 00:00:00 +0000\n')
        for kind, value in [('ole', '25569.5'), ('hfs', '2082888000'), ('unix', '43200'),
                            ('vms', '35067600000000000'), ('cf', '-978264000.0'), ('mapi', '116445168000000000')]:
            back = run('date', '--from', kind, '--to', kind, '--', value).stdout.decode().strip()
            self.assertEqual(float(back), float(value), kind)
            noon = run('date', '--from', kind, '--', value).stdout.decode()
            self.assertEqual(noon, '1970-01-01T12:00:00Z\n', kind)

    def test_dates_as_people_read_them(self):
        os.environ['TZ'] = 'UTC'
        for text, iso in [('Fri, 20 Apr 2001 20:18:00 -0400 (EDT)', '2001-04-21T00:18:00Z'),
                          ('20 Apr 01 20:18 EDT', '2001-04-21T00:18:00Z')]:
            self.assertEqual(run('date', text).stdout.decode(), iso + '\n')
            self.assertEqual(run('date', stdin=text.encode() + b'\n').stdout.decode(), iso + '\n')
            self.assert_fails(run('date', '--exact', text), 1, text, 'is no date')
        self.assertEqual(run('date', '--exact', '1970-01-02').stdout, b'1970-01-02T00:00:00Z\n')
        os.environ['TZ'] = 'Asia/Kolkata'  # what has no zone is of the local one
        self.assertEqual(run('date', '2023-07-05 10:00:00').stdout, b'2023-07-05T10:00:00+05:30\n')
        os.environ['TZ'] = 'UTC'

    def test_date_errors(self):
        result = run('date', stdin=b'1970-01-01\nnonsense\n')
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout.count(b'\n'), 1)
        self.assertIn(b'nonsense: is no date', result.stderr)
        self.assert_fails(run('date', '--from', 'mapi', '12x'), 1, '12x')
        self.assert_fails(run('date', '--from', 'nope', '1'), 2)

    def test_message_to_text(self):
        text = run('convert', self.mail(), '--timezone', 'UTC').stdout.decode()
        self.assertEqual(text, 'From: J\u00f6rg <j@example.org>\nTo: Ann <a@example.org>\n'
                         'Date: Tue, 01 Apr 2003 12:00:00 +0000\nSubject: caf\u00e9\n'
                         'Attachments: unnamed (8.00 bytes), ../../evil.txt (3.00 bytes)\n\nHello there\n')
        self.assertEqual(run('convert', self.mail(), '--no-header').stdout, b'Hello there\n')

    def test_dates_are_the_locales_and_the_zones(self):
        for locale, zone, date in [('de_AT.UTF-8', 'Europe/Vienna', 'Dienstag, 1. April 2003 um 14:00:00 MESZ'),
                                   ('fr_FR', 'UTC', 'mardi 1 avril 2003'), ('POSIX', 'UTC', 'Tue, 01 Apr 2003 12:'),
                                   ('ja_JP@x', 'Asia/Tokyo', '2003年4月1日火曜日 21:00:00')]:
            text = run('convert', self.mail(), '--timezone', zone, LC_ALL=locale).stdout.decode()
            self.assertIn(f'Date: {date}', text)

    def test_page_sizes(self):
        for size, box in [('A4', '595.276 x 841.89'), ('letter', '612 x 792'), ('148x210', '419.528 x 595.276')]:
            out = self.path / 'out.pdf'
            self.assertEqual(run('convert', self.sample, '--to', 'pdf', '--page-size', size, '-o', out).returncode, 0)
            self.assertIn(box, subprocess.run(['pdfinfo', out], capture_output=True, text=True).stdout)
        self.assert_fails(run('convert', self.sample, '--to', 'pdf', '--page-size', 'A99'), 2, 'A99')
        self.assert_fails(run('convert', self.sample, '--page-size', 'A4'), 2, '--to pdf')

    def test_completion_in_bash(self):
        for words, some in [(['c'], {'convert', 'colours', 'call'}), (['convert', '--m'], {'--margin'}),
                            (['convert', '--to', ''], {'text', 'html', 'rtf', 'pdf', 'json'}),
                            (['convert', '--page-size', ''], set()), (['date', '--e'], {'--exact'}),
                            (['date', '--to', ''], {'iso', 'mime', 'mapi', 'ole', 'hfs', 'vms', 'cf', 'unix'}),
                            (['date', '--from', ''], {'text', 'mapi', 'ole', 'hfs', 'vms', 'cf', 'unix'}),
                            (['date', '--from', 'x', '--to', 'm'], {'mime', 'mapi'}),
                            (['transition', '1', '--style', ''], {'count', 'spin', 'spinner'})]:
            script = (f'. "{SOURCE}/completions/kelspar.bash"; COMP_WORDS=(kelspar {" ".join(map(repr, words))}); '
                      f'COMP_CWORD={len(words)}; _kelspar; printf "%s\\n" "${{COMPREPLY[@]}}"')
            path = f'{self.path}:{os.environ["PATH"]}'
            if not (self.path / 'kelspar').exists():
                (self.path / 'kelspar').symlink_to(pathlib.Path(KELSPAR).resolve())
            output = subprocess.run(['bash', '-c', script], env=os.environ | {'PATH': path}, capture_output=True,
                                    text=True, timeout=60).stdout
            self.assertEqual(set(output.split()), some)

    def test_help_lists_values_once(self):
        for command in ('convert', 'date', 'transition'):
            text = run(command, '--help').stdout.decode()
            self.assertIn(':{', text)
            self.assertNotIn(' OR ', text)

    def test_margins(self):
        out = self.path / 'out.pdf'
        arguments = ('convert', self.sample, '--to', 'pdf', '-o', out, '--margin')
        self.assertEqual(run(*arguments, '25.4', '--page-size', 'A4').returncode, 0)
        words = subprocess.run(['pdftotext', '-bbox', out, '-'], capture_output=True, text=True).stdout
        self.assertGreaterEqual(min(float(x) for x in re.findall(r'xMin="([0-9.]+)"', words)), 71.5)
        self.assertEqual(run(*arguments, '5').returncode, 0)
        for margin in ('-1', '100'):
            self.assert_fails(run(*arguments, margin), 2, 'no room')
        self.assert_fails(run('convert', self.sample, '--margin', '5'), 2, '--to pdf')

    def test_message_to_html(self):
        html = run('convert', self.mail(), '--to', 'html').stdout.decode()
        self.assertIn('<p>Hello <b>there</b>', html)
        self.assertIn('src="data:image/png;base64,iVBORw0KGgo="', html)
        self.assertIn('1 remote content<', html)
        self.assertNotIn('bad()', html)
        self.assertNotIn('e.org/x', html)

    def test_message_to_json_and_info(self):
        record = json.loads(run('convert', self.mail(), '--to', 'json').stdout)
        self.assertEqual(record['subject'], 'caf\u00e9')
        self.assertEqual(record['sent'], '2003-04-01T12:00:00Z')
        self.assertEqual(record['from'], [{'name': 'J\u00f6rg', 'address': 'j@example.org'}])
        self.assertEqual([a['size'] for a in record['attachments']], [8, 3])
        info = run('info', self.mail()).stdout.decode()
        self.assertIn('Sent, seconds since 1970: 1049198400\n', info)
        self.assertIn('Shown body: html\n', info)

    def test_message_to_rtf(self):
        rtf = run('convert', self.mail(), '--to', 'rtf').stdout
        self.assertTrue(rtf.startswith(b'{\\rtf1'))
        self.assertIn(b'caf\\u233?', rtf)

    def test_attachments_stay_in_their_folder_and_replace_nothing(self):
        folder = self.path / 'files'
        for _ in range(2):
            self.assertEqual(run('convert', self.mail(), '--extract-attachments', folder).returncode, 0)
        self.assertEqual(sorted(os.listdir(folder)),
                         ['_.._evil-2.txt', '_.._evil.txt', 'attachment-1', 'attachment-1-2'])
        self.assertEqual(sorted(os.listdir(self.path)), ['a.eml', 'files'])

    def test_many_inputs(self):
        self.mail('in/a.eml'), self.mail('in/deep/b.eml')
        (self.path / 'in' / 'bad.bin').write_bytes(b'hello')
        command = ['convert', 'in/a.eml', 'in/bad.bin', 'in/deep/b.eml', '../up.eml', '--output-dir', 'out']
        here = os.getcwd()
        os.chdir(self.path)
        try:
            first = run(*command)
            again = run(*command)
            forced = run(*command, '--force')
        finally:
            os.chdir(here)
        self.assertEqual((first.returncode, again.returncode, forced.returncode), (1, 4, 1))
        self.assertIn(b'2 of 4 converted, 2 failed', first.stderr)
        self.assertIn(b'is there already', again.stderr)
        files = sorted(str(p.relative_to(self.path / 'out')) for p in (self.path / 'out').rglob('*') if p.is_file())
        self.assertEqual(files, ['in/a.eml.txt', 'in/deep/b.eml.txt'])

    def test_mbox(self):
        folder = self.path / 'box'
        folder.write_bytes(b'From a\nSubject: 1\n\none\n>From x\n\nFrom b\nSubject: 2\n\ntwo\n')
        records = json.loads(run('convert', folder, '--to', 'json').stdout)
        self.assertEqual([r['subject'] for r in records], ['1', '2'])
        self.assertEqual(records[0]['text'], 'one\nFrom x\n')
        self.assertEqual(run('text', folder).stdout, b'one\nFrom x\n\x0c\ntwo\n')
        html = run('convert', folder, '--to', 'html', '--no-header').stdout
        self.assertEqual((html.count(b'<html>'), html.count(b'<hr>')), (1, 1))
        self.assertIn(b'\\page', run('convert', folder, '--to', 'rtf').stdout)
        self.assertTrue(run('convert', folder, '--to', 'pdf').stdout.startswith(b'%PDF-'))

    def test_colours_beyond_all_bounds(self):
        path = self.path / 'a.rtf'
        path.write_bytes(rb'{\rtf1{\colortbl;\red99999999999999999999\green1\blue2;}x}')
        result = run('colours', path)
        self.assertIn(b'#000102', result.stdout, result.stderr)

    def test_stream_keeps_the_order(self):
        paths = [self.mail(f'{i}.eml') for i in range(20)]
        lines = ''.join(f'{p}\n' for p in paths) + '/none\n'
        result = run('stream', '--jobs', '3', stdin=lines.encode())
        records = [json.loads(line) for line in result.stdout.splitlines()]
        self.assertEqual([r['input'] for r in records], [str(p) for p in paths] + ['/none'])
        self.assertTrue(all(r['messages'][0]['subject'] == 'caf\u00e9' for r in records[:-1]))
        self.assertIn('No such file', records[-1]['error'])
        self.assertEqual(result.returncode, 1)

    def test_stream_with_as_many_jobs_as_there_may_be(self):
        lines = f'{self.mail()}\n' * 3000
        result = run('stream', '--jobs', '256', stdin=lines.encode())
        self.assertEqual(result.stdout.count(b'\n'), 3000, result.stderr)
        self.assert_fails(run('stream', '--jobs', '257'), 2, '--jobs')

    def test_stream_does_not_wait_for_more(self):
        with subprocess.Popen([KELSPAR, 'stream', '--jobs', '2'], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as process:
            for _ in range(3):
                process.stdin.write(f'{self.mail()}\n'.encode())
                process.stdin.flush()
                self.assertEqual(json.loads(process.stdout.readline())['messages'][0]['subject'], 'café')
            process.stdout.close()
            process.stdin.write(f'{self.mail()}\n'.encode())
            process.stdin.flush()
            self.assertEqual(process.wait(10), 4)

    def test_files_that_do_not_fit_are_not_left_behind(self):
        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (4, 4))
        for option in ('-o', '--output-dir', '--extract-attachments'):
            place = self.path / 'out'
            result = subprocess.run([KELSPAR, 'convert', self.mail(), option, place], capture_output=True,
                                    preexec_fn=limit)
            self.assertEqual(result.returncode, 4)
            self.assertIn(b'cannot be written', result.stderr)
            self.assertEqual([p for p in self.path.rglob('*') if p.is_file() and p.name != 'a.eml'], [])

    def test_stream_of_base64(self):
        line = base64.b64encode(self.MAIL) + b'\n'
        result = run('stream', '--base64', stdin=line * 2)
        self.assertEqual([json.loads(r)['input'] for r in result.stdout.splitlines()], ['1', '2'])

    def test_wrong_options(self):
        self.assert_fails(run('convert', self.mail(), '--timezone', 'Mars/Olympus'), 2, 'Mars/Olympus')
        self.assert_fails(run('convert', self.mail(), '--charset', 'x-none'), 2, 'x-none')
        self.assert_fails(run('convert', self.mail(), self.mail(), '-o', self.path / 'o'), 2, '--output-dir')

    def test_header(self):
        words = 'Re: =?UTF-8?Q?caf=C3=A9_au?= =?UTF-8?Q?_lait?='
        self.assertEqual(run('header', words).stdout.decode(), 'Re: caf\u00e9 au lait\n')
        self.assertEqual(run('header', '--exact', words).stdout.decode(), 'Re: caf\u00e9_au _lait\n')
        self.assertEqual(run('header', stdin=b'one\ntwo\n').stdout, b'one\ntwo\n')

    def test_address(self):
        self.assertEqual(run('address', 'Ann <a@b.cd>', ' x@y.zz ').stdout, b'a@b.cd\nx@y.zz\n')
        result = run('address', 'nobody', 'a@b.cd')
        self.assertEqual((result.returncode, result.stdout), (1, b'a@b.cd\n'))
        self.assertIn(b'nobody: holds no valid address', result.stderr)

    def test_call(self):
        result = run('call', 'stringFromRTFData', '--receiver', '{"$data":"e1xydGYxIGhpfQ=="}')
        self.assertEqual(json.loads(result.stdout), {'value': 'hi'})
        result = run('call', 'typeIsRTF:', '--class', 'RTFKelspar', 'null')
        self.assertEqual(json.loads(result.stdout), {'value': False})

    def test_call_errors(self):
        self.assert_fails(run('call', 'nope'), 2, 'nope')
        self.assert_fails(run('call', 'typeIsRTF:', '{'), 2, 'argument 1')
        self.assert_fails(run('call', 'typeIsRTF:', '"x"'), 2, 'argument 1')
        self.assert_fails(run('call', 'typeIsRTF:'), 2, 'expected 1 arguments')


if __name__ == '__main__':
    main()
