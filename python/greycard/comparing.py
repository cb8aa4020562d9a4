"""Results set side by side, applied to other photographs, and handed to other programs."""

from __future__ import annotations

import copy
import os
from collections.abc import Mapping, Sequence
from dataclasses import dataclass
from typing import Any, Optional, Union

from . import core
from ._results import (
    FloatArray,
    PathLike,
    Progress,
    Result,
    frozen_array,
    page_in_frame,
    provenance,
    wanted,
    with_options,
)
from .charts import BestFit, Evaluation, Fit, read_fit
from .core import exchange, present
from .curves import Curve
from .luts import Lut2D
from .noise import NoiseTable
from .pictures import Image, photograph


@dataclass(frozen=True, eq=False)
class Comparison(Result):
    """Two fits or evaluations side by side.

    Attributes
    ----------
    delta_e_a, delta_e_b : ndarray, 24
        CIEDE2000 of each to its reference.
    delta_e_between : ndarray, 24
        Of the colours of the second to those of the first.
    """

    delta_e_a: FloatArray
    delta_e_b: FloatArray
    delta_e_between: FloatArray

    def report(self) -> str:
        """The page that ``greycard compare --report`` writes."""
        return present.comparisonReport(self.core, self.provenance)

    def _repr_html_(self) -> str:
        return page_in_frame(self.report())


def _judged(result: Union[PathLike, Fit, Evaluation]) -> Any:
    if isinstance(result, (str, os.PathLike)):
        return present.readJudgedChart(result)
    made = result.core
    if isinstance(result, Evaluation):
        return present.JudgedChart(
            photo=made.photo,
            kind="evaluation",
            light=made.light,
            lab=made.measuredLab,
            referenceLab=made.referenceLab,
            errors=made.errors,
        )
    shown = made.shown(0) if isinstance(result, BestFit) else made
    return present.JudgedChart(
        photo=shown.photo,
        kind="best fit" if isinstance(result, BestFit) else "fit",
        light=shown.light,
        lab=shown.correctedLab,
        referenceLab=shown.fit.m_targetLab,
        errors=shown.after,
        matrix=shown.matrix,
        whiteBalance=shown.whiteBalance,
    )


def compare(
    a: Union[PathLike, Fit, Evaluation], b: Union[PathLike, Fit, Evaluation]
) -> Comparison:
    """Two results about a chart side by side, as ``greycard compare`` sets them.

    Parameters
    ----------
    a, b : Fit, Evaluation or path
        Results, or files of their JSON.

    Examples
    --------
    >>> import greycard
    >>> photo = greycard.simulate_chart(size=(800, 600), light="A").picture
    >>> both = greycard.compare(greycard.evaluate(photo, "A"), greycard.fit(photo, "A"))
    >>> bool(both.delta_e_b.mean() < both.delta_e_a.mean())
    True
    """
    origin = provenance()
    made = present.ChartComparison(_judged(a), _judged(b))
    return Comparison(
        core=made,
        provenance=origin,
        delta_e_a=frozen_array(made.a.errors.ciede2000.patch),
        delta_e_b=frozen_array(made.b.errors.ciede2000.patch),
        delta_e_between=frozen_array(made.between.ciede2000.patch),
    )


@dataclass(frozen=True, eq=False)
class ProfilePoint:
    """Gains and matrix for a light between those of a profile."""

    kelvin: float
    matrix: FloatArray
    gains: FloatArray
    exposure: float


@dataclass(frozen=True, eq=False)
class Profile(Result):
    """A camera under several lights, from the warmest to the coolest.

    Attributes
    ----------
    lights : tuple of str
    kelvin : ndarray
        Colour temperature of each.
    mean_delta_e : ndarray, n x n
        CIEDE2000 of [matrix][light].
    warnings : tuple of str
    """

    lights: tuple[str, ...]
    kelvin: FloatArray
    mean_delta_e: FloatArray
    warnings: tuple[str, ...]

    def at(self, kelvin: float) -> ProfilePoint:
        """Gains and matrix for a light of this colour temperature, 1000..25000 K."""
        point = core.profileAt(self.core, kelvin)
        return ProfilePoint(
            kelvin=point.kelvin,
            matrix=frozen_array(point.matrix),
            gains=frozen_array(point.whiteBalance),
            exposure=point.exposure,
        )


