// Converts raw camera frames to BMP files, and BMP files to raw frames.
//
// A raw file has no header. So its format and size are options, and its length must fit them.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "picture.h"

namespace {

namespace fs = std::filesystem;

struct Rectangle {
  int32_t x1, x2, y1, y2;

  int32_t columns() const { return x2 - x1 + 1; }
  int32_t rows() const { return y2 - y1 + 1; }
  bool lies_in(int32_t width, int32_t height) const {
    return 0 <= x1 && x1 <= x2 && x2 < width && 0 <= y1 && y1 <= y2 && y2 < height;
  }
};

using Convert = bool (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using Cut = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*);

// Copies the gray values of any rectangle.
template <void (*Copy)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*)>
bool cut_gray(uint8_t* frame, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
              uint8_t* gray) {
  Copy(frame, width, height, x1, x2, y1, y2, gray);
  return true;
}

// Packed frames can only be cut between groups of two pixels.
bool cut_packed_gray(uint8_t* frame, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                     int32_t y2, uint8_t* gray) {
  return x1 % 2 == 0 && x2 % 2 != 0 &&
         cut_gray<NuvCopyCbYCrYRect2Gry>(frame, width, height, x1, x2, y1, y2, gray);
}

struct Format {
  const char* name;
  int64_t bytes_of_two;  // bytes of two pixels
  const char* demands;
  Convert to_rgb, from_rgb;
  Cut cut_rgb, cut_gray;

  int64_t bytes_of(int64_t width, int64_t height) const { return width * height * bytes_of_two / 2; }
};

constexpr Format kFormats[] = {
    {"cbycry", 4, "an even width and even columns", NuvCbYCrY2RGB, NuvRGB2CbYCrY, NuvCopyCbYCrYRect2RGB,
     cut_packed_gray},
    {"420sp", 3, "even widths, heights, columns and rows", NuvYUV420SP2RGB, NuvRGB2YUV420SP,
     NuvCopyYUV420SPRect2RGB, cut_gray<NuvCopyYUV420SPRect2Gry>},
    {"420p", 3, "even widths, heights, columns and rows", NuvYUV420P2RGB, NuvRGB2YUV420P,
     NuvCopyYUV420PRect2RGB, cut_gray<NuvCopyYUV420PRect2Gry>},
    {"422p", 4, "even widths, heights and columns", NuvYUV422P2RGB, NuvRGB2YUV422P, NuvCopyYUV422PRect2RGB,
     cut_gray<NuvCopyYUV422PRect2Gry>},
};

struct Options {
  std::string input;
  std::string result;
  std::string format;
  int32_t width = 0;
  int32_t height = 0;
  std::vector<int32_t> rectangle;
  bool gray = false;
};

