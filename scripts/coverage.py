"""Writes the coverage report: coverage.py BUILD-FOLDER REASONS REPORT

REASONS has paragraphs: a reason, and below it, indented, the functions that it holds for, each as "file: name name ...".
The file is named by an end of its path; "*" stands for all of its functions.
"""

import collections
import concurrent.futures
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path.cwd().resolve()
NOT_PRODUCT = ("tests/", "fuzz/", "bench/", "build/")


class Line:
    def __init__(self):
        self.count, self.branches, self.functions = 0, collections.Counter(), set()


def simple_name(demangled):
    """The name of a function without its scope, arguments and types; that of the function around, for a lambda."""
    name = demangled.split("::{lambda")[0].replace("(anonymous namespace)::", "")
    name = re.sub(r"\[abi:\w+\]|\[with .*", "", name)
    while (shorter := re.sub(r"<[^<>]*>", "", name)) != name:
        name = shorter
    name = re.sub(r"\(.*", "", name) if "operator()" not in name else "operator()"
    return name.split("::")[-1].split(" ")[-1]


def gcov(data):
    command = ["gcov", "--json-format", "--stdout", "--branch-probabilities", str(data)]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def read_lines(folder):
    """Line by file and number."""
    lines = collections.defaultdict(Line)
    data = sorted(pathlib.Path(folder).rglob("*.gcda"))
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        documents = [json.loads(text) for output in pool.map(gcov, data) for text in output.splitlines() if text]
    for document in documents:
        for file in document["files"]:
            path = (pathlib.Path(document["current_working_directory"]) / file["file"]).resolve()
            if not path.is_relative_to(ROOT) or str(path.relative_to(ROOT)).startswith(NOT_PRODUCT):
                continue
            names = {function["name"]: simple_name(function["demangled_name"]) for function in file["functions"]}
            for found in file["lines"]:
                line = lines[str(path.relative_to(ROOT)), found["line_number"]]
                line.count += found["count"]
                line.functions.add(names.get(found.get("function_name"), "?"))
                for place, branch in enumerate(found["branches"]):
                    if not branch["throw"]:
                        line.branches[place] += branch["count"]
    return lines


def read_reasons(path):
    """Each reason with its places."""
    reasons = []
    for paragraph in path.read_text().strip().split("\n\n"):
        text = [line for line in paragraph.splitlines() if not line.startswith("#")]
        places = [line.strip().partition(": ") for line in text if line.startswith(" ")]
        reason = " ".join(line for line in text if not line.startswith(" "))
        if reason:
            reasons.append((reason, [(file, name) for file, _, names in places for name in names.split()]))
    return reasons


def percent(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else "-"


def table(lines):
    sums = collections.defaultdict(lambda: [0, 0, 0, 0])
    for (file, _), line in lines.items():
        for name in (str(pathlib.PurePath(file).parent), "all"):
            reached = sum(count > 0 for count in line.branches.values())
            for i, value in enumerate((line.count > 0, 1, reached, len(line.branches))):
                sums[name][i] += value
    yield "| Folder | Lines | reached | Branches | reached |"
    yield "|---|--:|--:|--:|--:|"
    for name in [*sorted(set(sums) - {"all"}), "all"]:
        reached, total, branches_reached, branches = sums[name]
        yield f"| {name} | {total} | {percent(reached, total)} | {branches} | {percent(branches_reached, branches)} |"


def is_end(file, number):
    return re.fullmatch(r"[\s})\];,]*", pathlib.Path(file).read_text().splitlines()[number - 1]) is not None


def is_meant(place, file, functions):
    suffix, name = place
    return (file == suffix or file.endswith("/" + suffix)) and (name == "*" or name in functions)


def main():
    folder, reasons_path, report = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    lines = read_lines(folder)
    # An end of a block counts as reached where the block is left: what is not reached there is an exception's way out.
    open_lines = {place: line for place, line in sorted(lines.items()) if line.count == 0 and not is_end(*place)}
    text = ["# What the tests reach", "", "Written by `scripts/coverage`, with assertions on.", "", *table(lines)]
    text += ["", "## Lines that no test reaches"]
    unused = []
    for reason, places in read_reasons(reasons_path):
        listed = []
        for place in places:
            found = [key for key, line in open_lines.items() if is_meant(place, key[0], line.functions)]
            unused += [] if found else [place]
            listed += found
        text += ["", reason, ""]
        for file, number in sorted(set(listed)):
            del open_lines[file, number]
            source = pathlib.Path(file).read_text().splitlines()[number - 1].strip()
            text.append(f"- `{file}:{number}` `{source}`")
    report.write_text("\n".join(text) + "\n")
    for (file, number), line in open_lines.items():
        print(f"no test reaches {file}:{number}, in {'/'.join(sorted(line.functions))}")
    for file, name in unused:
        print(f"has a reason and needs none: {file}: {name}")
    print(f"{report} is written")
    sys.exit(1 if open_lines or unused else 0)


main()
