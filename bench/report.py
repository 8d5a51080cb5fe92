#!/usr/bin/env python3
"""The tables of docs/performance.md from the JSON of scanblocks_bench.

usage: report.py JSON [DOCUMENT]     without a document the tables are printed
"""
import json
import platform
import sys

BEGIN, END = "<!-- figures: begin -->", "<!-- figures: end -->"


def races(results, topic):
    """The parts of the name behind the topic, and the counters, of every benchmark of it."""
    for result in results:
        name = result["name"].split("/iterations:")[0].split("/")
        if name[0] == topic:
            yield name[1:], result


def table(header, rows):
    rows = [header, ["---"] + ["--:"] * (len(header) - 1)] + rows
    return "".join("| " + " | ".join(row) + " |\n" for row in rows)


def nanoseconds(value):
    return f"{value:,.0f}" if value >= 100 else f"{value:.1f}"


def calls(results, file_system):
    others = {name[1]: r for name, r in races(results, "others") if name[0] == file_system}
    rows, ratios = [], []
    for topic in ("bare", "bare-without-TZ"):
        for name, r in races(results, topic):
            if name[0] != file_system:
                continue
            ratio = r["block"] / r["bare"]
            row = [name[1] + (" without TZ" if topic != "bare" else ""), nanoseconds(r["block"]),
                   nanoseconds(r["bare"]), f"{ratio:.3f}"]
            if topic == "bare":
                ratios.append(ratio)
                o = others.get(name[1])
                row += [f"{o['sqlite'] / o['block']:.1f}", f"{o['sqlite-mean'] / o['block-mean']:.1f}",
                        f"{o['rewrite'] / o['block']:.1f}"] if o else [""] * 3
            else:
                row += [""] * 3
            rows.append(row)
    if not rows:
        return ""
    ratios.sort()
    return (f"### Stateful blocks on {file_system}\n\n"
            f"Times the bare calls: median {ratios[len(ratios) // 2]:.3f}, highest {ratios[-1]:.3f}.\n\n" +
            table(["block", "call, ns", "bare calls, ns", "call / bare", "SQLite / call",
                   "means", "rewriting / call"], rows) + "\n")


def stateless(results):
    rows = [[name[0], nanoseconds(r["block"])] for name, r in races(results, "stateless")]
    return "### Blocks without a state\n\n" + table(["block", "call, ns"], rows) + "\n" if rows else ""


def growth(results):
    rows = [[name[0]] + [nanoseconds(r[k]) for k in
             ("instances1", "instances100", "instances10000", "bare10000")] +
            [f"{r['instances10000'] / r['instances1']:.2f}", f"{r['instances10000'] / 100:.0f}"]
            for name, r in races(results, "growth")]
    return "### Growth\n\n" + table(
        ["`PID` in one directory", "1 instance, ns", "100, ns", "10,000, ns", "bare on 10,000 files, ns",
         "10,000 / 1", "scan of 10,000, ms"], rows) + "\n" if rows else ""


def threads(results):
    rates = {}
    for name, r in races(results, "threads"):
        rates[(*name[:2], r["threads"])] = r["items_per_second"]
    rows = [[f"{fs}, {what}"] + [f"{rates[fs, what, n] / 1000:,.0f}" for n in (1, 2, 3, 4)]
            for fs, what, n in rates if n == 1]
    return "### Threads\n\n" + table(
        ["thousand calls of `PID` per second", "1 thread", "2", "3", "4"], rows) + "\n" if rows else ""


def wear(results):
    label = {"nothing": "no calls (what other programs write)", "block": "`PID`", "sqlite": "SQLite",
             "rewrite": "rewriting"}
    rows = [[f"{name[0]}, {label[name[1]]}", f"{r['dirtied'] / 1024:,.0f}", f"{r['device'] / 1024:,.0f}"]
            for name, r in races(results, "wear")]
    return "### Wear\n\n" + table(["1,000 calls in 10 s", "pages dirtied, KiB", "written to the device, KiB"],
                                 rows) + "\n" if rows else ""


def processor():
    with open("/proc/cpuinfo") as lines:
        return next((l.split(":")[1].strip() for l in lines if l.startswith("model name")),
                    platform.machine())


def main():
    with open(sys.argv[1]) as file:
        report = json.load(file)
    context, results = report["context"], report["benchmarks"]
    load = ", ".join(f"{value:.1f}" for value in context["load_avg"][:3])
    text = (f"Measured on {context['date'][:10]}: {context['num_cpus']} processors ({processor()}), "
            f"Linux {platform.release()}, {platform.libc_ver()[0]} {platform.libc_ver()[1]}; "
            f"load at the start {load}.\n\n")
    for file_system in dict.fromkeys(name[0] for name, _ in races(results, "bare")):
        text += calls(results, file_system)
    text += stateless(results) + growth(results) + threads(results) + wear(results)
    if len(sys.argv) < 3:
        print(text)
        return
    with open(sys.argv[2]) as file:
        document = file.read()
    head, rest = document.split(BEGIN, 1)
    with open(sys.argv[2], "w") as file:
        file.write(head + BEGIN + "\n" + text.rstrip() + "\n" + END + rest.split(END, 1)[1])


if __name__ == "__main__":
    main()
