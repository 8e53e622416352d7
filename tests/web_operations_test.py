"""RTF to HTML, image locations, charsets and JSON from a URL, as hosts call them: over the wire,
with a server of the test's own on 127.0.0.1.

    web_operations_test.py EXTENSION
"""
import base64
import gzip
import http.server
import os
import sys
import tempfile
import threading
import unittest

from extension_client import Extension, data

EXTENSION = sys.argv.pop(1)
MORE_THAN_FITS = (64 << 20) + 1  # bytes


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        path, server = self.path, 'http://127.0.0.1:%d' % self.server.server_port
        if path == '/array':
            self.send(b'[1, "two", null, {"a": [true]}]')
        elif path == '/gzip':
            self.send(gzip.compress(b'["packed"]'), ('Content-Encoding', 'gzip'))
        elif path == '/large':
            content = b'["' + b' ' * MORE_THAN_FITS + b'"]'
            self.send(gzip.compress(content, 1), ('Content-Encoding', 'gzip'))
        elif path == '/object':
            self.send(b'{"a": 1}')
        elif path == '/text':
            self.send(b'hello')
        elif path == '/nothing':
            self.send(b'')
        elif path == '/redirect':
            self.redirect('/array')
        elif path == '/redirect-whole':
            self.redirect(server + '/redirect')
        elif path == '/redirect-to-file':
            self.redirect('file://' + self.server.file)
        elif path == '/circle':
            self.redirect('/circle')
        elif path == '/short':
            self.send_response(200)
            self.send_header('Content-Length', '100')
            self.end_headers()
            self.wfile.write(b'[1]')
        else:
            self.send_error(404)

    def send(self, content, *headers):
        self.send_response(200)
        for header in headers:
            self.send_header(*header)
        self.send_header('Content-Length', str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    def redirect(self, target):
        self.send_response(302)
        self.send_header('Location', target)
        self.send_header('Content-Length', '0')
        self.end_headers()

    def log_message(self, *_):
        pass


class WebKelsparCase(unittest.TestCase):
    def answer(self, method, *arguments):
        return self.extension.of_class('WebKelspar', method, *arguments)

    def value(self, method, *arguments):
        return self.answer(method, *arguments)['result']['value']


class JSONFromURL(WebKelsparCase):
    @classmethod
    def setUpClass(cls):
        descriptor, cls.file = tempfile.mkstemp(suffix='.json')
        os.write(descriptor, b'["from the file"]')
        os.close(descriptor)
        cls.server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), Handler)
        cls.server.daemon_threads = True
        cls.server.file = cls.file
        threading.Thread(target=cls.server.serve_forever, daemon=True).start()
        cls.extension = Extension(EXTENSION).__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.extension.__exit__()
        cls.server.shutdown()
        cls.server.server_close()
        os.remove(cls.file)

    def fetch(self, path):
        url = path if ':' in path else 'http://127.0.0.1:%d%s' % (self.server.server_port, path)
        return self.value('getJSONArrayFromURL:', url)

    def test_elements(self):
        self.assertEqual(self.fetch('/array'), [1, 'two', None, {'a': [True]}])

    def test_gzip(self):
        self.assertEqual(self.fetch('/gzip'), ['packed'])

    def test_file(self):
        self.assertEqual(self.fetch('file://' + self.file), ['from the file'])

    def test_redirects(self):
        self.assertEqual(self.fetch('/redirect')[0], 1)
        self.assertEqual(self.fetch('/redirect-whole')[0], 1)

    def test_redirects_that_are_refused(self):
        self.assertIsNone(self.fetch('/redirect-to-file'))
        self.assertIsNone(self.fetch('/circle'))

    def test_too_large(self):
        self.assertIsNone(self.fetch('/large'))

    def test_no_array(self):
        for path in '/object', '/text', '/nothing':
            self.assertEqual(self.fetch(path), [], path)

    def test_failed_fetch(self):
        for path in ('/missing', '/short', 'http://127.0.0.1:1/', 'file:///no/such/file', 'ftp://a/b',
                     'gopher://a', 'no URL:', ''):
            self.assertIsNone(self.fetch(path), path)

    def test_missing_argument(self):
        self.assertIsNone(self.value('getJSONArrayFromURL:', None))
        self.assertEqual(self.answer('getJSONArrayFromURL:', 7)['error']['code'], -32602)
        self.assertEqual(self.answer('getJSONArrayFromURL:')['error']['code'], -32602)


class OverTheWire(WebKelsparCase):
    @classmethod
    def setUpClass(cls):
        cls.extension = Extension(EXTENSION).__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.extension.__exit__()

    def test_image_locations(self):
        rows = [
            (b'', []),
            (b'\xff<img src="a">', []),
            (b'<img src="cid:a"><img src="b"></p>', [('cid:a', 0)]),
            (b'<IMG src="a"></p><img src="b">', [('b', 1)]),
            (b'a</P>b</O:p><img src="c" alt="d">', [('c', 2)]),
            (b'<img alt="x"></p><img src="b">', [('b', 1)]),
            (b'<img src="a"</p>', []),
            (b'<img src="a" src="b">', [('a', 0)]),
            (b'<img src="">', [('', 0)]),
        ]
        for content, expected in rows:
            records = [{'image source': source, 'image location': at} for source, at in expected]
            self.assertEqual(self.value('imageLocationsFromRTF:', data(content)), records,
                             content)
        self.assertEqual(self.value('imageLocationsFromRTF:', None), [])

    def test_html_from_rtf(self):
        html = self.value('htmlFromRTFData:', data(br'{\rtf1 a {\b b} <c>\par}'))
        self.assertTrue(html.startswith('<!DOCTYPE html>\n<html>\n<head>\n<meta charset="utf-8">'))
        self.assertIn('<p>a <b>b</b> &lt;c&gt;', html)
        self.assertTrue(html.endswith('</body>\n</html>\n'))
        for content in data(b''), data(b'no RTF'), None:
            self.assertIsNone(self.value('htmlFromRTFData:', content))

    def charset(self, html, size, pattern, flags=('REG_EXTENDED', 'REG_ICASE'), buffer=b'\x7f' * 8):
        regex = {'$regex': {'pattern': pattern, 'flags': list(flags)}}
        answer = self.answer('getCharset:forHTML:withSize:andPattern:', data(buffer),
                                       data(html), size, regex)
        out = answer['result']['out']
        if out[1] is not None:  # an 8-bit string comes back as it went
            self.assertEqual(base64.b64decode(out[1]['$data']), html)
        return base64.b64decode(out[0]['$data'])

    def test_charset(self):
        html, pattern = b'<meta charset=utf-8>', 'charset=([a-z0-9-]+)'
        self.assertTrue(self.charset(html, 8, pattern).startswith(b'utf-8'))
        self.assertTrue(self.charset(html, 4, pattern).startswith(b'utf'))
        self.assertNotIn(b'utf-', self.charset(html, 4, pattern))
        self.assertIn(self.charset(html, 1, pattern)[:1], (b'', b'\0'))
        self.assertTrue(self.charset(b'none', 8, pattern).startswith(b'\x7f'))
        self.assertTrue(self.charset(html, 8, '(x)?charset').startswith(b'\x7f'))


if __name__ == '__main__':
    unittest.main()
