"""Compares what callers rely on with what was published.

    published_test.py FOLDER

c_abi.golden has the C interface: symbols and their versions, declarations, sizes and offsets of the
records, values of the enumerators and constants; members.golden has the members of every class.
Nothing of them may go or change within a major version, and what is new shows in review. What differs
is written to FOLDER.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import veltgeneral

HERE = pathlib.Path(__file__).resolve().parent
INCLUDE = HERE.parents[1] / "include"


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
        subprocess.run([os.environ["CC"], "-std=c11", f"-I{INCLUDE}", source, "-o", f"{folder}/layout"],
                       check=True)
        return subprocess.run([f"{folder}/layout"], check=True, capture_output=True,
                              text=True).stdout.splitlines()


def c_interface():
    header = (INCLUDE / "veltgeneral/veltgeneral_c.h").read_text()
    code = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
    return [*symbols(os.environ["VELTGENERAL_LIBRARY"]), "", *declarations(code), "", *layout(code)]


def members():
    for described in map(veltgeneral.describe, veltgeneral.classes()):
        yield f"{described.name}: {described.summary}"
        for each in described.members:
            yield f"  {each.kind:6} {each.name}({', '.join(map(str, each.parameters))}) -> {each.result}"
        for each in described.enumerations:
            yield f"  {each.__name__}"
            yield from (f"    {value.name} = {value.value}" for value in each)


def main():
    now = {"c_abi": c_interface(), "members": list(members())}
    for enumerator in re.findall(r"^    (\w+ = -?\d+)$", "\n".join(now["members"]), re.M):
        if "VG_" + enumerator not in now["c_abi"]:
            sys.exit(f"the header and the library differ about {enumerator}")
    for topic, lines in now.items():
        golden = HERE / (topic + ".golden")
        published = golden.read_text().splitlines()
        if lines != published:
            actual = pathlib.Path(sys.argv[1], topic + ".actual")
            actual.write_text("\n".join(lines) + "\n")
            print(*difflib.unified_diff(published, lines, lineterm="", n=0), sep="\n")
            sys.exit(f"What is published differs. If that is meant:\n  cp {actual} {golden}")


main()
