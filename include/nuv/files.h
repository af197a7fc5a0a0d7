/// @file
/// BMP files, lists of files, and the debug log.
#ifndef NUV_FILES_H
#define NUV_FILES_H

#include <cstdint>

#include "nuv/api.h"

// ---- BMP files -------------------------------------------------------------------------------------------
//
// Uncompressed files with the 14-byte file header and the 40-byte information header, rows stored bottom
// first and padded to a multiple of 4 bytes. All five functions may run at once on different files.

/// The bare name in a path: what follows the last backslash, up to its first full stop.
///
/// "d:\parts\a.b.bmp" gives "a". A forward slash is no separator. A path that ends in a backslash, or a name
/// that begins with a full stop, gives an empty name.
///
/// @param pFileName  path, zero-terminated
/// @param pNakeName  receives the name; must have room for everything behind the last backslash, with its
///                   terminating zero, as that is copied before it is cut. May be pFileName itself
NUV_API void NuvGetFileNakeName(char* pFileName, char* pNakeName);

/// Reads an 8-bit BMP file. The pixel values are taken as they stand, whatever the palette.
///
/// The header is believed: signature, planes, bit count and compression are not looked at, so a file of
/// another depth is read with the wrong row size. A host that must tell depths apart reads the 16-bit bit
/// count at byte 28 itself.
///
/// @param pFileName        path, zero-terminated
/// @param pWidth, pHeight  receive the file's dimensions, also where a later failure makes the result null; 0
///                         if the file cannot be opened, is shorter than its 54 bytes of headers, or gives an
///                         offset of its pixels below 54
/// @return the image, width*height bytes, to be released with delete[]; a height or width of 0 gives an image
///         without pixels. Null on failure: the above, a negative dimension, rows that the file does not
///         hold (with their padding), no memory, or something that is no file and has no end to seek
NUV_API uint8_t* NuvRead8BitBmpFile2Img(const char* pFileName, int32_t* pWidth, int32_t* pHeight);

/// Writes a gray image as an 8-bit BMP file with the gray palette 0..255.
///
/// Padding repeats the last pixel of its row. The header's file size field leaves padding out of the count.
///
/// A width or height of 0 or below gives a file of headers and palette alone.
///
/// @return false if the file cannot be opened, if allocation fails, which leaves headers and palette alone, or
///         if any write came back short; the file is then completed as far as the stream allows. What is still
///         buffered when the file is closed, and is lost then, does not show: a host that must know compares
///         the file's length
NUV_API bool NuvWrite8BitImg2BmpFile(uint8_t* pGryImg, int32_t width, int32_t height, const char* pFileName);

/// NuvWrite8BitImg2BmpFile with the last four palette entries coloured, to see marks in an image: 252 shows
/// yellow, 253 blue, 254 (a traced contour) green, 255 (an object) red.
NUV_API bool NuvWrite8BitImg2BmpFileMarkColor(uint8_t* pGryImg, int32_t width, int32_t height,
                                              const char* pFileName);

/// Reads a 24-bit BMP file.
///
/// As NuvRead8BitBmpFile2Img, with two differences: the image has width*height*3 bytes (blue, green, red),
/// and a file that ends inside or before the padding of its last row is complete.
NUV_API uint8_t* NuvRead24BitBmpFile2Img(const char* pFileName, int32_t* pWidth, int32_t* pHeight);

/// Writes an RGB image as a 24-bit BMP file.
///
/// Padding repeats the blue byte of the last pixel of its row. The header's file size field leaves padding
/// out of the count.
///
/// @return as NuvWrite8BitImg2BmpFile
NUV_API bool NuvWrite24BitImg2BmpFile(uint8_t* pRGBImg, int32_t width, int32_t height, const char* pFileName);

// ---- Lists of files --------------------------------------------------------------------------------------
//
// A list is a text with one name a line. A line ends with carriage return and line feed, and what follows the
// last line end is no line. The list is read whole and held, in memory that only grows, until the next one:
// this is one global object, one thread at a time.

/// Reads a list, and starts the walk of NuvSequenceFiles_GetNextFileName from its first line.
///
/// @param pFileName  name of the list, zero-terminated, less than 1024 bytes
/// @return false if the name is too long, the file cannot be opened, or it has no length below
///         2^31 - 1: the list before stays, and its walk starts anew. False also for want of memory, and then
///         there is no list, and for an empty file while no other list has been read. An error in reading
///         does not show: what could not be read is 0
NUV_API bool NuvSequenceFiles_Initialize(char* pFileName);

/// The next line of the list, without the blanks (spaces, no tabs) at its end.
///
/// A line of size bytes or more, its trailing blanks counted, gives false and is skipped.
///
/// @param pFileName  receives the line; all of its size bytes are written, those behind the line with 0
/// @param size       bytes of pFileName; 0 or below writes nothing, and every line is too long
/// @return false, with an empty name, if the line does not fit, or there is none; without a list there is
///        none
NUV_API bool NuvSequenceFiles_GetNextFileName(char* pFileName, int32_t size);

/// A line of the list by its number, the first being 0. The walk is not moved.
///
/// @param pFileName, size  as of NuvSequenceFiles_GetNextFileName
/// @return false, with an empty name, if the line does not fit, or there is none of that number
NUV_API bool NuvSequenceFiles_GetFileName(int32_t index, char* pFileName, int32_t size);

// ---- The debug log ---------------------------------------------------------------------------------------

/// Appends a line feed, a text, a comma and a number to the log, which the first line that a host writes
/// empties.
///
/// The log is d:\tmp\NuvDebugInfo.txt on Windows and /tmp/NuvDebugInfo.txt elsewhere. The directory has to
/// exist. The file is opened and closed for each line. If it cannot be opened, the line is lost and nothing
/// else. One thread at a time.
///
/// @param pText  text, zero-terminated
NUV_API void NuvDebugInfo(char* pText, int32_t value);

#endif
