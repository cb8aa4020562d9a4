"""Tone curves: of the catalogue, from files, made, shown and written."""

from __future__ import annotations

import os
from collections.abc import Sequence
from dataclasses import dataclass, field
from typing import Any, Optional, Union

from . import core
from ._results import (
    FloatArray,
    IntArray,
    PathLike,
    Result,
    frozen_array,
    provenance,
    with_options,
    write_text,
)
from .core import present

_CHANNELS = {"all": "All", "red": "Red", "green": "Green", "blue": "Blue"}


def _channel(name: str) -> Any:
    if name not in _CHANNELS:
        raise ValueError(f'channel: "{name}"; wanted one of {", ".join(_CHANNELS)}')
    return getattr(core.CurveChannel, _CHANNELS[name])


def _against(other: Union[str, Curve, None]) -> Any:
    if other is None:
        return None
    if isinstance(other, Curve):
        return core.curveTables(other.curve)
    return core.comparisonCurve(other).curve


def _points(points: Sequence[Any]) -> IntArray:
    return frozen_array([(p.X, p.Y) for p in points], "int32").reshape(-1, 2)


@dataclass(frozen=True, eq=False)
class Curve(Result):
    """A tone curve: 14-bit codes over equal steps of linear input.

    Attributes
    ----------
    name : str
    table : ndarray of int32
        1024 codes of the channel that is shown.
    points : ndarray of int32, n x 2
        Control points X (index / 4), Y (code / 64), or samples of the table.
    points_are_samples : bool
        The curve has no control points of its own.
    notes : tuple of str
        What its file held that could not be used or may surprise.
    curve : greycard.core.GammaCurve
        With the tables of all channels.
    """

    name: str
    channel: str
    table: IntArray
    points: IntArray
    points_are_samples: bool
    notes: tuple[str, ...]
    curve: core.GammaCurve = field(repr=False)

    def plot(self, against: Union[str, Curve, None] = None) -> str:
        """The SVG that ``greycard gamma show --plot`` writes.

        Parameters
        ----------
        against : str or Curve
            A second curve, drawn in dashes: a name, "HDR10", "HLG", or a file.
        """
        return present.curvePlot(self.curve, self.core, _against(against))

    def _repr_svg_(self) -> str:
        return self.plot()

    def control_points(
        self, within: Optional[float] = None, *, channel: str = "all"
    ) -> ControlPoints:
        """Control points made of the table, as ``greycard gamma points`` makes them.

        Parameters
        ----------
        within : float
            The fewest whose curve stays within so many percent of full scale; else as an editor
            starts from them.
        """
        origin = provenance()
        if within is None:
            made = core.reduceToControlPoints(self.curve, _channel(channel))
        else:
            made = core.fewestPointsOf(self.curve, within, _channel(channel))
        return ControlPoints(
            core=made,
            provenance=origin,
            name=made.name,
            points=_points(made.points),
            largest_deviation=made.largestDeviation,
        )

    def lut(
        self, kind: str = "255", *, channel: str = "all", bits: Optional[int] = None
    ) -> CurveLut:
        """A look-up table: "255", "255-14bit", "norm" or "12bit" (``greycard gamma lut``).

        Examples
        --------
        >>> import greycard
        >>> greycard.curve("VOutdoor").lut("12bit").values.shape
        (4096,)
        """
        told = {"kind": kind, "channel": channel, "bits": bits}
        asked = with_options(core.CurveLutOptions(), told)
        origin = provenance()
        made = core.buildCurveLut(self.curve, asked)
        return CurveLut(core=made, provenance=origin, values=frozen_array(made.values))

    def degamma(self, colour: Sequence[float]) -> LinearInputs:
        """The inputs at which the curve gives an encoded colour, 0..255 (``gamma degamma``)."""
        origin = provenance()
        made = core.degammaColour(self.curve, colour)
        return LinearInputs(
            core=made,
            provenance=origin,
            positions=frozen_array(made.positions),
            curve=self.curve,
        )

    def inverted(self) -> Curve:
        """The curve that undoes this one, which must not fall anywhere."""
        return _curve(core.invertedCurve(self.curve), "all", ())


