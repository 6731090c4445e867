"""Finding the library, and the stubs that describe it."""

import ast
import os
import pathlib
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
        self.site.mkdir(parents=True)
        (self.site / "veltgeneral").symlink_to(_PACKAGE)
        self.registry = {"VELTGENERAL_REGISTRY_DIR": str(self.folder)}

    def register(self, path, encoding="utf-8"):
        text = ("Windows Registry Editor Version 5.00\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\veltgeneral.ErrInfo\\InprocServer32]\r\n"
                f'@="{path}"\r\n')
        (self.folder / "machine.reg").write_bytes(text.encode(encoding))

    def test_the_variable_decides(self):
        self.register("/nowhere.so")
        self.assertEqual(loaded(self.site, VELTGENERAL_LIBRARY=_LIBRARY, **self.registry), _LIBRARY)
        self.assertIn("/nowhere.so", loaded(self.site, VELTGENERAL_LIBRARY="/nowhere.so"))

    def test_then_the_registered_path(self):
        for encoding in ("utf-8", "utf-16"):
            self.register(_LIBRARY, encoding)
            self.assertEqual(loaded(self.site, **self.registry), _LIBRARY)

    def test_then_the_prefix_of_the_package(self):
        self.register("/nowhere.so")
        copy = self.folder / "copy"
        copy.mkdir()
        site = copy / "lib" / "python3" / "site-packages" / "veltgeneral"
        site.mkdir(parents=True)
        for each in _PACKAGE.glob("*.py"):
            (site / each.name).write_bytes(each.read_bytes())
        beside = copy / "lib" / "libveltgeneral.so.1"
        beside.symlink_to(_LIBRARY)
        self.assertEqual(loaded(site.parent, **self.registry), str(beside))
        beside.unlink()
        self.assertIn("VELTGENERAL_LIBRARY", loaded(site.parent, **self.registry))


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


if __name__ == "__main__":
    unittest.main()
