#!/usr/bin/python3
"""Measures the Python package against the class and against json.loads, in rounds of random order; bench/compare calls it.

usage: bench/python_bench.py [--rounds N] PROGRAM LIBRARY

PROGRAM is the benchmark program, LIBRARY the shared library of the same build. Prints a JSON object of ratios:

raw_requests      requests a second of raw.Query with answers of 100 rows, none of them taken, to those of the class
archive_requests  the same by Archive.search(), whose lists are dropped unread
hit_list          the processor time in which the texts of 1,000 rows are fetched and taken from a hit list, to that in which
                  json.loads makes the same rows (an object for each, with channel, archive, id, version and the list of
                  values) and they are taken from it; both after a request for the rows, whose own time is subtracted
"""
import argparse
import json
import os
import random
import statistics
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "bindings/python/src"))
REQUESTS, LISTS = 200, 20  # in a round


def class_seconds(program):
    """Of a request by the class."""
    command = [program, "--benchmark_filter=^RequestsWithoutWalk/100/", "--benchmark_min_time=0.05",
               "--benchmark_format=json"]
    report = json.loads(subprocess.run(command, check=True, capture_output=True, text=True, timeout=60).stdout)
    return report["benchmarks"][0]["real_time"] / 1e9


def seconds(call, count, clock=time.perf_counter):
    start = clock()
    for _ in range(count):
        call()
    return (clock() - start) / count


def processor_seconds(call):
    """Of a call that need not wait; other programs do not disturb it."""
    return seconds(call, LISTS, time.process_time)


def take_hits(hits):
    texts = 0
    for hit in hits:
        texts += 4 + len(hit.values)
        hit.channel, hit.archive, hit.id, hit.version  # pylint: disable=pointless-statement
    return texts


def take_json(text):
    texts = 0
    for row in json.loads(text):
        texts += 4 + len(row["values"])
        row["channel"], row["archive"], row["id"], row["version"]  # pylint: disable=pointless-statement
    return texts


def measure(program, rounds, port):
    from oxaqrycln import Archive
    archive = Archive(hosts=f"127.0.0.1,{port}", user="webuser", session="S1", timeout=60)

    def raw_search(rows):
        return archive.query.TELOQueryArchiveInit(f"rows:{rows}", rows, rows, "", "")

    def search(rows):
        return archive.search(f"rows:{rows}", max=rows, query_max=rows)

    names = ("channel", "archive", "id", "version", "values")
    text = json.dumps([dict(zip(names, hit)) for hit in search(1000)], ensure_ascii=False).encode("utf-8")
    assert take_hits(search(1000)) == take_json(text) == 7000
    what = {"class": lambda: class_seconds(program),
            "raw_requests": lambda: seconds(lambda: raw_search(100), REQUESTS),
            "archive_requests": lambda: seconds(lambda: search(100), REQUESTS),
            "request_1000": lambda: processor_seconds(lambda: raw_search(1000)),
            "hits_1000": lambda: processor_seconds(lambda: take_hits(search(1000))),
            "json_1000": lambda: processor_seconds(lambda: (raw_search(1000), take_json(text)))}
    times = {name: [] for name in what}
    for _ in range(rounds):
        for name, run in random.sample(list(what.items()), len(what)):
            times[name].append(run())
    median = {name: statistics.median(values) for name, values in times.items()}
    return {"raw_requests": median["class"] / median["raw_requests"],
            "archive_requests": median["class"] / median["archive_requests"],
            "hit_list": ((median["hits_1000"] - median["request_1000"])
                         / (median["json_1000"] - median["request_1000"])),
            "microseconds": {name: value * 1e6 for name, value in median.items()}}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=11)
    parser.add_argument("program")
    parser.add_argument("library")
    options = parser.parse_args()
    os.environ["OXAQRYCLN_LIBRARY"] = os.path.abspath(options.library)
    os.sched_setaffinity(0, {0})  # as the benchmark program does
    pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "text": True}
    with subprocess.Popen([options.program, "--serve"], **pipes) as server:
        try:
            print(json.dumps(measure(options.program, options.rounds, int(server.stdout.readline()))))
        finally:
            server.stdin.close()


if __name__ == "__main__":
    main()
