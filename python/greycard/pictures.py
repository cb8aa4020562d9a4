"""Pictures and photographs: read, described, written."""

from __future__ import annotations

import os
from dataclasses import dataclass
from typing import Any, Optional, Union

import numpy as np

from . import core
from ._results import PathLike, PictureArray, Result, frozen_array, provenance

#: A photograph as functions take it: a file, raw or not, or R, G, B in an array.
Image = Union[PathLike, PictureArray, core.Picture, core.Photograph]


def meaning(encoding: Optional[str], black: Optional[float], white: Optional[float]) -> Any:
    """What samples mean, as far as somebody says so."""
    names = {"srgb": core.SampleEncoding.sRGB, "linear": core.SampleEncoding.linear}
    if encoding is not None and encoding not in names:
        raise ValueError(f'encoding: "{encoding}"; wanted "srgb" or "linear"')
    return core.SampleMeaning(
        encoding=None if encoding is None else names[encoding], blackLevel=black, whiteLevel=white
    )


def photograph(image: Image, samples: Any, name: str = "", dump: Optional[str] = None) -> Any:
    """The photograph of a file or an array, as the library takes it."""
    if isinstance(image, core.Photograph):
        return image
    if isinstance(image, (str, os.PathLike)):
        layout = None if dump is None else core.dumpLayoutFromText(dump)
        return core.readPhotograph(
            os.fspath(image), core.PhotographOptions(samples=samples, dump=layout)
        )
    if dump is not None:
        raise ValueError("dump: tells how samples lie in a file, and the image is none")
    picture = image if isinstance(image, core.Picture) else core.Picture(image)
    return core.Photograph(picture=picture, samples=samples, file=name)


def read_picture(
    path: PathLike,
    *,
    black: Optional[float] = None,
    white: Optional[float] = None,
    dump: Optional[str] = None,
) -> PictureArray:
    """Reads a photograph of any kind, raw files too.

    Parameters
    ----------
    path : path
        PNG, TIFF, JPEG, WebP, ..., DNG or a camera's own raw file, as its content tells.
    black, white : float, optional
        Levels of a raw file in its own codes, where those that it states are not to be believed.
    dump : str, optional
        WIDTHxHEIGHT:BITS:PATTERN[:OFFSET[:STRIDE]] of samples without a header.

    Returns
    -------
    ndarray
        uint8 or uint16, height x width x 3 (R, G, B) or height x width. A raw file's samples are
        linear, from 0 to 65535, one pixel for a 2x2 cell of the sensor.

    Raises
    ------
    FileError
        It names the file and the reason.

    Examples
    --------
    >>> import greycard
    >>> greycard.simulate_chart(size=(320, 240), file="chart.png").write()
    >>> greycard.read_picture("chart.png").shape
    (240, 320, 3)
    """
    read = photograph(path, meaning(None, black, white), dump=dump)
    return np.asarray(read.picture)


def write_picture(path: PathLike, picture: Union[PictureArray, core.Picture]) -> None:
    """Writes a picture of R, G, B or grey samples; the name's ending tells the format.

    Raises
    ------
    FileError
        An ending that no format has, or a format that can't hold 16 bits.

    Examples
    --------
    >>> import greycard, numpy
    >>> greycard.write_picture("grey.png", numpy.full((4, 6), 128, numpy.uint8))
    """
    core.writePicture(path, picture)


@dataclass(frozen=True, eq=False)
class PhotographInfo(Result):
    """What a photograph is, before anything is looked for in it."""

    file: str
    format: str
    size: tuple[int, int]
    channels: int
    bits: int
    warnings: tuple[str, ...]


def info(
    image: Image,
    *,
    encoding: Optional[str] = None,
    black: Optional[float] = None,
    white: Optional[float] = None,
    dump: Optional[str] = None,
    name: str = "",
) -> PhotographInfo:
    """What a photograph is and what its samples are taken for, as ``greycard info`` tells.

    Examples
    --------
    >>> import greycard
    >>> greycard.simulate_chart(size=(320, 240), file="chart.png").write()
    >>> greycard.info("chart.png").size
    (320, 240)
    """
    origin = provenance()
    told = core.describePhotograph(photograph(image, meaning(encoding, black, white), name, dump))
    return PhotographInfo(
        core=told,
        provenance=origin,
        file=told.file,
        format=told.format,
        size=(told.width, told.height),
        channels=told.channels,
        bits=told.bits,
        warnings=tuple(told.warnings),
    )


def as_array(picture: core.Picture) -> PictureArray:
    """A picture of the library as an array that can't be changed."""
    array: PictureArray = frozen_array(picture, None)
    return array
