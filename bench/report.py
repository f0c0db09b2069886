#!/usr/bin/env python3
"""Turns the output of quill_bench into docs/performance.md and its plot.

Usage: bench/report.py RESULTS.json

Rewrites what stands between the markers in docs/performance.md, and
docs/performance.svg. Fails when a case gave a wrong answer, or when an export
has no case.
"""
import json
import math
import pathlib
import re
import subprocess
import sys
from xml.sax.saxutils import escape

ROOT = pathlib.Path(__file__).resolve().parent.parent
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


class Row:
    """One case: Export/what/size, the time of one call and what it did."""

    def __init__(self, run):
        name = run["name"].removesuffix("/manual_time").removesuffix("/real_time")
        self.parts = name.split("/")
        self.size = self.parts[-1] if self.parts[-1][0].isdigit() else ""
        what = self.parts[:-1] if self.size else self.parts
        self.is_peer = what[0] == "peer"
        self.is_growth = what[0] == "growth"
        if self.is_growth:
            what = what[1:]
        self.subject = " ".join(what[:2]) if self.is_peer else what[0]
        self.what = "/".join(what[2 if self.is_peer else 1 :])
        self.call = run["real_time"] * NANOSECONDS[run["time_unit"]] / run.get("batch", 1)
        self.bytes_per_second = run.get("bytes_per_second")
        self.items_per_second = run.get("items_per_second")

    def reads_all(self):
        """No memory gives a thousand GB/s: such a call has ended early."""
        return self.bytes_per_second and 0 < self.bytes_per_second < 1e12

    def is_long(self):
        return self.size.endswith("_MiB") and self.reads_all()

    def is_growth_by_bytes(self):
        return self.size.endswith("_MiB") and not self.items_per_second

    def cost(self):
        """Nanoseconds for 1,000 bytes or for one selection, and of how many."""
        if self.is_growth_by_bytes():
            nanoseconds = 1e12 / self.bytes_per_second
            shown = f"{nanoseconds:.3g}" if nanoseconds < 1000 else f"{nanoseconds:,.0f}"
            return f"{self.size.replace('_', ' ')}: {shown}"
        selections = round(self.call * self.items_per_second / 1e9)
        return f"{selections:,}: {1e9 / self.items_per_second:.3g}"

    def rate(self):
        if self.reads_all():
            return f"{self.bytes_per_second / 1e9:.2f} GB/s"
        if self.items_per_second:
            return f"{1e9 / self.items_per_second:.3g} ns an item"
        return ""


def duration(nanoseconds):
    for limit, unit in ((1e3, "ns"), (1e6, "us"), (1e9, "ms")):
        if nanoseconds < limit:
            return f"{nanoseconds / limit * 1e3:.3g} {unit}"
    return f"{nanoseconds / 1e9:.3g} s"


def read_rows(path):
    report = json.loads(path.read_text())
    runs = [run for run in report["benchmarks"] if run.get("run_type") != "aggregate"]
    wrong = [run["name"] for run in runs if run.get("error_occurred")]
    if wrong:
        sys.exit("wrong answers: " + ", ".join(wrong))
    return [Row(run) for run in runs], report["context"]


def check_coverage(rows):
    symbols = [line for line in (ROOT / "cmake/exports.symbols").read_text().split("\n")
               if line and not line.startswith("#") and line != "YieldMax"]
    names = subprocess.run(["c++filt"], input="\n".join(symbols), text=True,
                           capture_output=True, check=True).stdout.split("\n")
    exports = {re.sub(r"\(.*", "", name) for name in names if name}
    missing = exports - {row.subject for row in rows}
    if missing:
        sys.exit("no benchmark for: " + ", ".join(sorted(missing)))


def table(rows):
    """One line for each case, with its sizes side by side, grouped by export."""
    cases = {}
    for row in rows:
        cases.setdefault(row.subject, {}).setdefault(row.what, []).append(row)
    lines = ["| operation | case | one call | rate at the largest size |",
             "|---|---|---|---|"]
    for subject, whats in cases.items():
        name = subject if subject.startswith("peer") else f"`{subject}`"
        for what, sizes in whats.items():
            calls = ", ".join(
                f"{row.size.replace('_', ' ')}: {duration(row.call)}" if row.size
                else duration(row.call) for row in sizes)
            lines.append(f"| {name} | {what.replace('_', ' ')} | {calls} "
                         f"| {sizes[-1].rate()} |")
    return "\n".join(lines)


def growth_table(rows):
    """What a byte or a selection costs, at each size."""
    cases = {}
    for row in rows:
        cases.setdefault((row.subject, row.what), []).append(row)
    lines = ["| operation | case | ns for 1,000 bytes, or for a selection |", "|---|---|---|"]
    for (subject, what), sizes in cases.items():
        costs = ", ".join(row.cost() for row in sizes)
        lines.append(f"| `{subject}` | {what} | {costs} |")
    return "\n".join(lines)


def plot(rows):
    """Bars of GB/s on the long texts, on a logarithmic scale from 0.01 to 100."""
    step, left, width = 15, 330, 420
    height = step * len(rows) + 40
    x = lambda rate: left + width * (math.log10(min(max(rate, 0.01), 100)) + 2) / 4
    svg = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{left + width + 70}" '
           f'height="{height}" font-family="sans-serif" font-size="11">',
           '<rect width="100%" height="100%" fill="white"/>']
    for rate in (0.01, 0.1, 1, 10, 100):
        svg.append(f'<line x1="{x(rate):.0f}" x2="{x(rate):.0f}" y1="22" y2="{height - 10}" '
                   f'stroke="#ccc"/><text x="{x(rate):.0f}" y="16" '
                   f'text-anchor="middle">{rate:g} GB/s</text>')
    for index, row in enumerate(rows):
        y = 28 + step * index
        rate = row.bytes_per_second / 1e9
        colour = "#b0752a" if row.is_peer else "#3b6ea5"
        label = escape(f"{row.subject}, {row.what.replace('_', ' ')}")
        svg.append(f'<text x="{left - 6}" y="{y + 9}" text-anchor="end">{label}</text>'
                   f'<rect x="{left}" y="{y}" width="{max(x(rate) - left, 1):.1f}" '
                   f'height="{step - 4}" fill="{colour}"/>'
                   f'<text x="{x(rate) + 4:.0f}" y="{y + 9}">{rate:.2g}</text>')
    svg.append("</svg>\n")
    return "\n".join(svg)


def replaced(page, name, content):
    """The page with other content between the markers of that name."""
    begin, end = f"<!-- {name} -->\n", f"<!-- end of {name} -->\n"
    before, rest = page.split(begin)
    _, after = rest.split(end)
    return f"{before}{begin}{content}\n{end}{after}"


def main():
    rows, context = read_rows(pathlib.Path(sys.argv[1]))
    check_coverage(rows)
    machine = (f"{context['num_cpus']} cores at {context['mhz_per_cpu']} MHz, "
               f"{context['date'][:10]}.")
    growth = [row for row in rows if row.is_growth]
    others = [row for row in rows if not row.is_growth]
    page = ROOT / "docs/performance.md"
    text = replaced(page.read_text(), "growth", growth_table(growth))
    text = replaced(text, "results", f"{machine}\n\n{table(others)}")
    page.write_text(text)
    (ROOT / "docs/performance.svg").write_text(plot([row for row in others if row.is_long()]))
    print(f"{len(rows)} cases written to {page.relative_to(ROOT)}")


if __name__ == "__main__":
    main()
