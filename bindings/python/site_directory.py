"""Prints the folder, relative to a prefix, that this interpreter searches for packages."""

import os
import site
import sys
import sysconfig


def site_directory(prefix: str) -> str:
    for folder in site.getsitepackages():
        if os.path.dirname(folder).startswith(os.path.join(prefix, "lib")):
            return os.path.relpath(folder, prefix)
    return os.path.relpath(sysconfig.get_path("purelib", "posix_prefix", {"base": prefix}), prefix)


if __name__ == "__main__":
    print(site_directory(sys.argv[1]))
