#!/usr/bin/env python3
"""Writes the table and the plots of a run: report.py RESULTS FOLDER.

RESULTS holds the files of scripts/bench. The table leaves out work that the run did not measure.
"""

import glob
import json
import math
import os
import statistics
import subprocess
import sys

SIZES = (10, 100, 1000, 10000, 100000)

# Whole requests: the name of the work without its model, and its title.
EDITS = [
    ("edit_merge", "edit: merge"),
    ("edit_replace", "edit: replace entries"),
    ("edit_replace_container", "edit: replace the container"),
    ("edit_delete", "edit: delete"),
]
GETS = [
    ("get_all", "get: everything"),
    ("get_leaf", "get: one leaf of all"),
    ("get_entry", "get: one entry"),
    ("get_content", "get: by content"),
]
IN_MEMORY = ("get_in_memory", "get: one entry, data in memory")
MODELS = ("interfaces", "bgp")


def requests(works):
    """The title and the benchmark for each model."""
    return [(f"{what}, {model}", f"{work}_{model}") for work, what in works for model in MODELS]


# Title, our benchmark, that of the peer, and the limits of the ratio, each with its smallest and its largest size.
RATIOS = [
    ("find or create an entry, search-or-add", "entries_search_or_add/tvk_map", "entries_search_or_add/libyang",
     [(0.25, 100, 100000)]),
    ("find or create an entry, list node", "entries_add_list_node/tvk_map", "entries_search_or_add/libyang",
     [(0.25, 100, 100000)]),
    ("the same without index, search-or-add", "entries_search_or_add/tvk_map_scan", "entries_search_or_add/floor",
     [(1.3, 10, 100000)]),
    ("the same without index, list node", "entries_add_list_node/tvk_map_scan", "entries_search_or_add/floor",
     [(1.3, 10, 100000)]),
    ("build by xpaths", "paths_xpath/tvk_map", "paths_xpath/libyang", [(0.25, 1000, 100000)]),
    ("build by relative paths", "paths_relative/tvk_map", "paths_xpath/libyang", [(0.25, 1000, 100000)]),
    ("the same without index, by xpaths", "paths_xpath/tvk_map_scan", "paths_xpath/floor", [(1.3, 10, 100000)]),
    ("the same without index, by relative paths", "paths_relative/tvk_map_scan", "paths_xpath/floor",
     [(1.3, 10, 100000)]),
    ("copy and free", "copy/tvk_map", "copy/libyang", [(1.0, 10, 10000), (1.5, 100000, 100000)]),
    ("prune to one entry", "filter_key/tvk_map", "filter_key/libyang",
     [(1.0, 10, 1000), (0.5, 10000, 10000), (1.0, 100000, 100000)]),
    ("prune to one leaf of all entries", "filter_leaf/tvk_map", "filter_leaf/libyang", [(1.0, 10, 100000)]),
    ("prune by content match", "filter_content/tvk_map", "filter_content/libyang", [(1.0, 10, 100000)]),
    ("log and trace switched off", "logging/tvk_map", "logging/compiled_out", [(1.05, 10, 100000)]),
]

# The same for whole requests. For data in memory libyang gets an xpath instead of a request.
REQUEST_RATIOS = [
    (what, f"{work}/tvk_map", f"{work}/libyang", [(1.0, 1000, 100000)]) for what, work in requests(EDITS + GETS)
] + [
    (what, f"{work}/tvk_map", f"{work}/libyang", []) for what, work in requests([IN_MEMORY])
]

