#!/usr/bin/env python3
"""Writes the hits of a search to standard output as CSV, one line each: channel, archive, document, version, columns."""
from __future__ import annotations

import argparse
import csv
import os
import sys

from oxaqrycln import Archive, Error


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("query")
    parser.add_argument("--hosts", default=os.environ.get("OXAQRY_REMOTE_HOSTS", ""), help="host,port[|host,port ...]")
    parser.add_argument("--user", default=os.environ.get("OXAQRY_USER", ""))
    parser.add_argument("--max", type=int, default=0, help="the most hits, 0 for all")
    parser.add_argument("--sort", default="", help="title or number of a column")
    options = parser.parse_args()
    try:
        with Archive(hosts=options.hosts, user=options.user, password=os.environ.get("OXAQRY_PASSWORD", "")) as archive:
            hits = archive.search(options.query, max=options.max, query_max=0, sort=options.sort)
            output = csv.writer(sys.stdout)
            output.writerow(["Channel", "Archive", "Document", "Version", *hits.columns])
            output.writerows([hit.channel, hit.archive, hit.id, hit.version, *hit.values] for hit in hits)
    except Error as error:
        tried = "".join(f"\n  {attempt.server}: {attempt.error} ({attempt.milliseconds} ms)" for attempt in error.attempts)
        sys.exit(f"export_hits: {error.text}{tried}")


if __name__ == "__main__":
    main()
