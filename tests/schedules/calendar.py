#!/usr/bin/env python3
"""A week and a year of Scheduler and RunHours through 'scanhost simulate', held against the calendar.

usage: calendar.py SCANHOST LIBRARY

A fan runs for ten minutes around every local quarter of an hour; a pump runs all the time. What the
trace has to show follows from the calendar of Python's time module, without a look at the blocks'
rules: the fan is on in certain minutes, a counter of the day has the minutes since local midnight.
"""
import csv
import datetime
import os
import subprocess
import sys
import tempfile
import time

PROGRAM = """
[program]
name = "Calendar"
scan = "{scan}s"
[[block]]
name = "Air"
type = "Scheduler"
in = {{ Enable = 1, IntervalMin = 15, LeadMin = 5, DurationMin = 5 }}
[[block]]
name = "Fan"
type = "RunHours"
in = {{ InSignal = "Air.Q" }}
[[block]]
name = "Pump"
type = "RunHours"
in = {{ InSignal = 1 }}
[trace]
record = ["Air.Q", "Air.Hour", "Air.Minute", "Fan.TodayTotal", "Fan.YesterdayTotal",
          "Pump.TodayTotal", "Pump.YesterdayTotal", "Pump.TotalHour"]
every = "{every}s"
"""


def run(host, library, zone, scan, every, start, parts):
    """Runs the parts [(first, last)], seconds from start, on one state directory; between them the
    controller is off. Returns the number of scans and of rows."""
    os.environ["TZ"] = zone
    time.tzset()
    begin = int(datetime.datetime.fromisoformat(start).timestamp())
    # Per minute, or per scan if that is longer: what the trace shows after the call at its start. A
    # counter counts a minute per call at most.
    step = max(scan, 60)
    expected = {}
    fan = pump = fan_old = pump_old = total = scans = 0
    on_before, day = None, None
    for first, last in parts:
        for minute in range(begin + first, begin + last, step):
            local = time.localtime(minute)
            # Whoever comes after the start of a pulse, new or after an outage, waits for the next one.
            on = (local.tm_min + 5) % 15 < 10 and minute >= begin + first + 600
            if on_before is not None:
                total += 1
                pump += 1
                fan += on_before
            if day is not None and local.tm_mday != day:
                fan, fan_old, pump, pump_old = 0, fan, 0, pump
            on_before, day = on, local.tm_mday
            expected[minute] = (int(on), local.tm_hour, local.tm_min, fan, fan_old, pump, pump_old,
                                total // 60)
    with tempfile.TemporaryDirectory() as directory:
        program = os.path.join(directory, "program.toml")
        trace = os.path.join(directory, "trace.csv")
        with open(program, "w") as file:
            file.write(PROGRAM.format(scan=scan, every=every))
        rows = 0
        for first, last in parts:
            stamp = datetime.datetime.fromtimestamp(begin + first, datetime.timezone.utc)
            subprocess.run(
                [host, "simulate", program, "--library", library, "--state", directory + "/state",
                 "--start", stamp.strftime("%Y-%m-%dT%H:%M:%SZ"), "--for", f"{last - first}s",
                 "--trace", trace], check=True, stdout=subprocess.DEVNULL)
            scans += (last - first) // scan
            with open(trace) as file:
                for number, row in enumerate(list(csv.reader(file))[1:]):
                    moment = begin + first + number * every
                    shown = datetime.datetime.fromisoformat(row[0]).timestamp()
                    want = expected[moment - (moment - begin - first) % step]
                    got = tuple(int(cell) for cell in row[1:])
                    if shown != moment or got != want:
                        sys.exit(f"{zone} {row[0]}: got {got}, expected {want}")
                    rows += 1
            if number != (last - first - 1) // every:
                sys.exit(f"{zone}: the trace ends early, after row {number}")
    return scans, rows


def main():
    host, library = (os.path.abspath(name) for name in sys.argv[1:3])
    hour, day = 3600, 86400
    runs = [
        # Over the short night in Central Europe; off from Wednesday 08:00 to 16:00.
        ("week", "CET-1CEST,M3.5.0,M10.5.0/3", 10, 50, "2026-03-23T00:00:00+01:00",
         [(0, 2 * day + 8 * hour), (2 * day + 16 * hour, 7 * day)]),
        # And over the long one.
        ("week", "CET-1CEST,M3.5.0,M10.5.0/3", 10, 50, "2026-10-19T00:00:00+02:00",
         [(0, 8 * day)]),
        # A leap year on Lord Howe Island, where summer time is half an hour.
        ("year", "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", 300, 35 * 60, "2028-01-01T00:00:00+11:00",
         [(0, 366 * day + hour)]),
    ]
    for name, *arguments in runs:
        started = time.monotonic()
        scans, rows = run(host, library, *arguments)
        print(f"{name}: {scans} scans, {rows} rows as expected, {time.monotonic() - started:.1f} s")


if __name__ == "__main__":
    main()
