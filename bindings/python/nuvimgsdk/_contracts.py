"""What the description of the boundary cannot state: the conditions that a caller must meet, and which pointers of
the C functions are work space, results or optional in Python.

Functions are named by their plain names, which are unique.
"""

# Regions that the functions do not clip. Empty ones, with x2 = x1-1 or y2 = y1-1, are permitted.
REGIONS_INSIDE = frozenset("""
NuvSetPixelsTo255 NuvGetBlackRatioInBinaryImg
NuvSelectRGBRect2Gry NuvCopyGryRect NuvCopyYUV420PRect2Gry NuvCopyYUV420SPRect2Gry NuvCopyYUV422PRect2Gry
NuvCopyRGBRect NuvCopyRGBRectWithGry NuvCopyRGBScale4Rect NuvCopyRGBRect2Gry NuvCopyRGBRect2GryByChannel
NuvCopyRGB2GryBinImg NuvRGBRectAvr NuvGetRGBRectAvr
NuvCopyCbYCrYRect2RGB NuvCopyCbYCrYScale4Rect NuvCopyCbYCrYRect NuvCopyCbYCrYRectToRGBAndGry
NuvCopyCbYCrYRect2Gry NuvCopyCbYCrYRect2RedImg NuvCopyCbYCrYRect2RedImgShrink2
NuvCopyYUV420SPRect NuvCopyYUV420SPRectToRGBAndGry NuvCopyYUV420SPRect2RGB NuvCopyYUV420SPScale4Rect
NuvCopyYUV420SPRect2RedImg NuvCopyYUV420SPRect2RedImgShrink2
NuvCopyYUV420PRect NuvCopyYUV420PRect2RGB NuvCopyYUV420PScale4Rect NuvCopyYUV420PRect2RedImg
NuvCopyYUV420PRect2RedImgShrink2
NuvCopyYUV422PRect NuvCopyYUV422PRect2RGB NuvCopyYUV422PScale4Rect NuvCopyYUV422PRect2RedImg
NuvCopyYUV422PRect2RedImgShrink2
NuvExtractTwoEdgePointPerCol NuvExtractEdgePointInRect
NuvGetHistogramInRect NuvGetHistogramByMasked
NuvThresholdInRect NuvThresholdInRectToRes NuvThresholdByRatioInRect NuvThresholdByRatioInRectWithMinTToRes
NuvGryImgColDev100 NuvGryImgRowDev100 NuvGryImgColDevDev NuvGryImgRowDevDev
NuvGryImgPrjXYInRect NuvBinImgPrjXYInRect
NuvCenterBlockMeanDif NuvGryRectAvr NuvGryMinMaxInRect
""".split())

# Channels of a pixel are numbered from 0 to 2.
CHANNELS = frozenset("""
NuvSelectRGB2Gry NuvExtractOneChannelFromRGB NuvSelectRGBRect2Gry NuvReplaceOneChannelInRGB NuvOROneChannelInRGB
""".split())

# Conditions on one argument: (condition, argument, what it must be). A condition is an expression over the
# arguments; rows and columns are those of the image.
CONDITIONS = {
    "NuvPixelsOn2PLine": (
        ("0 <= x1 < columns", "x1", "a column of the image"),
        ("0 <= x2 < columns", "x2", "a column of the image"),
        ("0 <= y1 < rows", "y1", "a row of the image"),
        ("0 <= y2 < rows", "y2", "a row of the image")),
    "NuvTraceContour": (
        ("0 < x < columns - 1", "x", "a column off the border of the image"),
        ("0 < y < rows - 1", "y", "a row off the border of the image"),
        ("has_clear_border(BinImg)", "BinImg", "an image whose border is below 2")),
    "NuvMarkContour": (
        ("0 < x < columns - 1", "x", "a column off the border of the image"),
        ("0 < y < rows - 1", "y", "a row off the border of the image"),
        ("has_clear_border(BinImg)", "BinImg", "an image whose border is below 2")),
    "NuvExtractEdgePointInCircle": (
        ("rx >= 0", "rx", "0 or more"),
        ("ry >= 0", "ry", "0 or more"),
        ("rx <= cx < columns - rx", "cx", "a column with the ellipse inside the image"),
        ("ry <= cy < rows - ry", "cy", "a row with the ellipse inside the image")),
    # The samples of a pixel lie up to two columns to the right and one to the left, and up to three rows above.
    "NuvGetThresholdByEdge": (
        ("0 <= x1 <= columns", "x1", "from 0 to the width"),
        ("-2 <= x2 < columns - 1", "x2", "from -2 to the last column but one"),
        ("2 <= y1 <= rows + 2", "y1", "from 2 to the height plus 2"),
        ("-2 <= y2 < rows", "y2", "from -2 to the last row")),
    "NuvGetHistogramByLimited": (
        ("0 <= y1", "y1", "0 or more"),
        ("y1 > y2 or y2 < rows", "y2", "a row of the image"),
        ("y1 > y2 or Left[y1:y2 + 1].min() >= 0", "Left", "0 or more in each row"),
        ("y1 > y2 or Right[y1:y2 + 1].max() <= columns", "Right", "at most the width in each row")),
    "NuvClusterHistogram": (
        ("eps >= 1e-4", "eps", "0.0001 or more"),
        ("nClusters <= 65536", "nClusters", "65536 or less")),
    "NuvShrinkGryImgByExtract": (("M >= 1", "M", "1 or more"), ("N >= 1", "N", "1 or more")),
    "NuvShrinkImgByAvr": (("M >= 1", "M", "1 or more"), ("N >= 1", "N", "1 or more")),
    "NuvGenerateMainGryLUT": (("maxStep <= 65537", "maxStep", "65537 or less"),),
    "NuvImgDifferenceInRect": (
        ("is_inside(rect1, columns, rows)", "rect1", "a rectangle inside Img1"),
        ("is_inside(rect2, columns, Img2.shape[0])", "rect2", "a rectangle inside Img2")),
    "NuvDrawPrjXInColumns": (("x2 < 2147483647", "x2", "less than 2147483647"),),
    "NuvSequenceFiles_Initialize": (("len(FileName) < 1024", "FileName", "shorter than 1024 bytes"),),
}

