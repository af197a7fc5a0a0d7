#!/usr/bin/env python3
"""Finds the lines of all BMP files of a folder, on all cores or on a Dask cluster, and writes a table.

The table has one row per picture: name, width, height, lines, total length, and an error if the picture could not be
read. A second start keeps the rows that the table has, and adds those of the other pictures. New rows are in the order
of the names.
"""

import argparse
import csv
import io
import multiprocessing
import os
import pathlib
import sys
from concurrent.futures import ProcessPoolExecutor
from concurrent.futures.process import BrokenProcessPool

import nuvimgsdk as nuv

HEAD = ["name", "width", "height", "lines", "length", "error"]
AT_ONCE = 256  # pictures that wait on a cluster


class BatchError(Exception):
    """A sentence that ends the program."""


def sentence(error):
    """An error in words. Those of the system name their file first."""
    if isinstance(error, OSError) and error.filename and error.strerror:
        return f"{error.filename}: {error.strerror}"
    return str(error)


def row_of(path):
    """The row of one picture."""
    name = os.path.basename(path)
    try:
        image = nuv.imread(path)
        lines = nuv.find_lines(image)
    except (OSError, ValueError, MemoryError) as error:
        return [name, "", "", "", "", sentence(error).replace(path, name)]
    return [name, image.shape[1], image.shape[0], len(lines), f"{sum(line.length for line in lines):.3f}", ""]


def on_cores(paths, workers):
    """The rows of the pictures, in their order, as processes of this machine finish them."""
    with ProcessPoolExecutor(workers, multiprocessing.get_context("spawn")) as pool:
        try:
            yield from pool.map(row_of, paths, chunksize=4)
        except BrokenProcessPool:
            raise BatchError("a process has ended; a second start continues") from None
        finally:
            pool.shutdown(cancel_futures=True)


def on_cluster(paths, address):
    """The rows of the pictures, in their order, as the workers of a scheduler finish them."""
    try:
        from distributed import Client, KilledWorker
    except ImportError:
        raise BatchError("--scheduler needs the Python package distributed") from None
    try:
        with Client(address, timeout="10s", set_as_default=False) as client:
            waiting = []
            for path in paths:
                waiting.append(client.submit(row_of, path, pure=False))
                if len(waiting) == AT_ONCE:
                    yield waiting.pop(0).result()
            while waiting:
                yield waiting.pop(0).result()
    except KilledWorker as error:
        raise BatchError(f"the workers have ended: {error}") from None


def kept_rows(table):
    """The complete rows of an earlier start, and the number of their bytes."""
    if not table.exists():
        return [], 0
    data = table.read_bytes()
    data = data[:data.rfind(b"\n") + 1]  # the program can have ended while it wrote a row
    rows = list(csv.reader(io.StringIO(data.decode("utf-8", "replace"))))
    if rows[:1] != [HEAD] or any(len(row) != len(HEAD) for row in rows):
        raise BatchError(f"{table}: this is another file, and stays as it is")
    return rows[1:], len(data)


def show_progress(done, total):
    if sys.stderr.isatty():
        part = 40 * done // total
        print(f"\r[{'#' * part:40}] {done} of {total}", end="\n" if done == total else "", file=sys.stderr, flush=True)


def run(options):
    pictures = sorted(str(p.resolve()) for p in options.folder.iterdir() if p.suffix.lower() == ".bmp")
    if not pictures:
        raise BatchError(f"{options.folder}: the folder has no BMP files")
    rows, size = kept_rows(options.table)
    names = {row[0] for row in rows}
    left = [p for p in pictures if os.path.basename(p) not in names]
    if not left:
        return
    new = on_cluster(left, options.scheduler) if options.scheduler else on_cores(left, max(options.workers, 1))
    row = next(new)  # a scheduler that is not there shows before the table is touched
    with open(options.table, "r+" if size else "w", newline="", encoding="utf-8") as file:
        file.truncate(size)
        file.seek(size)
        writer = csv.writer(file, lineterminator="\n")
        if not size:
            writer.writerow(HEAD)
        for done in range(len(pictures) - len(left) + 1, len(pictures) + 1):
            writer.writerow(row)
            file.flush()
            show_progress(done, len(pictures))
            row = next(new, None)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path, help="the folder with the pictures")
    parser.add_argument("table", type=pathlib.Path, help="the CSV file that receives the rows")
    parser.add_argument("--scheduler", metavar="ADDRESS", help="address of a running Dask scheduler")
    parser.add_argument("--workers", type=int, default=os.cpu_count(), help="number of processes (default: all cores)")
    try:
        run(parser.parse_args())
    except (OSError, BatchError) as error:
        sys.exit(f"find_lines_batch: {sentence(error)}")
    except KeyboardInterrupt:
        sys.exit("\nfind_lines_batch: ended by the user; a second start continues")


if __name__ == "__main__":
    main()
