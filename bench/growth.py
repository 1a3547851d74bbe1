"""How the cost of a run grows with what it works on: `scripts/growth`. See docs/performance.md."""

import argparse
import json
import math
import statistics
import subprocess
import sys
from pathlib import Path

from bench.programs import INSIDE, MACROOT, PROGRAMS, ROOT, SECONDS_OF, mac, run

SUPPORT = "Users/alex/Library/Application Support"
REPETITIONS = 3

REGISTRY = '<RDF:RDF xmlns:RDF="urn:r" xmlns:NS1="urn:n">' + "".join(
    f'<RDF:Description RDF:about="urn:mozilla:item:x{n}@example.org"><NS1:targetApplication RDF:resource="r{n}"/>'
    f'</RDF:Description><RDF:Description RDF:about="r{n}"/>\n' for n in range(10)) + "</RDF:RDF>"


def make_profiles(tree, count):
    for number in range(count):
        profile = tree / SUPPORT / f"Firefox/Profiles/{number}.default"
        profile.mkdir(parents=True)
        (profile / "extensions.rdf").write_text(REGISTRY)


def make_preferences(tree, length):
    entry = '"%08d": {"name": "An extension", "state": 1, "path": "somewhere", "permissions": [1, 2, 3]}'
    count = max(1, length // len(entry % 0 + ","))
    entries = ",".join(entry % n for n in range(count))
    file = tree / SUPPORT / "Google/Chrome/Default/Preferences"
    file.write_text('{"extensions": {"settings": {' + entries + '}}, "credentials_enable_service": false}')


def seconds_of_run(prepare, size):
    """The processor time of a whole run, the median of several."""
    figures = []
    for _ in range(REPETITIONS):
        with mac() as tree:
            prepare(tree, size)
            run(["chown", "-R", f"--reference={tree}/Users/alex", tree / SUPPORT])
            command = [MACROOT, "run", "--fast", "--admin", "refuse", tree, "--", sys.executable, "-c", SECONDS_OF]
            figures.append(float(run([*command, INSIDE + "KSExtensionInstaller"]).stdout))
    return statistics.median(figures)


def seconds_of_log(_, lines):
    """The processor time of so many messages of the log, one flush each."""
    with mac() as tree:
        out = "/Users/alex/figures"
        options = ["--benchmark_filter=^log-plain/ours", f"--benchmark_min_time={lines * 1.5e-6:.6f}",
                   f"--benchmark_out={out}", "--benchmark_out_format=json"]
        with open(tree / "echo", "wb") as echo:
            run([MACROOT, "run", tree, "--", PROGRAMS / "bench_product", *options], stdout=echo)
        turns = json.loads(Path(f"{tree}{out}").read_bytes())["benchmarks"][0]
        return turns["cpu_time"] * 1e-9 * lines


CHARTS = {
    "profiles": ("Firefox profiles", make_profiles, [1, 10, 100, 1000, 10000]),
    "preferences": ("bytes of Chrome's preferences", make_preferences, [10**n for n in range(3, 9)]),
    "log": ("lines of the log", None, [10**n for n in range(3, 8)]),
}


def chart(title, points):
    """An SVG picture with both axes in powers of ten, and a line of strict proportion through the last point."""
    width, height, margin = 480, 320, 56
    xs = [math.log10(size) for size, _ in points]
    ys = [math.log10(seconds) for _, seconds in points]
    left, right = xs[0], xs[-1]
    low, high = math.floor(min(ys)), math.ceil(max(ys))

    def place(x, y):
        return (f"{margin + (x - left) / (right - left) * (width - 2 * margin):.1f},"
                f"{height - margin - (y - low) / (high - low) * (height - 2 * margin):.1f}")

    start = max(left, right - (ys[-1] - low))
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" font-family="sans-serif" '
             'font-size="12">', f'<rect width="{width}" height="{height}" fill="white"/>',
             f'<text x="{width / 2}" y="{height - 12}" text-anchor="middle">{title}</text>',
             f'<text x="{margin}" y="24">seconds of processor time</text>']
    for power in range(low, high + 1):
        x, y = place(left, power).split(",")
        lines.append(f'<path d="M{x},{y}H{width - margin}" stroke="#ddd"/>'
                     f'<text x="{margin - 6}" y="{float(y) + 4}" text-anchor="end">{10.0 ** power:g}</text>')
    for size, x in zip((size for size, _ in points), xs):
        at = place(x, low).split(",")[0]
        lines.append(f'<text x="{at}" y="{height - margin + 18}" text-anchor="middle">{size:,}</text>')
    lines.append(f'<path d="M{place(start, ys[-1] - (right - start))}L{place(right, ys[-1])}" stroke="#999" '
                 'stroke-dasharray="4"/>')
    lines.append(f'<polyline points="{" ".join(place(x, y) for x, y in zip(xs, ys))}" fill="none" stroke="#06c" '
                 'stroke-width="2"/>')
    lines.extend('<circle cx="{}" cy="{}" r="3" fill="#06c"/>'.format(*place(x, y).split(",")) for x, y in zip(xs, ys))
    return "\n".join(lines) + "\n</svg>\n"


def main(arguments):
    parser = argparse.ArgumentParser(prog="growth", description="Measures how cost grows and draws the charts.")
    parser.add_argument("--only", choices=CHARTS, help="only this chart")
    parser.add_argument("--most", type=int, default=10**9, metavar="SIZE", help="nothing larger than this")
    options = parser.parse_args(arguments)
    subprocess.run([ROOT / "scripts/build", "release", "KSExtensionInstaller", "bench_product"], check=True)
    for name, (title, prepare, sizes) in CHARTS.items():
        if options.only not in (None, name):
            continue
        points = []
        for size in (size for size in sizes if size <= options.most):
            seconds = seconds_of_run(prepare, size) if prepare else seconds_of_log(None, size)
            points.append((size, seconds))
            print(f"{title}: {size:>11,}  {seconds:9.4f} s  {seconds / size * 1e6:12.3f} µs each", flush=True)
        (ROOT / f"docs/growth-{name}.svg").write_text(chart(title, points))
    return 0
