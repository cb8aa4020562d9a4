"""greycard: camera image-quality tuning.

The jobs of the ``greycard`` command for Python: photographs and arrays go in, frozen dataclasses of
NumPy arrays come out, which a notebook shows as the command's own reports and plots and which
`to_json` writes as the command does. ``greycard.core`` holds the library's classes and functions
under their C++ names.
"""

from . import core
from ._results import Cancelled
from .charts import (
    BestFit,
    Detection,
    Detections,
    Evaluation,
    Fit,
    Samples,
    detect,
    detect_all,
    evaluate,
    fit,
    fit_best,
    read_fit,
    sample,
)
from .comparing import Applied, Comparison, Profile, ProfilePoint, apply, compare, export, profile
from .core import CurveFileRefused, FileError, JobError, NumericError
from .core import ColourFlatField, DoubtfulChart, DoubtfulFlatField, NoChart, WrongSampleBits
from .curves import (
    ControlPoints,
    Curve,
    CurveList,
    CurveLut,
    ImportedCurves,
    LinearInputs,
    StandardCurve,
    WrittenCurve,
    curve,
    curves,
    import_curves,
    merge_curves,
    power_curve,
    read_curve,
    standard_curve,
    write_curve,
)
from .fitting import (
    ExposureFit,
    LumaMatch,
    SkinCalibration,
    WhiteBalanceMapping,
    calibrate_skin,
    evaluate_exposure,
    fit_exposure,
    map_white_balance,
    match_luma,
)
from .luts import AppliedLut, Drag, Inversion, Lut2D
from .noise import NoiseTable, noise_table
from .pictures import PhotographInfo, info, read_picture, write_picture
from .simulation import SimulatedChart, SimulatedFlat, simulate_chart, simulate_flat

# The searches' remarks, which go to the process's own standard error, are for who asks for them.
core.setOutputChannel(None)
core.setErrorChannel(None)

__version__: str = core.libraryVersion()

__all__ = [
    "Applied",
    "AppliedLut",
    "BestFit",
    "Cancelled",
    "ColourFlatField",
    "Comparison",
    "ControlPoints",
    "Curve",
    "CurveFileRefused",
    "CurveList",
    "CurveLut",
    "Detection",
    "DoubtfulChart",
    "DoubtfulFlatField",
    "Drag",
    "Evaluation",
    "ExposureFit",
    "FileError",
    "Fit",
    "ImportedCurves",
    "Inversion",
    "JobError",
    "LinearInputs",
    "LumaMatch",
    "Lut2D",
    "NoChart",
    "NoiseTable",
    "NumericError",
    "PhotographInfo",
    "Profile",
    "ProfilePoint",
    "Samples",
    "SimulatedChart",
    "SimulatedFlat",
    "SkinCalibration",
    "StandardCurve",
    "WhiteBalanceMapping",
    "WrittenCurve",
    "WrongSampleBits",
    "apply",
    "calibrate_skin",
    "compare",
    "core",
    "curve",
    "curves",
    "detect",
    "evaluate",
    "evaluate_exposure",
    "export",
    "fit",
    "fit_best",
    "fit_exposure",
    "import_curves",
    "info",
    "map_white_balance",
    "match_luma",
    "merge_curves",
    "noise_table",
    "power_curve",
    "profile",
    "read_curve",
    "read_fit",
    "read_picture",
    "sample",
    "simulate_chart",
    "simulate_flat",
    "standard_curve",
    "write_curve",
    "write_picture",
]
