#!/usr/bin/env python3
"""Writes the type stubs of greycard.core from the signatures in its docstrings.

    make_python_stubs.py FOLDER    (of greycard/core/__init__.pyi; the package must be importable)
"""

import importlib
import inspect
import re
import sys
from pathlib import Path
from typing import Any

HEAD = '''"""Made by scripts/make_python_stubs.py. What each does is told by its docstring."""

import os
import pathlib
from collections.abc import Callable, Sequence
from typing import Any, ClassVar, Optional, Union, overload

import numpy as np
import numpy.typing as npt

_PictureLike = Union[Picture, npt.NDArray[np.uint8], npt.NDArray[np.uint16]]
_Path = Union[str, "os.PathLike[str]"]

class _Bound(type): ...

'''


def split(text: str) -> list[str]:
    """The parts between the commas that stand in no bracket."""
    parts, depth, start = [], 0, 0
    for at, sign in enumerate(text):
        depth += (sign in "([{") - (sign in ")]}")
        if sign == "," and depth == 0:
            parts.append(text[start:at].strip())
            start = at + 1
    return [*parts, text[start:].strip()] if text.strip() else []


def type_of(text: str, given: bool) -> str:
    """A type as pybind11 writes it in ours; `given` for parameters, which take more."""
    text = re.sub(r"greycard\.core\.(present\.|exchange\.|batch\.)?", "", text.strip())
    text = re.sub(r"\[\d+\](?=\])", "", text)  # a std::array is a List[X[3]]
    text = re.sub(r"numpy\.typing\.NDArray\[", "npt.NDArray[", text)
    text = text.replace("numpy.typing.ArrayLike", "npt.ArrayLike")
    array = "npt.ArrayLike" if given else r"npt.NDArray[\1]"
    text = re.sub(r"numpy\.ndarray\[([\w.]+)\]", array, text)
    text = re.sub(r"numpy\.ndarray\b", "npt.NDArray[np.generic]", text)
    text = text.replace("[bool]", "[np.bool_]") if "NDArray" in text else text
    text = text.replace("numpy.", "np.")
    text = re.sub(r"\b(object|handle|kwargs|args)\b", "Any", text)
    text = re.sub(r"\b(List|Dict|Tuple)\[", lambda found: found[0].lower(), text)
    text = re.sub(r"\btuple\b(?!\[)", "tuple[Any, ...]", text)
    text = re.sub(r"\bdict\b(?!\[)", "dict[str, Any]", text)
    text = re.sub(r"\blist\b(?!\[)", "list[Any]", text)
    if not given:
        return text.replace("os.PathLike", "pathlib.Path")
    text = re.sub(r"\blist\[", "Sequence[", text)
    text = re.sub(r"\bPicture\b", "_PictureLike", text)
    return text.replace("os.PathLike", "_Path")


def parameter(text: str) -> str:
    if text.startswith("*"):
        return text if text == "*" else f"{text}: Any"
    name, _, rest = text.partition(":")
    parts = re.split(r"\s=\s", rest, maxsplit=1)
    default = " = ..." if len(parts) == 2 else ""
    return f"{name.strip()}: {type_of(parts[0], True)}{default}"


def signatures(call: Any, name: str) -> list[tuple[list[str], str]]:
    """Parameters and result of each overload."""
    found = []
    for line in (inspect.getdoc(call) or "").splitlines():
        match = re.match(rf"(?:\d+\. )?{re.escape(name)}\((.*)\) -> (.+)$", line)
        if match and match[1] != "*args, **kwargs":
            found.append((split(match[1]), match[2]))
    return found


def function(call: Any, name: str, owner: str | None, static: bool) -> list[str]:
    """The stub of a function or a method, an overload each."""
    indent = "    " if owner else ""
    lines = []
    for given, result in signatures(call, name):
        parameters = [parameter(text) for text in given]
        if owner and not static:
            parameters = ["self", *parameters[1:]]
        if name in ("__eq__", "__ne__"):
            parameters = ["self", "other: object"]
        lines.append(
            f"{indent}def {name}({', '.join(parameters)}) -> {type_of(result, False)}: ..."
        )
    signs = [f"{indent}@staticmethod"] if static else []
    lines = list(dict.fromkeys(lines))
    if len(lines) > 1:
        signs.insert(0, f"{indent}@overload")
    return [text for line in lines for text in (*signs, line)]


def result_of(call: Any) -> str:
    match = re.search(r"\) -> (.+)$", (inspect.getdoc(call) or "").splitlines()[0])
    return type_of(match[1], False) if match else "Any"


