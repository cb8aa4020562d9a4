"""Long calls, threads, shared memory, and whatever a caller may come up with."""

import copy
import gc
import pickle
import subprocess
import sys
import threading
from pathlib import Path

import greycard.core as core
import numpy as np
import pytest


def settings_of_a_chart():
    settings = core.ColorCorrectionSettings(0, core.illum_D65, 0)
    lab = settings.m_macbethData.m_RefLab
    rgb = np.array([core.ImageUtilsEx.CIELabTosRGB(patch) for patch in lab]).clip(0, 1) ** 2.2
    settings.m_macbethData.m_RGB = rgb @ [[0.6, 0.1, 0], [0.3, 0.8, 0.2], [0.1, 0.1, 0.5]]
    return settings


def utils_with_gamma():
    utils = core.ColorCorrectionUtils()
    ramp = (np.linspace(0, 1, 256) ** (1 / 2.2) * 16383).astype(int)
    utils.SetGammaTable(ramp, ramp, ramp)
    return utils


def test_a_cancelled_fit_leaves_the_object_as_it_was():
    utils, settings = utils_with_gamma(), settings_of_a_chart()
    utils.m_ccm = np.eye(3) * 5
    assert utils.Optimize(settings, 0, progress=lambda fraction: False) is False
    with pytest.raises(ZeroDivisionError):
        utils.Optimize(settings, 0, progress=lambda fraction: 1 / 0)
    assert (utils.m_ccm == np.eye(3) * 5).all() and utils.m_fit.m_evaluations == 0
    seen = []
    assert utils.Optimize(settings, 0, progress=seen.append)
    assert seen[-1] == 1.0 and utils.m_ccm.sum(axis=1) == pytest.approx([1, 1, 1])


def test_the_step_by_step_calls_give_what_optimize_gives():
    utils, settings = utils_with_gamma(), settings_of_a_chart()
    utils.Optimize(settings, 0)
    core.ColorCorrectionUtils.SetColorMatrixOpt(utils, settings, 0)
    assert (core.ColorCorrectionUtils.Color_correction_3illum(utils) == utils.m_macbethLab).all()
    utils.Dispose()
    with pytest.raises(ValueError, match="released by Dispose"):
        core.ColorCorrectionUtils.Color_correction_3illum(utils)


def long_search():
    parameters = core.kGaReferenceParameters
    images = core.exposureHistograms(np.arange(192, dtype=np.uint8).reshape(8, 8, 3), 255)
    return core.GaTask(
        lowerBound=parameters * 0.5,
        upperBound=parameters * 1.5 + 0.2,
        initialBound=parameters,
        imageCount=1,
        Weight=[1.0],
        newTarget=[60.0],
        curr_luma=[50.0],
        cur_target=[55.0],
        max_drc_gain=4.0,
        hist_RGB=[images.hist_RGB],
        hist_CDF=[images.hist_CDF],
        initial_parameter=parameters,
        parameters_enable=np.ones(9),
    )


def test_other_threads_run_during_a_search_and_its_results_do_not_depend_on_them():
    options = core.SearchOptions(maxSeconds=0, maxEvaluations=20000)
    results = []
    search = threading.Thread(target=lambda: results.append(core.NLoptHelper().GA(task, options)))
    task = long_search()
    search.start()
    turns = 0
    while search.is_alive():
        turns += 1
        task.newTarget = [99.0]
    assert turns > 50
    again = core.NLoptHelper().GA(long_search(), options)
    assert (again.parameters == results[0].parameters).all() and again.error == results[0].error


@pytest.mark.parametrize("progress", ["None", "lambda fraction: None"])
def test_ctrl_c_ends_a_long_call(progress):
    script = (
        "import os, signal, threading, greycard.core as core\n"
        "field = core.FlatFieldSimulator()\n"
        "field.m_settings.width, field.m_settings.height = 12000, 8000\n"
        "threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT)).start()\n"
        f"try: field.Simulate({progress})\n"
        "except KeyboardInterrupt: print('interrupted', field.m_picture)\n"
    )
    done = subprocess.run(
        [sys.executable, "-c", script], capture_output=True, text=True, timeout=100
    )
    assert done.stdout == "interrupted Picture(0 x 0, channels=3, bits=8)\n", done.stderr


