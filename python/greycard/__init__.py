"""greycard: camera image-quality tuning.

``greycard.core`` holds the library's classes and functions under their C++ names.
"""

from greycard import core

__version__: str = core.libraryVersion()
