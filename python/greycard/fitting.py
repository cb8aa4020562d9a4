"""Fits of other things than colour: exposure rules, lightness, white-balance points, skin."""

from __future__ import annotations

import os
from collections.abc import Mapping, Sequence
from dataclasses import dataclass, field
from typing import Any, Optional, Union

import numpy as np
from numpy.typing import ArrayLike

from . import core
from ._results import (
    FloatArray,
    PathLike,
    Progress,
    Result,
    frozen_array,
    page_in_frame,
    provenance,
    with_options,
)
from .charts import Fit, Samples
from .core import present
from .pictures import Image, photograph


@dataclass(frozen=True, eq=False)
class ExposureFit(Result):
    """Parameters of the luma-target rule, and what they reach.

    Attributes
    ----------
    parameters : ndarray, 12
        Those that were found, or of the trial.
    names : tuple of str
        Of the images.
    wanted, reached : ndarray
        A luma target for each image, 0..255.
    """

    parameters: FloatArray
    names: tuple[str, ...]
    wanted: FloatArray
    reached: FloatArray
    job: core.ExposureJob = field(repr=False)

    def plot(self) -> str:
        """The SVG that ``greycard ae --plot`` writes."""
        return present.exposurePlot(self.core)

    def report(self) -> str:
        """The page that ``greycard ae --report`` writes."""
        return present.exposureReport(self.job, self.core, self.provenance)

    def _repr_html_(self) -> str:
        return page_in_frame(self.report())

    def _repr_svg_(self) -> str:
        return self.plot()


def _exposure_image(given: Any) -> Any:
    if isinstance(given, core.ExposureImage):
        return given
    if not isinstance(given, Mapping):
        raise TypeError(
            f"images: {type(given).__name__}; wanted mappings with newTarget and picture"
        )
    told = dict(given)
    picture = told.get("picture")
    if picture is not None and not isinstance(picture, (str, os.PathLike)):
        del told["picture"]
        read = photograph(picture, core.SampleMeaning()).picture
        white = told.pop("white_level", None)
        histograms = core.exposureHistograms(read, read.ceiling() if white is None else white)
        told["hist_CDF"] = histograms.hist_CDF
        told["hist_RGB"] = histograms.hist_RGB
        told.setdefault("curr_luma", histograms.luma)
    job = with_options(core.ExposureJob(), {"images": [told]})
    return job.images[0]


def _exposure_job(images: Any, job: Mapping[str, Any]) -> Any:
    if isinstance(images, (str, os.PathLike)):
        return with_options(present.readExposureJob(images), job)
    asked = with_options(core.ExposureJob(), job)
    asked.images = [_exposure_image(image) for image in images]
    return asked


def _exposure_fit(made: Any, shown: Any, origin: present.Provenance, job: Any) -> ExposureFit:
    return ExposureFit(
        core=made,
        provenance=origin,
        parameters=frozen_array(shown.parameters),
        names=tuple(image.name for image in made.images),
        wanted=frozen_array([image.newTarget for image in made.images]),
        reached=frozen_array(shown.target),
        job=job,
    )


def fit_exposure(
    images: Union[PathLike, Sequence[Any]],
    *,
    seed: int = 1,
    max_evaluations: Optional[int] = None,
    max_seconds: Optional[float] = None,
    progress: Progress = None,
    **job: Any,
) -> ExposureFit:
    """Fits the luma-target rule to the targets wanted for images, as ``greycard ae`` does.

    Parameters
    ----------
    images : path, or list of mappings
        A job in JSON (docs/ae_json.md), or for each image ``newTarget`` and ``picture`` (a file or
        an array), and what else stands there.
    seed : int
        Of the random numbers.
    max_evaluations, max_seconds
        When the search ends; half a million evaluations and no clock, unless told otherwise.
    progress : callable
        Called with the fraction done, 0..1; False ends the search with what it has.
    **job
        ``lowerBound``, ``upperBound``, ``initialBound``, ``initial_parameter``,
        ``parameters_enable``, ``max_drc_gain``, ``ADRC_Enable``.

    Examples
    --------
    >>> import greycard
    >>> photo = greycard.simulate_chart(size=(320, 240)).picture
    >>> images = [{"picture": photo, "newTarget": 70, "name": "chart"}]
    >>> greycard.fit_exposure(images, max_evaluations=500).names
    ('chart',)
    """
    asked = _exposure_job(images, job)
    search = core.exposureSearch()
    told = {"seed": seed, "max_evaluations": max_evaluations, "max_seconds": max_seconds}
    with_options(search, told)
    origin = provenance(search, core.exposureSearch())
    search.progress = progress
    made = core.fitExposure(asked, search)
    return _exposure_fit(made, made.best, origin, asked)


