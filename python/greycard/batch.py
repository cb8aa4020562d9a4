"""Many photographs: one job for each, in processes of this machine or on a cluster.

`run` fills a folder as ``greycard batch`` does, to the last byte, whoever does the work. Tasks are
files, not pixels: workers read the photographs themselves and write each result under a name of its
own before it is renamed, so that a worker may die at any moment and a task may run twice.
"""

from __future__ import annotations

import contextlib
import importlib
import json
import multiprocessing
import os
import queue
import signal
import threading
from collections.abc import Callable, Iterator, Mapping, Sequence
from dataclasses import dataclass
from multiprocessing.connection import Connection
from pathlib import Path
from typing import TYPE_CHECKING, Any, Optional, Union

from . import core
from ._results import (
    Cancelled,
    FloatArray,
    PathLike,
    Progress,
    Result,
    _plain,
    frozen_array,
    page_in_frame,
    provenance,
)
from .core import batch

if TYPE_CHECKING:
    from distributed import Client

#: How often a file may end the process that works on it before that is its reason.
ATTEMPTS = 3

# A worker of several threads still does one photograph at a time: each takes memory for two.
_one_at_a_time = threading.Lock()


class BatchError(Exception):
    """A photograph whose result could not be put away, and why.

    Attributes
    ----------
    file : str
    reason : str
    """

    def __init__(self, file: str, reason: str) -> None:
        super().__init__(file, reason)
        self.file = file
        self.reason = reason

    def __str__(self) -> str:
        return f"{self.file}: {self.reason}"


class VersionError(Exception):
    """A worker that is of another version, or that doesn't see the folder."""


@dataclass(frozen=True)
class _Task:
    photo: str
    name: str
    settings: str
    output: str
    folder: str
    version: str


@dataclass(frozen=True)
class _Told:
    # What a worker says of a task; a text where it is of another version.
    other_version: Optional[str] = None


def _settings_of(text: str) -> Any:
    settings = batch.Settings()
    batch.fromJson(text, settings)
    return settings


def _do(task: _Task) -> _Told:
    if core.libraryVersion() != task.version:
        return _Told(other_version=core.libraryVersion())
    file = batch.File(photo=task.photo, name=task.name)
    with _one_at_a_time, _working_folder(task.folder):
        core.setPictureThreads(1)  # there is a process for each core
        try:
            result: Any = batch.doPhotograph(file, _settings_of(task.settings))
            batch.writeResult(batch.resultFile(task.output, file), result)
        except (OSError, RuntimeError, ValueError, MemoryError) as error:
            raise BatchError(task.photo, str(error) or type(error).__name__) from None
    return _Told()


@contextlib.contextmanager
def _working_folder(folder: str) -> Iterator[None]:
    before = os.getcwd()
    os.chdir(folder)
    try:
        yield
    finally:
        os.chdir(before)


@dataclass(frozen=True, eq=False)
class Light:
    """The fits under one light, three or more.

    Attributes
    ----------
    name : str
    fits : int
    mean, spread : ndarray, 3 x 3
        Of the matrix: mean, and standard deviation of each entry.
    outside : tuple of str
        Photographs whose fit lies outside the others.
    """

    name: str
    fits: int
    mean: FloatArray
    spread: FloatArray
    outside: tuple[str, ...]


@dataclass(frozen=True, eq=False)
class Photograph:
    """What became of one photograph; `reason` says why there is no result."""

    photo: str
    light: Optional[str]
    mean_delta_e: Optional[float]
    worst_delta_e: Optional[float]
    matrix: Optional[FloatArray]
    gains: Optional[FloatArray]
    warnings: tuple[str, ...]
    reason: str


@dataclass(frozen=True, eq=False)
class Batch(Result):
    """What many photographs gave.

    Attributes
    ----------
    folder : str
        With index.html, results.csv, summary.json, and a file for each photograph.
    photographs : tuple of Photograph
        In the order of the list.
    failures : dict
        Reason by photograph.
    lights : tuple of Light
        The matrices under each light.
    """

    folder: str
    photographs: tuple[Photograph, ...]
    failures: dict[str, str]
    lights: tuple[Light, ...]

    def _repr_html_(self) -> str:
        return page_in_frame(Path(self.folder, "index.html").read_text(encoding="utf-8"))

    def _json(self) -> str:
        return batch.toJson(self.core)


