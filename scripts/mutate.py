#!/usr/bin/env python3
"""Makes seeded one-line faults in a folder of src/ and tells which of them the folder's own tests catch.

    scripts/mutate.py                        every folder, 30 faults each
    scripts/mutate.py gamma --seed 7         one folder, another choice of faults
    scripts/mutate.py gamma --list           the faults that would be tried, without building

The choice depends on the seed and the sources only. It goes round the functions of the folder and, within a
round, takes constants and conditions oftener than arithmetic and statements. Works on a copy of the tree under
build/mutate/, built with -O1 and the bounds checks of the standard library, which stand for the sanitizers that the
suite runs under. A fault is caught when a test fails, crashes or exceeds the time limit (ten seconds and five times
what all tests take, of processor time). A fault that doesn't compile, that compiles to the same objects, or that
scripts/harmless_faults.txt tells to be none, is replaced by another.
"""
import argparse
import collections
import hashlib
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = "support numerics picture gamma colour detect fitting lut2d noise simulate jobs present documents matrix_fit exchange batch raw".split()
# Folders whose tests are not in the folder of the same name.
TESTS = {"documents": "present"}
TURNS = ("constant", "branch", "operator", "constant", "branch", "statement")

# What is blanked out before faults are sought: comments, texts, preprocessor lines, assertions, exceptions, logs.
BLANKS = re.compile(
    r"""//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])'"""
    r"""|^[ \t]*\#(?:\\\n|[^\n])*""", re.S | re.M)
TALK = re.compile(r"\b(?:static_assert|throw|nrerror|printError|writeDebug|writeError|writeOutput|assert|using)\b[^;]*;")
ROOM = re.compile(r"\.reserve\([^;]*;|\[\[[^\]]*\]\]|\w [\w:<>]+\[[\w' *+]+\][;,]|template <[^\n]*|<[^<>;()&|=]*\d>")

NUMBER = re.compile(r"(?<![\w.'])(0[xX][\da-fA-F']+|\d[\d']*(?:\.\d*)?(?:[eE][-+]?\d+)?)([uUlLzZfF]*)(?![\w.'])")
SWAPS = (  # kind, pattern of one token, what it may become
    ("branch", r" < ", (" > ", " <= ", " >= ")),
    ("branch", r" > ", (" < ", " >= ", " <= ")),
    ("branch", r" <= ", (" < ", " >= ", " > ")),
    ("branch", r" >= ", (" > ", " <= ", " < ")),
    ("branch", r" == ", (" != ",)),
    ("branch", r" != ", (" == ",)),
    ("branch", r" && ", (" || ",)),
    ("branch", r" \|\| ", (" && ",)),
    ("branch", r" \? ", (" == false ? ",)),
    ("branch", r"(?<![\w)\]!])!(?=[\w(*])", ("",)),
    ("branch", r"\btrue\b", ("false",)),
    ("branch", r"\bfalse\b", ("true",)),
    ("branch", r"\bcontinue;", ("break;",)),
    ("branch", r"\bbreak;", ("continue;",)),
    ("operator", r" \+ ", (" - ",)),
    ("operator", r" - ", (" + ",)),
    ("operator", r" \* ", (" / ",)),
    ("operator", r" / ", (" * ",)),
    ("operator", r" % ", (" / ",)),
    ("operator", r" << ", (" >> ",)),
    ("operator", r" >> ", (" << ",)),
    ("operator", r" & ", (" | ",)),
    ("operator", r" \| ", (" & ",)),
    ("operator", r" \+= ", (" -= ",)),
    ("operator", r" -= ", (" += ",)),
    ("operator", r" \*= ", (" /= ",)),
    ("operator", r" /= ", (" *= ",)),
    ("operator", r"(?<=[(,=?:{] )-(?=[\w(])|(?<=[({])-(?=[\w(])|(?<=return )-(?=[\w(])", ("",)),
    ("operator", r"\bmin(?=[(<])", ("max",)),
    ("operator", r"\bmax(?=[(<])", ("min",)),
    ("operator", r"\bfloor(?=\()", ("ceil",)),
    ("operator", r"\bceil(?=\()", ("floor",)),
    ("operator", r"\b(?:round|lround|nearbyint|rint|lrint)(?=\()", ("floor",)),
    ("operator", r"\bstd::abs(?=\()", ("",)),
    ("operator", r"\bsin(?=\()", ("cos",)),
    ("operator", r"\bcos(?=\()", ("sin",)),
    ("operator", r"\bfront(?=\(\))", ("back",)),
    ("operator", r"\bback(?=\(\))", ("front",)),
)
STATEMENT = re.compile(r"^\s+(?:else )?((?:[\w:.\[\]()*]|->)+ (?:[-+*/|&^]|<<|>>)?= [^;]*;|(?:[\w:.\[\]]|->)+\([^;]*\);|(?:\+\+|--)[\w.\[\]]+;)\s*$")
CONDITION = re.compile(r"\b(?:if|while) \(")
FUNCTION = re.compile(r"^(?:  )?(?!namespace|struct|class|enum|union|if|for|while|else|switch|do|try|return|\}|\s).*\{$")

