"""pip install --no-build-isolation . : the package with the library inside it, as a wheel."""

import re
from pathlib import Path

from skbuild import setup

cmake = Path(__file__).with_name("CMakeLists.txt").read_text()
version = re.search(r"project\(greycard VERSION ([\d.]+)", cmake)
parts = ("CLI", "TESTS", "BENCH", "FUZZERS")

setup(
    name="greycard",
    version=version[1],
    description="Camera image-quality tuning: tone curves, chart detection, colour correction",
    license_files=["LICENSE", "data/README.md"],
    packages=["greycard"],
    package_dir={"greycard": "python/greycard"},
    python_requires=">=3.9",
    install_requires=["numpy"],
    extras_require={"cluster": ["distributed"]},
    cmake_args=[
        "-DGREYCARD_PYTHON=ON",
        "-DGREYCARD_INSTALL=OFF",
        "-DBUILD_SHARED_LIBS=OFF",
        "-DCMAKE_UNITY_BUILD=ON",
        *(f"-DGREYCARD_BUILD_{part}=OFF" for part in parts),
    ],
)
