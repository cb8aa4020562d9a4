"""Arrays, errors and versions: what every call of the module stands on."""

import gc
import os
import pickle
import shutil
import subprocess
import sys
from pathlib import Path

import greycard
import greycard.core as core
import numpy as np
import pytest

PICTURE = "wanted uint8 or uint16, height x width or height x width x 3 (R, G, B), C-contiguous"


@pytest.mark.parametrize(
    ("given", "error", "said"),
    [
        (np.zeros((4, 5), np.float32), TypeError, "an array of float32, 4 x 5"),
        (np.zeros((4, 5), ">u2"), TypeError, "an array of >u2, 4 x 5"),
        (np.zeros((4, 5, 2), np.uint8), ValueError, "an array of uint8, 4 x 5 x 2"),
        (np.zeros((0, 5), np.uint8), ValueError, "an array of uint8, 0 x 5"),
        (np.zeros((4, 6), np.uint8)[:, ::2], ValueError, "4 x 3, not C-contiguous"),
        ([[1, 2]], TypeError, "an object of type list"),
        (None, TypeError, "None"),
    ],
)
def test_a_picture_that_is_none_is_refused_by_what_it_is(given, error, said):
    with pytest.raises(error) as refusal:
        core.encodePng(given)
    assert said in str(refusal.value)
    assert PICTURE.removeprefix("wanted ") in str(refusal.value)


@pytest.mark.parametrize("shape", [(2, 4), (2, 4, 3)])
@pytest.mark.parametrize("dtype", [np.uint8, np.uint16])
def test_pictures_keep_their_samples_there_and_back(tmp_path, shape, dtype):
    samples = (np.arange(np.prod(shape)).reshape(shape) * 7).astype(dtype)
    core.writePicture(tmp_path / "a.png", samples)
    read = core.readPicture(tmp_path / "a.png")
    assert (np.asarray(read) == samples).all() and np.asarray(read).dtype == dtype
    view = read.samples
    del read
    gc.collect()
    view[0, 0] = 9
    assert (view.ravel()[-1] == samples.ravel()[-1]) and (view[0, 0] == 9).all()


def test_errors_have_the_library_s_text_and_can_be_pickled():
    with pytest.raises(core.FileError, match='^can\'t read "/no/such.png": ') as refusal:
        core.readPicture("/no/such.png")
    again = pickle.loads(pickle.dumps(refusal.value))
    assert type(again) is core.FileError and str(again) == str(refusal.value)
    assert issubclass(core.FileError, OSError) and issubclass(core.UnknownName, core.JobError)
    assert issubclass(core.ShapeError, ValueError) and issubclass(core.NumericError, RuntimeError)


def imported(folder, **environment):
    done = subprocess.run(
        [sys.executable, "-c", "import greycard; print(greycard.__version__)"],
        env={**os.environ, "PYTHONPATH": str(folder), **environment},
        capture_output=True,
        text=True,
    )
    return done.stdout.strip() or done.stderr.strip().splitlines()[-1]


def test_another_library_than_the_module_was_built_with_is_refused(tmp_path):
    package = Path(greycard.__file__).parent
    assert imported(package.parent) == core.GREYCARD_VERSION
    other = tmp_path / "other.cpp"
    other.write_text('namespace greycard { const char* libraryVersion() { return "9.8.7"; } }')
    subprocess.run(["c++", "-shared", "-fPIC", other, "-o", tmp_path / "other.so"], check=True)
    assert imported(package.parent, LD_PRELOAD=str(tmp_path / "other.so")) == (
        f"ImportError: greycard.core was built with greycard {core.GREYCARD_VERSION} but the library "
        "that was loaded is 9.8.7: install the library and the module of one version"
    )
    shutil.copytree(package, tmp_path / "greycard")
    module = next((tmp_path / "greycard" / "core").glob("_core*.so"))
    module.write_bytes(module.read_bytes().replace(b"libgreycard.so.0\0", b"libgreycard.so.7\0"))
    said = imported(tmp_path)
    assert said.startswith("ImportError: greycard.core can't be loaded (libgreycard.so.7: ")
    assert said.endswith(
        "install the greycard library of the version that the module was built with, or build the "
        "module again"
    )


def test_listeners_hear_the_diagnostics_and_go_before_the_interpreter():
    script = (
        "import greycard.core as core\n"
        "core.setErrorChannel(lambda text: print('heard'))\n"
        "core.setErrorChannel(lambda text: 1 / 0)\n"
        "core.setDebugLog(print)\n"
    )
    subprocess.run([sys.executable, "-c", script], check=True)
    with pytest.raises(TypeError, match="sink: an object of type int; wanted None or a callable"):
        core.setErrorChannel(3)
