"""The README's code and the docstrings' examples."""

import doctest
import importlib
import os
import re
from pathlib import Path

import pytest

PROJECT = Path(__file__).parents[2]
MODULES = ["batch", "pictures", "charts", "comparing", "curves", "fitting", "luts", "noise", "simulation"]


@pytest.fixture(autouse=True)
def folder_of_its_own(tmp_path):
    before = os.getcwd()
    os.chdir(tmp_path)
    yield
    os.chdir(before)


def test_the_readme_s_code_runs():
    blocks = re.findall(r"^```python\n(.*?)^```", (PROJECT / "README.md").read_text(), re.M | re.S)
    assert len(blocks) == 1
    exec(compile(blocks[0], "README.md", "exec"), {})
    assert Path("report.html").exists() and Path("outdoor.svg").exists()


@pytest.mark.parametrize("name", MODULES)
def test_the_docstrings_examples_hold(name):
    module = importlib.import_module(f"greycard.{name}")
    outcome = doctest.testmod(module, optionflags=doctest.ELLIPSIS)
    assert outcome.attempted > 0 and outcome.failed == 0