# Title, benchmark, the two sizes that are compared, and the limit of the exponent.
EXPONENTS = [
    ("find or create an entry, search-or-add", "entries_search_or_add/tvk_map", 1000, 100000, 1.1),
    ("find or create an entry, list node", "entries_add_list_node/tvk_map", 1000, 100000, 1.1),
    ("build by xpaths", "paths_xpath/tvk_map", 1000, 100000, 1.1),
    ("build by relative paths", "paths_relative/tvk_map", 1000, 100000, 1.1),
    ("prune to one entry", "filter_key/tvk_map", 1000, 100000, 1.1),
    ("prune to one leaf of all entries", "filter_leaf/tvk_map", 1000, 100000, 1.1),
    ("prune by content match", "filter_content/tvk_map", 1000, 100000, 1.1),
    ("schema filter, as many answers", "filter_schema/tvk_map", 1000, 100000, 1.1),
] + [
    (what, f"{work}/tvk_map", 1000, 100000, 1.1) for what, work in requests(EDITS + GETS)
] + [
    (what, f"{work}/tvk_map", 100, 100000, 0.05) for what, work in requests([IN_MEMORY])
]

GROWTHS = [
    ("one array of bare records", "growth_bare"),
    ("one list of entries", "growth_entries"),
    ("two lists in turn", "growth_two"),
    ("200 lists in turn", "growth_many"),
    ("one list, after a big tree was released", "growth_after_release"),
    ("two lists in turn, after a big tree was released", "growth_two_after_release"),
]
# Growing by half copies at most 1 + 2/3 + 4/9 + ... of the bytes that there are in the end.
MOST_COPIED = 3.0

INSTRUCTIONS = [
    ("walk of nested levels, per node", "walk_deep/tvk_map", (10, 20, 30, 40, 50)),
    ("walk of the children of one container, per node", "walk_wide/tvk_map", (10, 100, 1000, 10000)),
    ("build by relative paths, per node", "logging/tvk_map", (10, 100, 1000)),
    ("the same with log and trace compiled out", "logging/compiled_out", (10, 100, 1000)),
]

# File, title, works whose variants are the lines.
PLOTS = [
    ("entries", "Find or create N entries", ("entries_search_or_add", "entries_add_list_node")),
    ("paths", "Build N entries with six leaves by paths", ("paths_xpath", "paths_relative")),
    ("copy", "Copy and free a tree of N entries", ("copy",)),
    ("filter_key", "Prune a response of N entries to one of them", ("filter_key",)),
    ("filter_leaf", "Prune a response of N entries to one leaf of each", ("filter_leaf",)),
    ("filter_content", "Prune a response of N entries by content match", ("filter_content",)),
    ("filter_schema", "Ask the schema filter beside N entries", ("filter_schema",)),
] + [
    (f"{kind}_{model}", f"{title}, {model}, N entries", tuple(f"{work}_{model}" for work, _ in works))
    for kind, title, works in (("edit", "Whole edits", EDITS), ("get", "Whole reads", GETS))
    for model in MODELS
] + [
    ("growth", "Grow two lists to N entries, after a big tree was released", ("growth_two_after_release",)),
]


class Results:
    def __init__(self, folder):
        self.folder = folder
        self.medians = {}  # "work/variant" to size to the measured values
        self.spreads = []
        for path in sorted(glob.glob(os.path.join(folder, "*.json"))):
            if not os.path.basename(path).startswith("instructions-"):
                self.read_group(path)

    def read_group(self, path):
        with open(path, encoding="utf-8") as file:
            benchmarks = json.load(file)["benchmarks"]
        for benchmark in benchmarks:
            work, variant, size = benchmark["run_name"].split("/")[:3]
            if benchmark.get("aggregate_name") == "median":
                self.medians.setdefault(f"{work}/{variant}", {})[int(size)] = benchmark
            elif benchmark.get("aggregate_name") == "cv":
                self.spreads.append(benchmark["real_time"])

    def time(self, name, size):
        """The median time of one run in nanoseconds, or None."""
        benchmark = self.medians.get(name, {}).get(size)
        return benchmark["real_time"] if benchmark else None

    def instructions(self, name, size):
        """Per node, or None."""
        stem = os.path.join(self.folder, "instructions-" + f"{name}/{size}".replace("/", "-"))
        if not os.path.exists(stem + ".count"):
            return None
        with open(stem + ".json", encoding="utf-8") as file:
            benchmark = json.load(file)["benchmarks"][0]
        with open(stem + ".count", encoding="utf-8") as file:
            return int(file.read()) / benchmark["iterations"] / benchmark["nodes"]

    def memory(self):
        """Size to the runs of it."""
        runs = {}
        path = os.path.join(self.folder, "memory.jsonl")
        if os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                for line in file:
                    run = json.loads(line)
                    runs.setdefault(run["n"], []).append(run)
        return runs


