"""The colour chart: found, sampled, judged, and fits to it."""

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
    PictureArray,
    Progress,
    Result,
    frozen_array,
    page_in_frame,
    provenance,
    wanted,
    with_options,
)
from .core import present
from .pictures import Image, as_array, meaning, photograph



def _read(image: Image, locate: Any, name: str, dump: Optional[str]) -> Any:
    return photograph(image, locate.samples, name, dump)


@dataclass(frozen=True, eq=False)
class Detection(Result):
    """A chart in a photograph, found or given.

    Attributes
    ----------
    photo : str
        The file, or the name that was given.
    size : tuple of int
        Width and height of the photograph in pixels.
    regions : ndarray, 24 x 4
        Left, top, width and height of an upright square in each patch, in pixels.
    patches : ndarray, 24 x 4 x 2
        x, y of each patch's corners: upper left, upper right, lower right, lower left of the
        upright chart.
    centres : ndarray, 24 x 2
        x, y of the patches' centres.
    doubts : tuple of str
        Signs that these are not the patches of a chart.
    """

    photo: str
    size: tuple[int, int]
    regions: FloatArray
    patches: FloatArray
    centres: FloatArray
    doubts: tuple[str, ...]
    picture: core.Picture = field(repr=False)

    def annotated(self) -> PictureArray:
        """The photograph with the patches drawn, as ``greycard chart --annotate`` has it."""
        chart = self.core.chart
        if chart.detection is not None:
            return as_array(present.annotateDetection(self.picture, chart.detection))
        return as_array(
            present.annotatePatches(self.picture, chart.patches, chart.check.outliers)
        )

    def write_regions(self, path: PathLike, *, quads: bool = False) -> None:
        """The region file that ``greycard chart -o`` writes; with `quads` one of corners."""
        chart = self.core.chart
        if quads:
            core.writeQuads(path, chart.patches)
        else:
            core.writeRegions(path, chart.regions)

    def _repr_png_(self) -> bytes:
        return core.encodePng(core.shrinkPicture(core.Picture(self.annotated()), 900))


def _detection(search: Any, origin: present.Provenance, picture: core.Picture) -> Detection:
    chart = search.chart
    patches = np.asarray(chart.patches)
    return Detection(
        core=search,
        provenance=origin,
        photo=search.photo,
        size=(search.width, search.height),
        regions=frozen_array(chart.regions),
        patches=frozen_array(patches),
        centres=frozen_array(patches.mean(axis=1)),
        doubts=tuple(chart.doubts()),
        picture=picture,
    )


def detect(
    image: Image, *, name: str = "", dump: Optional[str] = None, **options: Any
) -> Detection:
    """Finds the 24-patch chart in a photograph, as ``greycard chart`` does.

    Parameters
    ----------
    image : path or ndarray
        A photograph of any kind, or uint8 or uint16, height x width x 3 (R, G, B).
    name : str
        Names an array in messages and results.
    dump : str
        WIDTHxHEIGHT:BITS:PATTERN of a file of samples without a header.
    **options
        Any option of the command by its name in JSON: ``encoding`` ("srgb" or "linear"),
        ``black``, ``white``, ``regions`` (a file), ``corners`` (four x, y at patches 1, 6, 24 and
        19), ``corners_of``, ``method``, ``within`` (left, top, width, height of the part to look
        in: see `detect_all`), ``sampled_share``, ``force``.

    Raises
    ------
    NoChart, DoubtfulChart
        There is none, or it is in doubt and not forced.
    ValueError
        An option that is unknown or can't be.

    Examples
    --------
    >>> import greycard
    >>> photo = greycard.simulate_chart(size=(800, 600), light="A").picture
    >>> greycard.detect(photo).regions.shape
    (24, 4)
    """
    locate = with_options(core.LocateOptions(), options)
    origin = provenance(locate, core.LocateOptions())
    read = _read(image, locate, name, dump)
    search = core.searchChart(read, locate)
    search.require()
    return _detection(search, origin, read.picture)


