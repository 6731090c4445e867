"""velt fetch, from a server on loopback."""

import http.server
import os
import pty
import subprocess
import threading

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

    def test_bodies_headers_and_proxies(self):
        for path in ("/body", "/missing"):
            self.velt("fetch", f"http://{self.host}{path}", "-o", "body")
            self.assertEqual(self.content("body"), BODY)
        echo, url = f"http://{self.host}/echo", "http://elsewhere.test/echo"
        self.check(["fetch"], [([echo, "--header", "X-One: 1", "--header", "X-Two: [2]"], "/echo 1 [2]"),
                               ([url, "--proxy", self.host], url + " None None")])
        self.environment["http_proxy"] = "http://" + self.host
        self.check(["fetch"], [([url], url + " None None"), ([url, "--direct"], "", 1)])
        self.check_refused(["fetch"], [[url, "--direct", "--proxy", self.host]])

    def test_failures(self):
        self.write("body", b"old")
        self.check(["fetch"], [("http://127.0.0.1:1/ -o body", "", 1)])
        self.assertEqual(self.content("body"), b"old")
        self.check(["fetch"], [(f"http://{self.host}/short -o body", "", 1), (
            f"http://{self.host}/body -o no/body", "velt: cannot write no/body\n", 2)])
        self.assertEqual(self.content("body"), BODY)

    def test_progress_on_a_terminal(self):
        ours, theirs = pty.openpty()
        subprocess.run([VELT, "fetch", f"http://{self.host}/body", "-o", "body"], stderr=theirs,
                       cwd=self.folder, env=self.environment, check=True, timeout=60)
        os.close(theirs)
        shown = os.read(ours, 65536).decode()
        os.close(ours)
        self.assertRegex(shown, r"^\r\[#* *\] \d+ %  .* of 256\.0 kB  .*/s[^\n]*\n$")
