"""Rules of the package that hold beside single results: refusals, returned values, lists, threads and memory."""

import gc
import json
import os
import pathlib
import pickle
import resource
import subprocess
import sys
import threading

import distributed
import numpy
import pytest
import scipy.ndimage
import scipy.signal
import skimage.filters
import skimage.measure
import skimage.transform

import nuvimgsdk as nuv
from nuvimgsdk import _by_name, _library, _services

ROOT = pathlib.Path(__file__).resolve().parents[2]
rng = numpy.random.default_rng(1)
GRAY = rng.integers(0, 256, (48, 64), "u1")
COLOUR = rng.integers(0, 256, (48, 64, 3), "u1")
BLOB = numpy.zeros((48, 64), "u1")
BLOB[10:30, 12:40] = 255
CHAIN = numpy.array([0, 0, 6, 4, 4, 2], "u1")

REFUSALS = [  # call, error, and what the message must say
    (lambda: nuv.NuvGryImgSobel([[1]]), TypeError, "GryImg must be a gray image.* not list"),
    (lambda: nuv.NuvGryImgSobel(GRAY.astype("i4")), TypeError, r"not an array of int32 with shape \(48, 64\)"),
    (lambda: nuv.NuvGryImgSobel(COLOUR), ValueError, r"GryImg .*\(height, width\), not .*\(48, 64, 3\)"),
    (lambda: nuv.NuvRGB2Gry(GRAY), ValueError, "RGBImg must be a colour image"),
    (lambda: nuv.NuvImg1Substract2To1(GRAY, GRAY[1:]), ValueError, r"Img2 must be of shape \(48, 64\)"),
    (lambda: nuv.NuvThreshold(GRAY, 1.5), TypeError, "T must be an integer, not float 1.5"),
    (lambda: nuv.NuvThreshold(GRAY, 2**31), ValueError, "T must be from -2147483648 to 2147483647"),
    (lambda: nuv.NuvThresholdByRatioToRes(GRAY, "much"), TypeError, "ratio must be a number, not str 'much'"),
    (lambda: nuv.NuvCopyGryRect(GRAY, 0, 64, 0, 3), ValueError, r"x1 and x2 must lie in 0\.\.63"),
    (lambda: nuv.NuvSelectRGB2Gry(COLOUR, 3), ValueError, "channel must be from 0 to 2, not int 3"),
    (lambda: nuv.NuvContourCenter(0, 0, [0, 8]), ValueError, "ChainCode must be a chain with codes from 0 to 7"),
    (lambda: nuv.NuvMarkChainByColor(GRAY, 62, 0, CHAIN, 1), ValueError, "the chain must stay inside the image"),
    (lambda: nuv.NuvTraceContour(BLOB, 0, 5, 99, True), ValueError, "x must be a column off the border"),
    (lambda: nuv.NuvGetMedianInHistogram([1, 2]), ValueError, "Histogram must be an array of 256 elements"),
    (lambda: nuv.NuvDataMaxDataPos([2**40]), ValueError, "Data must be .* from -2147483648 to 2147483647"),
    (lambda: nuv.NuvDataMaxDataValue([]), ValueError, "Data must be an array of at least 1 element"),
    (lambda: nuv.NuvPointsRect([1, 2, 3], [1]), ValueError, "Y must be an array of 3 elements"),
    (lambda: nuv.NuvCbYCrY2RGB(numpy.zeros(7, "u1"), 4, 2), ValueError, "CbYCrYImg must be an array of 16 elements"),
    (lambda: nuv.NuvRectOverlapArea((0, 0, 1), (0, 0, 1, 1)), TypeError, "rect1 must be four integers"),
    (lambda: nuv.NuvGetFileNakeName(b"a\0b"), ValueError, "FileName must be a text without zero bytes"),
    (lambda: nuv.NuvGryImgSobel(GRAY, out=GRAY), ValueError, "must not share memory with GryImg"),
    (lambda: nuv.NuvGryImgSobel(GRAY, out=GRAY[:4].copy()), ValueError, r"out\['ResImg'\] must be .*\(48, 64\)"),
    (lambda: nuv.NuvCopyRectFromRotateCCS(GRAY, 0, 0, 0.0, 2**20, 2**20), ValueError, "at most 2147483647 elements"),
    (lambda: nuv.NuvFreeContours(5), TypeError, "Contours must be None or a ContourList"),
    (lambda: nuv.NuvGryImgSobel(GRAY, out=numpy.empty((48, 128), "u1")[:, ::2]), ValueError, "that is not contiguous"),
    (lambda: nuv.NuvGryImgSobel(GRAY > 9), TypeError, r"\(astype\('u1'\) \* 255 makes one\), not an array of bool"),
    (lambda: nuv.NuvGryImgSobel(nuv.NuvBinImgThin(BLOB)), TypeError, "which has the fields result, ResImg"),
    (lambda: nuv.NuvBinImgMinFilter3x3(GRAY, 1), TypeError, "the arguments must be those of one overload"),
    (lambda: nuv.NuvBinImgMinFilter3x3(COLOUR), ValueError, "BinImg must be a gray image"),
    (lambda: nuv.NuvSobel, AttributeError, "Is NuvGryImgSobel"),
    (lambda: nuv.find_lines("a.bmp"), TypeError, "find_lines: image must be a gray or colour image"),
    (lambda: nuv.find_lines(GRAY).draw(GRAY, 5), TypeError, "colour must be three integers: blue, green, red"),
    (lambda: nuv.imread(3), TypeError, "path must be str or bytes, not int 3"),
]