@dataclass(frozen=True, eq=False)
class Detections(Result):
    """All charts in a photograph, surest first.

    Attributes
    ----------
    within : ndarray, n x 4
        Left, top, width and height of the part that holds each chart: ``within`` of every function
        that looks for one.
    """

    within: FloatArray
    picture: core.Picture = field(repr=False)

    def annotated(self) -> PictureArray:
        """The photograph with all charts' patches drawn."""
        return as_array(present.annotateDetections(self.picture, self.core.charts))


def detect_all(
    image: Image, *, name: str = "", dump: Optional[str] = None, **options: Any
) -> Detections:
    """Finds every chart in a photograph, as ``greycard chart --all`` does; there may be none.

    Parameters
    ----------
    image, name, dump, **options
        As `detect`, without ``regions`` and ``corners``.

    Examples
    --------
    >>> import greycard, numpy
    >>> photo = greycard.simulate_chart(size=(400, 300)).picture
    >>> both = numpy.hstack([photo, photo])
    >>> found = greycard.detect_all(both)
    >>> len(found.within), greycard.fit(both, within=found.within[1]).matrix.shape
    (2, (3, 3))
    """
    locate = with_options(core.LocateOptions(), options)
    origin = provenance(locate, core.LocateOptions())
    read = _read(image, locate, name, dump)
    found = core.searchCharts(read, locate)
    within = [
        (part.left, part.top, part.width, part.height)
        for part in map(core.surroundings, found.charts)
    ]
    return Detections(
        core=found,
        provenance=origin,
        within=frozen_array(np.reshape(within, (-1, 4))),
        picture=read.picture,
    )


@dataclass(frozen=True, eq=False)
class Samples:
    """What a camera measured of a chart.

    Attributes
    ----------
    rgb : ndarray, 24 x 3
        Mean linear R, G, B of each patch, 0..1.
    noise : ndarray, 24 x 3
        Standard deviation of a pixel.
    clipped : tuple of int
        Patches, 1..24, that ran into an end of the scale.
    """

    core: Any = field(repr=False)
    rgb: FloatArray
    noise: FloatArray
    clipped: tuple[int, ...]


def _located(image: Any, regions: Any, levels: Any) -> Any:
    if isinstance(regions, Detection):
        return regions.core.chart
    if isinstance(regions, (str, os.PathLike)):
        options = core.LocateOptions(samples=levels, regions=os.fspath(regions), force=True)
        return core.locateChart(image.picture, options, image.file)
    numbers = np.asarray(regions, dtype=np.float64)
    if numbers.shape == (24, 4):
        return core.LocatedChart(
            regions=numbers, patches=core.quadsOf(numbers), upright=True, sampledShare=1.0
        )
    if numbers.shape == (24, 4, 2):
        return core.LocatedChart(patches=numbers)
    raise ValueError(
        f"regions: an array of {' x '.join(map(str, numbers.shape))}; wanted a Detection, a region "
        "file, 24 x 4 (left, top, width, height) or 24 x 4 x 2 (the corners)"
    )


def sample(
    image: Image,
    regions: Union[Detection, PathLike, ArrayLike],
    levels: Union[Mapping[str, Any], Any, None] = None,
    *,
    name: str = "",
    dump: Optional[str] = None,
) -> Samples:
    """Samples the 24 patches of a photographed chart.

    Parameters
    ----------
    image : path or ndarray
        As for `detect`.
    regions : Detection, path or array
        What `detect` gave, a region file, 24 x 4 (left, top, width, height; sampled whole), or
        24 x 4 x 2 (the corners of each patch; the middle of it is sampled).
    levels : mapping
        What samples mean: ``encoding`` ("srgb" or "linear"), ``black`` and ``white``; what is left
        out follows from the bits.

    Raises
    ------
    ValueError
        Regions outside the photograph, or levels without meaning.

    Examples
    --------
    >>> import greycard
    >>> photo = greycard.simulate_chart(size=(800, 600)).picture
    >>> measured = greycard.sample(photo, greycard.detect(photo))
    >>> measured.rgb.shape, measured.clipped
    ((24, 3), ())
    """
    told = dict(levels or {})
    unknown = set(told) - {"encoding", "black", "white"}
    if unknown:
        raise ValueError(
            f'levels: there is no "{sorted(unknown)[0]}"; known: encoding, black, white'
        )
    samples = meaning(told.get("encoding"), told.get("black"), told.get("white"))
    read = photograph(image, samples, name, dump)
    taken = core.sampleChart(read, _located(read, regions, read.samples))
    return Samples(
        core=taken,
        rgb=frozen_array(taken.measuredRgb),
        noise=frozen_array(taken.measuredNoise),
        clipped=tuple(int(patch) + 1 for patch in taken.sampling.clippedPatches()),
    )


