"""Rendered photographs of the chart and flat fields, whose truth is known."""

from __future__ import annotations

import os
from dataclasses import dataclass
from typing import Any, Optional

from . import core
from ._results import (
    FloatArray,
    PathLike,
    PictureArray,
    Progress,
    Result,
    frozen_array,
    provenance,
    wanted,
    with_options,
)
from .pictures import as_array


def _target(given: Optional[PathLike], own: str) -> str:
    path = os.fspath(given) if given is not None else own
    if not path:
        raise ValueError("path: there is no file to write; name one")
    return path


@dataclass(frozen=True, eq=False)
class SimulatedChart(Result):
    """A rendered photograph of the chart, and the truth about it.

    Attributes
    ----------
    picture : ndarray
        uint8 or uint16, height x width x 3 (R, G, B).
    file : str
        Where `write` puts it.
    centres : ndarray, 24 x 2
        x, y of the patches in pixels.
    rgb : ndarray, 24 x 3
        Linear values as shares of full scale, without vignetting, noise and clipping.
    """

    picture: PictureArray
    file: str
    centres: FloatArray
    rgb: FloatArray

    def write(self, path: Optional[PathLike] = None) -> None:
        """Writes the picture, or the DNG; the name's ending tells the format."""
        target = _target(path, self.file)
        if self.core.dng is not None:
            core.writeWholeFile(target, core.dngOf(self.core))
        else:
            core.writePicture(target, self.core.picture)

    def _repr_png_(self) -> bytes:
        return core.encodePng(core.shrinkPicture(self.core.picture, 900))


def simulate_chart(
    light: str = "D65",
    *,
    size: tuple[int, int] = (1600, 1200),
    file: PathLike = "",
    bits: Optional[int] = None,
    encoding: Optional[str] = None,
    bayer: Optional[str] = None,
    progress: Progress = None,
    **settings: Any,
) -> SimulatedChart:
    """Renders a photograph of the chart, as ``greycard simulate`` does.

    Parameters
    ----------
    light : str
        "A", "D65", "TL84", "D50", "Horizon" or "CoolWhite".
    size : int, int
        Width and height in pixels.
    file : path
        Where it will be written; a name that ends in .dng makes it a raw file.
    bits : int
        8 (default) or 16; of a DNG 10, 12, 14 (default) or 16.
    encoding : str
        "srgb" (default for 8 bits) or "linear" (default for 16 bits and raw files).
    bayer : str
        Pattern of a DNG, as "RGGB"; else it has three channels.
    **settings
        ``sensor``, ``share``, ``offset_x``, ``offset_y``, ``rotation_deg``, ``tilt_deg``,
        ``yaw_deg``, ``surround``, ``exposure``, ``vignetting``, ``blur_px``, ``shot_noise``,
        ``read_noise``, ``seed``, ``black_level``, ``white_level``: see docs/simulate_json.md.

    Examples
    --------
    >>> import greycard
    >>> chart = greycard.simulate_chart("A", size=(640, 480), rotation_deg=12, seed=1)
    >>> chart.picture.shape, chart.rgb.shape
    ((480, 640, 3), (24, 3))
    """
    path = os.fspath(file)
    is_dng = path.lower().endswith(".dng")
    if bayer is not None and not is_dng:
        raise ValueError("bayer: is for a DNG; end the name of `file` in .dng")
    told: dict[str, Any] = {"light": light, "width": size[0], "height": size[1], **settings}
    if not is_dng:
        told |= {"bits": bits, "encoding": encoding}
    elif encoding == "srgb":
        raise ValueError("encoding: the samples of a DNG are linear")
    asked = with_options(core.SimulationSettings(), told)
    if encoding is None:
        asked.encoding = core.defaultEncoding(asked.bits)
    origin = provenance()
    if is_dng:
        form = core.DngForm(bits=14 if bits is None else bits)
        if bayer is not None:
            form.bayer = core.bayerPatternFromName(bayer)
            if form.bayer is None:
                raise ValueError(f'bayer: "{bayer}"; wanted RGGB, BGGR, GRBG or GBRG')
        made: Any = wanted(core.simulateDng(asked, form, path, progress))
    else:
        made = wanted(core.simulateChart(asked, path, progress))
    return SimulatedChart(
        core=made,
        provenance=origin,
        picture=as_array(made.picture),
        file=path,
        centres=frozen_array(made.truth.centres),
        rgb=frozen_array(made.truth.rgb),
    )


@dataclass(frozen=True, eq=False)
class SimulatedFlat(Result):
    """A rendered flat field, whose settings are the truth about it.

    Attributes
    ----------
    picture : ndarray
        uint8 or uint16, height x width.
    file : str
        Where `write` puts it.
    noise_gains : ndarray, 164
        How much stronger the noise is than at the centre, at the radii of a noise table.
    """

    picture: PictureArray
    file: str
    noise_gains: FloatArray

    def write(self, path: Optional[PathLike] = None) -> None:
        """Writes the picture; JPEG would change its noise."""
        core.writePicture(_target(path, self.file), self.core.picture)

    def _repr_png_(self) -> bytes:
        return core.encodePng(core.shrinkPicture(self.core.picture, 900))


def simulate_flat(
    *,
    size: tuple[int, int] = (1600, 1200),
    sigma: float = 3.0,
    gain: float = 2.0,
    level: float = 128.0,
    fall_off: float = 0.0,
    bits: int = 8,
    seed: int = 1,
    file: PathLike = "",
    progress: Progress = None,
) -> SimulatedFlat:
    """Renders a flat field with known noise, as ``greycard simulate --flat`` does.

    Parameters
    ----------
    size : int, int
        Width and height in pixels.
    sigma : float
        Standard deviation at the centre, in code values of 8 bits.
    gain : float
        How many times that in the corners.
    level, fall_off : float
        Mean at the centre; the share by which it is lower in the corners.

    Examples
    --------
    >>> import greycard
    >>> greycard.simulate_flat(size=(64, 48)).picture.shape
    (48, 64)
    """
    told = {
        "width": size[0],
        "height": size[1],
        "center_noise_sigma": sigma,
        "corner_gain": gain,
        "level": level,
        "fall_off": fall_off,
        "bits": bits,
        "seed": seed,
    }
    asked = with_options(core.FlatFieldSettings(), told)
    origin = provenance()
    path = os.fspath(file)
    made: Any = wanted(core.simulateFlatField(asked, path, progress))
    return SimulatedFlat(
        core=made,
        provenance=origin,
        picture=as_array(made.picture),
        file=path,
        noise_gains=frozen_array(made.noiseGains()),
    )
