"""Usage: llvm-cov show ... | tests/coverage.py

Adds up what was counted for all instances of each template, and prints what share of the lines and branches ran. A
branch is an outcome of a condition. Lists the lines that never ran and the conditions that never had one of their
outcomes.
"""
import collections
import re
import sys


def main():
    lines = {}
    branches = collections.Counter()
    source = {}
    for row in sys.stdin:
        if at := re.match(r"/.*/(Tarn/.*):$", row):
            file = at[1]
        elif at := re.match(r" *(\d+)\| *([^ |]*)\|(.*)", row):
            source[file, int(at[1])] = at[3].strip()
            if at[2]:
                lines[file, int(at[1])] = at[2] != "0"
        elif at := re.match(r".*Branch \((\d+):(\d+)\): \[True: (.*), False: (.*)\]", row):
            for outcome, count in zip(("true", "false"), at.group(3, 4)):
                branches[file, int(at[1]), int(at[2]), outcome] += count != "0"
    for (file, line), ran in lines.items():
        if not ran:
            print(f"{file}:{line}: never ran: {source[file, line]}")
    for (file, line, column, outcome), instances in branches.items():
        if instances == 0:
            print(f"{file}:{line}:{column}: never {outcome}: {source[file, line]}")
    for name, ran in ("lines", lines.values()), ("branches", branches.values()):
        print(f"{sum(map(bool, ran))} of {len(ran)} {name}, {sum(map(bool, ran)) / len(ran):.1%}")


main()