@dataclass(frozen=True, eq=False)
class Fit(Result):
    """White-balance gains and a colour-correction matrix, and how good they are.

    Attributes
    ----------
    photo : str
    light : str
        As in "D65".
    matrix : ndarray, 3 x 3
        Rows sum to 1; ``matrix @ rgb`` of balanced R, G, B.
    gains : ndarray, 3
        White-balance gains of R, G, B.
    exposure : float
        Exposure gain.
    measured, corrected_lab, reference_lab : ndarray, 24 x 3
        Linear R, G, B as the camera gave them; L*, a*, b* after the correction; what was aimed at.
    delta_e : ndarray, 24
        CIEDE2000 of each patch after the correction.
    warnings : tuple of str
    """

    photo: str
    light: str
    matrix: FloatArray
    gains: FloatArray
    exposure: float
    measured: FloatArray
    corrected_lab: FloatArray
    reference_lab: FloatArray
    delta_e: FloatArray
    warnings: tuple[str, ...]
    picture: Optional[core.Picture] = field(repr=False)
    samples: Any = field(repr=False)

    @property
    def mean_delta_e(self) -> float:
        """Mean CIEDE2000 over the chart."""
        return float(self.delta_e.mean())

    def apply(self, image: Image, *, name: str = "", dump: Optional[str] = None) -> PictureArray:
        """A photograph of the same camera through gains, matrix and tone curve, in 8 bits."""
        return as_array(core.applyFit(_again(image, self.samples, name, dump), self._pipeline()))

    def corrected(self) -> PictureArray:
        """The photograph that was fitted, corrected."""
        return as_array(core.correctedPhotograph(self._picture(), self.core, samples=self.samples))

    def report(self) -> str:
        """The page that ``greycard ccm --report`` writes."""
        return present.fitReport(self.core, self._picture(), self.provenance)

    def _repr_html_(self) -> Optional[str]:
        return None if self.picture is None else page_in_frame(self.report())

    def _picture(self) -> core.Picture:
        if self.picture is None:
            raise ValueError("the fit was made of samples, not of a photograph that can be shown")
        return self.picture

    def _pipeline(self) -> Any:
        return core.pipelineOf(self.core)


@dataclass(frozen=True, eq=False)
class BestFit(Fit):
    """The best fit to photographs of the chart, beside the stated one.

    The attributes of `Fit` are the first photograph's. Beside them:

    Attributes
    ----------
    stated : tuple of Fit
        The stated fit to each photograph.
    leave_one_out : float or None
        Mean CIEDE2000 of patches that took no part.
    row_noise : ndarray, 3
        Noise amplification of the matrix's rows.
    """

    stated: tuple[Fit, ...]
    leave_one_out: Optional[float]
    row_noise: FloatArray


def _again(image: Image, samples: Any, name: str, dump: Optional[str]) -> Any:
    # Another photograph is taken as its kind says; an array as the one that was fitted.
    is_file = isinstance(image, (str, os.PathLike))
    return photograph(image, core.SampleMeaning() if is_file else samples, name, dump)


def _figures(shown: Any) -> dict[str, Any]:
    return {
        "photo": shown.photo,
        "light": core.illumName(shown.light),
        "matrix": frozen_array(shown.matrix),
        "gains": frozen_array(shown.whiteBalance),
        "exposure": shown.exposure,
        "measured": frozen_array(shown.measuredRgb),
        "corrected_lab": frozen_array(shown.correctedLab),
        "reference_lab": frozen_array(shown.fit.m_targetLab),
        "delta_e": frozen_array(shown.after.ciede2000.patch),
        "warnings": tuple(shown.warnings),
    }