def shown(number):
    return f"{number:,.0f}" if number >= 100 else f"{number:.3g}"


def verdict(is_met):
    return "met" if is_met else "**missed**"


def table(title, head, rows):
    if not rows:
        return []
    columns = head.split("|")
    lines = [f"## {title}", "", "| " + " | ".join(columns) + " |"]
    lines.append("|---|" + "--:|" * (len(columns) - 1))
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return lines + [""]


def limit_at(limits, size):
    for limit, smallest, largest in limits:
        if smallest <= size <= largest:
            return limit
    return None


def measured_ratios(results, ratios):
    """Title, size, both times, the peer, and the cells of the ratio."""
    for what, ours, peer, limits in ratios:
        for size in SIZES:
            own_time, peer_time = results.time(ours, size), results.time(peer, size)
            if own_time is None or peer_time is None:
                continue
            ratio, limit = own_time / peer_time, limit_at(limits, size)
            yield what, size, own_time, peer_time, peer.split("/")[1], (
                f"{ratio:.2f}", "" if limit is None else f"{limit:g}", "" if limit is None else verdict(ratio <= limit))


def ratio_rows(results):
    for what, size, own_time, peer_time, peer, cells in measured_ratios(results, RATIOS):
        yield what, f"{size:,}", shown(own_time / size), peer, shown(peer_time / size), *cells


def request_rows(results):
    for what, size, own_time, peer_time, _, cells in measured_ratios(results, REQUEST_RATIOS):
        yield what, f"{size:,}", shown(own_time / 1e6), shown(peer_time / 1e6), *cells


def exponent_rows(results):
    for what, name, small, large, limit in EXPONENTS:
        first, last = results.time(name, small), results.time(name, large)
        if first is not None and last is not None:
            exponent = math.log(last / first) / math.log(large / small)
            yield what, f"{small:,} to {large:,}", f"{exponent:.2f}", f"{limit:g}", verdict(exponent <= limit)


def answer_rows(results):
    for size, benchmark in sorted(results.medians.get("filter_schema/tvk_map", {}).items()):
        per_answer = benchmark["real_time"] / benchmark["nodes"]
        yield f"{size:,}", shown(per_answer), shown(1e9 / per_answer)


def growth_rows(results):
    for what, work in GROWTHS:
        sizes = results.medians.get(f"{work}/tvk_map", {})
        for size in (size for size in SIZES if size >= 1000 and size in sizes):
            row, copied = [what, f"{size:,}"], sizes[size]["copied"]
            for variant in ("tvk_map", "malloc_doubling", "malloc_by_one"):
                benchmark = results.medians[f"{work}/{variant}"][size]
                row += [shown(benchmark["real_time"] / size), f"{benchmark['copied']:.1f}"]
            yield row + [f"{MOST_COPIED:g}", verdict(copied <= MOST_COPIED)]


def memory_rows(results):
    for size, runs in sorted(results.memory().items()):
        resident = statistics.median(run["resident"] for run in runs)
        bare = statistics.median(run["bare"] for run in runs)
        limit = 1.25 if size == 100000 else None
        yield (f"{size:,}", f"{resident:.0f}", f"{bare:.0f}", f"{resident / bare:.2f}",
               "" if limit is None else f"{limit:g}", "" if limit is None else verdict(resident / bare <= limit))


def instruction_rows(results):
    for what, name, sizes in INSTRUCTIONS:
        for size in sizes:
            count = results.instructions(name, size)
            if count is not None:
                yield what, f"{size:,}", shown(count)