def profile(
    lights: Mapping[str, Union[Image, Fit]],
    *,
    kelvin: Optional[Mapping[str, float]] = None,
    progress: Progress = None,
    **options: Any,
) -> Profile:
    """Fits a camera under several lights, as ``greycard profile`` does.

    Parameters
    ----------
    lights : mapping
        A photograph of the chart or a `Fit`, by the light's name.
    kelvin : mapping
        Colour temperatures by the light's name, where they are known better than by it.
    **options
        As for `fit`, of the photographs.

    Examples
    --------
    >>> import greycard
    >>> photos = {
    ...     light: greycard.simulate_chart(light, size=(640, 480)).picture for light in ("A", "D65")
    ... }
    >>> both = greycard.profile(photos)
    >>> both.lights, both.at(4000).matrix.shape
    (('A', 'D65'), (3, 3))
    """
    asked = with_options(core.ChartFitOptions(), options)
    origin = provenance(asked, core.ChartFitOptions())
    fits = []
    for name, given in lights.items():
        known = None if kelvin is None else kelvin.get(name)
        own = with_options(copy.copy(asked), {"light": name})
        if isinstance(given, Fit):
            made = given.core.shown(0) if isinstance(given, BestFit) else given.core
            if made.light != own.light:
                raise ValueError(
                    f"{name}: the fit is one under {core.illumName(made.light)}, not {name}"
                )
        else:
            made = wanted(core.fitChart(photograph(given, own.locate.samples), own, progress))
        fits.append(core.LightFit(fit=made, kelvin=known))
    whole = core.profileOf(fits)
    return Profile(
        core=whole,
        provenance=origin,
        lights=tuple(core.illumName(light.fit.light) for light in whole.lights),
        kelvin=frozen_array([light.kelvin for light in whole.lights]),
        mean_delta_e=frozen_array([[one.mean for one in row] for row in whole.errors]),
        warnings=tuple(whole.warnings),
    )


@dataclass(frozen=True, eq=False)
class Applied(Result):
    """What a fit made of photographs: the file of each, or why there is none."""

    outputs: tuple[str, ...]
    failures: dict[str, str]

    def _json(self) -> str:
        return present.toJson(list(self.core))


def apply(
    photos: Sequence[PathLike],
    fit: Union[Fit, PathLike],
    folder: PathLike,
    *,
    curve: Optional[str] = None,
    lut: Optional[Lut2D] = None,
) -> Applied:
    """Corrects photographs of a camera with a fit, into a folder, as ``greycard apply`` does.

    Parameters
    ----------
    photos : list of paths
        Photographs, raw or not; what is wrong with one doesn't stop the others.
    fit : Fit or path
        Or the file of its JSON.
    folder : path
        Each becomes NAME.png there.
    curve : str
        Another tone curve than the fit's.
    lut : Lut2D
        A hue/saturation table that is applied to the result.

    Examples
    --------
    >>> import greycard
    >>> greycard.simulate_chart("A", size=(640, 480), file="chart.png").write()
    >>> done = greycard.apply(["chart.png"], greycard.fit("chart.png", "A"), "corrected")
    >>> done.outputs, done.failures
    (('corrected/chart.png',), {})
    """
    origin = provenance()
    known = fit if isinstance(fit, Fit) else read_fit(fit)
    pipeline = known._pipeline()
    options = core.ApplyFitOptions(
        gamma=None if curve is None else core.cameraGamma(curve),
        lut2d=None if lut is None else lut.table,
    )
    outputs = core.resultPaths(photos, folder)
    os.makedirs(folder, exist_ok=True)
    done = core.applyFitToFiles(photos, outputs, pipeline, options)
    assert done is not None  # without progress nothing cancels
    return Applied(
        core=tuple(done),
        provenance=origin,
        outputs=tuple(one.output for one in done if not one.failure),
        failures={one.photo: one.failure for one in done if one.failure},
    )


Exportable = Union[Fit, Sequence[Fit], Profile, Curve, Lut2D, NoiseTable]


def _material(thing: Exportable) -> Any:
    if isinstance(thing, Curve):
        return core.curveTables(thing.curve)
    if isinstance(thing, Lut2D):
        return thing.table
    if isinstance(thing, NoiseTable):
        return thing.core
    if isinstance(thing, Profile):
        return exchange.FittedCamera(
            lights=[exchange.fittedLight(one.fit, one.kelvin) for one in thing.core.lights]
        )
    fits = [thing] if isinstance(thing, Fit) else list(thing)
    made = [one.core.shown(0) if isinstance(one, BestFit) else one.core for one in fits]
    if any(isinstance(one, BestFit) and len(one.core.best.toneCurve) > 0 for one in fits):
        raise ValueError(
            "these formats have no place for the photograph's own tone curve, which the fit holds"
        )
    return exchange.FittedCamera(lights=[exchange.fittedLight(one) for one in made])


def export(
    thing: Exportable,
    format: str,
    path: PathLike,
    *,
    camera: str = "",
    linear: bool = False,
) -> tuple[str, ...]:
    """Writes a file for another program, as ``--export FORMAT=FILE`` of the command does.

    Parameters
    ----------
    thing : Fit, list of Fit, Profile, Curve, Lut2D or NoiseTable
    format : str
        As in "cube33", "icc", "dcp" or "rpi": see docs/exports.md.
    camera : str
        The camera's name as its raw files tell it.
    linear : bool
        3D LUT and profile take linear R, G, B.

    Returns
    -------
    tuple of str
        What is to be said of the file.

    Raises
    ------
    ValueError
        A format that is unknown or can't be made of this; the text lists those that can.

    Examples
    --------
    >>> import greycard
    >>> notes = greycard.export(greycard.curve("VOutdoor"), "cube1d", "outdoor.cube")
    """
    options = exchange.ExportOptions(camera=camera, linearInput=linear)
    made = exchange.exportAs(format, _material(thing), options)
    core.writeWholeFile(path, made.bytes)
    return tuple(made.notes)
