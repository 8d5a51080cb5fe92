"""A trace of scanhost with what is known of its columns: for scripts/plot and scripts/events.

Units, kinds and names of states come from the catalogue (scanhost blocks --json) by way of the program, which says of
which type a block is; [trace] units in the program adds others. Without the program a column whose values are all 0
and 1 is a flag, and nothing has a unit.
"""
import csv
import datetime
import json
import os
import subprocess
import sys
import tomllib
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


class Column:
    """name, values; kind "number", "flag" or "state"; unit; states: number -> name."""

    def __init__(self, name, values):
        self.name, self.values = name, values
        self.unit, self.states = "", {}
        self.kind = "flag" if set(values) <= {0.0, 1.0} else "number"

    def text(self, value):
        return self.states.get(value, f"{value:g}")

    def changes(self):
        """(index, value) of the first value and of every one that differs from that before it."""
        old = None
        for index, value in enumerate(self.values):
            if value != old:
                yield index, value
            old = value


class Trace:
    """times: local time in seconds since 1970-01-01, by the clock on the wall; columns."""

    def __init__(self, path, program=None, scanhost=None):
        try:
            with open(path, newline="", encoding="utf-8") as file:
                rows = csv.reader(file)
                header = next(rows, None)
                if not header or header[0] != "time" or len(header) < 2:
                    sys.exit(f"{path}:1: no trace of scanhost; the first line is time,COLUMN,...")
                self.times, lists = [], [[] for _ in header[1:]]
                for line, row in enumerate(rows, 2):
                    try:
                        self.times.append(wall_seconds(row[0]))
                        for values, field in zip(lists, row[1:], strict=True):
                            values.append(float(field))
                    except (ValueError, IndexError):
                        sys.exit(f"{path}:{line}: not a time and {len(lists)} numbers; a trace has them in every row")
        except (UnicodeDecodeError, csv.Error):
            sys.exit(f"{path}: no trace of scanhost, which is a text in UTF-8")
        except OSError as error:
            sys.exit(f"{path}: {error.strerror}")
        if not self.times:
            sys.exit(f"{path}: no rows; record at least one scan")
        self.columns = [Column(*pair) for pair in zip(header[1:], lists)]
        self.title = Path(path).stem
        if program:
            self._describe(program, scanhost)

    def _describe(self, path, scanhost):
        try:
            with open(path, "rb") as file:
                program = tomllib.load(file)
        except (OSError, tomllib.TOMLDecodeError) as error:
            sys.exit(f"{path}: {error}; 'scanhost check' tells more")
        self.title = program.get("program", {}).get("name", self.title)
        units = program.get("trace", {}).get("units", {})
        types = {}
        for block in program.get("block", []):
            group = block.get("group", program["program"].get("group", ""))
            types[block["name"]] = types[f"{group}/{block['name']}"] = block["type"]
        catalogue = {block["name"]: block for block in read_catalogue(scanhost)}
        for column in self.columns:
            name, _, pin_name = column.name.rpartition(".")
            block = catalogue.get(types.get(name), {})
            for pin in block.get("inputs", []) + block.get("outputs", []):
                if pin["name"] != pin_name:
                    continue
                column.unit = pin["unit"]
                if pin["kind"] == "state":
                    column.kind = "state"
                    column.states = {float(state["number"]): state["name"] for state in block["states"]}
            column.unit = units.get(column.name, column.unit)
            if column.unit:
                column.kind = "number"


def wall_seconds(text):
    moment = datetime.datetime.fromisoformat(text).replace(tzinfo=datetime.timezone.utc)
    return moment.timestamp()


def wall_clock(seconds, form):
    return datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc).strftime(form)


def read_catalogue(scanhost):
    candidates = [scanhost] if scanhost else [os.environ.get("SCANHOST"), "scanhost"] + [
        str(path) for path in sorted(ROOT.glob("build/*/host/scanhost"))]
    for candidate in filter(None, candidates):
        try:
            run = subprocess.run([candidate, "blocks", "--json"], capture_output=True, text=True, check=True)
            return json.loads(run.stdout)
        except (OSError, ValueError, subprocess.CalledProcessError):
            continue
    sys.exit("scanhost is not there; build it, or name it: --scanhost FILE")


def add_arguments(parser):
    parser.add_argument("trace", metavar="TRACE.csv")
    parser.add_argument("--program", metavar="PROGRAM.toml", help="for units and names of states")
    parser.add_argument("--scanhost", metavar="FILE", help="for the catalogue, instead of searching it")
