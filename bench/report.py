#!/usr/bin/env python3
"""Turns Google Benchmark's JSON into docs/PERFORMANCE.md and docs/perf-*.png.

    report.py RESULTS.json DOCS_DIR [ANALYSIS.md]

Times are CPU time of the benchmark thread, best of the repetitions (the
machine may be shared; the best run is the one least disturbed).
"""
import json
import math
import os
import platform
import subprocess
import sys
import tempfile
from collections import defaultdict
from datetime import datetime, timezone

IMPLEMENTATIONS = ["library", "floor", "qt", "sqlite"]
LABELS = {"library": "library", "floor": "floor", "qt": "Qt", "sqlite": "SQLite"}
WORKLOADS = [
    ("build", "1. build", "`AddRecord`, then one typed setter per cell; events on, no listener"),
    ("build_listened", "2. build, listened", "as 1 with one record-list value listener attached"),
    ("read", "3. read", "every cell through the typed getters, records held by the client"),
    ("walk", "4. walk", "a synchronized iterator over every row, reading the row's id"),
    ("filter", "5. filter", "a condition keeping every second row, then a walk of the result"),
    ("sort", "6. sort", "sort by an integer column with a comparator, then a walk of the result"),
    ("grouped", "7. grouped", "a grouped list of the source's one column group, every cell read through it"),
    ("late_bound", "8. late-bound read", "the calls of 3 through `IDispatch::Invoke` by dispatch id"),
]
PEERS_DO = {
    "floor": "rows of `VARIANT` in a `std::vector`; setters copy in, getters copy out and clear; "
    "a virtual call before and after each change (2); `std::sort` with the same comparator logic (6); "
    "an index map per read (7)",
    "qt": "`QStandardItemModel` with its signals (2: a connected `dataChanged`); "
    "`QSortFilterProxyModel` with the same condition (5) and comparator (6) logic, "
    "and accepting the group's columns (7)",
    "sqlite": "in-memory database: one prepared `INSERT` per row in one transaction (2: an update hook, "
    "called per row), `SELECT`, `WHERE`, `ORDER BY`, a view of the group's columns (7); "
    "its own SQL decides, so there are no comparator calls to count",
}


def load(path):
    with open(path) as f:
        data = json.load(f)
    runs = defaultdict(list)  # (workload, impl, rows) -> list of benchmark entries
    for entry in data["benchmarks"]:
        if entry.get("run_type") != "iteration" or entry.get("error_occurred"):
            continue
        parts = entry["name"].split("/")
        workload, impl, rows = parts[0], parts[1], int(parts[2])
        runs[(workload, impl, rows)].append(entry)
    results = {}
    for key, entries in runs.items():
        best = min(entries, key=lambda e: e["cpu_time"])
        scale = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}[best["time_unit"]]
        rows = key[2]
        results[key] = {
            "ns_per_row": best["cpu_time"] * scale / rows,
            "wall_ns_per_row": best["real_time"] * scale / rows,
            "repetitions": len(entries),
            "iterations": best["iterations"],
            "counters": {k: v for k, v in best.items() if isinstance(v, (int, float)) and k in COUNTERS},
        }
    return data["context"], results


COUNTERS = {"allocs_per_row", "bytes_per_row", "checksum", "compares_per_row", "events_per_row"}


def fmt_ns(value):
    if value is None:
        return "–"
    if value >= 100:
        return f"{value:,.0f}"
    if value >= 10:
        return f"{value:.1f}"
    return f"{value:.2f}"


def fmt_ratio(value):
    return "–" if value is None else f"{value:.2f}x"


def get(results, workload, impl, rows, field="ns_per_row"):
    entry = results.get((workload, impl, rows))
    if entry is None:
        return None
    if field in ("ns_per_row", "wall_ns_per_row", "repetitions"):
        return entry[field]
    return entry["counters"].get(field)


def ratio(a, b):
    return None if a is None or b is None or b == 0 else a / b


def cpu_model():
    try:
        with open("/proc/cpuinfo") as f:
            for line in f:
                if line.startswith("model name"):
                    return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.processor() or "unknown"


