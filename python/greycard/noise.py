"""Radial noise tables of flat fields."""

from __future__ import annotations

import os
from dataclasses import dataclass
from typing import Any, Optional

from . import core
from ._results import (
    FloatArray,
    PictureArray,
    Result,
    frozen_array,
    page_in_frame,
    provenance,
    with_options,
)
from .core import present
from .pictures import Image, as_array


@dataclass(frozen=True, eq=False)
class NoiseTable(Result):
    """How much stronger the noise is at each of 164 distances from the centre.

    Attributes
    ----------
    centre_sigma : float
        Standard deviation at the centre, in code values of 8 bits.
    factors : ndarray, 164
        From the centre to the corners, times `centre_sigma`.
    advice : tuple of str
    """

    centre_sigma: float
    factors: FloatArray
    advice: tuple[str, ...]

    def plot(self) -> str:
        """The SVG that ``greycard sigma --plot`` writes."""
        return present.sigmaPlot(self.core)

    def map(self) -> PictureArray:
        """The local sigma of every pixel as colours, as ``greycard sigma --map`` has it."""
        return as_array(present.sigmaMap(self.core))

    def csv(self) -> str:
        """A line for each ring."""
        return present.sigmaCsv(self.core)

    def report(self) -> str:
        """The page that ``greycard sigma --report`` writes."""
        return present.sigmaReport(self.core, self.provenance)

    def _repr_html_(self) -> str:
        return page_in_frame(self.report())

    def _repr_svg_(self) -> str:
        return self.plot()


def noise_table(
    plane: Image, *, force: bool = False, name: str = "", **options: Any
) -> NoiseTable:
    """The radial noise table of a flat field, as ``greycard sigma`` makes it.

    Parameters
    ----------
    plane : path or ndarray
        A picture of an even surface, or uint8 or uint16, height x width, in code values of 8 bits.
    force : bool
        Go on with a field that isn't flat or is cut off.
    **options
        ``luma`` ("rec601" or "green") of a colour picture; of a file also ``raw`` (a mapping of
        ``width``, ``height`` and ``bits``), ``black``, ``white`` and ``bits``.

    Raises
    ------
    ColourFlatField, DoubtfulFlatField
        A colour picture without ``luma``; a field that isn't flat.

    Examples
    --------
    >>> import greycard
    >>> flat = greycard.simulate_flat(size=(800, 600), sigma=3, gain=2, seed=1)
    >>> table = greycard.noise_table(flat.picture)
    >>> table.factors.shape, bool(table.factors[-1] > 1.5)
    ((164,), True)
    """
    asked = with_options(core.FlatFieldOptions(), options)
    origin = provenance(asked, core.FlatFieldOptions())
    if isinstance(plane, (str, os.PathLike)):
        field = core.readFlatField(plane, asked)
    else:
        for given in ("raw", "black", "white", "bits"):
            if getattr(asked, given) is not None:
                raise ValueError(f"{given}: is for a file; scale the array instead")
        picture = plane.picture if isinstance(plane, core.Photograph) else plane
        field = core.flatField(picture, asked.luma, name)
    made = core.estimateSigma(field, True)
    if force:
        made.advice = [*made.advice, *made.doubts]
    else:
        made.require()
    return NoiseTable(
        core=made,
        provenance=origin,
        centre_sigma=made.centreNoiseSigma,
        factors=frozen_array(made.lut),
        advice=tuple(made.advice),
    )
