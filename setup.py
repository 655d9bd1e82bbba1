"""The small build backend of the Python package: setuptools runs facet's CMake build.

The extension module facet._facet is built by the CMake target facet_python (python/) in a
folder of setuptools' build tree, then copied into the package together with libfacet.so.N,
which the module finds beside itself. Options: FACET_CMAKE_ARGS (extra arguments for the
configure step) and FACET_BUILD_JOBS (parallel jobs, default 2).
"""

import os
import re
import shlex
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent


def version() -> str:
    text = (ROOT / "include" / "facet" / "version.h").read_text()
    parts = [re.search(rf"#define FACET_VERSION_{p} (\d+)", text) for p in ("MAJOR", "MINOR", "PATCH")]
    return ".".join(m.group(1) for m in parts if m)


class CMakeExtension(Extension):
    def __init__(self, name: str) -> None:
        super().__init__(name, sources=[])


class CMakeBuild(build_ext):
    def build_extension(self, ext: Extension) -> None:
        build = Path(self.build_temp).resolve() / "cmake"
        configure = [
            "cmake", "-S", str(ROOT), "-B", str(build),
            "-DCMAKE_BUILD_TYPE=Release",
            "-DFACET_UNITY_BUILD=ON",
            "-DFACET_BUILD_PYTHON=ON",
            "-DFACET_BUILD_TESTS=OFF",
            "-DFACET_BUILD_BENCHMARKS=OFF",
            "-DFACET_BUILD_EXAMPLES=OFF",
            "-DFACET_PACKAGE_TEST=OFF",
            f"-DPython3_EXECUTABLE={sys.executable}",
        ] + shlex.split(os.environ.get("FACET_CMAKE_ARGS", ""))
        subprocess.run(configure, check=True)
        jobs = os.environ.get("FACET_BUILD_JOBS", "2")
        subprocess.run(["cmake", "--build", str(build), "--target", "facet_python", "-j", jobs],
                       check=True)
        target = Path(self.get_ext_fullpath(ext.name)).resolve()
        target.parent.mkdir(parents=True, exist_ok=True)
        module = next((build / "python" / "facet").glob("_facet*.so"))
        shutil.copyfile(module, target)
        # The library under its soname (libfacet.so.N), which the module's $ORIGIN run path finds.
        library = next(p for p in build.glob("libfacet.so.*") if p.name.count(".") == 2)
        shutil.copyfile(library.resolve(), target.parent / library.name)


setup(
    version=version(),
    ext_modules=[CMakeExtension("facet._facet")],
    cmdclass={"build_ext": CMakeBuild},
    zip_safe=False,
)
