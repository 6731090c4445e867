"""Runs the built `velt` in a folder and an environment of its own."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
VELT = os.environ["VELT"]


class VeltTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name
        kept = {k: v for k, v in os.environ.items()
                if not k.startswith(("VELTGENERAL_", "LC_", "XDG_", "LANG"))
                or k == "VELTGENERAL_MODULE_DIR"}
        self.environment = kept | {
            "HOME": self.folder,
            "VELTGENERAL_LOCALE": "en_US",
            "VELTGENERAL_REGISTRY_DIR": self.path("registry"),
            "VELTGENERAL_HOME": self.folder,
        }

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return self.path(name)

    def content(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def velt(self, *arguments, status=0, stdin=b"", **environment):
        """Standard output; standard error where the status is 2."""
        done = subprocess.run([VELT, *arguments], input=stdin, capture_output=True,
                              cwd=self.folder, env=self.environment | environment, timeout=60)
        self.assertEqual(done.returncode, status, (arguments, done.stdout, done.stderr))
        return (done.stderr if status == 2 else done.stdout).decode()

    def helps(self, *path):
        """Every command below, itself first: (words, what its help says)."""
        text = self.velt(*path, "--help")
        yield path, text
        if "Subcommands:\n" in text:
            for line in text.split("Subcommands:\n")[1].split("\n\n")[0].splitlines():
                yield from self.helps(*path, line.split()[0])

    def answer(self, *arguments, **options):
        return json.loads(self.velt(*arguments, "--json", **options))