def fit(
    image: Union[Image, Samples],
    light: str = "D65",
    *,
    progress: Progress = None,
    name: str = "",
    dump: Optional[str] = None,
    **options: Any,
) -> Fit:
    """Fits white-balance gains and a colour-correction matrix, as ``greycard ccm`` does.

    Parameters
    ----------
    image : path, ndarray or Samples
        A photograph of the chart, or what `sample` measured of one.
    light : str
        "A", "D65", "TL84", "D50", ...
    progress : callable
        Called now and then with the fraction done, 0..1; False cancels.
    name, dump
        As for `detect`.
    **options
        Those of `detect`, and ``gamma``, ``delta_e`` ("CIE76" or "CIE94"), ``transform``,
        ``rgb_to_xyz``, ``xyz_to_rgb``, ``exposure``, ``exposure_gain``, ``noise_rate``,
        ``saturation``, ``sat``, ``hue``, ``white_patches``, ``reference_lab``,
        ``reference_srgb``: see docs/ccm_json.md.

    Raises
    ------
    NoChart, DoubtfulChart, JobError, FileError
        A photograph that nothing can be fitted to; the text says why.
    ValueError
        An option that is unknown or can't be.
    Cancelled
        The callable cancelled.

    Examples
    --------
    >>> import greycard
    >>> photo = greycard.simulate_chart(size=(800, 600), light="A").picture
    >>> result = greycard.fit(photo, light="A")
    >>> result.matrix.sum(axis=1).round(6)
    array([1., 1., 1.])
    >>> greycard.fit(photo, light="B")
    Traceback (most recent call last):
    ...
    ValueError: there is no light "B"; did you mean "A"? ...
    """
    asked = with_options(core.ChartFitOptions(), {"light": light, **options})
    origin = provenance(asked, core.ChartFitOptions())
    if isinstance(image, Samples):
        made: Any = wanted(core.fitChart(image.core, asked, progress))
        picture, samples = None, core.SampleMeaning()
    else:
        read = _read(image, asked.locate, name, dump)
        made = wanted(core.fitChart(read, asked, progress))
        picture, samples = read.picture, read.samples
    return Fit(core=made, provenance=origin, picture=picture, samples=samples, **_figures(made))


def fit_best(
    images: Union[Image, Sequence[Image]],
    light: str = "D65",
    *,
    best: Optional[Mapping[str, Any]] = None,
    weights: Optional[Sequence[float]] = None,
    flat_field: Optional[Image] = None,
    progress: Progress = None,
    name: str = "",
    dump: Optional[str] = None,
    **options: Any,
) -> BestFit:
    """The best matrix, and how far to believe it, as ``greycard ccm --fit best`` makes it.

    Parameters
    ----------
    images : path or ndarray, or a list of these
        Photographs of the chart under one light.
    best : mapping
        What the best fit is asked: ``difference``, ``norm``, ``weights``, ``entries``,
        ``exposure``, ``white_balance``, ``noise_limits``, ``trade_off_steps``, ``tone_curve``,
        ``given_curve``, ``light_field``, ...: see docs/matrix_fit.md.
    weights : sequence of float
        Of the photographs.
    flat_field : path or ndarray
        An even surface in the same light.
    light, progress, name, dump, **options
        As for `fit`.

    Examples
    --------
    >>> import greycard
    >>> photo = greycard.simulate_chart(size=(800, 600), light="A").picture
    >>> result = greycard.fit_best(photo, light="A", best={"light_field": "plane"})
    >>> bool(result.mean_delta_e < result.stated[0].mean_delta_e)
    True
    """
    told = {"light": light, "best": None if best is None else dict(best), **options}
    asked = with_options(core.BestFitOptions(), told)
    origin = provenance(asked, core.BestFitOptions())
    meant = asked.chart.locate
    several = list(images) if isinstance(images, (list, tuple)) else [images]
    if weights is not None and len(weights) != len(several):
        raise ValueError(f"weights: {len(weights)} for {len(several)} photograph(s)")
    flat = None if flat_field is None else _read(flat_field, meant, "", dump)
    read = [_read(image, meant, name, dump) for image in several]
    charts = [
        core.chartPhotograph(one, 1.0 if weights is None else weights[i], flat)
        for i, one in enumerate(read)
    ]
    made: Any = wanted(core.fitChartBest(charts, asked, progress))
    left_out = made.best.leaveOneOut
    stated = tuple(
        Fit(
            core=one,
            provenance=origin,
            picture=photo.picture,
            samples=photo.samples,
            **_figures(one),
        )
        for one, photo in zip(made.stated, read)
    )
    return BestFit(
        core=made,
        provenance=origin,
        picture=read[0].picture,
        samples=read[0].samples,
        stated=stated,
        leave_one_out=None if left_out is None else left_out.mean,
        row_noise=frozen_array(made.best.rowNoise),
        **_figures(made.shown(0)),
    )


