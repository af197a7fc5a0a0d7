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
/// - In a binary image 0 is background and any other value is object.
///
/// ## Regions
///
/// A region is passed as x1, x2, y1, y2, both x first. It holds columns x1 to x2 of rows y1 to y2, all four
/// ends inclusive. It is empty if x1 > x2 or y1 > y2.
///
/// ## Memory
///
/// - Input images are read only unless a function says that it changes them. Result images are separate
///   buffers of the host, which do not overlap an input unless a function allows it.
/// - Functions read and write only what their arguments point to. Pointers are not tested.
/// - Memory that a function returns is released as that function says.
///
/// ## Numbers
///
/// - 32-bit integers wrap. Shifts of negative integers are arithmetic, so that >> rounds down.
/// - Conversions from floating point to integers truncate toward zero. A value that is not finite or does not
///   fit becomes the most negative int32_t.
/// - Divisions of integers truncate toward zero, too.
///
/// ## Failure and threads
///
/// - No function throws. What a function returns if it refuses its arguments or an allocation fails is stated
///   with it.
/// - A function may run on any number of threads at once unless it says otherwise.
///
/// ## Headers
///
/// - nuv/arithmetic.h: images combined, integral images, pixel values, pasting
/// - nuv/binary.h: measures, morphology, thinning and run lengths of binary images
/// - nuv/colour.h: RGB to gray, channels, rectangles, camera frames, interlaced fields
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

#endif
