"""Charset labels, transfer decodings, encoded words, HTML to text and back, addresses: as hosts call
them, over the wire.

    mime_operations_test.py EXTENSION
"""
import sys
import unittest

from extension_client import Extension

EXTENSION = sys.argv.pop(1)
UTF8, LATIN1 = 4, 5
FLOWING = ('<div style="max-width: 72ch; word-wrap: break-word; overflow-wrap: break-word; '
           'white-space: pre-wrap;">hi</div>')
PREFORMATTED = ('<pre style="max-width: 72ch; white-space: pre-wrap; word-wrap: break-word; '
                'overflow-wrap: break-word;">hi</pre>')

# Operation, receiver, arguments, value.
ROWS = [
    ('getCharacterEncodingFromMime', 'iso-8859-1', [], LATIN1),
    ('getCharacterEncodingFromMime', 'us-ascii', [], UTF8),
    ('getCharacterEncodingFromMime', None, [], UTF8),
    ('quotedPrintableDecodeWithEncoding:', 'caf=C3=A9 100%=\r\n!', [UTF8], 'caf\u00E9 100%!'),
    ('quotedPrintableDecodeWithEncoding:', '=C2=A0=c2=a0', [UTF8], ' \u00A0'),
    ('quotedPrintableDecodeWithEncoding:', None, [UTF8], None),
    ('forceQuotedPrintableDecode', 'a%41', [], 'aA'),
    ('base64DecodeWithEncoding:', 'SG\r\nVs*bG8', [UTF8], 'Hello'),
    ('base64DecodeWithEncoding:', '/w==', [UTF8], None),
    ('base64DecodeWithEncoding:', '/w==', [LATIN1], '\u00FF'),
    ('createQuotedPrintable', 'a=b\tc', [], 'a=b=09c'),
    ('decodeMimeHeader', '=?utf-8?b?SGVsbG8=?= =?utf-8?b?V29ybGQ=?=', [], 'Hello World'),
    ('decodeMimeHeader', 'Re: =?ISO-8859-1?Q?caf=E9?= ok', [], 'Re: caf\u00E9 ok'),
    ('decodeMimeHeader', None, [], ''),
    ('decodeHTMLFormattingTags', '&amp;#233;&amp;#x41;', [], '\u00E9&amp;#x41;'),
    ('stringFromHTML', 'a=3Db', [], 'a=b'),
    ('stringFromHTML', None, [], ''),
    ('stringByStrippingHTML', '<p>Hi</p>', [], 'Hi'),
    ('stringByStrippingHTML', '<pre>\n\n  a  \n\n\n\n b\n</pre>', [], 'a\n\nb'),
    ('stringByStrippingHTMLFallback',
     '<p>Hi&nbsp;there</p><!-- x --><script>a()</script>&AMP;lt;', [], '\nHi there\n<'),
    ('stringByConvertingToHTML', 'a\tb  c\r\n<', [],
     'a&nbsp;&nbsp;&nbsp;&nbsp;b &nbsp;c<br>&lt;'),
    ('stringByConvertingToHTML', None, [], ''),
    ('stringByConvertingToHTMLWithWrapAtColumn:', 'hi', [72], FLOWING),
    ('stringByConvertingToHTMLWithWrapAtColumn:', 'hi', [-5], 'hi'),
    ('stringByConvertingToHTMLWithPreTag', '', [], '<pre></pre>'),
    ('stringByConvertingToHTMLWithPreTagAndWrapAtColumn:', 'hi', [72], PREFORMATTED),
    ('validateEmailAddress', 'A@B.CD', [], True),
    ('validateEmailAddress', 'a@b', [], False),
    ('validateEmailAddress', None, [], False),
    ('cleanEmailAddress', 'Ann <a@b.cd>', [], 'a@b.cd'),
    ('cleanEmailAddress', 'Bob <a@b.cd', [], None),
    ('buildEmailAddressURL', 'not an address', [], None),
]


class OverTheWire(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.extension = Extension(EXTENSION).__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.extension.__exit__()

    def test_rows(self):
        for method, receiver, arguments, expected in ROWS:
            with self.subTest(method=method, receiver=receiver):
                answer = self.extension.of_receiver(receiver, method, *arguments)
                self.assertEqual(answer['result']['value'], expected)

    def test_url(self):
        answer = self.extension.of_receiver('a@b.cd', 'buildEmailAddressURL')
        self.assertIn('mailto:a@b.cd', str(answer['result']['value']))

    def test_arguments_that_are_none(self):
        for arguments in ([], ['4'], [4, 4]):
            answer = self.extension.of_receiver('YQ==', 'base64DecodeWithEncoding:', *arguments)
            self.assertEqual(answer['error']['code'], -32602, arguments)


if __name__ == '__main__':
    unittest.main()
