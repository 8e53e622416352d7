"""Each operation of MailKelspar as hosts call it, over the wire.

    mail_operations_test.py EXTENSION
"""
import base64
import pathlib
import sys
import unittest

from extension_client import Extension, data

EXTENSION = sys.argv.pop(1)
HTML_IN_RTF = (rb'{\rtf1\ansi\ansicpg1252\fromhtml1{\*\htmltag64 <p>}'
               rb"caf\'e9\htmlrtf{\b\htmlrtf0 {\*\htmltag72 </p>}}")
PICTURE = b'\x89PNG\r\n\x1a\n' + b'\0\0\0\rIHDR\0\0\0\1\0\0\0\1\b\0\0\0\0'


def stored(rtf):
    def number(value):
        return value.to_bytes(4, 'little')
    return number(len(rtf) + 12) + number(len(rtf)) + b'MELA' + number(0) + rtf


# Operation, arguments, value.
ROWS = [
    ('htmlFromEncapsulatedRTF:', [data(HTML_IN_RTF)], '<p>caf\u00E9</p>'),
    ('htmlFromEncapsulatedRTF:', [data(rb'{\rtf1 a}')], None),
    ('htmlDeclaringUTF8:', ['<meta charset="koi8-r"><p>'], '<meta charset="utf-8"><p>'),
    ('rtfFromStoredBody:', [data(stored(rb'{\rtf1 a}'))], data(rb'{\rtf1 a}')),
    ('rtfFromStoredBody:', [data(b'short')], None),
    ('placePictures:inRTF:', [['[a.txt]'], data(rb'{\rtf1 x\objattph  y}')],
     data(rb'{\rtf1 x{\uc1 [a.txt]} y}')),
    ('placePictures:inRTF:', [[], data(rb'{\rtf1 a}')], data(rb'{\rtf1 a}')),
    ('putText:aboveRTF:', ['', data(rb'{\rtf1 a}')], data(rb'{\rtf1 a}')),
    ('decodeHeader:', [data(b'=?utf-8?Q?caf=C3?=\r\n =?utf-8?Q?=A9_au?=(=?iso-8859-1?b?6Q==?=)')],
     'caf\u00E9 au(\u00E9)'),
    ('decodeHeader:', [data(b'=?gb2312?B?5FA=?= caf\xe9')], '\u92B9 caf\u00E9'),
    ('decodeHeader:', [None], None),
    ('parametersOfHeader:', [data(b"attachment; filename*0*=utf-8'en'a%E2%82%AC; filename*1=\" b\"")],
     {'': 'attachment', 'filename': 'a\u20AC b'}),
    ('addressesFromHeader:', [data(b'Team: "Lee, Ann" <a@b.c>, d@e.f (Bo);')],
     [{'name': 'Lee, Ann', 'address': 'a@b.c'}, {'name': 'Bo', 'address': 'd@e.f'}]),
    ('dateFromHeader:', ['Tue, 1 (first) Apr 03 07:00 EST (note)'], {'$date': 1049198400}),
    ('dateFromHeader:', ['1 Apr 70 07:00:00 Z'], {'$date': 7801200}),
    ('dateFromHeader:', ['tomorrow'], None),
    ('bareContentIdentifier:', ['<a%40b>'], 'a@b'),
    ('encodingOfCharsetLabel:', [' GB2312 '], 'GBK'),
    ('encodingOfCharsetLabel:', ['latin1'], 'windows-1252'),
    ('encodingOfCharsetLabel:', ['none'], None),
    ('textFromData:charset:', [data(b'\xC1'), 'koi8-r'], '\u0430'),
    ('textFromData:charset:', [data('\u20AC'.encode()), 'us-ascii'], '\u20AC'),
    ('textFromData:charset:', [data(b'\x80'), None], '\u20AC'),
    ('charsetDeclaredByHTML:', [data(b'<meta charset=koi8-r>')], 'koi8-r'),
    ('decodeTransfer:encoding:', [data(b'Y2F!\r\n0'), 'Base64'], data(b'cat')),
    ('decodeTransfer:encoding:', [data(b'c=61t=\r\n=zz'), 'quoted-printable'], data(b'cat=zz')),
    ('decodeTransfer:encoding:', [data(b'begin 644 x\n#8V%T\n`\nend\n'), 'x-uuencode'], data(b'cat')),
    ('decodeTransfer:encoding:', [data(b'cat'), '8bit'], data(b'cat')),
    ('textFromHTML:', ['<p>a&amp;b<style>c</style><p>d'], 'a&b\n\nd'),
    ('safeHTML:', ['<p onclick=x style="color:red;position:fixed">a<img src=http://e.org/x>'],
     {'html': '<p style="color: red">a<img></p>', 'removed': 1}),
    ('bestBody:html:rtf:', ['a', '<p>a', None], 'html'),
    ('bestBody:html:rtf:', ['a', '<p> ', None], 'text'),
    ('bestBody:html:rtf:', ['a', None, data(rb'{\rtf1\ansi\fromtext a}')], 'text'),
    ('bestBody:html:rtf:', [None, None, None], None),
    ('createPdfDataFromAttributedString:onPaper:', [{'$rtf': data(b'{\\rtf1}')['$data']}, 'A4'], None),
    ('createPdfDataFromAttributedString:onPaper:', [{'$attributed': {'string': 'a'}}, 'A44'], None),
    ('createPdfDataFromAttributedString:onPaper:withMargin:',
     [{'$attributed': {'string': 'a'}}, 'A4', -1], None),
]


