/// @file
/// The one header that a host includes, with the conventions that hold for every function.

/// @mainpage NuvImgSDK2014DLL
///
/// A library of image-processing functions over raw pixel buffers. The conventions below hold for every
/// function; the text of a function states where it departs from them.
///
/// ## Images
///
/// - width and height count pixels. Pixel (0, 0) is at the top left; x grows to the right and y grows down.
/// - A gray or binary image is width*height bytes, the top row first. Pixel (x, y) is byte y*width + x. Rows
///   follow one another without padding.
/// - An RGB image has three bytes per pixel in the order blue, green, red, called byte 0, 1 and 2. Byte i of
///   pixel (x, y) is byte 3*(y*width + x) + i of the image.
/// - In a binary image a pixel of 0 is background, also called black. A pixel of any other value is object,
///   also called white. In a gray image, black is 0 and white is 255.
/// - No image has more than 2^31 - 1 bytes: width*height for a gray image, 3*width*height for an RGB image.
///   The library checks this only where a header says so.
/// - The border of an image is its first and last row and its first and last column. All other pixels are its
///   interior.
/// - The neighbours of a pixel are the eight pixels around it. The direct neighbours are the four above,
///   below, left and right of it.
/// - Raster order is the order of the bytes: row by row from the top, and each row from left to right.
///
/// ## Regions
///
/// A region is a rectangle of pixels. It is passed as x1, x2, y1, y2, both x first, and holds columns x1 to
/// x2 of rows y1 to y2, all four ends inclusive. It is empty if x1 > x2 or y1 > y2. A tagRECT holds the same
/// four numbers as a record. In nuv/segmentation.h and with the runs of nuv/binary.h, a region is a connected
/// set of pixels instead.
///
/// ## Memory
///
/// - Input images are read only unless a function says that it changes them. Result images are separate
///   buffers of the host, which do not overlap an input unless a function allows it.
/// - Functions read and write only what their arguments point to. Pointers are not tested.
/// - Memory that a function returns is released as that function says.
/// - NuvRead8BitBmpFile2Img, NuvRead24BitBmpFile2Img and NuvRotateImgByCCS return images that are released
///   with delete[]. Only a host with the C runtime of the library may do so: every host on Linux, and on
///   Windows a host that MinGW builds for the same runtime. Any other host, such as one built by MSVC, releases
///   them with nuv_free of the C library nuvimgsdk_c. The lists of contours and of regions are released by
///   functions of the library, which every host may call.
///
/// ## Numbers
///
/// - 32-bit integers wrap. Shifts of negative integers are arithmetic, so that >> rounds down.
/// - Conversions from floating point to integers truncate toward zero. A value that is not finite or does not
///   fit becomes the most negative int32_t.
/// - Divisions of integers truncate toward zero, too.
/// - In formulas, truncate(v) drops the fraction of v, clamp(v, lo, hi) moves v into lo..hi, and lo..hi is a
///   range that includes both ends. x^n is a power, except where two bytes are combined. p(x, y) is the value
///   of pixel (x, y), or of one of its three bytes.
///
/// ## Failure and threads
///
/// - No function throws. What a function returns if it refuses its arguments or an allocation fails is stated
///   with it.
/// - A function may run on any number of threads at once, each with results of its own, unless it says
///   otherwise.
///
/// ## Headers
///
/// - nuv/arithmetic.h: images combined, integral images, pixel values, pasting
/// - nuv/binary.h: measures, morphology, thinning and run lengths of binary images
/// - nuv/colour.h: RGB to gray, channels, regions, camera frames, interlaced fields
/// - nuv/contours.h: tracing, measures, filling and selection of contours
/// - nuv/drawing.h: lines, shapes, plots and text
/// - nuv/edges.h: gradient images, the Shen-Jun detector, clean-up of edge images
/// - nuv/files.h: BMP files, lists of files, the debug log
/// - nuv/filters.h: box means, extremes, medians, smoothing
/// - nuv/geometry.h: flips, turns, shifts, changes of size
/// - nuv/histogram.h: histograms, thresholds, data series, profiles
/// - nuv/lines.h: forms and fitting of lines, the chain-line and Hough detectors, key points
/// - nuv/noise.h: noise estimated and added
/// - nuv/records.h: the records that hosts and the library exchange
/// - nuv/segmentation.h: a tree of dark regions
/// - nuv/statistics.h: means, ranges and contrasts of regions
/// - nuv/windows_rectangle.h: on Windows, functions that write to a RECT
#ifndef NUVIMGSDK2014DLL_H
#define NUVIMGSDK2014DLL_H

#include "nuv/arithmetic.h"
#include "nuv/binary.h"
#include "nuv/colour.h"
#include "nuv/contours.h"
#include "nuv/drawing.h"
#include "nuv/edges.h"
#include "nuv/files.h"
#include "nuv/filters.h"
#include "nuv/geometry.h"
#include "nuv/histogram.h"
#include "nuv/lines.h"
#include "nuv/noise.h"
#include "nuv/records.h"
#include "nuv/segmentation.h"
#include "nuv/statistics.h"
#include "nuv/windows_rectangle.h"

#endif