def _photograph(result: Any) -> Photograph:
    figures = result.figures
    return Photograph(
        photo=result.photo,
        light=None if figures.light is None else core.illumName(figures.light),
        mean_delta_e=figures.meanError,
        worst_delta_e=figures.worstError,
        matrix=None if figures.matrix is None else frozen_array(figures.matrix),
        gains=None if figures.whiteBalance is None else frozen_array(figures.whiteBalance),
        warnings=tuple(figures.warnings),
        reason=result.reason,
    )


def _light(light: Any) -> Light:
    return Light(
        name=core.illumName(light.light),
        fits=light.fits,
        mean=frozen_array(light.mean),
        spread=frozen_array(light.spread),
        outside=tuple(one.photo for one in light.outside),
    )


def settings_for(
    job: str, settings: Union[PathLike, Mapping[str, Any], None], options: Mapping[str, Any]
) -> Any:
    """The settings of a run, as the library takes them."""
    known = batch.jobFromName(job)
    if known is None:
        raise ValueError(f'job: "{job}"; wanted one of {", ".join(batch.kJobNames)}')
    made = batch.Settings(job=known)
    if isinstance(settings, (str, os.PathLike)):
        made = batch.readSettings(settings, made)
    elif settings is not None:
        batch.fromJson(json.dumps(settings, default=_plain), made)
    if made.job != known:
        raise ValueError(f"settings: they are for the job {made.job.name}, not {job}")
    if options:
        batch.fromJson(json.dumps({"options": dict(options)}, default=_plain), made)
    return made


class _Run:
    """The work that is left, and how far it is."""

    def __init__(self, files: Sequence[Any], settings: Any, output: str, progress: Progress):
        self.settings = settings
        self.output = output
        text = batch.toJson(settings)
        place = (os.path.abspath(output), os.getcwd(), core.libraryVersion())
        self.tasks = [_Task(file.photo, file.name, text, *place) for file in files]
        self._progress = progress
        self._done = 0

    def tell_done(self) -> None:
        self._done += 1
        if self._progress is not None and self._progress(self._done / len(self.tasks)) is False:
            raise Cancelled("cancelled by the progress callable; resume goes on from here")

    def put_reason(self, task: _Task, reason: str) -> None:
        """A file that ends the processes that work on it has that as its result."""
        file = batch.File(photo=task.photo, name=task.name)
        result = batch.failedResult(file, self.settings, reason)
        batch.writeResult(batch.resultFile(self.output, file), result)


# --- Processes of this machine ------------------------------------------------------------------


def _serve(tasks: Connection) -> None:
    """A worker process: tasks come in, outcomes go out, until the other end is closed."""
    signal.signal(signal.SIGINT, signal.SIG_IGN)  # Ctrl-C is for who started it
    while True:
        try:
            task = tasks.recv()
        except EOFError:
            return
        try:
            outcome: Any = _do(task)
        except Exception as error:  # is raised where the run was called
            outcome = error
        tasks.send(outcome)


class _Worker:
    """A process of this machine that does one task after the other."""

    def __init__(self) -> None:
        context = multiprocessing.get_context("spawn")  # a fork after OpenCV has run can hang
        self._tasks, other = context.Pipe()
        self._process = context.Process(target=_serve, args=(other,), daemon=True)
        self._process.start()
        other.close()

    def do(self, task: _Task) -> Any:
        """The outcome. Raises EOFError or OSError when the process ended on the way."""
        self._tasks.send(task)
        return self._tasks.recv()

    def end(self) -> None:
        self._process.terminate()
        self._process.join()
        self._tasks.close()


