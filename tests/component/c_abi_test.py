"""Compares the C interface with what was published: symbols and their versions, declarations, sizes
and offsets of the records, values of the enumerators and constants.

    c_abi_test.py GOLDEN ACTUAL

The header says which records and enumerators there are; a program of the C compiler says what they are.
Nothing of the golden file may go or change within a major version; what is new shows in review.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
HEADER = ROOT / "include/veltgeneral/veltgeneral_c.h"


def symbols(library):
    listed = subprocess.run(["nm", "-D", "--defined-only", "--with-symbol-versions", library], check=True,
                            capture_output=True, text=True).stdout
    names = [line.split()[2] for line in listed.splitlines() if line.split()[1] != "A"]
    strangers = [name for name in names
                 if not re.fullmatch(r"(vg_|Dll)\w+@@VELTGENERAL_\d+|_Z\w+@@VELTGENERAL_CXX_\d+\.\d+", name)]
    if strangers:
        sys.exit("exported without need:\n" + "\n".join(strangers))
    return sorted(name for name in names if not name.startswith("_Z"))


def declarations(code):
    functions = re.findall(r"^VELTGENERAL_API ([^;]+);", code, re.M)
    callbacks = re.findall(r"^typedef (\w+ \(\*\w+\)[^;]+|\w+ vg_\w+);", code, re.M)
    fields = re.findall(r"^  (\w+ \(\*\w+\)[^;]+);", code, re.M)
    return [" ".join(text.split()) for text in (*callbacks, *fields, *functions)]


def layout(code):
    """Lines of what a C compiler makes of records, enumerators and constants."""
    asked = []
    for name, body in re.findall(r"typedef struct (\w+) \{(.*?)^\} \1;", code, re.M | re.S):
        asked.append((f"{name} size", f"sizeof({name})"))
        for line in body.split(";"):
            for field in re.findall(r"\(\*(\w+)\)|(\w+)(?=,|$)", re.sub(r"\)\([^)]*\)", ")", line.strip())):
                field = "".join(field)
                asked.append((f"{name}.{field} offset", f"offsetof({name}, {field})"))
                asked.append((f"{name}.{field} size", f"sizeof((({name}*)0)->{field})"))
    for body in re.findall(r"^(?:typedef )?enum \w+[^{;]*\{(.*?)\}", code, re.M | re.S):
        asked += [(each, each) for each in re.findall(r"VG_\w+", body)]
    asked += [(each, each) for each in re.findall(r"^#define (VG_\w+) [(0-9]", code, re.M)]
    prints = "".join(f'  printf("{what} = %lld\\n", (long long)({value}));\n' for what, value in asked)
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder, "layout.c")
        source.write_text("#include <stddef.h>\n#include <stdio.h>\n"
                          "#include <veltgeneral/veltgeneral_c.h>\nint main(void) {\n" + prints + "}\n")
        subprocess.run([os.environ["CC"], "-std=c11", f"-I{ROOT}/include", source, "-o", f"{folder}/layout"],
                       check=True)
        return subprocess.run([f"{folder}/layout"], check=True, capture_output=True,
                              text=True).stdout.splitlines()


def main():
    golden, actual = map(pathlib.Path, sys.argv[1:])
    code = re.sub(r"/\*.*?\*/", "", HEADER.read_text(), flags=re.S)
    lines = [*symbols(os.environ["LIBRARY"]), "", *declarations(code), "", *layout(code)]
    made = dict(line.split(" = ") for line in lines if " = " in line)
    members = re.findall(r"^    (\w+) = (-?\d+)$", golden.with_name("members.golden").read_text(), re.M)
    strangers = [name for name, value in members if made.get("VG_" + name) != value]
    if strangers or not members:
        sys.exit(f"the library's enumerations have other values: {strangers}")
    published = golden.read_text().splitlines() if golden.exists() else []
    if lines == published:
        return 0
    actual.write_text("\n".join(lines) + "\n")
    print("\n".join(difflib.unified_diff(published, lines, "published", "now", lineterm="", n=0)))
    print(f"The C interface differs. If that is meant:\n  cp {actual} {golden}")
    return 1


if __name__ == "__main__":
    sys.exit(main())
