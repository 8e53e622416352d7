"""The extension as a host sees it: requests and answers, a line each."""
import base64
import json
import subprocess


def data(content):
    return {'$data': base64.b64encode(content).decode()}


class Extension:
    """The process, a request at a time."""

    def __init__(self, program):
        self.program = program

    def __enter__(self):
        self.process = subprocess.Popen([self.program], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait(timeout=30)
        self.process.stdout.close()

    def request(self, method, params):
        request = {'jsonrpc': '2.0', 'id': 1, 'method': method, 'params': params}
        self.process.stdin.write(json.dumps(request).encode() + b'\n')
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def of_class(self, name, method, *arguments):
        return self.request(method, {'class': name, 'arguments': list(arguments)})

    def of_receiver(self, receiver, method, *arguments):
        return self.request(method, {'receiver': receiver, 'arguments': list(arguments)})
