/// @file
/// Everything a host includes.
///
/// Conventions that hold for every function of the library:
///
/// - A gray or binary image is width*height bytes, row 0 (the top row) first, pixel (x, y) at byte
///   y*width + x. An RGB image has three bytes per pixel in the order blue, green, red. Rows follow one
///   another without padding. width and height count pixels.
/// - A region is x1, x2, y1, y2 (both x first), all four ends inclusive.
/// - In a binary image 0 is background, and on reading any other value is object.
/// - Functions read and write only what their arguments point to; pointers are not tested. A function that
///   does not say otherwise may run on any number of threads at once.
/// - Input images are read only unless a function says that it changes them.
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
