"""Stubs, docstrings and the pages of docs/python, as a reader's own tools take them."""

import doctest
import inspect
import os
import re
import subprocess
import sys
from pathlib import Path

import greycard
import greycard.core as core
import pytest

PAGES = sorted((Path(__file__).parents[2] / "docs" / "python").glob("*.md"))


PACKAGE = str(Path(greycard.__file__).parents[1])


def run(*command, **options):
    paths = {"PYTHONPATH": PACKAGE, "MYPYPATH": PACKAGE}
    done = subprocess.run(
        command, capture_output=True, text=True, env={**os.environ, **paths}, **options
    )
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


def script(page, folder):
    """The page's examples as one program, in the page's own lines."""
    inside, lines = False, []
    for line in page.read_text().splitlines():
        if line.startswith("```"):
            inside = line == "```python"
            line = ""
        lines.append(line if inside else "")
    path = folder / (page.stem + "_page.py")
    path.write_text("\n".join(lines))
    return path


@pytest.mark.parametrize("page", PAGES, ids=lambda page: page.stem)
def test_a_page_s_examples_run_and_are_typed(page, tmp_path):
    program = script(page, tmp_path)
    run(sys.executable, program, cwd=tmp_path)
    cache = tmp_path / "cache"
    own = ["--allow-untyped-calls"] if page.stem == "batch" else []  # distributed has no types
    run("mypy", "--strict", *own, "--cache-dir", cache, program)


def test_the_stubs_are_those_of_the_module(tmp_path):
    run("stubtest", "greycard.core", cwd=tmp_path)
    stub = Path(core.__file__).with_suffix(".pyi").read_text()
    assert not re.findall(r".*(?:greycard::|std::).*", stub)


def documented():
    for name in core.__all__:
        value = getattr(core, name)
        if callable(value):
            yield name, value
        if inspect.isclass(value):
            yield from ((f"{name}.{inner}", member) for inner, member in vars(value).items())


def test_every_example_of_a_docstring_runs():
    runner = doctest.DocTestRunner(verbose=False)
    parser = doctest.DocTestParser()
    for name, value in documented():
        text = getattr(value, "__doc__", None)
        if isinstance(text, str) and ">>>" in text:
            runner.run(parser.get_doctest(text, {}, name, None, None))
    assert runner.tries > 100 and runner.failures == 0


def test_every_class_and_function_has_a_docstring():
    bare = [
        name
        for name, value in documented()
        if "." not in name and not (value.__doc__ or "").strip()
    ]
    assert not bare