class _Crew:
    """Threads with a process each, so that it is known which file a process died of."""

    def __init__(self, tasks: Sequence[_Task]) -> None:
        self._waiting: queue.SimpleQueue[_Task] = queue.SimpleQueue()
        for task in tasks:
            self._waiting.put(task)
        self.outcomes: queue.SimpleQueue[tuple[_Task, Any]] = queue.SimpleQueue()
        self._stopped = threading.Event()
        self._busy: set[_Worker] = set()
        self._threads: list[threading.Thread] = []

    def start(self, workers: int) -> None:
        self._threads = [threading.Thread(target=self._work) for _ in range(workers)]
        for thread in self._threads:
            thread.start()

    def stop(self) -> None:
        """Ends what is under way: results are whole or not there."""
        self._stopped.set()
        for worker in list(self._busy):
            worker.end()
        for thread in self._threads:
            thread.join()

    def _work(self) -> None:
        task: Any = None
        worker: Optional[_Worker] = None
        try:
            worker = self._hire()
            while not self._stopped.is_set():
                task = self._waiting.get_nowait()
                outcome = None
                for _ in range(ATTEMPTS):
                    try:
                        outcome = worker.do(task)
                        break
                    except (EOFError, OSError):
                        if self._stopped.is_set():
                            return
                        self._busy.discard(worker)
                        worker.end()
                        worker = self._hire()
                self.outcomes.put((task, outcome))
        except queue.Empty:
            pass
        except BaseException as error:  # the caller waits for it
            self.outcomes.put((task, error))
        finally:
            if worker is not None:
                self._busy.discard(worker)
                worker.end()

    def _hire(self) -> _Worker:
        worker = _Worker()
        self._busy.add(worker)
        return worker


def _run_here(run: _Run, workers: int) -> None:
    crew = _Crew(run.tasks)
    crew.start(min(workers, len(run.tasks)))
    try:
        for _ in run.tasks:
            task, outcome = crew.outcomes.get()
            if isinstance(outcome, BaseException):
                raise outcome
            if outcome is None:
                run.put_reason(
                    task, f"each of the {ATTEMPTS} processes that worked on it ended on the way"
                )
            run.tell_done()
    finally:
        crew.stop()


# --- A cluster ----------------------------------------------------------------------------------


def _see(output: str) -> tuple[str, bool]:
    return core.libraryVersion(), os.path.isdir(output)


def _check_workers(client: Any, output: str) -> None:
    """That all workers are of this version and see the folder of results."""
    seen = client.run(_see, output, on_error="return")
    own = core.libraryVersion()
    for worker, told in sorted(seen.items()):
        if isinstance(told, BaseException):
            raise VersionError(
                f"the worker {worker} can't do the job ({told}): install greycard {own} there"
            )
        version, sees = told
        if version != own:
            raise VersionError(_of_other_version(worker, version, own))
        if not sees:
            raise VersionError(
                f"the worker {worker} doesn't see the folder {output}: photographs and results "
                "must lie on a file system that all workers share, under the same name"
            )


def _of_other_version(worker: str, version: str, own: str) -> str:
    return (
        f"the worker {worker} has greycard {version}, this program {own}: install the same version "
        "on all"
    )


class _OnCluster:
    def __init__(self, client: Any, run: _Run) -> None:
        self.client = client
        self.run = run
        self.wrong: dict[str, str] = {}  # version by address, of workers that joined late
        self.under_way: dict[Any, tuple[Any, _Task]] = {}  # by the future's key

    def submit(self, task: _Task) -> Any:
        others: dict[str, Any] = {}
        if self.wrong:
            known = self.client.scheduler_info()["workers"]
            right = [address for address in known if address not in self.wrong]
            if not right:
                worker, version = next(iter(self.wrong.items()))
                raise VersionError(_of_other_version(worker, version, core.libraryVersion()))
            others["workers"] = right
        future = self.client.submit(_do_at, task, pure=False, **others)
        self.under_way[future.key] = (future, task)
        return future

    def do_all(self) -> None:
        try:
            first = [self.submit(task) for task in self.run.tasks]
            futures = _distributed().as_completed(first, loop=self.client.loop)
            for future in futures:
                again = self.take(future)
                if again is not None:
                    futures.add(again)
        finally:
            self.client.cancel([future for future, _ in self.under_way.values()], force=True)

    def take(self, future: Any) -> Any:
        """The outcome of a task; a future where it is to be done again."""
        task = self.under_way.pop(future.key)[1]
        try:
            told, worker = future.result()
        except _distributed().KilledWorker:
            self.run.put_reason(task, "the workers that worked on it ended on the way")
        else:
            if told.other_version is not None:
                self.wrong[worker] = told.other_version
                return self.submit(task)
        self.run.tell_done()
        return None


