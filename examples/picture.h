// Pictures for the hosts: read from PNG, JPEG, BMP, PGM and PPM files, and written as PNG or BMP files.

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
      : std::runtime_error((file == "-" ? "standard input" : file) + ": " + reason) {}
};

// The bytes of a file, or of standard input if the name is "-". Throws if there are more than most bytes.
std::vector<uint8_t> read_file(const std::string& file, uint64_t most);

// Writes a file, or standard output if the name is "-". A file that cannot be completed is removed.
void write_file(const std::vector<uint8_t>& bytes, const std::string& file);

// Reads a picture; the name "-" is standard input. Alpha is dropped, and a palette is applied. The picture is
// gray if the file is gray, or if its palette is.
Picture read_picture(const std::string& file);

// The picture in the bytes of a file. The name is for error messages only.
Picture decoded_picture(const std::vector<uint8_t>& bytes, const std::string& file);

// Writes a BMP file if the name ends in .bmp, and else a PNG file; the name "-" is standard output.
void write_picture(const Picture& picture, const std::string& file);

// The bytes of a picture as a PNG file, and as a PGM or PPM file.
std::vector<uint8_t> png_of(const Picture& picture);
std::vector<uint8_t> pnm_of(const Picture& picture);

std::string base64(const std::vector<uint8_t>& bytes);

// Whether the ending of the name is that of a picture which read_picture reads.
bool is_picture_name(const std::string& file);

// The ending of the name in small letters, with its dot: ".png".
std::string ending_of(const std::string& file);

// A size as messages show it: 640x480.
std::string size_text(int64_t width, int64_t height);
std::string size_text(const Picture& picture);

Picture blank(int32_t width, int32_t height, int32_t channels = 1, uint8_t value = 0);
// A black gray picture of the same size.
Picture blank_like(const Picture& picture);

Picture to_gray(Picture& picture);
Picture to_colour(Picture& picture);

using Histogram = std::array<int32_t, 256>;

Histogram histogram_of(Picture& gray);

// Divides the bins so that they count about most_pixels pixels at most. An occupied bin stays occupied. The
// sums of the library over a histogram have 32 bits, which the histogram of a large picture would exceed.
Histogram scaled_down(Histogram bins, int32_t most_pixels);

// The least gray value of the bright class by Otsu's method.
int32_t otsu_threshold(Picture& gray);

#endif
