"""The package. With the shared libraries inside it is for one platform, but for every Python 3: see package.sh."""

import json
import pathlib

from setuptools import setup
from setuptools.dist import Distribution
from wheel.bdist_wheel import bdist_wheel

PACKAGE = pathlib.Path("nuvimgsdk")


class WithLibraries(Distribution):
    """Belongs where packages of one platform do, if the libraries are inside."""

    def has_ext_modules(self):
        return any(PACKAGE.glob("*.so*"))


class AnyPython(bdist_wheel):
    """Marks the wheel as one for any Python 3, and for its platform if the libraries are inside."""

    def get_tag(self):
        return "py3", "none", super().get_tag()[2]


setup(
    name="nuvimgsdk",
    version=json.loads((PACKAGE / "boundary.json").read_text(encoding="utf-8"))["version"],
    description="Image processing over numpy arrays, defined to the bit",
    license="MIT",
    packages=["nuvimgsdk"],
    package_data={"nuvimgsdk": ["boundary.json", "py.typed", "*.pyi", "*.so*"]},
    python_requires=">=3.9",
    install_requires=["numpy"],
    distclass=WithLibraries,
    cmdclass={"bdist_wheel": AnyPython},
    zip_safe=False)
