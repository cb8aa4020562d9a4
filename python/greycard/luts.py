"""Hue/saturation tables: made, dragged, shown, applied and inverted."""

from __future__ import annotations

import copy
import os
from collections.abc import Sequence
from dataclasses import dataclass, field
from typing import Any, Optional, Union

from . import core
from ._results import (
    FloatArray,
    PathLike,
    PictureArray,
    Result,
    frozen_array,
    provenance,
    with_options,
    write_text,
)
from .charts import Fit
from .core import present
from .pictures import Image, as_array, photograph


@dataclass(frozen=True, eq=False)
class Drag(Result):
    """What a drag did to a table (``greycard lut2d adjust``)."""

    moved_nodes: int
    cut_nodes: int


@dataclass(frozen=True, eq=False)
class Inversion(Result):
    """How well a table is undone (``greycard lut2d invert``)."""

    uncovered_nodes: int
    worst_hue_error_deg: float
    worst_saturation_error: float


@dataclass(frozen=True, eq=False)
class AppliedLut(Result):
    """A picture before and after a table (``greycard lut2d apply``)."""

    picture: PictureArray
    changed_pixels: int
    applied: Any = field(repr=False)

    def comparison(self) -> PictureArray:
        """Before and after in 8 bits, side by side."""
        return as_array(present.labelledComparison(self.applied))

    def _repr_png_(self) -> bytes:
        return core.encodePng(core.shrinkPicture(present.labelledComparison(self.applied), 900))


@dataclass(frozen=True, eq=False)
class Lut2D(Result):
    """A hue/saturation table: 24 hue rows, 16 saturation columns.

    Attributes
    ----------
    hue_change, saturation_change : ndarray, 24 x 16
        In degrees; in units of saturation, 0..1.
    file : str
        Where it was read from; empty else.
    made : Drag, Inversion or None
        What it came from.

    Examples
    --------
    >>> import greycard
    >>> greens = greycard.Lut2D.new(y_blend=1).adjust((120, 0.5), (-15, 0.05), reach=(3, 6))
    >>> photo = greycard.simulate_chart(size=(320, 240)).picture
    >>> greens.apply(photo).picture.shape
    (240, 320, 3)
    >>> greens.inverse().made.uncovered_nodes >= 0
    True
    """

    hue_change: FloatArray
    saturation_change: FloatArray
    file: str
    made: Union[Drag, Inversion, None]
    table: core.Lut2DConfig = field(repr=False)

    @staticmethod
    def _of(table: core.Lut2DConfig, file: str = "", made: Union[Drag, Inversion, None] = None) -> Lut2D:
        origin = provenance()
        summary = core.summariseLut2d(table)
        return Lut2D(
            core=summary,
            provenance=origin,
            hue_change=frozen_array(table.lut_2d_h).reshape(24, 16),
            saturation_change=frozen_array(table.lut_2d_s).reshape(24, 16),
            file=file,
            made=made,
            table=table,
        )

    @staticmethod
    def new(
        *,
        fade: Sequence[float] = (0.0, 0.0, 1.0, 1.0),
        y_blend: float = 0.0,
        h_shift: int = 2,
        s_shift: int = 2,
    ) -> Lut2D:
        """A table that changes nothing.

        Parameters
        ----------
        fade : four floats
            Lightness, 0..1, where the effect begins to fade in, is full, begins to fade out and is
            gone.
        y_blend : float
            Share of the luma that is restored, 0..1.
        h_shift, s_shift : int
            Hue changes reach 15 degrees, saturation changes 0.25, times 2 to this power.
        """
        told = {"fade": list(fade), "y_blend": y_blend, "h_shift": h_shift, "s_shift": s_shift}
        return Lut2D._of(core.identityLut2d(with_options(core.Lut2dIdentityOptions(), told)))

    @staticmethod
    def read(path: PathLike) -> Lut2D:
        """The table of a JSON file. Raises FileError and JobError."""
        return Lut2D._of(present.readLut2d(path), os.fspath(path))

    def write(self, path: PathLike) -> None:
        """Writes the table as JSON, which ``greycard lut2d`` reads."""
        write_text(path, present.toJson(self.table))

    def adjust(
        self,
        at: tuple[float, float],
        by: tuple[float, float],
        *,
        reach: tuple[int, int] = (1, 1),
        keep_node: bool = False,
    ) -> Lut2D:
        """A table in which a node is dragged; its neighbours follow, the less the farther.

        Parameters
        ----------
        at : float, float
            Hue in degrees and saturation, 0..1, of the colour to drag.
        by : float, float
            The drag in degrees and in saturation.
        reach : int, int
            How many hue rows and saturation columns to each side follow.
        keep_node : bool
            Leave the dragged node itself as it is.

        Raises
        ------
        ValueError
            Numbers outside their ranges.
        """
        options = core.Lut2dDragOptions(
            atHueDeg=at[0],
            atSat=at[1],
            byHueDeg=by[0],
            bySat=by[1],
            rangeRows=reach[0],
            rangeColumns=reach[1],
            keepNode=keep_node,
        )
        origin = provenance()
        table, report = _dragged(self.table, options)
        drag = Drag(
            core=report,
            provenance=origin,
            moved_nodes=report.movedNodes,
            cut_nodes=report.cutNodes,
        )
        return Lut2D._of(table, made=drag)

    def apply(
        self,
        image: Image,
        *,
        bits: Optional[int] = None,
        fit: Optional[Fit] = None,
        name: str = "",
    ) -> AppliedLut:
        """Moves the colours of a picture, which the table does in 10 bits.

        Parameters
        ----------
        image : path or ndarray
            uint8 or uint16, height x width x 3 (R, G, B).
        bits : int
            10 for samples of 0..1023 in 16 bits; else those of the picture.
        fit : Fit
            The photograph goes through its gains, matrix and tone curve first.

        Raises
        ------
        WrongSampleBits
            Samples that `bits` can't hold.
        """
        origin = provenance()
        read = photograph(image, core.SampleMeaning(), name)
        picture = read.picture if fit is None else core.applyFit(read, fit._pipeline())
        made = core.applyLut2d(
            picture, self.table, core.Lut2dApplyOptions(bits=bits), read.file, self.file
        )
        return AppliedLut(
            core=made.report,
            provenance=origin,
            picture=as_array(made.picture()),
            changed_pixels=made.report.changedPixels,
            applied=made,
        )

    def inverse(self) -> Lut2D:
        """The table that undoes this one; `made` tells how well."""
        origin = provenance()
        made = core.invertLut2d(self.table)
        report = made.report
        inversion = Inversion(
            core=report,
            provenance=origin,
            uncovered_nodes=report.uncoveredNodes,
            worst_hue_error_deg=report.roundTrip.hueDeg.worst,
            worst_saturation_error=report.roundTrip.sat.worst,
        )
        return Lut2D._of(made.table, made=inversion)

    def plot(self) -> str:
        """The wheel that ``greycard lut2d show --plot`` writes, as SVG."""
        return present.lut2dWheel(self.table, os.path.basename(self.file))

    def _repr_svg_(self) -> str:
        return self.plot()


def _dragged(table: core.Lut2DConfig, options: Any) -> tuple[core.Lut2DConfig, Any]:
    own = copy.copy(table)
    report = core.dragLut2d(own, options)
    return own, report
