/// @file
/// BMP files, lists of files, and the debug log.
#ifndef NUV_FILES_H
#define NUV_FILES_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup files Files
///
/// BMP files, lists of files, and the debug log.
///
/// Paths and names are zero-terminated.
/// @{

/// @defgroup files_bmp BMP files
///
/// Files are uncompressed. They have the 14-byte file header and the 40-byte information header. Rows are
/// stored bottom first and padded to a multiple of 4 bytes. All functions of this group may run at once on
/// different files.
/// @{

/// Extracts the bare name from a path: the part after the last backslash, up to its first full stop.
///
/// "d:\\parts\\a.b.bmp" gives "a". A forward slash does not separate. A path that ends in a backslash, or a
/// name that begins with a full stop, gives an empty name.
///
/// @param pFileName  the path
/// @param pNakeName  receives the name, zero-terminated; may be pFileName itself. It needs room for
///                   everything after the last backslash and a terminating zero, because all of that is
///                   copied before it is cut
NUV_API void NuvGetFileNakeName(char* pFileName, char* pNakeName);

/// Reads an 8-bit BMP file as a gray image.
///
/// The pixel values are taken as they are stored; the palette is ignored. Signature, planes, bit count and
/// compression of the header are not checked, so a file of another depth is read with the wrong row size. A
/// host that must tell depths apart reads the 16-bit bit count at byte 28 itself.
///
/// The result is null if
/// - the file cannot be opened, is shorter than the 54 bytes of its headers, or states an offset of its
///   pixels below 54;
/// - a dimension is negative;
/// - the file does not hold all rows with their padding;
/// - allocation fails;
/// - the path names something without an end to seek, such as a pipe.
///
/// @param pFileName        path of the file
/// @param pWidth, pHeight  receive the dimensions that the file states, also if a later step fails; 0 in the
///                         first case above
/// @return the image, width*height bytes, to be released with delete[]; an image without pixels if a
///         dimension is 0; null on failure
/// @note A host with another C runtime than the library, such as one built by MSVC, releases the image with
///       nuv_free of the C library nuvimgsdk_c, because delete[] fails there.
NUV_API uint8_t* NuvRead8BitBmpFile2Img(const char* pFileName, int32_t* pWidth, int32_t* pHeight);

/// Writes a gray image as an 8-bit BMP file with the gray palette 0..255.
///
/// The padding of a row repeats its last pixel. The file size that the header states does not count the
/// padding. A width or height of 0 or less gives a file of headers and palette alone.
///
/// @param pGryImg    width*height bytes, not changed
/// @param pFileName  path of the file; an existing file is replaced
/// @return true on success. False if the file cannot be opened, if allocation fails (the file then consists
///         of headers and palette), or if a write comes back short (the remaining writes are still made)
/// @note Bytes that are still buffered when the file is closed, and are lost then, are not reported. A host
///       that must know compares the length of the file
NUV_API bool NuvWrite8BitImg2BmpFile(uint8_t* pGryImg, int32_t width, int32_t height, const char* pFileName);

/// Writes a gray image as an 8-bit BMP file that shows the marks 252..255 in colour.
///
/// The file is that of NuvWrite8BitImg2BmpFile, except for the last four palette entries: 252 shows yellow,
/// 253 blue, 254 (a traced contour) green, and 255 (an object) red.
///
/// @param pGryImg    width*height bytes, not changed
/// @param pFileName  path of the file; an existing file is replaced
/// @return as NuvWrite8BitImg2BmpFile
NUV_API bool NuvWrite8BitImg2BmpFileMarkColor(uint8_t* pGryImg, int32_t width, int32_t height,
                                              const char* pFileName);

/// Reads a 24-bit BMP file as an RGB image.
///
/// The function works as NuvRead8BitBmpFile2Img, with two differences. The image has width*height*3 bytes in
/// the order blue, green, red. The padding of the last row may be missing from the file.
///
/// @param pFileName        path of the file
/// @param pWidth, pHeight  receive the dimensions, as in NuvRead8BitBmpFile2Img
/// @return the image, to be released with delete[], or null as in NuvRead8BitBmpFile2Img
/// @note A host with another C runtime than the library releases the image with nuv_free of the C library
///       nuvimgsdk_c, as in NuvRead8BitBmpFile2Img.
NUV_API uint8_t* NuvRead24BitBmpFile2Img(const char* pFileName, int32_t* pWidth, int32_t* pHeight);

/// Writes an RGB image as a 24-bit BMP file.
///
/// The padding of a row repeats the blue byte of its last pixel. The file size that the header states does
/// not count the padding. A width or height of 0 or less gives a file of headers alone.
///
/// @param pRGBImg    width*height*3 bytes in the order blue, green, red, not changed
/// @param pFileName  path of the file; an existing file is replaced
/// @return as NuvWrite8BitImg2BmpFile, without a palette
NUV_API bool NuvWrite24BitImg2BmpFile(uint8_t* pRGBImg, int32_t width, int32_t height, const char* pFileName);

/// @}

/// @defgroup files_lists Lists of files
///
/// A list is a text file with one name per line. Each line ends with carriage return and line feed; text
/// after the last line end is not a line. The library reads a list as a whole and holds it until the next one
/// is read. The list is one global object: only one thread at a time may call these functions. Its memory
/// only grows.
/// @{

/// Reads a list of files, and starts the walk of NuvSequenceFiles_GetNextFileName at its first line.
///
/// The walk restarts in every case. The previous list stays if the name is too long, if the file cannot be
/// opened, or if its length is unknown or at least 2^31 - 1. If allocation fails, no list is held. An empty
/// file gives false only while no memory is held from a previous list. A read error is not reported: bytes
/// that could not be read are 0.
///
/// @param pFileName  name of the list, less than 1024 bytes long
/// @return whether the list was read
NUV_API bool NuvSequenceFiles_Initialize(char* pFileName);

/// Returns the next line of the list, without the spaces at its end.
///
/// Tabs are kept. A line of size bytes or more, trailing spaces included, gives false and is skipped.
///
/// @param pFileName  receives the line. All size bytes are written; those after the line are 0
/// @param size       size of pFileName in bytes; 0 or less writes nothing, and every line is too long
/// @return false, with an empty name, if the line does not fit, if the walk is at the end, or if no list is
///         held
NUV_API bool NuvSequenceFiles_GetNextFileName(char* pFileName, int32_t size);

/// Returns a line of the list by its number, without the spaces at its end.
///
/// The walk of NuvSequenceFiles_GetNextFileName does not move.
///
/// @param index      number of the line, from 0
/// @param pFileName  receives the line, as in NuvSequenceFiles_GetNextFileName
/// @param size       size of pFileName in bytes, as in NuvSequenceFiles_GetNextFileName
/// @return false, with an empty name, if the line does not fit, or if the list has no line of that number
NUV_API bool NuvSequenceFiles_GetFileName(int32_t index, char* pFileName, int32_t size);

/// @}

/// @defgroup files_log The debug log
///
/// A text file for messages of the host.
/// @{

/// Appends a line feed, a text, a comma and a number to the debug log.
///
/// The log is d:\\tmp\\NuvDebugInfo.txt on Windows and /tmp/NuvDebugInfo.txt elsewhere; the directory must
/// exist. The first line that a process writes empties the log. The file is opened and closed for each line.
/// If it cannot be opened, the line is lost, with no other effect. Only one thread at a time may call this
/// function.
///
/// @param pText  text, zero-terminated
/// @param value  number written after the text
NUV_API void NuvDebugInfo(char* pText, int32_t value);

/// @}

/// @}

#endif
