"""The high-level layer writes what the command writes for the same job, byte for byte."""

import os
import re
import subprocess
from pathlib import Path

import greycard
import numpy as np
import pytest

COMMAND = os.environ["GREYCARD_COMMAND"]
REFERENCES = [(0.45, 0.71), (0.62, 0.55), (0.88, 0.38)]
TARGETS = [(0.48, 0.66), (0.64, 0.52), (0.93, 0.37)]
CORNERS = [(130, 110), (510, 110), (510, 370), (130, 370)]
DRAG = {"at": (120, 0.5), "by": (-15, 0.05), "reach": (3, 6)}

# What the command is told beside --json, and the same job in Python.
JOBS = {
    "simulate -o other.png --light TL84 --size 320x240 --seed 2 --noise 0.01": lambda: (
        greycard.simulate_chart("TL84", size=(320, 240), seed=2, shot_noise=0.01, file="other.png")
    ),
    "simulate -o other.dng --bayer GBRG --bits 12 --size 320x240": lambda: (
        greycard.simulate_chart(size=(320, 240), bits=12, bayer="GBRG", file="other.dng")
    ),
    "simulate -o field.png --flat --size 64x48 --sigma 2": lambda: (
        greycard.simulate_flat(size=(64, 48), sigma=2, file="field.png")
    ),
    "info a.png --encoding linear": lambda: greycard.info("a.png", encoding="linear"),
    "info raw.dng": lambda: greycard.info("raw.dng"),
    "chart a.png": lambda: greycard.detect("a.png"),
    "chart a.png --all --within 0,0,640,480": lambda: (
        greycard.detect_all("a.png", within=(0, 0, 640, 480))
    ),
    "chart a.png --corners 130,110 510,110 510,370 130,370 --force": lambda: (
        greycard.detect("a.png", corners=CORNERS, force=True)
    ),
    "ccm a.png --light A": lambda: greycard.fit("a.png", "A"),
    "ccm raw.dng --light A --black 512": lambda: greycard.fit("raw.dng", "A", black=512),
    "ccm a.png --light A --regions regions.txt --delta-e cie76 --white-patches 19,20 --gamma VNormal": (
        lambda: greycard.fit(
            "a.png",
            "A",
            regions=Path("regions.txt"),
            delta_e="CIE76",
            white_patches=np.array([19, 20]),
            gamma="VNormal",
        )
    ),
    "ccm a.png --light A --fit best --also again.png --uneven plane": lambda: (
        greycard.fit_best(["a.png", "again.png"], "A", best={"light_field": "plane"})
    ),
    "evaluate a.png --light A --scale 1.5": lambda: greycard.evaluate("a.png", "A", scale=1.5),
    "compare fit.json judged.json": lambda: greycard.compare("fit.json", "judged.json"),
    "profile A=a.png D65=d65.png": lambda: greycard.profile({"A": "a.png", "D65": "d65.png"}),
    "apply a.png d65.png absent.png --fit fit.json -o out": lambda: (
        greycard.apply(["a.png", "d65.png", "absent.png"], "fit.json", "out")
    ),
    "gamma list": lambda: greycard.curves(),
    "gamma show VOutdoor --points 9": lambda: greycard.curve("VOutdoor", points=9),
    "gamma show power.txt --channel green": lambda: (
        greycard.read_curve("power.txt", channel="green")
    ),
    "gamma export HLG --size 256 --bits 10 -o hlg.txt": lambda: (
        greycard.write_curve("HLG", "hlg.txt", size=256, bits=10)
    ),
    "gamma power 2.4 -o p.txt": lambda: greycard.write_curve(greycard.power_curve(2.4), "p.txt"),
    "gamma import power.txt": lambda: greycard.import_curves(["power.txt"]),
    "gamma points VOutdoor --within 1": lambda: greycard.curve("VOutdoor").control_points(1),
    "gamma lut VNormal --kind norm --channel blue": lambda: (
        greycard.curve("VNormal").lut("norm", channel="blue")
    ),
    "gamma degamma VNormal 200 128 64": lambda: greycard.curve("VNormal").degamma([200, 128, 64]),
    "gamma hdr10 --nits 1000": lambda: greycard.standard_curve("HDR10", nits=1000),
    "lut2d adjust table.json --at 120,0.5 --by -15,0.05 --range 3,6 -o g.json": lambda: (
        greycard.Lut2D.read("table.json").adjust(**DRAG).made
    ),
    "lut2d show greens.json": lambda: greycard.Lut2D.read("greens.json"),
    "lut2d invert greens.json -o back.json": lambda: greycard.Lut2D.read("greens.json").inverse().made,
    "lut2d apply a.png --lut greens.json --from fit.json -o moved.png": lambda: (
        greycard.Lut2D.read("greens.json").apply("a.png", fit=greycard.read_fit("fit.json"))
    ),
    "sigma flat.png": lambda: greycard.noise_table("flat.png"),
    "sigma a.png --luma green --force": lambda: (
        greycard.noise_table("a.png", luma="green", force=True)
    ),
    "ae targets.json --evaluations 500": lambda: (
        greycard.fit_exposure("targets.json", max_evaluations=500)
    ),
    "ae targets.json --manual": lambda: greycard.evaluate_exposure("targets.json"),
    "ae luma-match 200,100,50 100,100,100": lambda: (
        greycard.match_luma((200, 100, 50), (100, 100, 100))
    ),
    "wb-map --from 0.45,0.71 --from 0.62,0.55 --from 0.88,0.38 "
    "--to 0.48,0.66 --to 0.64,0.52 --to 0.93,0.37 --point 0.7,0.5": lambda: (
        greycard.map_white_balance(REFERENCES, TARGETS, [(0.7, 0.5)])
    ),
    "skin d65.png a.png fit.json --gamma VNormal": lambda: (
        greycard.calibrate_skin("d65.png", "a.png", "fit.json", gamma="VNormal")
    ),
}