def read_fit(path: PathLike) -> Union[Fit, BestFit]:
    """A fit that was written as JSON, by `Fit.to_json` or ``greycard ccm --json``.

    It corrects photographs and can be compared and exported; there is no photograph to show.

    Examples
    --------
    >>> import greycard, pathlib
    >>> photo = greycard.simulate_chart(size=(800, 600)).picture
    >>> written = pathlib.Path("fit.json").write_text(greycard.fit(photo).to_json())
    >>> greycard.read_fit("fit.json").light
    'D65'
    """
    made = present.readFit(path)
    origin = provenance()
    common: dict[str, Any] = {
        "provenance": origin,
        "picture": None,
        "samples": core.SampleMeaning(),
    }
    if isinstance(made, core.ChartFit):
        return Fit(core=made, **common, **_figures(made))
    left_out = made.best.leaveOneOut
    return BestFit(
        core=made,
        stated=tuple(Fit(core=one, **common, **_figures(one)) for one in made.stated),
        leave_one_out=None if left_out is None else left_out.mean,
        row_noise=frozen_array(made.best.rowNoise),
        **common,
        **_figures(made.shown(0)),
    )


@dataclass(frozen=True, eq=False)
class Evaluation(Result):
    """How far a camera's colours are from the chart's, before any correction.

    Attributes
    ----------
    photo : str
    light : str
    measured, measured_lab, reference_lab : ndarray, 24 x 3
        Linear R, G, B; L*, a*, b* of them; the reference.
    delta_e : ndarray, 24
        CIEDE2000 of each patch.
    warnings : tuple of str
    """

    photo: str
    light: str
    measured: FloatArray
    measured_lab: FloatArray
    reference_lab: FloatArray
    delta_e: FloatArray
    warnings: tuple[str, ...]
    picture: core.Picture = field(repr=False)

    def report(self) -> str:
        """The page that ``greycard evaluate --report`` writes."""
        return present.evaluationReport(self.core, self.picture, self.provenance)

    def _repr_html_(self) -> str:
        return page_in_frame(self.report())


def evaluate(
    image: Image,
    light: str = "D65",
    *,
    scale: float = 1.0,
    name: str = "",
    dump: Optional[str] = None,
    **options: Any,
) -> Evaluation:
    """Judges a camera as it is, as ``greycard evaluate`` does.

    Parameters
    ----------
    image, name, dump, **options
        As for `detect`.
    light : str
        "A", "D65", ...
    scale : float
        Factor on the linear samples before they are judged.

    Examples
    --------
    >>> import greycard
    >>> photo = greycard.simulate_chart(size=(800, 600)).picture
    >>> greycard.evaluate(photo).delta_e.shape
    (24,)
    """
    told = {"light": light, "scale": scale, **options}
    asked = with_options(core.EvaluationOptions(), told)
    origin = provenance(asked, core.EvaluationOptions())
    read = _read(image, asked.locate, name, dump)
    made = core.evaluateChart(read, asked)
    return Evaluation(
        core=made,
        provenance=origin,
        photo=made.photo,
        light=core.illumName(made.light),
        measured=frozen_array(made.measuredRgb),
        measured_lab=frozen_array(made.measuredLab),
        reference_lab=frozen_array(made.referenceLab),
        delta_e=frozen_array(made.errors.ciede2000.patch),
        warnings=tuple(made.warnings),
        picture=read.picture,
    )
