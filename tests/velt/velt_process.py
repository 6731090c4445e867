"""Runs the built `velt` in a folder and an environment of its own."""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest

VELT = os.environ["VELT"]


class VeltTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name
        self.environment = {name: os.environ[name] for name in ("PATH", "VELTGENERAL_MODULE_DIR")} | {
            "HOME": self.folder, "VELTGENERAL_HOME": self.folder, "VELTGENERAL_LOCALE": "en_US",
            "VELTGENERAL_REGISTRY_DIR": self.path("registry")}

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        pathlib.Path(self.path(name)).write_bytes(content)
        return self.path(name)

    def content(self, name):
        return pathlib.Path(self.path(name)).read_bytes()

    def run_program(self, *command, **options):
        return subprocess.run(command, capture_output=True, cwd=self.folder, timeout=60,
                              env=self.environment, **options)

    def velt(self, *arguments, status=0, stdin=b""):
        """Standard output; standard error where the status is 2."""
        done = self.run_program(VELT, *arguments, input=stdin)
        self.assertEqual(done.returncode, status, (arguments, done.stdout, done.stderr))
        return (done.stderr if status == 2 else done.stdout).decode()

    def answer(self, *arguments, **options):
        return json.loads(self.velt(*arguments, "--json", **options))

    def check(self, command, rows):
        """Rows of arguments, what is said and the status, 0 where there is none."""
        for arguments, said, *status in rows:
            with self.subTest(arguments):
                self.assertEqual(self.velt(*command, *words(arguments), status=(*status, 0)[0]), said)

    def check_refused(self, command, rows):
        """Rows of arguments that end with status 2 and a complaint."""
        for arguments in rows:
            with self.subTest(arguments):
                self.assertTrue(self.velt(*command, *words(arguments), status=2).startswith("velt: "))


def words(arguments):
    return arguments.split() if isinstance(arguments, str) else arguments
