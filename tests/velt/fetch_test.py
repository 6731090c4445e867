"""velt fetch, from a server on loopback."""

import http.server
import os
import pty
import re
import subprocess
import threading
import unittest

from velt_process import VELT, VeltTest

BODY = bytes(range(256)) * 1000


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        """Also as a proxy, which is asked for whole URLs."""
        echo = self.path in ("/echo", "http://elsewhere.test/echo")
        body = f"{self.path} {self.headers.get('X-One')} {self.headers.get('X-Two')}".encode() \
            if echo else BODY
        self.send_response(404 if self.path == "/missing" else 200)
        self.send_header("Content-Length", str(len(body) + (self.path == "/short")))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Fetch(VeltTest):
    def setUp(self):
        super().setUp()
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        thread = threading.Thread(target=server.serve_forever)
        thread.start()
        self.addCleanup(thread.join)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        self.host = f"127.0.0.1:{server.server_port}"
        for name in ("http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"):
            self.environment.pop(name, None)

    def test_bodies(self):
        for path in ("/body", "/missing"):
            self.velt("fetch", f"http://{self.host}{path}", "-o", "body")
            self.assertEqual(self.content("body"), BODY)
        said = self.velt("fetch", f"http://{self.host}/echo", "--header", "X-One: 1",
                         "--header", "X-Two: [2]")
        self.assertEqual(said, "/echo 1 [2]")

    def test_proxies(self):
        url = "http://elsewhere.test/echo"
        self.assertEqual(self.velt("fetch", url, "--proxy", self.host), url + " None None")
        environment = {"http_proxy": "http://" + self.host}
        self.assertEqual(self.velt("fetch", url, **environment), url + " None None")
        self.velt("fetch", url, "--direct", status=1, **environment)
        self.velt("fetch", url, "--direct", "--proxy", self.host, status=2)

    def test_failures(self):
        self.write("body", b"old")
        self.velt("fetch", f"http://{self.host}/echo", "--header", "X: 1\r\n\r\nX", "-o", "body",
                  status=1)
        self.velt("fetch", "http://127.0.0.1:1/", "-o", "body", status=1)
        self.assertEqual(self.content("body"), b"old")
        self.velt("fetch", f"http://{self.host}/short", "-o", "body", status=1)
        self.assertEqual(self.content("body"), BODY)
        self.assertEqual(self.velt("fetch", f"http://{self.host}/body", "-o", "no/body", status=2),
                         "velt: cannot write no/body\n")

    def test_progress_on_a_terminal(self):
        ours, theirs = pty.openpty()
        subprocess.run([VELT, "fetch", f"http://{self.host}/body", "-o", "body"], stderr=theirs,
                       cwd=self.folder, env=self.environment, check=True, timeout=60)
        os.close(theirs)
        shown = os.read(ours, 65536).decode()
        os.close(ours)
        self.assertRegex(shown, r"^\r\[#* *\] \d+ %  .* of 256\.0 kB  .*/s")
        self.assertTrue(shown.endswith("\n"), shown)
        self.assertEqual(len(re.findall(r"\n", shown)), 1)


if __name__ == "__main__":
    unittest.main()
