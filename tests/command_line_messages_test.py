#!/usr/bin/env python3
"""What the kelspar program makes of messages: looks in every form, and what is told about them.

Usage: command_line_messages_test.py KELSPAR SOURCE_DIR
"""
import base64
import json

from command_line_case import SOURCE, Case, main, run

PLAN = (SOURCE / 'samples' / 'plan.png').read_bytes()


class Messages(Case):
    HTML = (b'<p>Hello <b>bold</b> <i>slant</i> <a href="https://example.org/x">link</a></p>'
            b'<ul><li>one<li>two</ul><img src="cid:plan">')

    def assert_looks(self, rtf):
        self.assertRegex(rtf, rb'\{[^{}]*\\b bold\}')
        self.assertRegex(rtf, rb'\{[^{}]*\\i slant\}')
        self.assertIn(b'HYPERLINK "https://example.org/x"', rtf)
        for item in (b'one', b'two'):
            self.assertIn(item, rtf)
        self.assertIn(b'\\pngblip', rtf)
        self.assertIn(PLAN.hex().encode()[:120], rtf)

    def with_plan(self, subject=b'S'):
        return (b'From: a@b.cd\nSubject: ' + subject + b'\nContent-Type: multipart/related; boundary=x\n\n'
                b'--x\nContent-Type: text/html\n\n' + self.HTML + b'\n--x\nContent-Type: image/png\n'
                b'Content-Id: <plan>\nContent-Transfer-Encoding: quoted-printable\n\n' +
                b''.join(b'=%02X' % byte for byte in PLAN) + b'\n--x--\n')

    def test_html_keeps_its_looks_in_rtf(self):
        rtf = run('convert', self.mail(content=self.with_plan()), '--to', 'rtf').stdout
        self.assert_looks(rtf)
        self.assertIn(b'a@b.cd', rtf)
        bare = run('convert', self.mail(content=self.with_plan()), '--to', 'rtf', '--no-header').stdout
        self.assert_looks(bare)
        self.assertNotIn(b'a@b.cd', bare)

    def test_folders_keep_their_looks_in_rtf(self):
        box = self.path / 'box'
        box.write_bytes(b'From a\n' + self.with_plan(b'first') + b'\nFrom b\nSubject: second\n\nplain words\n')
        first, second = run('convert', box, '--to', 'rtf').stdout.split(b'\\page')
        self.assert_looks(first)
        self.assertIn(b'first', first)
        self.assertIn(b'plain words', second)

    def test_html_files_keep_their_looks_in_rtf(self):
        page = self.path / 'page.html'
        page.write_bytes(b'<meta charset=koi8-r>' + self.HTML + '<b>а</b>'.encode('koi8-r'))
        plan = f'plan={SOURCE / "samples" / "plan.png"}'
        rtf = run('convert', page, '--to', 'rtf', '--attachment', plan).stdout
        self.assert_looks(rtf)
        self.assertIn(b'\\u1072?', rtf)

    def test_images_brought_along_are_no_attachments(self):
        mail = self.mail(content=b'Subject: s\nContent-Type: text/html\n\n<p>one<img src="cid:plan">')
        plan = f'plan={SOURCE / "samples" / "plan.png"}'
        for form in ('text', 'html', 'rtf'):
            output = run('convert', mail, '--to', form, '--attachment', plan).stdout
            self.assertIn(b'one', output)
            self.assertNotIn(b'Attachments', output)
            self.assertNotIn(b'plan.png', output)

    REMOTE = (b'Subject: s\nContent-Type: text/html\n\n<p>one<img src="https://e.org/1"><img src="https://e.org/2">')

    def test_remote_contents_are_told(self):
        mail = self.mail(content=self.REMOTE)
        for form in ('html', 'pdf', 'rtf', 'json'):
            result = run('convert', mail, '--to', form, '--no-header')
            self.assertEqual((result.returncode, result.stderr.decode()),
                             (0, f'kelspar: {mail}: 2 remote contents removed\n'), form)
        self.assertEqual(run('convert', mail).stderr, b'')
        self.assertEqual(json.loads(run('convert', mail, '--to', 'json').stdout)['removedRemoteContents'], 2)
        self.assertIn(b'\nRemoved: 2 remote contents\n', run('info', mail).stdout)
        plain = self.mail('b.eml', b'Subject: s\n\none\n')
        self.assertEqual(json.loads(run('convert', plain, '--to', 'json').stdout)['removedRemoteContents'], 0)
        self.assertNotIn(b'Removed', run('info', plain).stdout)
        out = self.path / 'out'
        result = run('convert', mail, plain, '--to', 'html', '--output-dir', out)
        self.assertEqual(result.stderr.count(b' removed\n'), 1)
        record = json.loads(run('stream', stdin=f'{mail}\n'.encode()).stdout)
        self.assertEqual(record['messages'][0]['removedRemoteContents'], 2)

    def test_times_in_every_form(self):
        mail = self.mail(content=b'Date: Tue, 1 Apr 2003 14:00:00 +0200\n\none\n')
        info = run('info', mail).stdout.decode()
        self.assertIn('Sent, ISO 8601: 2003-04-01T12:00:00Z\n', info)
        for label, form in [('seconds since 1970', 'unix'), ('100 ns since 1601 (MAPI)', 'mapi'), ('OLE', 'ole'),
                            ('HFS', 'hfs'), ('VMS', 'vms'), ('CF', 'cf')]:
            value = run('date', '2003-04-01T12:00:00Z', '--to', form).stdout.decode()
            self.assertIn(f'Sent, {label}: {value}', info)

    def test_stream_tells_names_of_any_bytes_apart(self):
        names = [bytes(self.path) + b'/caf' + end for end in (b'\xe9', b'\xe8', '\u00e9'.encode())]
        for name in names[:1] + names[2:]:
            with open(name, 'wb') as file:
                file.write(b'Subject: s\n\none\n')
        records = [json.loads(line) for line in run('stream', stdin=b'\n'.join(names)).stdout.splitlines()]
        given = [base64.b64decode(record.get('inputBytes', '')) for record in records]
        self.assertEqual(given, [names[0], names[1], b''])
        self.assertEqual(records[2]['input'].encode(), names[2])
        self.assertEqual(['messages' in record for record in records], [True, False, True])


if __name__ == '__main__':
    main()