Fault = collections.namedtuple("Fault", "path line kind old new")


def harmless_faults():
    """{(path, old line, new line), ...} of the survivors that were looked at and change nothing anyone could notice.

    The file has blocks of four lines or more: path, "-" and the old line, "+" and the new one, the reason. An old line
    must stand in its file once, so that none is meant that has changed since, or another like it.
    """
    faults = set()
    for block in (ROOT / "scripts" / "harmless_faults.txt").read_text().strip().split("\n\n"):
        lines = [line for line in block.split("\n") if not line.startswith("#")]
        if not lines:
            continue
        if len(lines) < 4 or lines[1][:2] != "- " or lines[2][:2] != "+ " or not lines[3].strip():
            sys.exit(f"scripts/harmless_faults.txt: this is not path, - old, + new and a reason:\n{block}")
        path, old, new = lines[0], lines[1][2:], lines[2][2:]
        found = [line.strip() for line in (ROOT / path).read_text().split("\n")].count(old)
        if found != 1:
            sys.exit(f"scripts/harmless_faults.txt: in {path} this line stands {found} times: {old}")
        faults.add((path, old, new))
    return faults


def blank(text):
    """The text with all that is no code to change replaced by characters that no pattern matches."""
    for pattern in (BLANKS, TALK, ROOM):
        text = pattern.sub(lambda m: re.sub(r"[^\n]", "\1", m.group()), text)
    return text


def other_number(digits, rng):
    """A whole number one off; another number with one of its first three digits changed."""
    plain = digits.replace("'", "")
    if plain.lower().startswith("0x"):
        return hex(int(plain, 16) + rng.choice((-1, 1)))
    if plain.isdigit():
        return str(max(int(plain) + rng.choice((-1, 1)), 0 if int(plain) else 1))
    mantissa = re.match(r"[\d.]+", plain).group()
    places = [i for i, c in enumerate(mantissa) if c != "." and mantissa[:i + 1].strip("0.")][:3]
    i = rng.choice(places or [0])
    digit = int(mantissa[i])
    changed = digit + (1 if digit == 0 or digit < 9 and rng.random() < 0.5 else -1)
    return plain[:i] + str(changed) + plain[i + 1:]


def closing(text, start):
    """Where the bracket that opens at `start` closes within the line, or -1."""
    depth = 0
    for i in range(start, len(text)):
        depth += (text[i] == "(") - (text[i] == ")")
        if depth == 0:
            return i
    return -1


def faults_of_line(path, number, line, masked, rng):
    def fault(kind, start, end, text):
        return Fault(path, number, kind, line, line[:start] + text + line[end:])

    for match in NUMBER.finditer(masked):
        yield fault("constant", match.start(1), match.end(1), other_number(match.group(1), rng))
    for kind, pattern, choices in SWAPS:
        for match in re.finditer(pattern, masked):
            yield fault(kind, match.start(), match.end(), rng.choice(choices))
    for match in CONDITION.finditer(masked):
        end = closing(masked, match.end() - 1)
        if end > 0 and "; " not in masked[match.start():end]:
            yield fault("branch", match.end(), end, "!(" + line[match.end():end] + ")")
    match = STATEMENT.match(masked)
    if match and not re.match(r"\s*(?:return|delete|if|for|while|\w+::\w+\()\b", masked):
        yield fault("statement", match.start(1), match.end(1), ";")


