/// @file
/// Everything a host includes. The conventions that all functions share stand in nuv/frame.h.
#ifndef NUVIMGSDK2014DLL_H
#define NUVIMGSDK2014DLL_H

#include "nuv/binary.h"
#include "nuv/colour.h"
#include "nuv/contours.h"
#include "nuv/drawing.h"
#include "nuv/edges.h"
#include "nuv/filters.h"
#include "nuv/frame.h"
#include "nuv/histogram.h"
#include "nuv/lines.h"
#include "nuv/records.h"
#include "nuv/transforms.h"

#endif