@dataclass(frozen=True, eq=False)
class ControlPoints(Result):
    """Control points made of a curve's table."""

    name: str
    points: IntArray
    largest_deviation: int

    def plot(self, against: Union[str, Curve, None] = None) -> str:
        """The SVG that ``greycard gamma points --plot`` writes."""
        return present.curvePlot(self.core, _against(against))

    def _repr_svg_(self) -> str:
        return self.plot()


@dataclass(frozen=True, eq=False)
class CurveLut(Result):
    """A look-up table made of a curve."""

    values: FloatArray

    def text(self) -> str:
        """The values for a file, one a line."""
        return core.lutText(self.core)


@dataclass(frozen=True, eq=False)
class LinearInputs(Result):
    """The inputs behind an encoded colour, as entries 1 to 256 of the curve's tables."""

    positions: FloatArray
    curve: core.GammaCurve = field(repr=False)

    def plot(self, against: Union[str, Curve, None] = None) -> str:
        """The SVG that ``greycard gamma degamma --plot`` writes."""
        return present.curvePlot(self.core, core.curveTables(self.curve), _against(against))

    def _repr_svg_(self) -> str:
        return self.plot()


def _curve(
    made: core.GammaCurve, channel: str, notes: Sequence[str], points: int = 17
) -> Curve:
    origin = provenance()
    asked = core.ShowCurveOptions(channel=_channel(channel), points=points)
    shown = core.showCurve(made, asked)
    return Curve(
        core=shown,
        provenance=origin,
        name=shown.name,
        channel=channel,
        table=frozen_array(shown.table, "int32"),
        points=_points(shown.points),
        points_are_samples=shown.pointsAreSamples,
        notes=tuple(notes),
        curve=made,
    )


def curve(name: str, *, channel: str = "all", points: int = 17) -> Curve:
    """A tone curve of the catalogue, "HDR10" or "HLG", as ``greycard gamma show`` shows it.

    Parameters
    ----------
    name : str
        See `curves`.
    channel : str
        "all", "red", "green" or "blue".
    points : int
        Samples of a curve without control points, 2..256.

    Raises
    ------
    JobError
        A name that the catalogue hasn't, with the nearest that it has.

    Examples
    --------
    >>> import greycard
    >>> outdoor = greycard.curve("VOutdoor")
    >>> outdoor.table.shape, int(outdoor.table[-1])
    ((1024,), 16383)
    >>> outdoor.plot().startswith("<svg")
    True
    """
    source = core.curveByNameOrFile(name)
    return _curve(source.curve, channel, source.notes, points)


def read_curve(path: PathLike, *, channel: str = "all", points: int = 17) -> Curve:
    """The curve of a file: a curve file, ``.cube``, CSV, JSON, YAML, C arrays or plain numbers.

    Raises
    ------
    CurveFileRefused
        With file, line and column; `notes` has what else there is to say.
    FileError
        The file can't be read.

    Examples
    --------
    >>> import greycard
    >>> greycard.write_curve(greycard.power_curve(2.2), "power.txt").file
    'power.txt'
    >>> greycard.read_curve("power.txt").name
    'power'
    """
    name = os.fspath(path)
    if not os.path.exists(name):
        core.readWholeFile(name)  # which says so
    return curve(name, channel=channel, points=points)


def power_curve(denominator: float) -> Curve:
    """Output = input^(1 / denominator), 0.1..10."""
    return _curve(core.powerCurve(denominator), "all", ())


def merge_curves(name: str, red: Curve, green: Curve, blue: Curve) -> Curve:
    """One curve with the red table of the first, the green of the second, the blue of the third."""
    return _curve(core.mergedCurve(name, red.curve, green.curve, blue.curve), "all", ())