def all_faults(folder, rng):
    """{function: {kind: [fault, ...]}} of a folder, both shuffled."""
    functions = {}
    for path in sorted((ROOT / "src" / folder).rglob("*")):
        if path.suffix not in (".cpp", ".h"):
            continue
        text = path.read_text()
        function = ""
        for number, (line, masked) in enumerate(zip(text.split("\n"), blank(text).split("\n")), 1):
            if FUNCTION.match(line):
                function = f"{number}"
            for fault in faults_of_line(path.relative_to(ROOT), number, line, masked, rng):
                functions.setdefault((path, function), {}).setdefault(fault.kind, []).append(fault)
            if line.startswith("}"):
                function = ""
    order = list(functions.values())
    rng.shuffle(order)
    for kinds in order:
        for kind in kinds:
            rng.shuffle(kinds[kind])
    return order


def choose(folder, seed):
    """All faults of a folder, each once, in the order in which they are to be tried."""
    functions = all_faults(folder, random.Random(f"{folder} {seed}"))
    turn = 0
    while functions:
        for kinds in functions:
            wanted = [kind for kind in TURNS[turn % len(TURNS):] + TURNS if kind in kinds]
            yield kinds[wanted[0]].pop()
            if not kinds[wanted[0]]:
                del kinds[wanted[0]]
            turn += 1
        functions = [kinds for kinds in functions if kinds]


def copy_tree(copy):
    """Brings the scratch copy up to date; files that are as they should be keep their time."""
    wanted = set()
    for top in sorted(ROOT.iterdir()):
        if top.name in ("build", "out") or top.name.startswith("."):
            continue
        for path in [top] if top.is_file() else sorted(top.rglob("*")):
            if path.is_file():
                target = copy / path.relative_to(ROOT)
                wanted.add(target)
                if not target.exists() or target.read_bytes() != path.read_bytes():
                    target.parent.mkdir(parents=True, exist_ok=True)
                    target.write_bytes(path.read_bytes())
    for path in copy.rglob("*"):
        if path.is_file() and path not in wanted:
            path.unlink()


class Trial:
    """The scratch copy and build, which the folders use one after the other."""

    def __init__(self, folder, work, jobs):
        self.folder, self.jobs, self.tests = folder, jobs, TESTS.get(folder, folder)
        self.copy, self.build = work / "tree", work / "build"
        copy_tree(self.copy)
        options = {"CMAKE_BUILD_TYPE": "Mutate", "CMAKE_CXX_FLAGS_MUTATE": "-O1 -DNDEBUG -D_GLIBCXX_ASSERTIONS",
                   "CMAKE_CXX_COMPILER_LAUNCHER": shutil.which("ccache") or "", "GREYCARD_BUILD_CLI": "OFF",
                   "GREYCARD_BUILD_BENCH": "OFF", "GREYCARD_BUILD_FUZZERS": "OFF",
                   "CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE": "PRE_TEST"}
        self.call("cmake", "-S", self.copy, "-B", self.build, "-G", "Ninja",
                  *(f"-D{name}={value}" for name, value in options.items()), check=True)
        self.make("tests", check=True)
        self.program = self.build / "tests" / self.tests / f"{self.tests}_tests"
        self.known = self.objects()
        self.limit = 600
        start = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        if self.caught():
            sys.exit(f"{folder}: the tests fail without any fault")
        self.limit = 10 + int(5 * (resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - start))

    def call(self, *command, check=False):
        done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace")
        if check and done.returncode:
            sys.exit(done.stdout)
        return done.returncode == 0

    def make(self, what, check=False):
        targets = {"tests": [f"{self.tests}_tests"],
                   "library": [f"greycard_{name}" for name in (self.folder, "pxcore")
                               if name == self.folder or self.folder == "noise"]}[what]
        return self.call("cmake", "--build", self.build, "--parallel", str(self.jobs), "--target", *targets,
                         check=check)

    def objects(self):
        folder = self.build / "src" / self.folder
        return [hashlib.sha256(path.read_bytes()).digest() for path in sorted(folder.rglob("*.o"))]

    def caught(self):
        """How a test fails, crashes or hangs; an empty text when all pass."""
        def limits():
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_AS, (6 << 30, 6 << 30))
            # Of the processor, so that a busy machine doesn't count; a deadlock ends by the clock.
            resource.setrlimit(resource.RLIMIT_CPU, (self.limit, self.limit + 5))

        temporary = self.build / "temporary"
        temporary.mkdir(exist_ok=True)
        try:
            done = subprocess.run([self.program, "--gtest_fail_fast", "--gtest_brief=1"], cwd=temporary,
                                  env=dict(os.environ, TEST_TMPDIR=f"{temporary}/"), timeout=60 * self.limit,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  preexec_fn=limits)
        except subprocess.TimeoutExpired:
            return "hung"
        if done.returncode in (-signal.SIGXCPU, -signal.SIGKILL):
            return "hung"
        return "failed" if done.returncode else ""

    def run(self, fault):
        """"failed", "hung", "" for survived, or why the fault doesn't count."""
        source = self.copy / fault.path
        whole = source.read_text()
        lines = whole.split("\n")
        lines[fault.line - 1] = fault.new
        source.write_text("\n".join(lines))
        try:
            if not self.make("library"):
                return "not compiled"
            if self.objects() == self.known:
                return "same objects"
            return self.caught() if self.make("tests") else "not compiled"
        finally:
            source.write_text(whole)