def caches_of(context):
    caches = context.get("caches") or []
    if not caches:
        # Google Benchmark finds none in some containers: ask sysfs.
        base = "/sys/devices/system/cpu/cpu0/cache"
        try:
            for index in sorted(os.listdir(base)):
                def read(name):
                    with open(os.path.join(base, index, name)) as f:
                        return f.read().strip()
                caches.append({"level": int(read("level")), "type": read("type"),
                               "size": int(read("size").rstrip("K")) * 1024})
        except (OSError, ValueError):
            pass
    return ", ".join(f"L{c['level']} {c['type'].lower()} {c['size'] // 1024} KiB" for c in caches)


def memory_total():
    try:
        with open("/proc/meminfo") as f:
            for line in f:
                if line.startswith("MemTotal"):
                    return f"{int(line.split()[1]) / 1024 / 1024:.1f} GiB"
    except OSError:
        pass
    return "unknown"


def git_revision(root):
    try:
        head = subprocess.run(["git", "-C", root, "rev-parse", "--short", "HEAD"], capture_output=True, text=True,
                              check=True).stdout.strip()
        dirty = subprocess.run(["git", "-C", root, "status", "--porcelain", "--untracked-files=no"],
                               capture_output=True, text=True, check=True).stdout.strip()
        return head + (" with local changes" if dirty else "")
    except (OSError, subprocess.CalledProcessError):
        return "unknown"


def checksums_agree(results, workload, rows):
    values = {get(results, workload, impl, rows, "checksum") for impl in IMPLEMENTATIONS}
    values.discard(None)
    return len(values) <= 1


def plot(results, sizes, docs):
    files = []
    with tempfile.TemporaryDirectory() as tmp:
        for workload, title, _ in WORKLOADS:
            series = []
            for impl in IMPLEMENTATIONS:
                points = [(n, get(results, workload, impl, n)) for n in sizes]
                points = [(n, v) for n, v in points if v is not None]
                if not points:
                    continue
                data = os.path.join(tmp, f"{workload}-{impl}.dat")
                with open(data, "w") as f:
                    for n, v in points:
                        f.write(f"{n} {v}\n")
                series.append(f"'{data}' using 1:2 with linespoints lw 2 pt 7 title '{LABELS[impl]}'")
            if not series:
                continue
            png = f"perf-{workload.replace('_', '-')}.png"
            script = "\n".join([
                "set terminal pngcairo size 720,440 font 'sans,10'",
                f"set output '{os.path.join(docs, png)}'",
                f"set title '{title}: CPU time per row'",
                "set logscale x 10",
                "set logscale y 10",
                "set format x '10^{%L}'",
                f"set xrange [{min(sizes) / 2}:{max(sizes) * 2}]",
                "set xlabel 'rows (N)'",
                "set ylabel 'ns per row'",
                "set grid",
                "set key outside right top",
                "plot " + ", ".join(series),
            ])
            subprocess.run(["gnuplot"], input=script, text=True, check=True)
            files.append((title, png))
    return files