# Results that the description calls read: the contents matter only between results, so they start as 0.
RESULTS = frozenset({("NuvExtractEdgePointInCircle", "pBottom")})

# Images that results are pasted into are arguments. Other memory of which a call writes a part only is a result.
PASTED_INTO = frozenset({
    "NuvPasteGryImg2ResImg", "NuvPasteGryImg2RGBImg", "NuvPasteRGBImg2ResImg", "NuvPastePixels2ResImgByColor",
    "NuvPastePixels2ResImgButBackground"})

# Work space whose contents after a call have a meaning in C++. Python returns it only if `out` names it.
WORK = frozenset({
    ("NuvBinImgFilterWithWorkSpace", "pSum"), ("NuvGetMaxSizeofMinFilter", "pTmpImg"),
    ("NuvGetMaxSizeofMinFilter", "pWorkImg"), ("NuvBinImgThin", "pTmpImg"), ("NuvBinImg01TimesByX", "pBuf"),
    ("NuvRLYWhiteShortAndRLXWhiteLong", "pTmpImg"), ("NuvMarkMaxAreaHoleContour", "pChainCode"),
    ("NuvFittingLineTwice", "pWork"), ("NuvFittingLineTwiceByMean", "pWork")})

# Arguments that may be None.
OPTIONAL = frozenset({("NuvRobertByMask", "pMskImg")})

# Images that a function reads beyond their end: the number of bytes read there. They are 0 unless `tail` gives
# them.
TAILS = {("NuvGryFastMedianFilter", "pGryImg"): "M"}

# Shapes of results that depend on earlier calls, as expressions. _s is what the detectors left.
SHAPES = {("NuvImgChainLines_Debug", "pResImg"): "(0,) if _s.image is None else (6,) + _s.image.shape"}

# Lists of results: the argument with their capacity, and the outputs of which only the first `result` elements are
# returned. The capacity may be left out: there can be no more results than pixels.
LISTS = {
    "NuvRLXRegionsGet": ("N", ("pRLX",)), "NuvRLXRegionsGrowByYInc": ("N", ("pRLX",)),
    "NuvRLXRegionsGrowByYDec": ("N", ("pRLX",)), "NuvRLXReginsGetAndGrow": ("N", ("pRLX",)),
    "NuvRLXRegionsWithID": ("N", ("pRLX",)), "NuvRLYRegionsGet": ("N", ("pRLY",)),
    "NuvRLYRegionsGrowByXInc": ("N", ("pRLY",)), "NuvRLYRegionsGrowByXDec": ("N", ("pRLY",)),
    "NuvRLYReginsGetAndGrow": ("N", ("pRLY",)), "NuvShenJunEdgeFastToPoints": ("maxN", ("pX", "pY")),
    "NuvShenJunEdgeFastWithPoints": ("maxN", ("pX", "pY")), "NuvGetNSquaresCenter": ("N", ("pX", "pY", "pError")),
    "NuvTraceContour": (None, ("pChainCode",)), "NuvLineKeyPoints": (None, ("pKeyX", "pKeyY")),
}

# Functions that are written by hand, because they hand over memory or memory of a detector.
BY_HAND = frozenset({
    "NuvGetContours", "NuvFreeContours", "NuvMergeSplit", "NuvFreeRegionStruct", "NuvImgChainLines_GetNxtCodeLine",
    "NuvImgChainLines_GetLines"})

# The coding of texts that are passed as str.
CODINGS = {"NuvDrawChineseString": "gb2312", "NuvChar2Wide": "gb2312", "NuvSetNumberString": "ascii"}
