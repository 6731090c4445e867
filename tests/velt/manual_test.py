"""The manual page says every sub-command and every option, and nothing that does not exist."""

import os
import re
import subprocess
import unittest

from velt_process import VeltTest

PAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tools/velt/velt.1")
COMMANDS = os.path.join(os.path.dirname(PAGE), "../../docs/veltgeneral-pdf.5")


class Manual(VeltTest):
    def options(self, text):
        """Of a help: its options but --help, which the page tells once for all."""
        block = text.split("Options:\n")[1].split("\n\n")[0] if "Options:\n" in text else ""
        names = re.findall(r"^  (\S+)", block, re.MULTILINE)
        return {name for each in names for name in each.split(",")} - {"-h", "--help"}

    def test_page_and_program_agree(self):
        with open(PAGE, encoding="utf-8") as file:
            source = file.read().replace("\\-", "-")
        said = {}
        for section in source.split(".SH COMMANDS\n")[1].split("\n.SH ")[0].split("\n.SS ")[1:] + [
                source.split(".SH COMMANDS\n.SS ")[1].split("\n.SS ")[0]]:
            heading, _, body = section.partition("\n")
            words = heading.strip('"').split(" \\f")[0].removeprefix('"')
            tags = re.findall(r"^\.TP\n(.*)$", body, re.MULTILINE)
            said[words] = {name for tag in tags
                           for name in re.findall(r"(?<![\w-])--?[a-z][\w-]*", tag)}
        self.assertEqual(said, {" ".join(("velt", *path)): self.options(text)
                                for path, text in self.helps() if "Subcommands:" not in text})

    def test_pages_are_well_formed(self):
        for page, said in [(PAGE, "velt call CLASS.MEMBER [ARG...]"), (COMMANDS, r'head, row "CELL"')]:
            with self.subTest(page=page):
                done = subprocess.run(["man", "--warnings=all", "-l", page], capture_output=True,
                                      text=True, env=self.environment | {"MANPAGER": "cat",
                                                                         "LC_ALL": "C.UTF-8"})
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                self.assertIn(said, done.stdout)


if __name__ == "__main__":
    unittest.main()
