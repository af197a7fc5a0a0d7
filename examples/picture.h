// Pictures for the examples, read from BMP files and written to them.

#ifndef NUV_EXAMPLES_PICTURE_H
#define NUV_EXAMPLES_PICTURE_H

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

// A gray picture (1 channel) or a colour one (3 channels: blue, green, red).
struct Picture {
  int32_t width = 0;
  int32_t height = 0;
  int32_t channels = 1;
  std::vector<uint8_t> pixels;
};

// An error with a file. The message is one line that names the file and the reason.
struct PictureError : std::runtime_error {
  PictureError(const std::string& file, const std::string& reason)
      : std::runtime_error(file + ": " + reason) {}
};

// Reads an 8-bit or 24-bit BMP file. The readers of the library do not check signature, depth and compression,
// so this function checks the header first.
Picture read_picture(const std::string& file);

// Throws if the result file is the file of the picture.
void check_result(const std::string& picture, const std::string& result);

// Writes an 8-bit or 24-bit BMP file. A file that cannot be completed is removed.
void write_picture(Picture& picture, const std::string& file);

Picture to_gray(Picture& picture);
Picture to_colour(Picture& picture);

using Histogram = std::array<int32_t, 256>;

Histogram histogram_of(Picture& gray);

// Divides the bins so that they count about most_pixels pixels at most. An occupied bin stays occupied. The
// sums of the library over a histogram have 32 bits, which the histogram of a large picture would exceed.
Histogram scaled_down(Histogram bins, int32_t most_pixels);

// The least gray level of the bright class by Otsu's method.
int32_t otsu_threshold(Picture& gray);

#endif