def _do_at(task: _Task) -> tuple[_Told, str]:
    return _do(task), _distributed().get_worker().address


def _distributed() -> Any:
    try:
        return importlib.import_module("distributed")
    except ImportError as error:
        raise ImportError(
            f"a scheduler needs dask.distributed (Debian: python3-distributed): {error}"
        ) from error


@contextlib.contextmanager
def _client_of(scheduler: Any) -> Iterator[Any]:
    own = isinstance(scheduler, str)
    client = _distributed().Client(scheduler, set_as_default=False) if own else scheduler
    try:
        yield client
    finally:
        if own:
            client.close()


def _run_on(client: Any, run: _Run) -> None:
    _check_workers(client, os.path.abspath(run.output))
    _OnCluster(client, run).do_all()


def run(
    job: str,
    files: Union[PathLike, Sequence[PathLike]],
    output: PathLike,
    *,
    scheduler: Union[str, Client, None] = None,
    workers: Optional[int] = None,
    settings: Union[PathLike, Mapping[str, Any], None] = None,
    resume: bool = False,
    progress: Optional[Callable[[float], Optional[bool]]] = None,
    **options: Any,
) -> Batch:
    """Does a job on every photograph and fills a folder as ``greycard batch`` does.

    Parameters
    ----------
    job : str
        "chart", "ccm" or "evaluate".
    files : path, or list of paths
        Folders of photographs, lists of them (.txt or .lst, a name a line), and photographs.
    output : path
        Folder for the results; new or empty, unless `resume` is told.
    scheduler : str or distributed.Client
        Address of a dask scheduler, as in "tcp://10.0.0.1:8786", or a client of one; None for
        processes of this machine.
    workers : int
        Processes of this machine; as many as there are cores unless told otherwise.
    settings : path or mapping
        A settings file (docs/batch.md), or what would stand in one.
    resume : bool
        Go on where an earlier run left off: what is done and unchanged stays.
    progress : callable
        Called with the fraction done, 0..1; False ends the run, which can be resumed.
    **options
        Of the job by their names in JSON, as for `greycard.fit`.

    Returns
    -------
    Batch

    Raises
    ------
    JobError
        Options that no photograph could be done with; a folder that holds anything, or that another
        run writes into.
    ValueError
        Settings that can't be.
    VersionError
        A worker of another version, or one that doesn't see the folder.
    BatchError
        A result that could not be put away; it names the photograph.

    Examples
    --------
    >>> import greycard, greycard.batch
    >>> for light in ("A", "D65"):
    ...     chart = greycard.simulate_chart(light, size=(640, 480), file=f"{light}.png")
    ...     chart.write()
    >>> overrides = [{"pattern": "A.png", "options": {"light": "A"}}]
    >>> done = greycard.batch.run(
    ...     "ccm", ["A.png", "D65.png"], "results", workers=1, settings={"overrides": overrides}
    ... )
    >>> [photo.light for photo in done.photographs], done.failures
    (['A', 'D65'], {})
    """
    asked = settings_for(job, settings, options)
    origin = _origin(asked)
    inputs = [files] if isinstance(files, (str, os.PathLike)) else list(files)
    listed = batch.photographsOf(inputs).files
    batch.checkSettings(asked, listed)
    start = batch.Folder.Start.resume if resume else batch.Folder.Start.fresh
    folder = os.fspath(output)
    with _client_of(scheduler) as client:  # before there is a folder
        held = batch.Folder(folder, start)
        left = [
            file
            for file in listed
            if not (resume and batch.isDone(batch.resultFile(folder, file), file, asked))
        ]
        if left and client is None:
            _run_here(_Run(left, asked, folder, progress), workers or os.cpu_count() or 1)
        elif left:
            _run_on(client, _Run(left, asked, folder, progress))
    overview = held.finish(listed, asked)
    summary = overview.summary
    return Batch(
        core=summary,
        provenance=origin,
        folder=folder,
        photographs=tuple(_photograph(result) for result in overview.results),
        failures={failure.photo: failure.reason for failure in summary.failures},
        lights=tuple(_light(light) for light in summary.lights),
    )


def _origin(settings: Any) -> Any:
    made = provenance()
    made.options = core.present.changedOptions(
        batch.toJson(settings), batch.toJson(batch.Settings())
    )
    return made
