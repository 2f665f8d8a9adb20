#!/usr/bin/python3
"""Makes one table of what was measured: report.py FOLDER reads FOLDER/*_bench.json (Google
Benchmark) and FOLDER/process.json, writes FOLDER/report.json and FOLDER/report.md and prints the
table. limits.json beside this file says which benchmark is which figure, and its limit."""

import json
import re
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
IN_SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def benchmarks(folder):
    """Name -> seconds, the median where a benchmark was repeated."""
    times = {}
    for path in sorted(folder.glob("*_bench.json")):
        for run in json.loads(path.read_text(encoding="utf-8"))["benchmarks"]:
            if "error_occurred" in run:
                raise SystemExit(f"{run['name']}: {run['error_message']}")
            name = run["run_name"]
            if run.get("aggregate_name") == "median" or name not in times:
                times[name] = run["real_time"] * IN_SECONDS[run["time_unit"]]
    return times


def find(times, pattern):
    return [name for name in times if re.search(pattern, name)]


def benchmark_figures(times):
    """The figures of limits.json, then the benchmarks that belong to none of them."""
    figures, used = [], set()
    for limit in json.loads((HERE / "limits.json").read_text(encoding="utf-8")):
        names = find(times, limit["benchmark"])
        against = find(times, limit.get("against", "$^"))
        used.update(names, against)
        value, detail = None, "not measured"
        if names and limit["unit"] == "x":
            if against:
                value = times[names[0]] / times[against[0]]
                detail = f"{names[0]} against {against[0]}"
        elif names:
            name = max(names, key=times.get)
            value, detail = times[name] / IN_SECONDS[limit["unit"]], name
        figures.append({"name": limit["figure"], "value": value, "unit": limit["unit"],
                        "limit": limit["limit"], "detail": detail})
    for name in sorted(set(times) - used):
        figures.append({"name": name, "value": times[name] * 1e6, "unit": "us", "limit": None,
                        "detail": ""})
    return figures


def judge(figure):
    """The measured value as a part of its limit, and a word."""
    value, limit = figure["value"], figure["limit"]
    if value is None:
        return None, "?"
    if limit is None:
        return None, ""
    ratio = value / limit if limit else float(value)
    return ratio, "ok" if value <= limit else "OVER"


def number(value):
    return "" if value is None else f"{value:,.4g}" if abs(value) < 1000 else f"{value:,.0f}"


def table(figures):
    rows = [("figure", "measured", "limit", "unit", "measured/limit", "", "detail")]
    rows += [(each["name"], number(each["value"]), number(each["limit"]), each["unit"],
              "" if each["ratio"] is None else f"{each['ratio']:.2f}", each["verdict"],
              each["detail"]) for each in figures]
    widths = [max(len(row[i]) for row in rows) for i in range(len(rows[0]))]
    lines = []
    for row in rows:
        cells = [cell.rjust(width) if 1 <= i <= 4 and i != 3 else cell.ljust(width)
                 for i, (cell, width) in enumerate(zip(row, widths))]
        lines.append("| " + " | ".join(cells) + " |")
    rule = ["-" * width for width in widths]
    lines.insert(1, "| " + " | ".join(rule) + " |")
    return "\n".join(lines)


def main():
    folder = Path(sys.argv[1])
    figures = benchmark_figures(benchmarks(folder))
    process = folder / "process.json"
    if process.exists():
        figures += json.loads(process.read_text(encoding="utf-8"))
    for figure in figures:
        figure["ratio"], figure["verdict"] = judge(figure)
    text = table(figures)
    (folder / "report.json").write_text(json.dumps(figures, indent=1), encoding="utf-8")
    (folder / "report.md").write_text("# Figures\n\n" + text + "\n", encoding="utf-8")
    print(text)


if __name__ == "__main__":
    main()