@pytest.mark.parametrize("call, error, words", REFUSALS)
def test_bad_arguments_are_named(call, error, words):
    with pytest.raises(error, match=words):
        call()


def test_what_is_returned():
    before = GRAY.copy()
    result = nuv.NuvThreshold(GRAY, 100)
    assert numpy.array_equal(GRAY, before)
    assert numpy.array_equal(result, numpy.where(GRAY >= 100, 255, 0))
    room = numpy.empty_like(GRAY)
    assert nuv.NuvThreshold(GRAY, 100, out=room) is room and numpy.array_equal(room, result)
    centre = nuv.NuvBinImgCentroid(BLOB)
    assert centre._fields == ("result", "X", "Y") and pickle.loads(pickle.dumps(centre)) == centre
    assert numpy.array_equal(nuv.NuvGryImgSobel(GRAY[::-1, ::2]), nuv.NuvGryImgSobel(GRAY[::-1, ::2].copy()))
    assert nuv.NuvBinImgMinFilter3x3(BLOB).shape == nuv.NuvBinImgMinFilter3x3(BLOB, 1, 9, 1, 9).shape
    assert nuv.NuvRLXRegionsGet(BLOB, 0, 63, 0, 47).RLX.dtype == nuv.RLX
    assert help and nuv.NuvGryImgSobel.__doc__.startswith("NuvGryImgSobel(GryImg, *, out=None) -> ResImg\n")


def runs_as_labels(binary):
    """The numbers of the 4-connected regions, each as the first pixel of its region, from 1 on; 0 in the background."""
    found = nuv.NuvRLXRegionsWithID(binary, 1, 1)
    labels = numpy.zeros(binary.shape, "i4")
    for y, x1, x2, number in found.RLX.tolist():
        labels[y, x1:x2 + 1] = number + 1
    assert len(numpy.unique(labels[labels > 0])) == found.result
    return by_first_pixel(labels)


def by_first_pixel(labels):
    first = numpy.full(labels.max() + 1, 0)
    first[labels.ravel()[::-1]] = numpy.arange(labels.size, 0, -1)
    return numpy.where(labels, first[labels], 0)


def boxes_and_areas(parts):
    return sorted((p.top, p.left, p.bottom + 1, p.right + 1, p.area) for p in parts)


def regions_with_pixels(binary):
    """Bounding boxes and areas of the 8-connected regions of two or more pixels, with their holes."""
    found = skimage.measure.regionprops(skimage.measure.label(binary, connectivity=2))
    return sorted((*r.bbox, int(scipy.ndimage.binary_fill_holes(r.image).sum())) for r in found if r.area > 1)


