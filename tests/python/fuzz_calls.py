"""Calls everything in greycard.core with anything; whatever happens, the interpreter goes on.

    fuzz_calls.py EXAMPLES    (a program of its own: test_calls.py looks at how it ends)
"""

import faulthandler
import inspect
import os
import resource
import sys
import tempfile

import greycard.core as core
import numpy as np
from hypothesis import HealthCheck, given, settings
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp

GIGABYTE = 1 << 30
# They run for seconds whatever they are given, or end the test's own output.
LEFT_OUT = {"setOutputChannel", "setErrorChannel", "setDebugLog", "fewestControlPoints", "test"}

numbers = st.one_of(
    st.sampled_from([-(2**63), -1, 0, 1, 2, 3, 5, 8, 16, 24, 255, 256, 1024, 2**31 - 1, 2**64]),
    st.floats(width=64),
    st.booleans(),
)
shapes = st.sampled_from(
    [(), (0,), (1,), (3,), (16,), (24,), (72,), (256,), (1024,), (3, 3), (3, 2), (24, 3), (24, 4)]
    + [(24, 4, 2), (4, 2), (3, 256), (9, 7), (9, 7, 3), (40, 60, 3), (2, 3, 256), (5, 0)]
)
arrays = st.one_of(
    hnp.arrays(
        st.sampled_from(["u1", "u2", "i4", "i8", "f4", "f8", ">u2", "?", "O", "U3"]),
        shapes,
        fill=st.just(7),
    ),
    hnp.arrays("f8", shapes, elements=st.floats(0, 1), fill=st.just(0.4)),
    hnp.arrays("u1", st.sampled_from([(40, 60, 3), (64, 96)]), fill=st.just(90)),
).flatmap(lambda array: st.sampled_from([array, array.T, array[::-1]] if array.ndim else [array]))
texts = st.sampled_from(["", "a", "VNormal", "A", "out.png", "1 2, 3", "\0", "\udcff", "nan", "é" * 9])
plain = st.one_of(st.none(), numbers, arrays, texts, texts.map(lambda text: text.encode("utf8", "replace")))
plain |= st.lists(numbers | texts, max_size=4) | st.just(lambda *args: False) | st.just(1j)


def callables():
    for name in core.__all__:
        value = getattr(core, name)
        if inspect.isclass(value) and issubclass(value, Exception):
            continue
        if callable(value) and name not in LEFT_OUT:
            yield value


def made():
    """One of each class that can be made without parameters, and of those that need some."""
    objects = [
        core.Picture(np.full((40, 60, 3), 90, np.uint8)),
        core.GammaCurveModel(True),
        core.ColorCorrectionSettings(0, core.illum_A, 0),
        core.GammaTable(range(1024)),
        core.TenBitPlanes(np.full((4, 4, 3), 9, np.uint8), 255),
    ]
    objects.append(core.GammaCurve("a", objects[1]))
    for value in callables():
        if inspect.isclass(value):
            try:
                objects.append(value())
            except TypeError:
                objects += list(getattr(value, "__members__", {}).values())
    return objects


def use(data, pool, value):
    """Calls a function, or reads, writes or calls a member of an object."""
    argument = st.one_of(plain, st.sampled_from(pool))
    if not inspect.isclass(value) and not inspect.isroutine(value):
        name = data.draw(st.sampled_from([n for n in dir(value) if n not in SKIPPED_MEMBERS]))
        if data.draw(st.booleans()) and not callable(getattr(type(value), name, None)):
            setattr(value, name, data.draw(argument))
        value = getattr(value, name)
        if not callable(value):
            pool.append(value)
            return
    result = value(*data.draw(st.lists(argument, max_size=7)))
    if result is not None and len(pool) < 400:
        pool.append(result)
    repr(result)


SKIPPED_MEMBERS = {"__class__", "__setattr__", "__delattr__", "__dict__", "test", "__reduce_ex__"}


@settings(
    max_examples=int(sys.argv[1]),
    derandomize=True,
    database=None,
    deadline=None,
    suppress_health_check=list(HealthCheck),
)
@given(st.data())
def calls(data):
    pool = made()
    everything = list(callables())
    for _ in range(12):
        value = data.draw(st.one_of(st.sampled_from(everything), st.sampled_from(pool)))
        try:
            use(data, pool, value)
        except (Exception, KeyboardInterrupt) as error:  # noqa: BLE001 - any but a crash will do
            if type(error).__module__.startswith("hypothesis"):
                raise


if __name__ == "__main__":
    faulthandler.enable()
    resource.setrlimit(resource.RLIMIT_AS, (3 * GIGABYTE, 3 * GIGABYTE))
    core.setOutputChannel(None)
    core.setErrorChannel(None)
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        calls()
    print("still here")
