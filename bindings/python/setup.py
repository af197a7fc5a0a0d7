"""The wheel: pure Python with the shared libraries inside, so one file serves every Python on Linux x86-64."""

import json
import pathlib

from setuptools import setup
from wheel.bdist_wheel import bdist_wheel

version = json.loads(pathlib.Path("nuvimgsdk/boundary.json").read_text(encoding="utf-8"))["version"]


class AnyPython(bdist_wheel):
    """Marks the wheel as one for this platform and any Python 3."""

    def finalize_options(self):
        super().finalize_options()
        self.root_is_pure = False

    def get_tag(self):
        return "py3", "none", super().get_tag()[2]


setup(name="nuvimgsdk", version=version, description="Image processing over numpy arrays, defined to the bit",
      packages=["nuvimgsdk"], package_data={"nuvimgsdk": ["boundary.json", "py.typed", "*.pyi", "*.so*"]},
      python_requires=">=3.9", install_requires=["numpy"], cmdclass={"bdist_wheel": AnyPython}, zip_safe=False)