def command_output(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = [line.split(":")[1].strip() for line in file if line.startswith("model name")]
    packages = command_output("dpkg-query", "-W", "-f=${Package} ${Version}, ", "libc6", "libyang2", "libxml2",
                              "libpugixml1v5").rstrip(", ")
    compiler = command_output("c++", "--version").split("\n")[0]
    return f"{len(models)} cores of {models[0]}; {os.uname().sysname} {os.uname().release}; {compiler}; {packages}."


def write_plot(results, folder, name, title, works):
    measured = [(benchmark.split("/"), sizes) for benchmark, sizes in sorted(results.medians.items())
                if benchmark.split("/")[0] in works]
    variants = [variant for (_, variant), _ in measured]
    lines = {}
    for (work, variant), sizes in measured:
        operation = work.partition("_")[2].replace("_", " ")
        is_one_of_many = len(works) > 1 and (variant.startswith("tvk_map") or variants.count(variant) > 1)
        label = f"{variant}, {operation}" if is_one_of_many else variant
        lines[label] = [(size, sizes[size]["real_time"] / size) for size in sorted(sizes)]
    lines = {label: points for label, points in lines.items() if len(points) > 1}
    if not lines:
        return []
    script = [
        "set terminal svg size 760,460 background 'white' noenhanced",
        f"set output '{os.path.join(folder, name)}.svg'",
        f"set title '{title}'",
        "set logscale xy", "set grid", "set key below maxrows 3", "set format x '%.0f'", "set format y '%.0f'",
        "set xlabel 'N'", "set ylabel 'nanoseconds for each of N'",
        "plot " + ", ".join(f"'-' with linespoints linewidth {3 if label.startswith('tvk_map') else 1} title '{label}'"
                           for label in lines)]
    for points in lines.values():
        script += [f"{size} {time}" for size, time in points] + ["e"]
    subprocess.run(["gnuplot"], input="\n".join(script) + "\n", text=True, check=True)
    return [f"![{title}]({name}.svg)", ""]


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: report.py RESULTS FOLDER")
    results, folder = Results(sys.argv[1]), sys.argv[2]
    os.makedirs(folder, exist_ok=True)
    text = ["# Measurements", "", "Written by `scripts/bench`. [performance.md](../performance.md) tells what it measures, "
            "and how.", "", machine(), ""]
    if results.spreads:
        spreads = sorted(results.spreads)
        text += ["Spread over the repetitions of a benchmark (coefficient of variation): median "
                 f"{statistics.median(spreads):.0%}, 90th percentile {spreads[int(len(spreads) * 0.9)]:.0%}.", ""]
    text += table("Ratios", "work|N|tvk-map, ns for each of N|peer|peer, ns for each of N|ratio|at most|",
                  list(ratio_rows(results)))
    text += table("Whole requests", "request|N|tvk-map, ms|libyang, ms|ratio|at most|", list(request_rows(results)))
    text += table("Growth exponents of the whole time", "work|N|exponent|at most|", list(exponent_rows(results)))
    text += table("Answers of the schema filter while N entries are built", "N|ns an answer|answers a second",
                  list(answer_rows(results)))
    text += table("Growth of child arrays by one record at a time",
                  "case|N|tvk-map, ns a record|bytes copied for each in the end|malloc, doubled, ns|copied|"
                  "malloc, by one, ns|copied|copied at most|", list(growth_rows(results)))
    text += table("Resident memory per node", "N|resident bytes|record and strings|ratio|at most|",
                  list(memory_rows(results)))
    text += table("Instructions", "work|N|instructions", list(instruction_rows(results)))
    for plot in PLOTS:
        text += write_plot(results, folder, *plot)
    with open(os.path.join(folder, "table.md"), "w", encoding="utf-8") as file:
        file.write("\n".join(text).rstrip() + "\n")


if __name__ == "__main__":
    main()
