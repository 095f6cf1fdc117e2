#!/usr/bin/env python3
"""Gain staging of the factory programs from measured renders.

sablevox-levels --report FILE writes one line per program: bank, program,
name, worst peak dB, loudness dB (its loudest case), worst DC, Volume, then
which cases those were. This script moves each program's Volume so that its
loudness lands on the target level while its peak stays below the ceiling and
its DC below the limit, and writes the new value into the program's own block
of its bank source (replacing a Volume it sets, or adding a line). Volume is
the voice's last gain, after the drive, and scales the output by
exp(-6 (1 - Volume)): 52.1 dB over the whole range, so a step of dB / 52.1
moves the level by exactly that much and changes nothing else.

Usage: level_banks.py REPORT [--target -20] [--ceiling -2] [--max-dc 0.0035]
       [--banks data/banks] [--only-outside 4]  (leave programs already within
       that many dB whose peak and DC are within their bars)
"""
import argparse
import math
import os
import re
import sys

BANK_FILES = {1: "factory-a.txt", 2: "factory-b.txt", 3: "factory-c.txt", 4: "abstracts.txt"}
DB_PER_VOLUME = 6.0 * 20.0 / math.log(10.0)  # 52.1 dB across the Volume range


def read_report(path):
    rows = []
    with open(path, encoding="utf-8") as f:
        for line in f:
            bank, program, name, peak, loud, dc, volume = line.rstrip("\n").split("\t")[:7]
            rows.append((int(bank), name, float(peak), float(loud), float(dc), float(volume)))
    return rows


def new_volume(peak, loud, dc, volume, target, ceiling, max_dc):
    delta = min(target - loud, ceiling - peak)
    if dc > 0.0:
        delta = min(delta, 20.0 * math.log10(max_dc / dc))
    value = volume + delta / DB_PER_VOLUME
    return min(max(value, 0.05), 1.0)


def set_volume(lines, name, value):
    """Writes Volume into the block of program `name`; False if not found."""
    head = re.compile(r'^\s*program\s+"' + re.escape(name) + r'"')
    start = next((i for i, l in enumerate(lines) if head.match(l)), None)
    if start is None:
        return False
    end = start + 1
    while end < len(lines) and lines[end].strip() and not re.match(
            r"^\s*(program|template|#)", lines[end]):
        end += 1
    text = f"{value:.3f}"
    for i in range(start, end):
        if re.search(r"\bVolume\s*=", lines[i]):
            lines[i] = re.sub(r"\bVolume\s*=\s*[0-9.]+", "Volume = " + text, lines[i])
            return True
    lines.insert(end, "  Volume = " + text + "\n")
    return True


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("report")
    parser.add_argument("--target", type=float, default=-20.0)
    parser.add_argument("--ceiling", type=float, default=-2.0)
    parser.add_argument("--max-dc", type=float, default=0.0035)
    parser.add_argument("--only-outside", type=float, default=0.0)
    parser.add_argument("--banks", default=os.path.join(os.path.dirname(__file__), "../../data/banks"))
    args = parser.parse_args()

    sources = {}
    for bank, file in BANK_FILES.items():
        with open(os.path.join(args.banks, file), encoding="utf-8") as f:
            sources[bank] = f.readlines()
    changed = 0
    for bank, name, peak, loud, dc, volume in read_report(args.report):
        if (abs(loud - args.target) <= args.only_outside and peak <= args.ceiling
                and dc <= args.max_dc):
            continue
        value = new_volume(peak, loud, dc, volume, args.target, args.ceiling, args.max_dc)
        if abs(value - volume) < 0.0005:
            continue
        if not set_volume(sources[bank], name, value):
            print(f"not found: bank {bank} {name}", file=sys.stderr)
            continue
        changed += 1
        if value >= 1.0 or value <= 0.05:
            print(f"at the end of the range: {name} Volume {value:.3f}", file=sys.stderr)
    for bank, file in BANK_FILES.items():
        with open(os.path.join(args.banks, file), "w", encoding="utf-8") as f:
            f.writelines(sources[bank])
    print(f"{changed} programs levelled")


if __name__ == "__main__":
    main()
