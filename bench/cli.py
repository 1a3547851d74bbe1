"""The command line of `scripts/bench`."""

import argparse
import json
import random
import re
import statistics
import subprocess
import sys
from pathlib import Path

from bench.programs import ROOT, WrongResult
from bench.rows import ROWS

ROUNDS = 9
PROGRAMS = ["KSExtensionInstaller", "bench_crypto", "bench_crypto_portable",
            "bench_list", "bench_nothing", "bench_product"]
# What the peers and we ask the processor for.
FEATURES = "aes sha_ni pclmulqdq ssse3 sse4_1 avx avx2 bmi1 bmi2 vaes avx512bw avx512_vbmi".split()


def main(arguments):
    parser = argparse.ArgumentParser(prog="bench", description="Measures our speed against that of peers.")
    parser.add_argument("--json", metavar="FILE", type=Path, help="write the rows to FILE as well")
    parser.add_argument("--smoke", action="store_true", help="only see that everybody's results are right; quick")
    parser.add_argument("--only", metavar="WORD", default="", help="only the rows whose name holds WORD")
    options = parser.parse_args(arguments)

    subprocess.run([ROOT / "scripts/build", "release", *PROGRAMS], check=True)
    rows = [row for row in ROWS if options.only.lower() in row.name.lower()]
    try:
        figures = measure(rows, rounds=1 if options.smoke else ROUNDS, quick=options.smoke)
    except WrongResult as wrong:
        print(f"bench: {wrong}", file=sys.stderr)
        return 1
    if options.smoke:
        print(f"bench: {sum(map(len, figures.values()))} contestants in {len(rows)} rows, all results are right")
        return 0
    results = [result(row, figures[row]) for row in rows]
    print(processor())
    print(table(results))
    if options.json:
        options.json.write_text(json.dumps([public(one) for one in results], indent=1) + "\n")
    return 0


def measure(rows, rounds, quick):
    """{row: {contestant: [figure, ...]}}"""
    figures = {row: {} for row in rows}
    sources = list(dict.fromkeys(row.source for row in rows))
    for _ in range(rounds):
        random.shuffle(sources)
        for source in sources:
            asked = {row.series: row for row in rows if row.source is source}
            for series, found in source.measure(list(asked), quick).items():
                for contestant, more in found.items():
                    figures[asked[series]].setdefault(contestant, []).extend(more)
    return figures


def result(row, figures):
    medians = {contestant: statistics.median(all_of_it) for contestant, all_of_it in figures.items()}
    ours = medians.pop("ours")
    peer = row.peer or max(medians, key=medians.get)
    return {
        "name": row.name,
        "ours": ours,
        "peer": medians[peer],
        "peer_name": peer,
        "unit": row.unit,
        "ratio": ours / medians[peer],
        "target": row.target,
        "others": {name: figure for name, figure in medians.items() if name != peer},
    }


def public(result):
    return {key: value for key, value in result.items() if key != "others"}


def processor():
    text = Path("/proc/cpuinfo").read_text()
    model = re.search(r"model name\s*: (.*)", text)
    flags = re.search(r"flags\s*: (.*)", text)
    has = [feature for feature in FEATURES if flags and feature in flags[1].split()]
    return f"{model[1] if model else 'processor unknown'} with {' '.join(has) or 'none of the features that matter'}\n"


def digits(figure):
    return f"{figure:.0f}" if figure >= 100 else f"{figure:.3g}"


def table(results):
    head = ["what", "ours", "peer", "", "unit", "ratio", "target", "other peers"]
    lines = [head, ["---", "--:", "--:", "---", "---", "--:", "--:", "---"]]
    for one in results:
        others = sorted(one["others"].items(), key=lambda item: -item[1])
        lines.append([
            one["name"], digits(one["ours"]), digits(one["peer"]), one["peer_name"], one["unit"],
            f"{one['ratio']:.2f}", f"{one['target']:g}",
            ", ".join(f"{name} {digits(figure)}" for name, figure in others),
        ])
    widths = [max(len(line[column]) for line in lines) for column in range(len(head))]
    return "\n".join(
        "| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |" for line in lines
    )
