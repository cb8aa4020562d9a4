"""What the public headers name is in the module, or on a list with a reason."""

import re
from pathlib import Path

import greycard.core as core

HEADERS = Path(__file__).parents[2] / "api" / "greycard"

# Name in C++: why it is not there.
LEFT_OUT = {
    "ColorCorrectionUtils.SetCMGamma": "ColorMatrixOpt is defined in no public header",
    "ColorCorrectionUtils.SetColorMatrixOptPravite": "the same",
    "ColorCorrectionUtils.m_pMatrixOp": "the same",
    "CurveFileRefused.notes": "an attribute of the exception, not of its class",
    "TextView": "str",
    "OptionalText": "str or None",
    "numberOf": "float() and int()",
    "pictureOf": "Picture(array)",
    "CurveReading": "the part of importAnyCurve that is done without the interpreter lock",
    "TwoDLutHelper.Lut2DConfig": "an alias",
    "NoChart.why": "an attribute of the exception, not of its class",
    "WrongSampleBits.fact": "the same",
    "WhiteBalanceOptions.from": "from_, as from is a keyword",
    "WhiteBalanceMapping.from": "the same",
    "SkinSet.size": "a part of a type",
    "Start.fresh": "of batch.Folder.Start",
    "Start.resume": "the same",
}
# Namespaces of the library that are modules here.
NAMESPACES = ("present", "exchange", "batch")

SKIPPED = re.compile(
    r"\b(using|friend|operator|typedef|static_assert|template|namespace)\b|~|= delete|^$|^#"
)


def plain(text):
    """Without comments, preprocessor lines, export signs and what is not public."""
    text = re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.S)
    text = re.sub(r"^\s*#.*$|\bGREYCARD_\w*EXPORT\b|\[\[\w+\]\]", "", text, flags=re.M)
    text = re.sub(r"\b(private|protected):.*?(?=\n\};|\bpublic:)", "", text, flags=re.S)
    return re.sub(r"\bpublic:", "", text)


def statements(text):
    """(names of the classes around, text) of each statement; functions' bodies are left out."""
    around, start, bodies, brackets = [], 0, 0, 0
    for at, sign in enumerate(text):
        brackets += (sign == "(") - (sign == ")")
        if sign not in "{};" or brackets:
            continue
        said = " ".join(text[start:at].split())
        if bodies == 0 and sign != "}":
            yield [name for name in around if name], said + sign
        scope = re.match(r"(?:class|struct|namespace) ([\w:]+)", said)
        if sign == "{" and bodies == 0 and scope:
            around.append(None if said.startswith("namespace") else scope[1])
        elif sign == "{":
            bodies += 1
        elif sign == "}" and bodies:
            bodies -= 1
        elif sign == "}" and around:
            around.pop()
        if bodies == 0:
            start = at + 1


def names(header):
    text = plain(header.read_text())
    for enum, body in re.findall(r"\benum(?: class)? (\w+)[^{;]*\{([^}]*)\}", text):
        for enumerator in re.findall(r"(\w+)\s*(?:=[^,]*)?(?:,|$)", body.strip()):
            yield [enum, "None_" if enumerator == "None" else enumerator]
    for classes, said in statements(text):
        opened = re.match(r"(?:class|struct|enum(?: class)?) (\w+)[^;]*\{$", said)
        call = re.match(r"[^=]*?\b(\w+)\(", said)
        if opened:
            yield [*classes, opened[1]]
        elif SKIPPED.search(said) or said.startswith(("class ", "struct ", ";", "{", ",")):
            continue
        elif call and call[1] not in classes:
            yield [*classes, call[1]]
        elif not call and (classes or "constexpr" in said):
            for _ in range(said.count("<")):
                said = re.sub(r"<[^<>]*>", "", said)
            for name in re.findall(r"(\w+)\s*(?:=[^,;{]*)?(?=[,;{])", said):
                yield [*classes, name]


def test_the_walk_sees_what_a_reader_sees():
    found = {".".join(name) for header in HEADERS.rglob("*.h") for name in names(header)}
    assert {
        "GammaCurveModel.AddGammaCurve",
        "ColorCorrectionSettings.m_fNoiseRate",
        "SamplingReport.kClippedAbove",
        "SkinColorHelper.DataPt.y",
        "AWBUtils.GetTranformPtbyAffineTransform",
        "kPatchCount",
        "luma601",
        "isWellFormed",
        "ChartDetection.found",
        "FitLight",
    } <= found
    assert len(found) > 700 and not {name for name in found if name.endswith("m_pParent")}


def test_every_public_name_is_bound_or_left_out_for_a_reason():
    missing = []
    for header in sorted(HEADERS.rglob("*.h")):
        folder = header.parent.name
        module = getattr(core, folder) if folder in NAMESPACES else core
        for name in names(header):
            place = module
            for part in name:
                place = getattr(place, part, None)
            dotted = ".".join(name)
            if place is None and dotted not in LEFT_OUT and name[0] not in LEFT_OUT:
                missing.append(f"{header.name}: {dotted}")
    assert not missing