def fields(bound: type) -> list[str]:
    return [
        name
        for name, value in vars(bound).items()
        if isinstance(value, property) and value.fset is not None
    ]


def member(bound: type, name: str, value: Any) -> list[str]:
    if inspect.isclass(value):
        return ["    " + line if line else line for line in class_stub(value)]
    if isinstance(value, property):
        kind = result_of(value.fget)
        lines = ["    @property", f"    def {name}(self) -> {kind}: ..."]
        if value.fset is not None:
            lines += [f"    @{name}.setter", f"    def {name}(self, value: {kind}) -> None: ..."]
        return lines
    call = value.__func__ if isinstance(value, staticmethod) else value
    if not callable(call):
        return [f"    {name}: ClassVar[{type(value).__name__}]"]
    known = signatures(call, name)
    if name == "__init__" and not known:  # of a class that only the library makes
        return ["    def __init__(self, *args: Any, **kwargs: Any) -> None: ..."]
    if name == "__init__" and any(given[1:] == ["**kwargs"] for given, _ in known):
        keywords = [
            f"{field}: {result_of(vars(bound)[field].fget)} = ..." for field in fields(bound)
        ]
        head = ["    @overload"] if len(known) > 1 else []
        rest = function(value, name, bound.__name__, False)
        others = [line for line in rest if "**kwargs" not in line]
        while others and others[0].strip() == "@overload":
            others.pop(0)
        others = head + others if others else []
        stars = ", *, " + ", ".join(keywords) if keywords else ""
        return [*head, f"    def __init__(self{stars}) -> None: ...", *others]
    return function(call, name, bound.__name__, isinstance(value, staticmethod))


# What exceptions tell beside their text.
TOLD = {
    "CurveFileRefused": "notes: list[str]",
    "NoChart": "why: ChartRefusal",
    "WrongSampleBits": "fact: str",
}
SKIPPED = {"__module__", "__doc__", "__dict__", "__weakref__", "__new__", "__entries", "__hash__"}


def class_stub(bound: type) -> list[str]:
    if issubclass(bound, Exception):
        bases = ", ".join(base.__name__ for base in bound.__bases__)
        told = TOLD.get(bound.__name__, "...")
        return [f"class {bound.__name__}({bases}):", f"    {told}", ""]
    lines = [f"class {bound.__name__}(metaclass=_Bound):"]
    enumerators = getattr(bound, "__members__", {})
    lines += [f"    {name}: ClassVar[{bound.__qualname__}]" for name in enumerators]
    if enumerators:
        lines.append(f"    __members__: ClassVar[dict[str, {bound.__qualname__}]]")
    for name, value in vars(bound).items():
        if name not in enumerators and name not in SKIPPED and name != "__members__":
            lines += member(bound, name, value)
    if vars(bound).get("__hash__", 0) is None:
        lines.append("    __hash__: ClassVar[None]  # type: ignore[assignment]")
    elif enumerators:
        lines.append("    def __hash__(self) -> int: ...")
    return [*lines, ""] if len(lines) > 1 else [lines[0], "    ...", ""]


def constant(name: str, value: Any) -> str:
    kind = type(value).__name__
    if kind == "ndarray":
        kind = f"npt.NDArray[np.{value.dtype}]"
    if kind == "tuple":
        kind = "tuple[str, ...]"
    return f"{name}: {kind}"


def stub(module: Any, names: list[str]) -> str:
    lines: list[str] = []
    for name in names:
        value = getattr(module, name)
        if inspect.ismodule(value):
            lines.append(f"from . import {name} as {name}")
        elif inspect.isclass(value):
            lines += ["", *class_stub(value)]
        elif callable(value):
            lines += function(value, name, None, False)
        else:
            lines.append(constant(name, value))
    return "\n".join(lines) + "\n"


def main() -> None:
    folder = Path(sys.argv[1])
    core = importlib.import_module("greycard.core")
    text = HEAD + stub(core, core.__all__) + f"__all__ = {sorted(core.__all__)!r}\n"
    (folder / "__init__.pyi").write_text(text)
    for name, part in inspect.getmembers(core, inspect.ismodule):
        if name in core.__all__:
            names = [inner for inner in vars(part) if not inner.startswith("_")]
            text = stub(part, names)
            used = set(re.findall(r"\w+", text)) - set(names) | {"Picture"}
            others = ", ".join(sorted(used & set(core.__all__)))
            text = HEAD.replace("\n_P", f"\nfrom greycard.core import {others}\n\n_P", 1) + text
            (folder / f"{name}.pyi").write_text(text)
    (folder / "_core.pyi").write_text("from greycard.core import *\n")


if __name__ == "__main__":
    main()
