"""Finding the library, and the stubs that describe it."""

import ast
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import veltgeneral

_LIBRARY = os.environ["VELTGENERAL_LIBRARY"]
_PACKAGE = pathlib.Path(veltgeneral.__file__).parent


def loaded(package_root, **environment):
    """The file that a fresh interpreter loads, or the last line of its complaint."""
    program = "import veltgeneral._library as c; print(c.library._name)"
    clean = {key: value for key, value in os.environ.items() if not key.startswith("VELTGENERAL_")}
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=False,
                          env={**clean, "PYTHONPATH": str(package_root), **environment})
    return (done.stdout or done.stderr).strip().splitlines()[-1]


class Library(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        # As installed: the package below the prefix's "lib", the library in it.
        self.site = self.folder / "lib" / "python3" / "site-packages"
        shutil.copytree(_PACKAGE, self.site / "veltgeneral")
        self.registry = {"VELTGENERAL_REGISTRY_DIR": str(self.folder)}

    def register(self, path, encoding="utf-8"):
        key = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\veltgeneral.ErrInfo\\InprocServer32]"
        text = f'Windows Registry Editor Version 5.00\r\n\r\n{key}\r\n@="{path}"\r\n'
        (self.folder / "machine.reg").write_bytes(text.encode(encoding))

    def test_the_variable_the_registered_path_and_the_prefix_decide(self):
        for encoding in ("utf-8", "utf-16"):
            self.register(_LIBRARY, encoding)
            self.assertEqual(loaded(self.site, **self.registry), _LIBRARY)
        self.assertIn("/nowhere.so", loaded(self.site, VELTGENERAL_LIBRARY="/nowhere.so"))
        self.register("/nowhere.so")
        self.assertEqual(loaded(self.site, VELTGENERAL_LIBRARY=_LIBRARY, **self.registry), _LIBRARY)
        beside = self.folder / "lib" / "libveltgeneral.so.1"
        beside.symlink_to(_LIBRARY)
        self.assertEqual(loaded(self.site, **self.registry), str(beside))
        beside.unlink()
        self.assertIn("VELTGENERAL_LIBRARY", loaded(self.site, **self.registry))


class Stubs(unittest.TestCase):
    def test_every_member_of_every_class_is_declared(self):
        tree = ast.parse((_PACKAGE / "__init__.pyi").read_text(encoding="utf-8"))
        declared = {node.name: {each.name for each in node.body if isinstance(each, ast.FunctionDef)}
                    for node in tree.body if isinstance(node, ast.ClassDef)}
        for name in veltgeneral.classes():
            members = {member.name for member in veltgeneral.describe(name).members}
            self.assertEqual(declared[name], members)
        names = {node.name for node in tree.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))}
        names |= {node.target.id for node in tree.body if isinstance(node, ast.AnnAssign)}
        self.assertLessEqual(set(veltgeneral.__all__), names)