def targets(results, sizes):
    """The issue's targets, one line each, judged per N."""
    lines = []

    def per_n(check):
        cells, ok = [], True
        for n in sizes:
            value, passed = check(n)
            if value is None:
                cells.append("–")
                continue
            cells.append(("" if passed else "**") + value + ("" if passed else "**"))
            ok = ok and passed
        return cells, ok

    def vs_floor(workload, limit):
        def check(n):
            r = ratio(get(results, workload, "library", n), get(results, workload, "floor", n))
            return (None, True) if r is None else (f"{r:.2f}x", r <= limit)
        return check

    for workload, limit, label in [("read", 1.5, "read (3) ≤ 1.5x floor"), ("walk", 1.5, "walk (4) ≤ 1.5x floor"),
                                   ("build", 2.0, "build (1) ≤ 2x floor"), ("sort", 1.3, "sort (6) ≤ 1.3x floor")]:
        cells, ok = per_n(vs_floor(workload, limit))
        lines.append((label, cells, ok))

    def late(n):
        r = ratio(get(results, "late_bound", "library", n), get(results, "read", "library", n))
        return (None, True) if r is None else (f"{r:.2f}x", r <= 3.0)
    cells, ok = per_n(late)
    lines.append(("late-bound read (8) ≤ 3x early-bound read (3)", cells, ok))

    def memory(n):
        r = ratio(get(results, "build", "library", n, "bytes_per_row"), get(results, "build", "floor", n, "bytes_per_row"))
        return (None, True) if r is None else (f"{r:.2f}x", r <= 2.0)
    cells, ok = per_n(memory)
    lines.append(("memory per row ≤ 2x floor", cells, ok))

    def beats_peers(n):
        losses = []
        for workload, title, _ in WORKLOADS:
            mine = get(results, workload, "library", n)
            slower = [LABELS[peer] for peer in ("qt", "sqlite")
                      if mine is not None and get(results, workload, peer, n) is not None
                      and mine > get(results, workload, peer, n)]
            if slower:
                losses.append(f"{title.split('. ')[0]} ({', '.join(slower)})")
        return ("yes" if not losses else "slower in " + "; ".join(losses)), not losses
    cells, ok = per_n(beats_peers)
    lines.append(("faster than Qt and SQLite (workloads where a peer was faster)", cells, ok))

    # Flatness: the library's time per row across N, largest over smallest.
    flat_cells, flat_ok = [], True
    for workload, title, _ in WORKLOADS:
        if workload in ("sort", "late_bound"):
            continue
        values = [get(results, workload, "library", n) for n in sizes]
        values = [v for v in values if v is not None]
        if len(values) < 2:
            continue
        spread = max(values) / min(values)
        passed = spread <= 1.25
        flat_ok = flat_ok and passed
        flat_cells.append(f"{title.split('. ')[0]}: {spread:.2f}" if passed else f"**{title.split('. ')[0]}: {spread:.2f}**")
    lines.append(("time per row flat within 25% (1-5, 7; largest/smallest over N)", [", ".join(flat_cells)], flat_ok))

    # Sort: time per row over log2 N should stay flat.
    values = [(n, get(results, "sort", "library", n)) for n in sizes]
    values = [v / math.log2(n) for n, v in values if v is not None]
    if len(values) >= 2:
        spread = max(values) / min(values)
        lines.append(("sort grows as n log n ((ns/row)/log2 N, largest/smallest)", [f"{spread:.2f}"], spread <= 1.25))
    return lines


