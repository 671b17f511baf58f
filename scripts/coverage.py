"""Writes the coverage report: coverage.py GCOVR-JSON REASONS REPORT

REASONS has paragraphs: a reason, and below it, indented, the lines that it holds for, each as "file: text of the line".
A file alone stands for all of its lines.
"""

import json
import pathlib
import sys

LIBRARY = "manageability/yang/framework/mapping/src/"


def folder_of(file):
    folder = str(pathlib.PurePath(file).parent)
    return folder.replace(LIBRARY, "")


def read_lines(coverage):
    """(file, number, text, reached, branches reached, branches) of every line of code."""
    for entry in json.loads(pathlib.Path(coverage).read_text())["files"]:
        file = entry["file"]
        texts = pathlib.Path(file).read_text().splitlines()
        for line in entry["lines"]:
            if not line["gcovr/noncode"]:
                branches = [branch["count"] > 0 for branch in line["branches"]]
                number = line["line_number"]
                yield file, number, texts[number - 1].strip(), line["count"] > 0, sum(branches), len(branches)


def read_reasons(path):
    """Each reason with its places."""
    reasons = []
    for paragraph in pathlib.Path(path).read_text().strip().split("\n\n"):
        lines = paragraph.splitlines()
        places = [line.strip() for line in lines if line.startswith(" ")]
        reasons.append((" ".join(line for line in lines if not line.startswith(" ")), places))
    return reasons


def percent(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else "-"


def table(lines):
    sums = {}
    for file, _, _, reached, branches_reached, branches in lines:
        for name in (folder_of(file), "all"):
            row = sums.setdefault(name, [0, 0, 0, 0])
            for i, value in enumerate((reached, 1, branches_reached, branches)):
                row[i] += value
    yield "| Folder | Lines | reached | Branches | reached |"
    yield "|---|--:|--:|--:|--:|"
    for name in [*sorted(set(sums) - {"all"}), "all"]:
        reached, total, branches_reached, branches = sums[name]
        yield f"| {name} | {total} | {percent(reached, total)} | {branches} | {percent(branches_reached, branches)} |"


def judged(lines, reasons):
    """The list of unreached lines by reason, those without one, and the places that no such line has."""
    open_lines = {(file, number): text for file, number, text, reached, _, _ in lines if not reached}
    unused = []
    listing = []
    for reason, places in reasons:
        found = []
        for place in places:
            file, _, wanted = place.partition(": ")
            matches = [key for key, text in open_lines.items() if key[0] == file and wanted in ("", text)]
            found += [(*key, open_lines.pop(key)) for key in matches]
            if not matches:
                unused.append(place)
        if found:
            listing += ["", reason, ""]
            listing += [f"- `{file.replace(LIBRARY, '')}:{number}` `{text}`" for file, number, text in found]
    return listing, open_lines, unused


def main():
    coverage, reasons, report = sys.argv[1:]
    lines = list(read_lines(coverage))
    listing, open_lines, unused = judged(lines, read_reasons(reasons))
    text = ["# What the tests reach", "", "Written by `scripts/coverage`, with assertions on.", "", *table(lines)]
    text += ["", "## Lines that no test reaches", *listing]
    pathlib.Path(report).write_text("\n".join(text) + "\n")
    for (file, number), line in open_lines.items():
        print(f"no test reaches {file}: {line} (line {number})")
    for place in unused:
        print(f"reached, or not there: {place}")
    sys.exit(1 if open_lines or unused else 0)


main()