def test_a_table_in_use_is_not_changed():
    helper, refusals = core.TwoDLutHelper(), []
    table = core.identityLut2d()
    table.inverse_flag = 1

    def remark(text):
        plane = np.zeros((2, 2), np.uint16)
        for call in (lambda: helper.SetConfig(table), lambda: helper.ProcessImage(plane, plane, plane, 2, 2, 10)):
            with pytest.raises(RuntimeError, match="in use by another thread"):
                call()
            refusals.append(text)

    helper.SetConfig(table)
    assert helper.CalInverseLut2dCfg(remark)
    assert len(refusals) >= 2 and helper.UncoveredNodes() == 0


def test_arrays_into_objects_outlive_them():
    views = [
        core.identityLut2d().lut_2d_h,
        core.ColorCorrectionSettings(0, core.illum_A, 0).m_macbethData.m_RefLab,
        np.asarray(core.GammaCurveModel(True).GetGammaCurveByIndex(0).Data()),
        core.TenBitPlanes(np.full((9, 9), 200, np.uint8), 255).g,
    ]
    before = [view.copy() for view in views]
    gc.collect()
    clutter = [bytearray(5000) for _ in range(2000)]
    assert all((view == was).all() for view, was in zip(views, before)) and clutter


@pytest.mark.parametrize(
    ("call", "error", "said"),
    [
        (lambda: core.deltaE76([1, 2], [1, 2, 3]), ValueError, "an array of int64, 2; wanted float64, 3"),
        (lambda: core.deltaE76("x", [1, 2, 3]), TypeError, "wanted float64, 3"),
        (lambda: core.FitOptions(whitePatches=[1.5]), TypeError, "whitePatches: .* wanted int32"),
        (lambda: core.FitOptions(whitePatches=[2**40]), ValueError, "whole numbers that fit int32"),
        (lambda: core.FitOptions(nrm=2), AttributeError, "nrm"),
        (lambda: core.MatrixFit(core.FitOptions(norm=np.nan)), ValueError, "norm"),
        (lambda: core.ChartStage(77), ValueError, "ChartStage has no value 77"),
        (lambda: core.patchName(24), IndexError, "24"),
        (
            lambda: core.GammaCurveModel(True).MakeGammaTable(np.zeros(64)),
            TypeError,
            "aSrc: an array of float64, 64; wanted int32, .* in place",
        ),
        (lambda: core.cameraGamma("no such curve"), core.JobError, "no such curve"),
    ],
)
def test_what_is_wrong_is_told(call, error, said):
    with pytest.raises(error, match=said):
        call()


def test_planes_are_changed_in_place_or_refused():
    helper = core.TwoDLutHelper()
    table = core.identityLut2d()
    table.lut_2d_s[:] = 0.2
    helper.SetConfig(table)
    r, g, b = (np.full((4, 6), level, np.uint16) for level in (600, 500, 400))
    assert helper.ProcessImage(r, g, b, 6, 4, 10) and (r > 600).all() and (b < 400).all()
    b.flags.writeable = False
    for plane in (b, r[:, ::2], r.astype(np.int32), [[1]]):
        with pytest.raises((TypeError, ValueError), match="^b: .* in place"):
            helper.ProcessImage(r, g, plane, 6, 4, 10)


def test_structs_are_copied_and_pickled_by_value():
    result = core.MatrixFit().fit(
        core.MatrixFitSamples(
            photographs=[core.FitPhotograph(rgb=settings_of_a_chart().m_macbethData.m_RGB)],
            referenceLab=settings_of_a_chart().m_macbethData.m_RefLab,
        )
    )
    for other in (copy.deepcopy(result), pickle.loads(pickle.dumps(result))):
        assert repr(other) == repr(result)
        other.matrix[0, 0] += 1
        assert other.matrix[0, 0] != result.matrix[0, 0]


@pytest.mark.parametrize("protocol", range(pickle.HIGHEST_PROTOCOL + 1))
def test_every_protocol_of_pickle_gives_the_same_or_refuses(protocol):
    for value in (core.illum_D50, core.FitLight.plane, core.SampleLevels(blackLevel=7.0)):
        assert repr(pickle.loads(pickle.dumps(value, protocol))) == repr(value)
    with pytest.raises(TypeError, match="a GammaCurveModel can't be pickled"):
        pickle.dumps(core.GammaCurveModel(True), protocol)


def test_anything_may_be_given_to_anything():
    fuzz = Path(__file__).with_name("fuzz_calls.py")
    done = subprocess.run([sys.executable, fuzz, "300"], capture_output=True, text=True, timeout=250)
    assert done.stdout.endswith("still here\n"), done.stdout[-2000:] + done.stderr[-5000:]
