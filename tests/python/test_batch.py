"""Many photographs: the folder is the command's, whoever does the work and whoever dies of it."""

import filecmp
import os
import pickle
import signal
import subprocess
from pathlib import Path

import greycard
import greycard.batch
import pytest
from greycard import core

LIGHTS = {"overrides": [{"pattern": "*_A_*", "options": {"light": "A"}}]}
# Workers begin with this: a photograph that ends whoever looks at it.
DEADLY = """
import os
from greycard.core import batch
do = batch.doPhotograph
batch.doPhotograph = lambda file, settings: os._exit(9) if "deadly" in file.name else do(file, settings)
"""


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    before = os.getcwd()
    os.chdir(tmp_path_factory.mktemp("batch"))
    os.mkdir("photos")
    for light in ("A", "D65"):
        for seed in range(4):
            chart = greycard.simulate_chart(light, size=(480, 360), shot_noise=0.01, seed=seed)
            chart.write(f"photos/lab_{light}_{seed}.png")
    Path("photos/broken_A_1.png").write_bytes(b"no picture")
    Path("settings.json").write_text('{"overrides": [{"pattern": "*_A_*", "options": {"light": "A"}}]}')
    words = ["photos", "-o", "expected", "--settings", "settings.json", "--quiet"]
    done = subprocess.run([os.environ["GREYCARD_COMMAND"], "batch", *words], capture_output=True)
    assert done.returncode == 1  # for the broken one
    yield
    os.chdir(before)


@pytest.fixture(scope="module")
def cluster():
    distributed = pytest.importorskip("distributed")
    with distributed.LocalCluster(
        n_workers=2, threads_per_worker=1, dashboard_address=None, processes=True
    ) as local, distributed.Client(local, set_as_default=False) as client:
        yield client


def same(a, b):
    left = {path.relative_to(a) for path in Path(a).rglob("*") if path.is_file()}
    right = {path.relative_to(b) for path in Path(b).rglob("*") if path.is_file()}
    assert left == right
    return all(filecmp.cmp(Path(a, name), Path(b, name), shallow=False) for name in left)


def test_processes_of_this_machine_fill_the_command_s_folder(folder):
    done = greycard.batch.run("ccm", "photos", "here", workers=2, settings=LIGHTS)
    assert same("here", "expected")
    assert list(done.failures) == ["photos/broken_A_1.png"]
    assert [(light.name, light.fits) for light in done.lights] == [("A", 4), ("D65", 4)]


def test_an_interrupted_run_is_resumed_to_the_same_folder(folder):
    with pytest.raises(greycard.Cancelled):
        greycard.batch.run("ccm", "photos", "cut", workers=1, settings=LIGHTS, progress=lambda _: False)
    greycard.batch.run("ccm", "photos", "cut", workers=2, settings=LIGHTS, resume=True)
    assert same("cut", "expected")


def test_a_file_that_ends_its_processes_has_that_as_its_reason(folder, tmp_path, monkeypatch):
    (tmp_path / "sitecustomize.py").write_text(DEADLY)
    monkeypatch.setenv("PYTHONPATH", f"{tmp_path}:{os.environ['PYTHONPATH']}")
    photos = [tmp_path / "deadly.png", "photos/lab_D65_0.png"]
    photos[0].touch()
    done = greycard.batch.run("ccm", photos, tmp_path / "out", workers=1)
    assert "each of the 3 processes" in done.failures[str(photos[0])]
    assert done.photographs[1].reason == ""


def test_a_worker_that_dies_is_survived(folder, cluster):
    pids = cluster.run(os.getpid)
    killed = []

    def kill_one(_):
        if not killed:
            killed.append(pids.popitem()[1])
            os.kill(killed[0], signal.SIGKILL)

    done = greycard.batch.run(
        "ccm", "photos", "spread", scheduler=cluster, settings=LIGHTS, progress=kill_one
    )
    assert killed and list(done.failures) == ["photos/broken_A_1.png"]
    assert same("spread", "expected")
    assert len(done.photographs) == 9


def test_workers_of_another_version_are_refused_at_start_and_late(folder, cluster, monkeypatch):
    cluster.wait_for_workers(2)
    monkeypatch.setattr(core, "libraryVersion", lambda: "9.9.9")
    told = r"the worker .* has greycard .*, this program 9\.9\.9: install the same version on all"
    with pytest.raises(greycard.batch.VersionError, match=told):
        greycard.batch.run("ccm", "photos", "early", scheduler=cluster)
    monkeypatch.setattr(greycard.batch, "_check_workers", lambda *_: None)
    with pytest.raises(greycard.batch.VersionError, match=told):
        greycard.batch.run("ccm", "photos", "late", scheduler=cluster)


def test_errors_reach_other_processes_with_their_file():
    error = pickle.loads(pickle.dumps(greycard.batch.BatchError("a.png", "no room")))
    assert (error.file, str(error)) == ("a.png", "a.png: no room")


@pytest.mark.parametrize(
    ("told", "said"),
    [
        ({"job": "fit"}, 'job: "fit"; wanted one of chart, ccm, evaluate'),
        ({"settings": {"job": "chart"}}, "they are for the job chart, not ccm"),
        ({"gama": "VNormal"}, "gama"),
    ],
)
def test_settings_that_can_t_be_are_refused_before_any_work(folder, told, said):
    with pytest.raises(ValueError, match=said):
        greycard.batch.run(told.pop("job", "ccm"), "photos", "none", **told)
