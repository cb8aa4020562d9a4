"""The library's classes and functions under their C++ names.

One manual serves both languages: the public headers say what each does. ``docs/python/core.md``
tells the few rules by which a C++ call becomes a Python one.
"""

import numpy  # without which _core could only say that it failed

try:
    from . import _core
except ImportError as error:
    if "greycard.core was built with" in str(error):
        raise
    raise ImportError(
        f"greycard.core can't be loaded ({error}): install the greycard library of the version "
        "that the module was built with, or build the module again"
    ) from error

__all__ = [name for name in vars(_core) if not name.startswith("_")]
globals().update({name: getattr(_core, name) for name in __all__})
del numpy