SPECKS = (scipy.ndimage.gaussian_filter(rng.normal(size=(90, 130)), 2) > 0.02).astype("u1") * 255
EIGHT, INNER = numpy.ones((3, 3), "i4"), (slice(1, -1), slice(1, -1))
MEETINGS = {  # what this package gives, and what others give
    "labels": lambda: (runs_as_labels(SPECKS), by_first_pixel(scipy.ndimage.label(SPECKS)[0])),
    "areas": lambda: (boxes_and_areas(nuv.measure_parts(SPECKS, min_area=0)), regions_with_pixels(SPECKS)),
    "Otsu": lambda: (nuv.NuvGetOtsuThreshold(nuv.NuvGetHistogram(SMOOTH)), skimage.filters.threshold_otsu(SMOOTH)),
    "histogram": lambda: (nuv.NuvGetHistogram(GRAY), numpy.bincount(GRAY.ravel(), minlength=256)),
    "Sobel": lambda: (nuv.NuvGryImgSobel(GRAY)[INNER], sum(
        abs(scipy.ndimage.sobel(GRAY.astype("i4"), axis)) for axis in (0, 1)).clip(0, 255)[INNER]),
    "median 3x3": lambda: (nuv.NuvGryImgMedianBoundary0(GRAY, 1, 1)[INNER],
                           scipy.ndimage.median_filter(GRAY, (3, 3))[INNER]),
    "median 9x5": lambda: (nuv.NuvGryImgMedianBoundary0(GRAY, 4, 2)[2:-2, 4:-4],
                           scipy.ndimage.median_filter(GRAY, (5, 9))[2:-2, 4:-4]),
    "maximum": lambda: (nuv.NuvGryImgMaxFilter3xInRow(GRAY)[INNER], scipy.ndimage.maximum_filter(GRAY, (1, 3))[INNER]),
    # The opening leaves no lone pixels, where the definitions differ.
    "dilation": lambda: (nuv.NuvBinImgMaxFilter3x3(FRAMED) > 0, scipy.ndimage.binary_dilation(FRAMED, EIGHT)),
    "erosion": lambda: (nuv.NuvBinImgMinFilter3x3(FRAMED) > 0, scipy.ndimage.binary_erosion(
        FRAMED, EIGHT, border_value=1)),
    "integral image": lambda: (nuv.NuvDoSumGryImg(GRAY), skimage.transform.integral_image(GRAY.astype("i4"))),
    "half turn": lambda: (nuv.NuvReverseImg(GRAY), numpy.rot90(GRAY, 2)),
    "means of blocks": lambda: (nuv.NuvShrinkGryImg2x2ByAvr(GRAY), skimage.measure.block_reduce(
        GRAY.astype("i4"), (2, 2), numpy.sum) // 4),
    "noise": lambda: (round(nuv.NuvEstimateNoiseDelta(GRAY).result, 9), round(float(numpy.sqrt(numpy.mean(
        scipy.signal.convolve2d(GRAY.astype("f8"), [[1, -2, 1], [-2, 4, -2], [1, -2, 1]], "valid") ** 2) / 36)), 9)),
}
SMOOTH = scipy.ndimage.gaussian_filter(GRAY, 1)
FRAMED = scipy.ndimage.binary_opening(numpy.pad(SPECKS[4:-4, 4:-4], 4), EIGHT).astype("u1") * 255


@pytest.mark.parametrize("name", MEETINGS)
def test_results_agree_where_definitions_meet(name):
    ours, theirs = MEETINGS[name]()
    assert numpy.array_equal(ours, theirs)


def test_lists_free_their_memory():
    contours = nuv.NuvGetContours(BLOB, 0, 0, 0).result
    assert len(contours) >= 1 and contours[0].ChainCode.size > 0
    nuv.NuvFreeContours(contours)
    nuv.NuvFreeContours(contours)  # a second release does nothing
    gray = numpy.kron(GRAY[:6, :8], numpy.ones((8, 8), "u1"))

    def peak():
        gc.collect()
        return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss

    for round_ in range(2):
        before = peak()
        for _ in range(5000):
            nuv.NuvGetContours(BLOB, 0, 0, 0)
            nuv.NuvMergeSplit(gray, 4, 0, 0.5)
            nuv.NuvRotateImgByCCS(GRAY, 30.0)
    assert peak() - before < 2000  # KiB; a leak of one list would take more than 20,000


def test_services_do_not_disturb_each_other():
    image = numpy.kron(BLOB, numpy.ones((2, 2), "u1"))
    a, b = _services.ChainLines(128, 96), _services.ChainLines(128, 96, grdThreshold=60, minLength=30)
    expected = [a.detect(image), b.detect(image)]
    assert len(expected[0].segments) >= 4
    faults = []

    def work(detector, wanted):
        for _ in range(40):
            found = detector.detect(image)
            if not numpy.array_equal(found.segments, wanted.segments) or len(found.points) != len(wanted.points):
                faults.append(found)

    threads = [threading.Thread(target=work, args=pair) for pair in ((a, expected[0]), (b, expected[1])) * 2]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert not faults
    x = numpy.arange(40)
    assert _services.HoughLines(64, 64).detect(x, x)[0].strength >= 30


def test_threads_share_functions():
    wanted = nuv.NuvGryImgMedianBoundary0(GRAY, 2, 2)
    results = []
    threads = [threading.Thread(target=lambda: results.append(nuv.NuvGryImgMedianBoundary0(GRAY, 2, 2)))
               for _ in range(8)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert len(results) == 8 and all(numpy.array_equal(r, wanted) for r in results)


def test_every_function_documents_itself():
    for name in sorted(_by_name.names):
        assert getattr(nuv, name).__doc__, name
    assert len(_library.functions) == 461


def test_random_arguments_do_not_crash():
    run = subprocess.run([sys.executable, "-B", str(pathlib.Path(__file__).with_name("fuzz.py")), "1", "4"],
                         capture_output=True, text=True)
    assert run.returncode == 0, run.stdout[-300:] + run.stderr[-2000:]


def test_jobs(tmp_path):
    coins = nuv.imread(ROOT / "examples" / "data" / "coins.bmp")
    parts = nuv.measure_parts(coins, min_area=200)
    assert len(parts) >= 5 and parts.array()["area"].min() >= 200
    assert repr(parts).startswith(f"{len(parts)} parts\n") and json.loads(json.dumps(parts.to_dicts()))[0]["chain"]
    drawn = parts.draw(coins)
    assert drawn.shape == (*coins.shape[:2], 3) and (drawn == (0, 0, 255)).all(axis=2).sum() > 100
    for image in (drawn, nuv.to_gray(drawn)):
        nuv.imwrite(tmp_path / "a.bmp", image)
        assert numpy.array_equal(nuv.imread(tmp_path / "a.bmp"), image)
    large = parts[parts.array()["area"] > 2000]
    assert 0 < len(large) < len(parts) and large.array()["area"].min() > 2000 and len(parts[:0].draw(coins)) == 303
    assert parts.draw(coins[:99, :99]).shape == (99, 99, 3)
    gray = numpy.where(BLOB, 200, 50).astype("u1")[10:]  # the part touches the upper edge
    assert [tuple(part[:8]) for part in nuv.measure_parts(gray)] == [(26, 10, 560, 92, 12, 0, 39, 19)]
    assert not len(nuv.measure_parts(GRAY * 0)) and not len(nuv.measure_parts(GRAY * 0, dark=True))
    lines = nuv.find_lines(numpy.kron(BLOB, numpy.ones((2, 2), "u1")))
    assert len(lines) == 4 and sorted(round(line.angle) % 90 for line in lines) == [0] * 4
    assert len(nuv.find_contours(BLOB)) == 1 and len(nuv.segment(coins).array()) > 0
    with pytest.raises(OSError, match="is not a BMP file"):
        nuv.imread(__file__)
    with pytest.raises(FileNotFoundError, match="No such file"):
        nuv.imwrite(tmp_path / "nowhere" / "a.bmp", BLOB)
    with pytest.raises(ValueError, match="ending with .bmp"):
        nuv.imwrite(tmp_path / "a.png", BLOB)


def test_stubs_are_current_and_strict(tmp_path):
    subprocess.run([sys.executable, str(ROOT / "tools" / "make_python_stubs"), "--check"], check=True)
    host = tmp_path / "host.py"
    host.write_text("""import numpy
import nuvimgsdk as nuv
image = numpy.zeros((4, 5), numpy.uint8)
edges = nuv.NuvGryImgSobel(image)
centre = nuv.NuvBinImgCentroid(edges)
x: int = centre.X
lines = nuv.find_lines(image).draw(image)
parts = nuv.measure_parts(image, background=3)
longest: float = max(line.length for line in nuv.find_lines(image)) + parts[parts.array()["area"] > 9][0].area
contours = nuv.NuvGetContours(image, 0, 0, 0).result
areas = [contour.area + x for contour in contours]
""")
    run = subprocess.run(["mypy", "--strict", "--cache-dir", str(tmp_path), str(host)], capture_output=True, text=True,
                         env={**os.environ, "MYPYPATH": str(ROOT / "bindings" / "python")})
    assert run.returncode == 0, run.stdout


def test_the_page_is_current():
    subprocess.run([sys.executable, str(ROOT / "tools" / "make_python_page"), "--check"], check=True)


def batch(folder, table, *options):
    command = [sys.executable, ROOT / "examples" / "python" / "find_lines_batch.py", folder, table, *options]
    return subprocess.run([*map(str, command)], capture_output=True, text=True,
                          env={**os.environ, "PYTHONPATH": str(ROOT / "bindings" / "python")})


def test_a_batch_goes_on_and_continues(tmp_path):
    folder, table = tmp_path / "pictures", tmp_path / "result.csv"
    folder.mkdir()
    for i in range(5):
        nuv.imwrite(folder / f"{i}.bmp", numpy.kron(BLOB, numpy.ones((i + 1, i + 1), "u1")))
    (folder / "3.bmp").write_bytes(b"BM")
    (folder / "5.bmp").mkdir()
    assert batch(folder, table, "--workers", "2").returncode == 0
    text = table.read_text()
    rows = text.splitlines()
    assert len(rows) == 7 and rows[1].startswith("0.bmp,64,48,4,")
    assert "is not a BMP file" in rows[4] and rows[6].endswith("5.bmp: Is a directory")
    table.write_text("\n".join(rows[:3]) + "\n2.bm")  # as if it had been ended while it wrote a row
    assert batch(folder, table, "--workers", "1").returncode == 0
    assert table.read_text() == text


def test_a_batch_that_cannot_start_says_why(tmp_path):
    empty, other, table = tmp_path / "empty", tmp_path / "other.csv", tmp_path / "result.csv"
    empty.mkdir()
    other.write_text("name,value\n")
    pictures = ROOT / "examples" / "data"
    # Rights do not bind root, so files stand where folders are expected, and the other way round.
    for folder, result, words in (
            (empty, table, "the folder has no BMP files"), (tmp_path / "none", table, "No such file or directory"),
            (other, table, "Not a directory"), (pictures, tmp_path / "none" / "a.csv", "No such file or directory"),
            (pictures, empty, "Is a directory"), (pictures, other / "a.csv", "Not a directory"),
            (pictures, other, "this is another file")):
        run = batch(folder, result, "--workers", "1")
        assert run.returncode == 1 and run.stderr.count("\n") == 1 and words in run.stderr, run.stderr
    assert other.read_text() == "name,value\n" and not table.exists()


def test_a_cluster_gives_the_same_rows(tmp_path, monkeypatch):
    monkeypatch.setenv("PYTHONPATH", str(ROOT / "bindings" / "python"))
    for i in range(4):
        nuv.imwrite(tmp_path / f"{i}.bmp", numpy.kron(BLOB, numpy.ones((i + 1, i + 1), "u1")))
    here, there, none = tmp_path / "here.csv", tmp_path / "there.csv", tmp_path / "none.csv"
    assert batch(tmp_path, here, "--workers", "1").returncode == 0
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster:
        assert batch(tmp_path, there, "--scheduler", cluster.scheduler_address).returncode == 0
    assert here.read_text() == there.read_text()
    run = batch(tmp_path, none, "--scheduler", "tcp://127.0.0.1:9")
    assert run.returncode == 1 and run.stderr.count("\n") == 1 and not none.exists()
