"""Keeps the pages true: what they show is run, what they name is there.

The blocks of a page run from top to bottom in one folder of their own:

    sh, python, cpp   are run and must succeed; a cpp block is a whole program
    text              right behind one of them is what it prints
    console           cannot run here (it builds, or needs root); its scripts and presets must exist
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGES = sorted([*ROOT.glob("*.md"), *ROOT.glob("docs/**/*.md")])
BLOCK = re.compile(r"^```(sh|python|cpp|console)\n(.*?)^```$(?:\n+```text\n(.*?)^```$)?", re.M | re.S)
LINK = re.compile(r"\]\(([^)#:]*)(?:#([^)]*))?\)")
BUILD = {name: os.environ[name] for name in ("VELT", "LIBRARY", "PYTHON_PACKAGE", "CXX")}


def environment(folder):
    kept = {k: v for k, v in os.environ.items() if not k.startswith(("VELTGENERAL_", "LC_", "XDG_"))}
    library = pathlib.Path(BUILD["LIBRARY"])
    return kept | {
        "PATH": f"{pathlib.Path(BUILD['VELT']).parent}:{os.environ['PATH']}",
        "HOME": folder, "LANG": "C.UTF-8", "PYTHONDONTWRITEBYTECODE": "1",
        "PYTHONPATH": BUILD["PYTHON_PACKAGE"],
        "LD_LIBRARY_PATH": str(library.parent), "VELTGENERAL_LIBRARY": str(library),
        "VELTGENERAL_REGISTRY_DIR": f"{folder}/registry", "VELTGENERAL_HOME": folder,
    }


def command(language, source, folder):
    if language == "sh":
        return ["bash", "-euo", "pipefail", "-c", source]
    if language == "python":
        return [sys.executable, "-W", "error", "-c", source]
    program = pathlib.Path(folder, "program")
    program.with_suffix(".cpp").write_text(source)
    subprocess.run([BUILD["CXX"], "-std=c++20", "-Wall", "-Wextra", "-Werror", f"-I{ROOT}/include",
                    f"{program}.cpp", "-o", program, BUILD["LIBRARY"]], check=True)
    return [program]


def anchors(page):
    """As the usual renderers make them of headings."""
    headings = re.findall(r"^#+ (.*)$", page.read_text(), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


class Pages(unittest.TestCase):
    def test_blocks_run(self):
        for page in PAGES:
            with self.subTest(page=page.name), tempfile.TemporaryDirectory() as folder:
                for language, source, printed in BLOCK.findall(page.read_text()):
                    if language == "console":
                        continue
                    done = subprocess.run(command(language, source, folder), cwd=folder, timeout=120,
                                          env=environment(folder), capture_output=True, text=True)
                    self.assertEqual(done.returncode, 0, source + done.stdout + done.stderr)
                    if printed:
                        self.assertEqual(done.stdout, printed, source)

    def test_builds_name_what_is_there(self):
        presets = json.loads((ROOT / "CMakePresets.json").read_text())["buildPresets"]
        names = {preset["name"] for preset in presets}
        for page in PAGES:
            for _, source, _ in BLOCK.findall(page.read_text()):
                self.assertLessEqual(set(re.findall(r"--preset (\S+)", source)), names, page)
                for script in re.findall(r"\bscripts/[\w-]+", source):
                    self.assertTrue((ROOT / script).exists(), f"{page}: {script}")

    def test_links_lead_somewhere(self):
        for page in PAGES:
            for target, anchor in LINK.findall(page.read_text()):
                linked = page.parent / target if target else page
                self.assertTrue(linked.exists(), f"{page}: {target}")
                if anchor:
                    self.assertIn(anchor, anchors(linked), f"{page}: {target}")

    def test_every_variable_is_documented(self):
        sources = [path for folder in ("src", "bindings", "include") for path in ROOT.glob(f"{folder}/**/*")
                   if path.suffix in (".cpp", ".py", ".h")]
        read = {name for path in sources
                for name in re.findall(r'"((?:VELTGENERAL|XDG|LC|CURL|SSL)_\w+)"', path.read_text())}
        told = (ROOT / "docs/configuration.md").read_text()
        self.assertEqual([name for name in sorted(read) if name not in told], [])


if __name__ == "__main__":
    unittest.main()