std::string size_text(int32_t width, int32_t height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

Rectangle rectangle_of(const Options& options, int32_t width, int32_t height) {
  if (options.rectangle.empty()) return {0, width - 1, 0, height - 1};
  const std::vector<int32_t>& r = options.rectangle;
  const Rectangle rectangle{r[0], r[1], r[2], r[3]};
  if (!rectangle.lies_in(width, height)) {
    throw PictureError(options.input,
                       "the rectangle is empty, or not inside its " + size_text(width, height));
  }
  return rectangle;
}

std::vector<uint8_t> read_frame(const Options& options, const Format& format) {
  const std::string& file = options.input;
  std::error_code error;
  if (fs::is_directory(file, error)) throw PictureError(file, "is a directory");
  const auto bytes = static_cast<int64_t>(fs::file_size(file, error));
  if (error) throw PictureError(file, error.message());
  const int64_t needed = format.bytes_of(options.width, options.height);
  if (bytes != needed) {
    throw PictureError(file, std::to_string(bytes) + " bytes long; a " + format.name + " frame of " +
                                 size_text(options.width, options.height) + " has " + std::to_string(needed));
  }
  std::vector<uint8_t> frame(static_cast<std::size_t>(needed));
  std::ifstream stream(file, std::ios::binary);
  if (!stream.read(reinterpret_cast<char*>(frame.data()), needed)) throw PictureError(file, "cannot be read");
  return frame;
}

void write_frame(const std::vector<uint8_t>& frame, const std::string& file) {
  errno = 0;
  std::ofstream stream(file, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(frame.data()), static_cast<std::streamsize>(frame.size()));
  stream.close();
  if (stream) return;
  const std::string reason = errno != 0 ? std::strerror(errno) : "cannot be written";
  std::error_code unknown;
  if (fs::is_regular_file(file, unknown)) fs::remove(file, unknown);
  throw PictureError(file, reason);
}

Picture blank(Rectangle r, int32_t channels) {
  const int64_t bytes = int64_t{r.columns()} * r.rows() * channels;
  return {r.columns(), r.rows(), channels, std::vector<uint8_t>(static_cast<std::size_t>(bytes))};
}

PictureError refusal(const Options& options, const Format& format) {
  return {options.input, std::string("the format ") + format.name + " needs " + format.demands};
}

Picture picture_of_frame(const Options& options, const Format& format) {
  std::vector<uint8_t> frame = read_frame(options, format);
  const Rectangle r = rectangle_of(options, options.width, options.height);
  Picture picture = blank(r, options.gray ? 1 : 3);
  uint8_t* pixels = picture.pixels.data();
  const bool converted =
      options.rectangle.empty() && !options.gray
          ? format.to_rgb(frame.data(), options.width, options.height, pixels)
          : (options.gray ? format.cut_gray : format.cut_rgb)(frame.data(), options.width, options.height,
                                                              r.x1, r.x2, r.y1, r.y2, pixels);
  if (!converted) throw refusal(options, format);
  return picture;
}

std::vector<uint8_t> frame_of(Picture& picture, const Options& options, const Format& format) {
  const Rectangle r = rectangle_of(options, picture.width, picture.height);
  if (options.gray) picture = to_gray(picture);
  picture = to_colour(picture);
  Picture part = blank(r, 3);
  NuvCopyRGBRect(picture.pixels.data(), picture.width, picture.height, r.x1, r.x2, r.y1, r.y2,
                 part.pixels.data());
  std::vector<uint8_t> frame(static_cast<std::size_t>(format.bytes_of(part.width, part.height)));
  if (!format.from_rgb(part.pixels.data(), part.width, part.height, frame.data()))
    throw refusal(options, format);
  return frame;
}

void run(Options options) {
  const Format& format = *std::find_if(std::begin(kFormats), std::end(kFormats),
                                       [&options](const Format& f) { return options.format == f.name; });
  const std::string name = fs::path(options.input).stem().string();
  if (options.width != 0) {
    Picture picture = picture_of_frame(options, format);
    if (options.result.empty()) options.result = name + ".bmp";
    check_result(options.input, options.result);
    write_picture(picture, options.result);
    std::printf("%s: %s, %s\n", options.result.c_str(), size_text(picture.width, picture.height).c_str(),
                options.gray ? "gray" : "colour");
  } else {
    Picture picture = read_picture(options.input);
    const Rectangle r = rectangle_of(options, picture.width, picture.height);
    const std::vector<uint8_t> frame = frame_of(picture, options, format);
    const std::string size = size_text(r.columns(), r.rows());
    if (options.result.empty()) options.result = name + "_" + size + "." + format.name;
    check_result(options.input, options.result);
    write_frame(frame, options.result);
    std::printf("%s: %s, %s, %zu bytes\n", options.result.c_str(), size.c_str(), format.name, frame.size());
  }
}

}  // namespace

int main(int argc, char** argv) try {
  Options options;
  CLI::App app("Converts a raw camera frame to a BMP file, or a BMP file to a raw frame.");
  app.add_option("input", options.input,
                 "raw frame, if its size is given; else BMP file of 8 or 24 bits per pixel")
      ->required();
  app.add_option("result", options.result,
                 "file to write (default: INPUT.bmp or INPUT_SIZE.FORMAT in the current directory)");
  app.add_option(
         "-f,--format", options.format,
         "format of the frame: cbycry: packed 4:2:2; 420sp, 420p, 422p: a plane of Y followed by chroma")
      ->required()
      ->check(CLI::IsMember({"cbycry", "420sp", "420p", "422p"}));
  auto* width = app.add_option("-W,--width", options.width, "pixels in a row of the frame");
  auto* height = app.add_option("-H,--height", options.height, "rows of the frame");
  width->check(CLI::Range(1, 8192))->needs(height);
  height->check(CLI::Range(1, 8192))->needs(width);
  app.add_option("-r,--rectangle", options.rectangle,
                 "X1 X2 Y1 Y2: convert only this part; both ends are included")
      ->expected(4);
  app.add_flag("-g,--gray", options.gray, "gray values only");
  CLI11_PARSE(app, argc, argv);
  run(options);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "convert_frame: %s\n", error.what());
  return 1;
}
