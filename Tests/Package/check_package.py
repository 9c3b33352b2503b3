# SPDX-License-Identifier: Apache-2.0
"""Installs a build into a fresh folder, builds another project against it there, and looks at what was installed."""
import argparse
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
LIBRARIES = ["DataObjectsCommon", "DataObjectsBuffer", "DataObjects"]
UMBRELLAS = ["Core/Common/Common.h", "Core/Buffer/Buffer.h", "Core/DataObjects/DataObjects.h"]


def run(*command, **options):
    subprocess.run([str(part) for part in command], check=True, **options)


def check_files(prefix, version):
    installed = {str(path.relative_to(prefix)) for path in prefix.rglob("*") if not path.is_dir()}
    tails = [f"lib{name}.so.{version}" for name in LIBRARIES] + [
        "DataObjectsConfig.cmake", "DataObjectsTargets.cmake", "pkgconfig/dataobjects.pc", "LICENSE", "bin/qf",
        "man/man1/qf.1", "bash-completion/completions/qf"]
    missing = [tail for tail in tails if not any(name.endswith(tail) for name in installed)]
    if missing:
        sys.exit(f"not installed: {', '.join(missing)}")


def check_headers(include):
    """The umbrella headers reach every installed header, and nothing that is not installed."""
    reached, waiting = set(), list(UMBRELLAS)
    while waiting:
        name = waiting.pop()
        if name in reached:
            continue
        reached.add(name)
        if not (include / name).is_file():
            sys.exit(f"{name} is included by a public header and not installed")
        waiting += re.findall(r'#include "(Core/[^"]+)"', (include / name).read_text())
    installed = {str(path.relative_to(include)) for path in include.rglob("*.h")}
    if installed - reached:
        sys.exit(f"no umbrella header includes: {', '.join(sorted(installed - reached))}")


def build_consumer(cmake, prefix, folder):
    run(cmake, "-S", HERE / "Consumer", "-B", folder, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}",
        stdout=subprocess.DEVNULL)
    run(cmake, "--build", folder)
    run(folder / "consumer")


def build_with_pkg_config(prefix, folder):
    paths = [str(path.parent) for path in prefix.rglob("dataobjects.pc")]
    environment = dict(os.environ, PKG_CONFIG_PATH=":".join(paths))
    flags = subprocess.run(["pkg-config", "--cflags", "--libs", "dataobjects"], check=True,
                           capture_output=True, text=True, env=environment).stdout.split()
    program = folder / "with-pkg-config"
    run("c++", HERE / "Consumer" / "main.cpp", "-fPIC", "-o", program, *flags)
    library = next(prefix.rglob("libDataObjects.so")).parent
    run(program, env=dict(os.environ, LD_LIBRARY_PATH=str(library)))


def main():
    parser = argparse.ArgumentParser()
    for name in ("cmake", "build", "version"):
        parser.add_argument(f"--{name}", required=True)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        prefix = Path(folder) / "prefix"
        run(arguments.cmake, "--install", arguments.build, "--prefix", prefix, stdout=subprocess.DEVNULL)
        check_files(prefix, arguments.version)
        check_headers(prefix / "include" / "DataObjects")
        run(prefix / "bin" / "qf", "--version", stdout=subprocess.DEVNULL)
        build_consumer(arguments.cmake, prefix, Path(folder) / "build")
        build_with_pkg_config(prefix, Path(folder))


main()
