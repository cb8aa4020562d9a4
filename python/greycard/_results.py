"""What the results of all jobs have in common."""

from __future__ import annotations

import html
import json
import os
from collections.abc import Callable, Mapping
from dataclasses import dataclass, field
from typing import Any, Optional, TypeVar, Union

import numpy as np
from numpy.typing import NDArray

from . import core
from .core import present

FloatArray = NDArray[np.float64]
IntArray = NDArray[np.int32]
PictureArray = Union[NDArray[np.uint8], NDArray[np.uint16]]
PathLike = Union[str, "os.PathLike[str]"]
Progress = Optional[Callable[[float], Optional[bool]]]
T = TypeVar("T")


class Cancelled(Exception):
    """A progress callable ended the call by returning False."""


def frozen_array(values: Any, dtype: Any = np.float64) -> NDArray[Any]:
    """A copy that can't be changed."""
    array = np.array(values, dtype=dtype)
    array.flags.writeable = False
    return array


def _plain(value: object) -> object:
    # What JSON has no form of itself.
    if isinstance(value, np.ndarray):
        return value.tolist()
    if isinstance(value, np.generic):
        return value.item()
    if isinstance(value, os.PathLike):
        return os.fspath(value)
    raise TypeError(f"an option can't be {value!r}: give a number, a text or a list of these")


def with_options(options: Any, given: Mapping[str, object]) -> Any:
    """The options with those given by their names in JSON; None stands for the default.

    Raises
    ------
    ValueError
        A sentence that begins with the option.
    """
    told = {name: value for name, value in given.items() if value is not None}
    present.fromJson(json.dumps(told, default=_plain), options)
    return options


def provenance(options: Any = None, defaults: Any = None) -> present.Provenance:
    """Of a run that begins now, with the options that aren't the defaults."""
    made = present.provenanceNow()
    if options is not None:
        made.options = present.changedOptions(present.toJson(options), present.toJson(defaults))
    return made


def wanted(result: Optional[T]) -> T:
    """What a job gave that a callable didn't cancel."""
    if result is None:
        raise Cancelled("cancelled by the progress callable")
    return result


def page_in_frame(page: str) -> str:
    """A whole page for a notebook's cell, where its style can't reach the rest."""
    return (
        '<iframe style="width: 100%; height: 40em; border: 0" '
        f'srcdoc="{html.escape(page, quote=True)}"></iframe>'
    )


@dataclass(frozen=True, eq=False, repr=False)
class Result:
    """What a job gave.

    Attributes
    ----------
    core : object
        The same as the library's own struct, with all figures (see ``greycard.core``).
    provenance : greycard.core.present.Provenance
        When and with which options it was made.
    """

    core: Any = field(repr=False)
    provenance: present.Provenance = field(repr=False)

    def to_json(self, command: Optional[str] = None) -> str:
        """The JSON that the command writes for the same job, byte for byte.

        Parameters
        ----------
        command : str, optional
            The command line that stands under "command"; without it there is no such field.
        """
        stamp = present.Provenance(
            version=self.provenance.version,
            created=self.provenance.created,
            options=self.provenance.options,
            commandLine=command or "",
        )
        return present.stamped(self._json(), stamp)

    def _json(self) -> str:
        return present.toJson(self.core)


def write_text(path: PathLike, text: str) -> None:
    """Writes a file whole or not at all."""
    core.writeWholeFile(path, text.encode())
