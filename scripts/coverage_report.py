"""coverage_report.py BUILD - prints the line coverage of a build made with --coverage, from gcov's reports.

A line counts as executed if any program of the build executed it.
"""
import json
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

SHIPPED = ("archive", "automation", "component", "platform", "support", "tools", "transport", "userdb", "values")


def read_lines(build, root):
    """For each shipped file, by its path: whether each line with code was executed."""
    files = defaultdict(dict)
    for counts in sorted(build.rglob("*.gcda")):
        reports = subprocess.run(["gcov", "--json-format", "--stdout", counts.name], cwd=counts.parent, check=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
        for report in map(json.loads, filter(None, reports.splitlines())):
            for file in report["files"]:
                path = (Path(report["current_working_directory"]) / file["file"]).resolve()
                if not path.is_relative_to(root) or path.relative_to(root).parts[0] not in SHIPPED:
                    continue
                lines = files[path.relative_to(root).as_posix()]
                for line in file["lines"]:
                    lines[line["line_number"]] = lines.get(line["line_number"], False) or line["count"] > 0
    return files


def main():
    files = read_lines(Path(sys.argv[1]).resolve(), Path(__file__).resolve().parent.parent)
    rows = [(sum(lines.values()), len(lines), path) for path, lines in files.items() if lines]
    if not rows:
        sys.exit("coverage: the build has no execution counts; run its tests first")
    rows.sort(key=lambda row: row[0] / row[1])
    rows.append((sum(row[0] for row in rows), sum(row[1] for row in rows), "all"))
    for run, total, path in rows:
        print(f"{100 * run / total:6.1f} %  {run:5d} of {total:5d} lines  {path}")


if __name__ == "__main__":
    main()