def main():
    json_path, docs = sys.argv[1], sys.argv[2]
    analysis = sys.argv[3] if len(sys.argv) > 3 else None
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    context, results = load(json_path)
    sizes = sorted({key[2] for key in results})
    os.makedirs(docs, exist_ok=True)
    plots = plot(results, sizes, docs)
    reps = {n: max((r["repetitions"] for k, r in results.items() if k[2] == n), default=0) for n in sizes}

    out = []
    w = out.append
    w("# Performance")
    w("")
    w(f"Written by `bench/run` on {datetime.now(timezone.utc):%Y-%m-%d %H:%M} UTC from revision "
      f"{git_revision(root)}. Do not edit by hand: run `bench/run` again.")
    w("")
    w("## Machine")
    w("")
    caches = caches_of(context)
    load_avg = context.get("load_avg", [])
    w(f"- CPU: {cpu_model()}, {context.get('num_cpus')} logical cores at {context.get('mhz_per_cpu')} MHz"
      + (f"; {caches}" if caches else ""))
    w(f"- Memory: {memory_total()}; kernel {platform.system()} {platform.release()}")
    w(f"- Compiler: {context.get('compiler', 'unknown')}, Release (`-O3 -DNDEBUG`), native build")
    w(f"- Peers: Qt {context.get('qt_version', '?')}, SQLite {context.get('sqlite_version', '?')}; "
      f"Google Benchmark from the distribution (its own build: {context.get('library_build_type', '?')})")
    if load_avg:
        w(f"- Load average when the run started: {', '.join(f'{x:.2f}' for x in load_avg)} "
          f"(above the core count means other work shared the CPU)")
    w("")
    w("Times are CPU time of the benchmark thread per row, in nanoseconds, the best of "
      + ", ".join(f"{reps[n]} at N = {n:,}" for n in sizes)
      + " repetition(s) (each repetition runs the workload as many times as fits in the minimum time). "
      "Allocations count malloc/calloc/realloc calls of the timed code; memory is the allocator's bytes in "
      "use after a build, per row. Every workload's checksum (an order-sensitive hash of what it read) is "
      "compared across implementations; a mismatch fails the run.")
    w("")
    w("## Workloads")
    w("")
    w("Eight columns: 3 x 32-bit integer, 2 x double, 2 x string, 1 x boolean, all named `Group.x`. "
      "The same values for everyone.")
    w("")
    w("| Workload | What the library does |")
    w("|---|---|")
    for _, title, what in WORKLOADS:
        w(f"| {title} | {what} |")
    w("")
    for impl in ("floor", "qt", "sqlite"):
        w(f"- **{LABELS[impl]}**: {PEERS_DO[impl]}.")
    w("")
    w("## Targets")
    w("")
    w("| Target | " + " | ".join(f"N = {n:,}" for n in sizes) + " | Met |")
    w("|---|" + "---|" * len(sizes) + "---|")
    for label, cells, ok in targets(results, sizes):
        if len(cells) == 1 and len(sizes) > 1:
            cells = [cells[0]] + [""] * (len(sizes) - 1)
        w(f"| {label} | " + " | ".join(cells) + f" | {'yes' if ok else '**no**'} |")
    w("")
    w("## Results")
    for n in sizes:
        w("")
        w(f"### N = {n:,}")
        w("")
        w("| Workload | library ns/row | floor ns/row | library/floor | Qt ns/row | SQLite ns/row "
          "| library allocs/row | floor allocs/row | checksums |")
        w("|---|---:|---:|---:|---:|---:|---:|---:|:---:|")
        for workload, title, _ in WORKLOADS:
            lib = get(results, workload, "library", n)
            floor = get(results, workload, "floor", n)
            base = floor
            note = ""
            if workload == "late_bound":
                base = get(results, "read", "library", n)
                note = " (vs 3)"
            la = get(results, workload, "library", n, "allocs_per_row")
            fa = get(results, workload, "floor", n, "allocs_per_row")
            w(f"| {title} | {fmt_ns(lib)} | {fmt_ns(floor)} | {fmt_ratio(ratio(lib, base))}{note} "
              f"| {fmt_ns(get(results, workload, 'qt', n))} | {fmt_ns(get(results, workload, 'sqlite', n))} "
              f"| {'–' if la is None else f'{la:.1f}'} | {'–' if fa is None else f'{fa:.1f}'} "
              f"| {'ok' if checksums_agree(results, workload, n) else '**differ**'} |")
        w("")
        mem = {impl: get(results, "build", impl, n, "bytes_per_row") for impl in IMPLEMENTATIONS}
        w("| Memory after build | " + " | ".join(LABELS[i] for i in IMPLEMENTATIONS) + " | library/floor |")
        w("|---|" + "---:|" * (len(IMPLEMENTATIONS) + 1))
        w("| bytes per row | " + " | ".join("–" if mem[i] is None else f"{mem[i]:,.0f}" for i in IMPLEMENTATIONS)
          + f" | {fmt_ratio(ratio(mem['library'], mem['floor']))} |")
        w("")
        comps = {impl: get(results, "sort", impl, n, "compares_per_row") for impl in IMPLEMENTATIONS}
        events = {impl: get(results, "build_listened", impl, n, "events_per_row") for impl in IMPLEMENTATIONS}
        w("| Per row | " + " | ".join(LABELS[i] for i in IMPLEMENTATIONS) + " |")
        w("|---|" + "---:|" * len(IMPLEMENTATIONS))
        w("| comparator calls in the sort | "
          + " | ".join("–" if comps[i] is None else f"{comps[i]:.1f}" for i in IMPLEMENTATIONS) + " |")
        w("| notifications in the listened build | "
          + " | ".join("–" if events[i] is None else f"{events[i]:.0f}" for i in IMPLEMENTATIONS) + " |")
    w("")
    w("## Time per row against N")
    w("")
    for title, png in plots:
        w(f"![{title}]({png})")
        w("")
    if analysis and os.path.exists(analysis):
        with open(analysis) as f:
            w(f.read().rstrip())
        w("")
    with open(os.path.join(docs, "PERFORMANCE.md"), "w") as f:
        f.write("\n".join(out))


if __name__ == "__main__":
    main()
