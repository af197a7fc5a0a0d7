// Pictures for the examples: BMP files in and out.

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

// What went wrong with a file, as one line that names it.
struct PictureError : std::runtime_error {
  PictureError(const std::string& file, const std::string& reason)
      : std::runtime_error(file + ": " + reason) {}
};

// Reads an 8-bit or 24-bit BMP file. The library's readers believe a header; this one checks it first.
Picture read_picture(const std::string& file);

// Refuses a result file that is the picture itself.
void check_result(const std::string& picture, const std::string& result);

// Writes an 8-bit or 24-bit BMP file. A file that cannot be completed is removed again.
void write_picture(Picture& picture, const std::string& file);

Picture to_gray(Picture& picture);
Picture to_colour(Picture& picture);

using Histogram = std::array<int32_t, 256>;

Histogram histogram_of(Picture& gray);

// Divides the bins so that they count about that many pixels at most. An occupied bin stays occupied. The
// library's sums over a histogram have 32 bits, which the histogram of a large picture exceeds.
Histogram scaled_down(Histogram bins, int32_t most_pixels);

// The least gray level of the bright class by Otsu's method.
int32_t otsu_threshold(Picture& gray);

#endif
