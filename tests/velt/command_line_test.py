"""The program's own command line, its manual pages and its completion: all tell the same."""

import os
import re

from velt_process import VeltTest

PAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tools/velt/velt.1")
COMMANDS = os.path.join(os.path.dirname(PAGE), "../../docs/veltgeneral-pdf.5")


class CommandLine(VeltTest):
    def helps(self, *path):
        """Of every sub-command its path and its help."""
        text = self.velt(*path, "--help")
        yield path, text
        if "Subcommands:\n" in text:
            for line in text.split("Subcommands:\n")[1].split("\n\n")[0].splitlines():
                yield from self.helps(*path, line.split()[0])

    def options(self, text):
        """Of a help: its options but --help, which the page tells once for all."""
        block = text.partition("Options:\n")[2].partition("\n\n")[0]
        names = re.findall(r"^  (\S+)", block, re.MULTILINE)
        return {name for each in names for name in each.split(",")} - {"-h", "--help"}

    def test_helps_and_page_agree(self):
        with open(PAGE, encoding="utf-8") as file:
            commands = file.read().replace("\\-", "-").split(".SH COMMANDS\n.SS ")[1].split("\n.SH ")[0]
        said = {}
        for section in commands.split("\n.SS "):
            heading, _, body = section.partition("\n")
            tags = " ".join(re.findall(r"^\.TP\n(.*)$", body, re.MULTILINE))
            said[heading.strip('"').split(" \\f")[0].removeprefix('"')] = set(
                re.findall(r"(?<![\w-])--?[a-z][\w-]*", tags))
        helps = dict(self.helps())
        self.assertEqual(said, {" ".join(("velt",) + path): self.options(text)
                                for path, text in helps.items() if "Subcommands:\n" not in text})
        self.assertEqual([path for path, text in helps.items() if "Examples:\n  " not in text], [])

    def test_pages_are_well_formed(self):
        self.environment |= {"MANPAGER": "cat", "LC_ALL": "C.UTF-8"}
        for page, said in [(PAGE, b"velt call CLASS.MEMBER [ARG...]"), (COMMANDS, b'head, row "CELL"')]:
            done = self.run_program("man", "--warnings=all", "-l", page)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            self.assertIn(said, done.stdout)

    def test_errors_are_on_standard_error(self):
        self.check_refused([], ["", "nothing", "classes more", "classes --nothing", "call", "describe",
                                "describe Nobody", "describe ErrInfo.nothing", "completion tcsh"])
        self.assertRegex(self.velt("--version"), r"^velt \d+\.\d+\.\d+\n$")


class Completion(VeltTest):
    def offered(self, shell, *options, before="", then):
        """What a shell prints behind its script of completion."""
        script = self.write("velt." + shell, self.velt("completion", shell).encode())
        done = self.run_program(shell, *options, "-c", f"{before} source {script}; {then}")
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode().splitlines()

    def test_bash(self):
        for line, offered in {
            "velt desc": "describe", "velt classes --j": "--json", "velt describe --json ErrI": "ErrInfo",
            "velt call FileUtility.readF": "FileUtility.readFile", "velt completion b": "bash",
        }.items():
            ask = f"COMP_WORDS=({line}); COMP_CWORD={line.count(' ')}; _velt; echo \"${{COMPREPLY[@]}}\""
            self.assertEqual(self.offered("bash", then=ask), [offered])

    def test_zsh_and_fish(self):
        # What the completion would hand to the shell's own functions, which need a terminal.
        said = self.offered("zsh", "-f", then="words=(velt describe x); CURRENT=3; _velt",
                            before="_describe() { print -rl -- $offered }; _files() { }; compdef() { };"
                                   "compadd() { print -rl -- $plain };")
        self.assertLessEqual({"--json:Print JSON on one line", "ErrInfo"}, set(said))
        self.assertEqual(self.offered("fish", "--no-config", then="complete -C 'velt registry g'"),
                         ["get\tPrint one value, or all values of a key"])
