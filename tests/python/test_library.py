"""Finding the library, and the stubs that describe it."""

import ast
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

import veltgeneral
from support import HostTest

_LIBRARY = os.environ["VELTGENERAL_LIBRARY"]
_PACKAGE = pathlib.Path(veltgeneral.__file__).parent


class Library(HostTest):
    def found(self, registered, encoding="utf-8", **environment):
        """The file that a fresh interpreter loads, or the last line of its complaint."""
        key = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\veltgeneral.ErrInfo\\InprocServer32]"
        text = f'Windows Registry Editor Version 5.00\r\n\r\n{key}\r\n@="{registered}"\r\n'
        (self.folder / "machine.reg").write_bytes(text.encode(encoding))
        variables = {key: value for key, value in os.environ.items() if not key.startswith("VELTGENERAL_")}
        variables |= {"PYTHONPATH": str(self.site), "VELTGENERAL_REGISTRY_DIR": str(self.folder)}
        program = "import veltgeneral._library as c; print(c.library._name)"
        done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=False,
                              env=variables | environment)
        return (done.stdout or done.stderr).strip().splitlines()[-1]

    def test_the_variable_the_registered_path_and_the_prefix_decide(self):
        # As installed: the package below the prefix's "lib", the library in it.
        self.site = self.folder / "lib" / "python3" / "site-packages"
        shutil.copytree(_PACKAGE, self.site / "veltgeneral")
        for encoding in ("utf-8", "utf-16"):
            self.assertEqual(self.found(_LIBRARY, encoding), _LIBRARY)
        nowhere, beside = "/nowhere.so", self.folder / "lib" / "libveltgeneral.so.1"
        self.assertIn(nowhere, self.found(_LIBRARY, VELTGENERAL_LIBRARY=nowhere))
        self.assertEqual(self.found(nowhere, VELTGENERAL_LIBRARY=_LIBRARY), _LIBRARY)
        beside.symlink_to(_LIBRARY)
        self.assertEqual(self.found(nowhere), str(beside))
        beside.unlink()
        self.assertIn("VELTGENERAL_LIBRARY", self.found(nowhere))


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
