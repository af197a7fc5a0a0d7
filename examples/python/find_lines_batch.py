#!/usr/bin/env python3
"""Finds the lines of all BMP files of a folder, on all cores or on a Dask cluster, and writes a table.

The table has one row per picture, in the order of the names: name, width, height, lines, total length, and an error
if the picture could not be read. Rows that the table already has are kept, so that a second start continues.
"""

import argparse
import csv
import multiprocessing
import os
import pathlib
import sys

HEAD = ["name", "width", "height", "lines", "length", "error"]


def row_of(path):
    """The row of one picture."""
    import nuvimgsdk as nuv
    name = os.path.basename(path)
    try:
        image = nuv.imread(path)
        lines = nuv.find_lines(image)
    except (OSError, ValueError, MemoryError) as error:
        return [name, "", "", "", "", str(error)]
    return [name, image.shape[1], image.shape[0], len(lines), f"{sum(line.length for line in lines):.3f}", ""]


def results(paths, scheduler, workers):
    """The rows of the pictures, in their order, as they are finished."""
    if scheduler is not None:
        from distributed import Client
        with Client(scheduler, timeout="10s") as client:
            # A bounded number of pictures is under way.
            size = 256
            for start in range(0, len(paths), size):
                yield from client.gather(client.map(row_of, paths[start:start + size], pure=False))
        return
    with multiprocessing.get_context("spawn").Pool(workers) as pool:
        yield from pool.imap(row_of, paths, chunksize=4)


def finished(table):
    """The complete rows of an earlier start."""
    if not table.exists():
        return []
    with open(table, newline="", encoding="utf-8") as file:
        lines = file.read().split("\n")
    rows = list(csv.reader(lines[:-1]))  # what follows the last line end is not complete
    if rows and rows[0] != HEAD:
        raise OSError(f"{table} is another file, and is left alone")
    return [row for row in rows[1:] if len(row) == len(HEAD)]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("table", type=pathlib.Path)
    parser.add_argument("--scheduler", help="address of a running Dask scheduler")
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    options = parser.parse_args()
    try:
        pictures = sorted(str(p.resolve()) for p in options.folder.iterdir() if p.suffix.lower() == ".bmp")
        if not pictures:
            raise OSError(f"{options.folder} has no BMP files")
        rows = finished(options.table)
        done = {row[0] for row in rows}
        left = [p for p in pictures if os.path.basename(p) not in done]
        new = results(left, options.scheduler, max(options.workers, 1))
        first = next(new, None)  # a scheduler that is not there shows before the table is touched
        with open(options.table, "w", newline="", encoding="utf-8") as file:
            writer = csv.writer(file, lineterminator="\n")
            writer.writerows([HEAD, *rows])
            count = len(rows)
            while first is not None:
                writer.writerow(first)
                file.flush()
                count += 1
                if sys.stderr.isatty():
                    part = 40 * count // len(pictures)
                    print(f"\r[{'#' * part:40}] {count} of {len(pictures)}", end="", file=sys.stderr)
                first = next(new, None)
        if sys.stderr.isatty():
            print(file=sys.stderr)
    except (OSError, ImportError, TimeoutError) as error:
        sys.exit(f"find_lines_batch: {error}")


if __name__ == "__main__":
    main()