@dataclass(frozen=True, eq=False)
class WrittenCurve(Result):
    """A curve file that was written."""

    file: str


def write_curve(
    curve: Union[str, Curve], path: PathLike, *, size: int = 1024, bits: int = 14
) -> WrittenCurve:
    """Writes a curve file, as ``greycard gamma export`` does.

    Parameters
    ----------
    curve : Curve or str
        Or the name of one.
    size : int
        Values of a table: 64, 256, 512 or 1024.
    bits : int
        Of a value: 8, 10, 12 or 14.
    """
    source = curve.curve if isinstance(curve, Curve) else core.curveByNameOrFile(curve).curve
    form = core.CurveFileForm(values=size, bits=bits)
    origin = provenance()
    made = core.exportCurve(source, path, form)
    return WrittenCurve(core=made, provenance=origin, file=made.file)


@dataclass(frozen=True, eq=False)
class CurveList(Result):
    """The curves of the catalogue."""

    names: tuple[str, ...]


def curves() -> CurveList:
    """The catalogue, as ``greycard gamma list`` lists it.

    Examples
    --------
    >>> import greycard
    >>> "VGammaSRGB" in greycard.curves().names
    True
    """
    origin = provenance()
    made = core.listCurves(core.GammaCurveModel(True))
    return CurveList(
        core=made, provenance=origin, names=tuple(one.name for one in made.curves)
    )


@dataclass(frozen=True, eq=False)
class ImportedCurves(Result):
    """What files of curves held.

    Attributes
    ----------
    curves : tuple of Curve
        One for each file that gives one.
    refused : dict
        Reason by file, of the others.
    """

    curves: tuple[Curve, ...]
    refused: dict[str, str]

    def _repr_svg_(self) -> str:
        return present.curvePlot(self.core)


def import_curves(files: Sequence[PathLike], *, from_points: bool = False) -> ImportedCurves:
    """Reads files of curves, as ``greycard gamma import`` does.

    Parameters
    ----------
    from_points : bool
        Compute each curve from the control points of its file, whatever its table says.
    """
    origin = provenance()
    catalogue = core.GammaCurveModel(True)
    options = core.CurveImportOptions(fromPoints=from_points)
    made = core.importCurves(catalogue, [os.fspath(file) for file in files], options)
    curves = tuple(
        _curve(
            catalogue.GetGammaCurveByName(one.curve.name),
            "all",
            [core.noteText(one.file, note) for note in one.notes],
        )
        for one in made.curves
    )
    refused = {one.file: one.reason for one in made.refused}
    return ImportedCurves(core=made, provenance=origin, curves=curves, refused=refused)


@dataclass(frozen=True, eq=False)
class StandardCurve(Result):
    """257 output codes of 10 bits over linear inputs of 12 bits."""

    name: str
    inputs: IntArray
    table: IntArray

    def plot(self, against: Union[str, Curve, None] = None) -> str:
        """The SVG that ``greycard gamma hdr10 --plot`` writes."""
        return present.curvePlot(self.core, _against(against))

    def write(self, path: PathLike) -> None:
        """The codes in a file, one a line."""
        write_text(path, core.codesText(self.core))

    def _repr_svg_(self) -> str:
        return self.plot()


def standard_curve(name: str = "HDR10", *, nits: int = 10000) -> StandardCurve:
    """The perceptual quantiser ("HDR10") up to a peak luminance, or "HLG".

    Examples
    --------
    >>> import greycard
    >>> greycard.standard_curve("HLG").table.shape
    (257,)
    """
    told = {"name": name, "nits": nits}
    asked = with_options(core.StandardCurveOptions(), told)
    origin = provenance()
    made = core.standardCurve(asked)
    return StandardCurve(
        core=made,
        provenance=origin,
        name=name,
        inputs=frozen_array(made.inputs, "int32"),
        table=frozen_array(made.table, "int32"),
    )