class OverTheWire(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.extension = Extension(EXTENSION).__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.extension.__exit__()

    def value(self, method, *arguments):
        return self.extension.of_class('MailKelspar', method, *arguments)['result']['value']

    def test_rows(self):
        for method, arguments, expected in ROWS:
            with self.subTest(method=method, arguments=arguments):
                self.assertEqual(self.value(method, *arguments), expected)

    def test_documents(self):
        rtf = base64.b64decode(self.value('rtfFromText:', 'a{b\n\u20AC')['$data'])
        self.assertTrue(rtf.startswith(b'{\\rtf1'), rtf)
        above = self.value('putText:aboveRTF:', 'Subject: s', data(rtf))
        text = self.extension.of_receiver(above, 'stringFromRTFData')['result']['value']
        self.assertEqual(text, 'Subject: s\na{b\n\u20AC')
        placed = self.value('placePictures:inRTF:', [data(PICTURE)], data(rb'{\rtf1 x\objattph  y}'))
        self.assertIn(b'\\pngblip', base64.b64decode(placed['$data']))

    def test_pages(self):
        text = {'$attributed': {'string': 'one\ntwo'}}
        for arguments, size in [(['', ], b'550 715'), (['a4'], b'595.275591 841.889764'),
                                (['100x100', 14], b'283.464567 283.464567'), ([None, 20.5], b'550 715')]:
            method = 'createPdfDataFromAttributedString:onPaper:' + ('withMargin:' * (len(arguments) > 1))
            document = base64.b64decode(self.value(method, text, *arguments)['$data'])
            self.assertTrue(document.startswith(b'%PDF-'))
            self.assertRegex(document, rb'/MediaBox \[ ?0 0 ' + size)

    def test_every_operation_is_called_here(self):
        catalogue = self.extension.request('rpc.discover', {})['result']['value']
        text = pathlib.Path(__file__).read_text(encoding='utf-8')
        mine = [c for c in catalogue['classes'] if c['name'] == 'MailKelspar']
        names = [operation['name'] for operation in mine[0]['operations']]
        self.assertGreater(len(names), 15)
        for name in names:
            self.assertIn(f"'{name}'", text)

    def test_arguments_that_do_not_fit(self):
        for method, arguments in [('decodeHeader:', ['text']), ('safeHTML:', [1]), ('safeHTML:', []),
                                  ('bestBody:html:rtf:', ['a', 'b']),
                                  ('createPdfDataFromAttributedString:onPaper:withMargin:',
                                   [{'$attributed': {'string': 'a'}}, 'A4', None])]:
            answer = self.extension.of_class('MailKelspar', method, *arguments)
            self.assertEqual(answer['error']['code'], -32602, method)


if __name__ == '__main__':
    unittest.main()