def report(folder, arguments):
    """Tries the faults of one folder; returns (caught, tried)."""
    start = time.monotonic()
    trial = Trial(folder, arguments.work, arguments.jobs)
    counts = collections.Counter()
    survivors = []
    harmless = harmless_faults()
    for fault in choose(folder, arguments.seed):
        known = (str(fault.path), fault.old.strip(), fault.new.strip()) in harmless
        result = "harmless" if known else trial.run(fault)
        counts[result] += 1
        if not result:
            survivors.append(fault)
        if counts["failed"] + counts["hung"] + counts[""] == arguments.count:
            break
    caught = counts["failed"] + counts["hung"]
    tried = caught + len(survivors)
    print(f"{folder:10} {caught:3} of {tried:3} caught ({100.0 * caught / max(tried, 1):5.1f} %), {counts['hung']} of "
          f"them by the time limit; replaced: {counts['not compiled']} not compiled, {counts['same objects']} without "
          f"effect on the objects, {counts['harmless']} known as harmless; {(time.monotonic() - start) / 60.0:.1f} min",
          flush=True)
    for fault in sorted(survivors):
        print(f"  {fault.path}:{fault.line}: -{fault.old.strip()}  +{fault.new.strip()}", flush=True)
    return caught, tried


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folders", nargs="*", metavar="FOLDER", help=f"of {', '.join(FOLDERS)}; all when none is named")
    parser.add_argument("--seed", type=int, default=1, help="chooses the faults (1)")
    parser.add_argument("--count", type=int, default=30, help="faults for each folder (30)")
    parser.add_argument("--jobs", type=int, default=1, help="compilers at a time (1)")
    parser.add_argument("--work", type=pathlib.Path, default=ROOT / "build" / "mutate", help="folder for copy and build")
    parser.add_argument("--list", action="store_true", help="print the faults instead of trying them")
    arguments = parser.parse_args()
    unknown = set(arguments.folders) - set(FOLDERS)
    if unknown:
        parser.error(f"no such folder: {', '.join(sorted(unknown))}")
    folders = arguments.folders or FOLDERS
    if arguments.list:
        for folder in folders:
            for _, fault in zip(range(arguments.count), choose(folder, arguments.seed)):
                print(f"{fault.path}:{fault.line}: -{fault.old.strip()}  +{fault.new.strip()}")
        return 0
    os.nice(19)
    arguments.work = arguments.work.resolve()
    results = [report(folder, arguments) for folder in folders]
    caught, tried = (sum(column) for column in zip(*results))
    print(f"{'all':10} {caught:3} of {tried:3} caught ({100.0 * caught / max(tried, 1):5.1f} %)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
