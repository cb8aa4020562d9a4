"""Calls everything in greycard.core with anything; whatever happens, the interpreter goes on.

    fuzz_calls.py EXAMPLES    (a program of its own: test_calls.py looks at how it ends)
"""

import faulthandler
import inspect
import os
import random
import resource
import sys
import tempfile
from pathlib import Path

import greycard.core as core
import numpy as np
from hypothesis import HealthCheck, Phase, given, settings
from hypothesis import strategies as st

GIGABYTE = 1 << 30
CALLS = 60
# They run for seconds whatever they are given, or end this program's own output.
LEFT_OUT = {"setOutputChannel", "setErrorChannel", "setDebugLog", "fewestControlPoints"}
MEMBERS_LEFT_OUT = {"__class__", "__setattr__", "__delattr__", "__dict__", "__reduce_ex__", "test"}

NUMBERS = [-(2**63), -1, 0, 1, 2, 3, 5, 8, 16, 24, 255, 256, 1024, 2**31 - 1, 2**64, True]
NUMBERS += [-0.0, 0.5, 1e-300, 1e300, float("nan"), float("inf"), -7.5]
TEXTS = ["", "a", "VNormal", "A", "out.png", "1 2, 3", "\0", "\udcff", "nan", "\u00e9" * 9, "."]
SHAPES = [(), (0,), (1,), (3,), (16,), (24,), (72,), (256,), (1024,), (3, 3), (3, 2), (24, 3)]
SHAPES += [(24, 4), (24, 4, 2), (4, 2), (3, 256), (9, 7), (9, 7, 3), (40, 60, 3), (2, 3, 256)]
DTYPES = ["u1", "u2", "i4", "i8", "f4", "f8", ">u2", "?", "O", "U3"]


def array(chance):
    made = np.full(chance.choice(SHAPES), chance.choice([0, 1, 7, 0.4, 90])).astype(
        chance.choice(DTYPES)
    )
    if made.dtype.kind == "f" and made.size and chance.random() < 0.3:
        made.flat[chance.randrange(made.size)] = chance.choice([np.nan, np.inf, -1, 1e30])
    if made.dtype.kind in "uif" and made.size and chance.random() < 0.3:
        made = np.cumsum(np.ones_like(made), dtype=made.dtype).reshape(made.shape)
    return chance.choice([made, made, made.T, made[::-1] if made.ndim else made])


def argument(chance, pool):
    kind = chance.randrange(8)
    if kind < 3:
        return chance.choice(pool)
    if kind < 5:
        return array(chance)
    if kind == 5:
        return chance.choice([None, chance.choice(TEXTS), b"\xff1 2", 1j, lambda *given: False])
    if kind == 6:
        return [argument(chance, pool) for _ in range(chance.randrange(4))]
    return chance.choice(NUMBERS)


def callables():
    for name in core.__all__:
        value = getattr(core, name)
        exception = inspect.isclass(value) and issubclass(value, Exception)
        if callable(value) and not exception and name not in LEFT_OUT:
            yield value


def made():
    """One of each class that can be made without parameters, and of those that need some."""
    objects = [
        core.Picture(np.full((40, 60, 3), 90, np.uint8)),
        core.GammaCurveModel(True),
        core.ColorCorrectionSettings(0, core.illum_A, 0),
        core.GammaTable(range(1024)),
        core.TenBitPlanes(np.full((4, 4, 3), 9, np.uint8), 255),
        core.identityLut2d(),
    ]
    objects.append(core.GammaCurve("a", objects[1]))
    for value in callables():
        if inspect.isclass(value):
            try:
                objects.append(value())
            except TypeError:
                objects += list(getattr(value, "__members__", {}).values())[:2]
    return objects


def use(chance, pool, value):
    """Calls a function, or reads, writes or calls a member of an object."""
    if not inspect.isclass(value) and not inspect.isroutine(value):
        name = chance.choice([name for name in dir(value) if name not in MEMBERS_LEFT_OUT])
        if chance.random() < 0.3 and not callable(getattr(value, name, None)):
            setattr(value, name, argument(chance, pool))
        value = getattr(value, name)
    if callable(value):
        value = value(*[argument(chance, pool) for _ in range(chance.choice([0, 1, 1, 2, 2, 3, 6]))])
    if value is not None and len(pool) < 400:
        pool.append(value)
    repr(value)


@settings(
    max_examples=int(sys.argv[1]),
    derandomize=True,
    database=None,
    deadline=None,
    phases=[Phase.generate],
    suppress_health_check=list(HealthCheck),
)
@given(st.integers(0, 2**32))
def calls(seed):
    Path("seed").write_text(str(seed))
    chance = random.Random(seed)
    pool = made()
    everything = list(callables())
    for _ in range(CALLS):
        try:
            use(chance, pool, chance.choice(everything if chance.random() < 0.5 else pool))
        except Exception:  # noqa: BLE001, S112 - any will do; a crash is none
            continue


if __name__ == "__main__":
    faulthandler.enable()
    resource.setrlimit(resource.RLIMIT_AS, (3 * GIGABYTE, 3 * GIGABYTE))
    core.setOutputChannel(None)
    core.setErrorChannel(None)
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        calls()
    print("still here")