def run(words, **more):
    return subprocess.run([COMMAND, *words], capture_output=True, text=True, **more)


@pytest.fixture(scope="module")
def bench(tmp_path_factory):
    """A folder of photographs, fits, curves and tables."""
    before = os.getcwd()
    os.chdir(tmp_path_factory.mktemp("jobs"))
    os.environ["SOURCE_DATE_EPOCH"] = "1800000000"
    greycard.simulate_chart("A", size=(640, 480), shot_noise=0.01, file="a.png").write()
    greycard.simulate_chart("A", size=(640, 480), shot_noise=0.01, seed=7).write("again.png")
    greycard.simulate_chart("D65", size=(640, 480)).write("d65.png")
    greycard.simulate_chart("A", size=(640, 480), bayer="RGGB", black_level=512, file="raw.dng").write()
    greycard.simulate_flat(size=(800, 640)).write("flat.png")
    greycard.detect("a.png").write_regions("regions.txt")
    Path("fit.json").write_text(greycard.fit("a.png", "A").to_json())
    Path("judged.json").write_text(greycard.evaluate("a.png", "A").to_json())
    greycard.write_curve(greycard.power_curve(2.2), "power.txt")
    table = greycard.Lut2D.new(y_blend=1)
    table.write("table.json")
    table.adjust(**DRAG).write("greens.json")
    images = '{"picture": "a.png", "newTarget": 70}, {"picture": "d65.png", "newTarget": 60}'
    Path("targets.json").write_text('{"images": [%s]}' % images)
    yield
    os.chdir(before)
    del os.environ["SOURCE_DATE_EPOCH"]


def without_times(text):
    return re.sub(r'"(seconds|evaluations_per_second)": [^,\n]*', "", text)


@pytest.mark.parametrize("line", JOBS)
def test_json_is_the_command_s(bench, line):
    words = [*line.split(), "--json", "result.json", "--quiet"]
    done = run(words)
    assert done.returncode == (1 if "absent" in line else 0), done.stderr
    theirs = Path("result.json").read_text()
    ours = JOBS[line]().to_json("greycard " + " ".join(words))
    assert without_times(ours) == without_times(theirs)


@pytest.mark.parametrize(
    ("words", "page"),
    [
        ("ccm a.png --light A --report", lambda: greycard.fit("a.png", "A").report()),
        ("evaluate a.png --report", lambda: greycard.evaluate("a.png").report()),
        ("gamma show VOutdoor --against HLG --plot", lambda: greycard.curve("VOutdoor").plot("HLG")),
        ("lut2d show greens.json --plot", lambda: greycard.Lut2D.read("greens.json").plot()),
        ("sigma flat.png --plot", lambda: greycard.noise_table("flat.png").plot()),
        ("skin d65.png a.png fit.json --plot", lambda: (
            greycard.calibrate_skin("d65.png", "a.png", "fit.json").plot()
        )),
    ],
)
def test_pages_and_plots_are_the_command_s(bench, words, page):
    name = "shown.html" if words.endswith("--report") else "shown.svg"
    assert run([*words.split(), name]).returncode == 0
    theirs = Path(name).read_text()
    # A page shows the command line, which Python has none of.
    theirs = re.sub(r"<[^<]*<code>greycard [^\n]*", "", theirs)
    assert re.sub(r"\s+", "", page()) == re.sub(r"\s+", "", theirs)


def test_arrays_and_samples_give_what_their_files_give(bench):
    of_file = greycard.fit("a.png", "A")
    of_array = greycard.fit(greycard.read_picture("a.png"), "A", name="a.png")
    assert of_array.to_json() == of_file.to_json()
    of_samples = greycard.fit(greycard.sample("a.png", greycard.detect("a.png")), "A")
    assert of_samples.to_json() == of_file.to_json()
    done = run(["ccm", "a.png", "--light", "A", "--corrected", "corrected.png"])
    assert done.returncode == 0
    assert (of_file.corrected() == greycard.read_picture("corrected.png")).all()
    assert (of_file.apply("a.png") == of_file.corrected()).all()


@pytest.mark.parametrize(
    ("call", "error", "said"),
    [
        (lambda: greycard.fit("a.png", gama="VNormal"), ValueError, "gama"),
        (lambda: greycard.fit("a.png", "A", black=[1]), ValueError, "black"),
        (lambda: greycard.fit("a.png", "A", corners=object()), TypeError, "an option can't be"),
        (lambda: greycard.fit("absent.png"), greycard.FileError, "absent.png"),
        (lambda: greycard.fit(np.zeros((9, 9), np.uint8)), greycard.JobError, "grey"),
        (lambda: greycard.detect(np.zeros((90, 90, 3), np.uint8)), greycard.NoChart, "no chart"),
        (lambda: greycard.sample("a.png", np.zeros((3, 4))), ValueError, "3 x 4; wanted"),
        (lambda: greycard.curve("vnormal"), greycard.JobError, "VNormal"),
        (lambda: greycard.noise_table("a.png"), greycard.ColourFlatField, "a.png"),
        (lambda: greycard.fit("a.png", progress=lambda _: False), greycard.Cancelled, "cancelled"),
    ],
)
def test_a_refusal_names_what_was_wrong(bench, call, error, said):
    with pytest.raises(error) as refusal:
        call()
    assert said in str(refusal.value)


def test_results_can_t_be_changed(bench):
    fit = greycard.fit("a.png", "A")
    with pytest.raises(AttributeError):
        fit.exposure = 1.0
    with pytest.raises(ValueError):
        fit.matrix[0, 0] = 2.0
