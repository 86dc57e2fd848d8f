"""Usage: tests/mutants.py FILE SEED NUMBER

Prints a source with the small fault of that number, in an order of the seed's. Fails if it has no more of them.
"""
import pathlib
import random
import re
import sys

FAULTS = [(re.escape(right), wrong) for right, wrong in [
    (" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" == ", " != "), (" != ", " == "),
    (" && ", " || "), (" || ", " && "), (" + ", " - "), (" - ", " + "), (" + 1", ""), (" - 1", ""), ("++", "--"),
    ("true", "false"), ("false", "true"), ("std::min", "std::max"), ("std::max", "std::min"), (" | ", " & "),
    (" & ", " | "), ("<<", ">>"), ("if (!", "if ("), ("return !", "return ")]] + [
    (r"\bif \((?!constexpr)(.*)\) (return|break|continue)", r"if (!(\1)) \2"),
    (r"\bwhile \((.*)\)", r"while (false && (\1))"),
    (r"\breturn ([^;{}]+);", r"return !(\1);"),
    (r"\b(0x[0-9A-F]+|\d+)\b(?!['.])", r"(\1 + 1)")]
NO_CODE = re.compile(r"\s*($|#|//|\*|static_assert|namespace|template)")
STATEMENT = re.compile(
    r"\s+(?!return|using|case|default|template|friend|break|continue|constexpr|static_assert)[^/]*;")


def mutants(lines):
    """Each fault as a line's index and what stands there instead of that line and the next."""
    for i, (line, following) in enumerate(zip(lines, lines[1:])):
        if NO_CODE.match(line):
            continue
        code = line.split("//")[0].rstrip()
        for pattern, wrong in FAULTS:
            for at in re.finditer(pattern, code):
                yield i, [code[:at.start()] + at.expand(wrong) + code[at.end():], following]
        if STATEMENT.fullmatch(code):
            yield i, [following]
            if STATEMENT.fullmatch(following):
                yield i, [following, line]


def main(file, seed, number):
    lines = pathlib.Path(file).read_text().splitlines()
    faults = list(mutants(lines))
    random.Random(seed).shuffle(faults)
    if int(number) >= len(faults):
        sys.exit(1)
    i, replacement = faults[int(number)]
    print(*lines[:i], *replacement, *lines[i + 2:], sep="\n")


main(*sys.argv[1:])