def evaluate_exposure(images: Union[PathLike, Sequence[Any]], **job: Any) -> ExposureFit:
    """The rule as it stands, with ``initial_parameter`` (``greycard ae --manual``)."""
    asked = _exposure_job(images, job)
    origin = provenance(core.exposureSearch(), core.exposureSearch())
    made = core.evaluateExposure(asked)
    return _exposure_fit(made, made.manual, origin, asked)


@dataclass(frozen=True, eq=False)
class LumaMatch(Result):
    """The factor on an encoded sRGB colour that gives it the L* of another."""

    factor: float
    reached: bool


def match_luma(test: Sequence[float], target: Sequence[float], *, seed: int = 1) -> LumaMatch:
    """As ``greycard ae luma-match``; colours are R, G, B from 0 to 255.

    Examples
    --------
    >>> import greycard
    >>> greycard.match_luma((200, 100, 50), (200, 100, 50)).factor
    1.0
    """
    told = {"test": list(test), "target": list(target), "seed": seed}
    asked = with_options(core.LumaMatchOptions(), told)
    origin = provenance()
    made = core.matchLuma(asked)
    return LumaMatch(
        core=made, provenance=origin, factor=made.factor, reached=made.reached()
    )


@dataclass(frozen=True, eq=False)
class WhiteBalanceMapping(Result):
    """White-balance points (R/G, B/G) of one sensor in another sensor's plane.

    Attributes
    ----------
    matrix : ndarray, 2 x 3
        ``matrix @ (rg, bg, 1)`` is the mapped point.
    points, mapped : ndarray, n x 2
    """

    matrix: FloatArray
    points: FloatArray
    mapped: FloatArray

    def csv(self) -> str:
        """A line for each point."""
        return present.wbMapCsv(self.core)

    def report(self) -> str:
        """The page that ``greycard wb-map --report`` writes."""
        return present.wbMapReport(self.core, self.provenance)

    def _repr_html_(self) -> str:
        return page_in_frame(self.report())


def map_white_balance(
    source: ArrayLike, target: ArrayLike, points: ArrayLike = ()
) -> WhiteBalanceMapping:
    """Maps white-balance points by three references, as ``greycard wb-map`` does.

    Parameters
    ----------
    source, target : array, 3 x 2
        R/G and B/G of three references on both sensors.
    points : array, n x 2
        Of the source sensor.

    Raises
    ------
    JobError
        References on one line, or almost.

    Examples
    --------
    >>> import greycard
    >>> places = [(0.45, 0.71), (0.62, 0.55), (0.88, 0.4)]
    >>> greycard.map_white_balance(places, places, [(0.7, 0.5)]).mapped.round(6)
    array([[0.7, 0.5]])
    """
    told = {
        "from": np.asarray(source, np.float64),
        "to": np.asarray(target, np.float64),
        "points": np.asarray(points, np.float64).reshape(-1, 2),
    }
    asked = with_options(core.WhiteBalanceOptions(), told)
    origin = provenance(asked, core.WhiteBalanceOptions())
    made = core.mapWhiteBalance(asked)
    t = made.transform
    matrix = np.array([[t.a, t.b, t.e], [t.c, t.d, t.f]])
    plane = np.array([(p.rg, p.bg) for p in made.points]).reshape(-1, 2)
    mapped = plane @ matrix[:, :2].T + matrix[:, 2]
    return WhiteBalanceMapping(
        core=made,
        provenance=origin,
        matrix=frozen_array(matrix),
        points=frozen_array(plane),
        mapped=frozen_array(mapped),
    )


@dataclass(frozen=True, eq=False)
class SkinCalibration(Result):
    """Where skin falls in a camera's processed colours.

    Attributes
    ----------
    matrix : ndarray, 3 x 3
        The colour correction that was applied.
    upper, lower : ndarray, 3213 x 3
        h, s, y of the synthetic skin colours that each filter let through; 0, 0, 0 of the others.
    warnings : tuple of str
    """

    matrix: FloatArray
    upper: FloatArray
    lower: FloatArray
    warnings: tuple[str, ...]

    def plot(self) -> str:
        """The SVG that ``greycard skin --plot`` writes."""
        return present.skinPlot(self.core)

    def csv(self) -> str:
        """A line for each synthetic colour."""
        return present.skinCsv(self.core)

    def report(self) -> str:
        """The page that ``greycard skin --report`` writes."""
        return present.skinReport(self.core, self.provenance)

    def _repr_html_(self) -> str:
        return page_in_frame(self.report())

    def _repr_svg_(self) -> str:
        return self.plot()


def _measured(chart: Any, locate: Any, dump: Optional[str]) -> tuple[Any, str]:
    # With the file that it came from.
    if isinstance(chart, (str, os.PathLike)):
        layout = None if dump is None else core.dumpLayoutFromText(dump)
        return present.readMeasuredChart(chart, locate, layout), os.fspath(chart)
    if isinstance(chart, Fit):
        made = chart.core if isinstance(chart.core, core.ChartFit) else chart.core.shown(0)
        return (
            core.MeasuredChart(rgb=made.measuredRgb, matrix=made.matrix, light=made.light),
            chart.photo,
        )
    if isinstance(chart, Samples):
        return core.MeasuredChart(rgb=chart.rgb), chart.core.photo
    return core.measureChart(photograph(chart, locate.samples), locate), ""


def calibrate_skin(
    d65: Union[Image, Fit, Samples],
    a: Union[Image, Fit, Samples],
    t84: Union[Image, Fit, Samples],
    *,
    matrix: Union[PathLike, ArrayLike, None] = None,
    matrix_from: str = "",
    gamma: str = "VGammaSRGB",
    dump: Optional[str] = None,
    **options: Any,
) -> SkinCalibration:
    """Where human skin falls in a camera's colours, as ``greycard skin`` tells.

    Parameters
    ----------
    d65, a, t84 : path, ndarray, Fit or Samples
        The chart under three lights: photographs, or what `fit` or its JSON tells of them.
    matrix : path or array, 3 x 3
        Colour correction for all three lights; else that of the fit under T84.
    matrix_from : str
        Names that matrix in the result.
    gamma : str
        The camera's tone curve.
    **options
        As for `detect`, of photographs.

    Examples
    --------
    >>> import greycard
    >>> def photo(light):
    ...     return greycard.simulate_chart(size=(640, 480), light=light).picture
    >>> tl84 = greycard.fit(photo("TL84"), light="TL84")
    >>> greycard.calibrate_skin(photo("D65"), photo("A"), tl84).upper.shape
    (3213, 3)
    """
    locate = with_options(core.LocateOptions(), options)
    asked = core.SkinOptions(gamma=gamma, matrixFrom=matrix_from)
    if isinstance(matrix, (str, os.PathLike)):
        asked.matrix = present.readMatrix(matrix)
        asked.matrixFrom = matrix_from or os.fspath(matrix)
    elif matrix is not None:
        asked.matrix = np.asarray(matrix, np.float64)
    core.cameraGamma(gamma)  # a wrong name is told before charts are looked for
    measured = [_measured(chart, locate, dump) for chart in (d65, a, t84)]
    origin = provenance(asked, core.SkinOptions())
    charts = [chart for chart, _ in measured]
    made = core.calibrateSkin(charts, asked, [file for _, file in measured])
    return SkinCalibration(
        core=made,
        provenance=origin,
        matrix=frozen_array(made.matrix),
        upper=_skin_points(made.upper.points),
        lower=_skin_points(made.lower.points),
        warnings=tuple(made.warnings),
    )


def _skin_points(points: Sequence[Any]) -> FloatArray:
    return frozen_array([(p.h, p.s, p.y) for p in points])
