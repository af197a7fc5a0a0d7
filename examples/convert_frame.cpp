// Converts raw camera frames to pictures, and pictures to raw frames.
//
// A raw frame has no header. So its format and size are options, and the length of a file must fit them. The
// library has four formats; others differ from one of them only in the order of their bytes, which is changed
// here. The library's colour matrix has the full range; frames of limited range are stretched before it and
// compressed after it.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "host.h"
#include "picture.h"
#include "standard_streams.h"

namespace {

using Frame = std::vector<uint8_t>;

struct Rectangle {
  int32_t x1, x2, y1, y2;

  int32_t columns() const { return x2 - x1 + 1; }
  int32_t rows() const { return y2 - y1 + 1; }
  bool lies_in(int32_t width, int32_t height) const {
    return 0 <= x1 && x1 <= x2 && x2 < width && 0 <= y1 && y1 <= y2 && y2 < height;
  }
};

// ---- Formats ----------------------------------------------------------------------------------------------

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

// A frame format of the library.
struct Layout {
  int64_t bytes_of_two;  // bytes of two pixels
  bool is_packed;        // brightness in every second byte; else first in a plane of its own
  const char* demands;
  Convert to_rgb, from_rgb;
  Cut cut_rgb, cut_gray;

  int64_t bytes_of(int64_t width, int64_t height) const { return width * height * bytes_of_two / 2; }
};

constexpr Layout kPacked = {4,
                            true,
                            "an even width and even columns",
                            NuvCbYCrY2RGB,
                            NuvRGB2CbYCrY,
                            NuvCopyCbYCrYRect2RGB,
                            cut_packed_gray};
constexpr Layout k420SP = {3,
                           false,
                           "even widths, heights, columns and rows",
                           NuvYUV420SP2RGB,
                           NuvRGB2YUV420SP,
                           NuvCopyYUV420SPRect2RGB,
                           cut_gray<NuvCopyYUV420SPRect2Gry>};
constexpr Layout k420P = {3,
                          false,
                          "even widths, heights, columns and rows",
                          NuvYUV420P2RGB,
                          NuvRGB2YUV420P,
                          NuvCopyYUV420PRect2RGB,
                          cut_gray<NuvCopyYUV420PRect2Gry>};
constexpr Layout k422P = {4,
                          false,
                          "even widths, heights and columns",
                          NuvYUV422P2RGB,
                          NuvRGB2YUV422P,
                          NuvCopyYUV422PRect2RGB,
                          cut_gray<NuvCopyYUV422PRect2Gry>};

void swap_pairs(Frame::iterator begin, Frame::iterator end) {
  for (; end - begin >= 2; begin += 2) std::swap(begin[0], begin[1]);
}

// Changes of order between a format and the layout of the library. Each undoes itself.
void swap_bytes(Frame& frame, int64_t /*pixels*/) {
  swap_pairs(frame.begin(), frame.end());
}
void swap_chroma(Frame& frame, int64_t pixels) {
  swap_pairs(frame.begin() + pixels, frame.end());
}
void swap_planes(Frame& frame, int64_t pixels) {
  std::swap_ranges(frame.begin() + pixels, frame.begin() + pixels + pixels / 4,
                   frame.begin() + pixels + pixels / 4);
}

struct Format {
  const char* name;
  const Layout& layout;
  void (*reorder)(Frame&, int64_t pixels);  // null: the order of the library
};

constexpr Format kFormats[] = {
    {"uyvy", kPacked, nullptr},    {"yuyv", kPacked, swap_bytes}, {"nv12", k420SP, nullptr},
    {"nv21", k420SP, swap_chroma}, {"i420", k420P, nullptr},      {"yv12", k420P, swap_planes},
    {"yuv422p", k422P, nullptr},  // other names:
    {"uyvy422", kPacked, nullptr}, {"cbycry", kPacked, nullptr},  {"yuyv422", kPacked, swap_bytes},
    {"yuy2", kPacked, swap_bytes}, {"420sp", k420SP, nullptr},    {"yuv420p", k420P, nullptr},
    {"420p", k420P, nullptr},      {"i422", k422P, nullptr},      {"422p", k422P, nullptr},
};

std::vector<std::string> format_names() {
  std::vector<std::string> names;
  for (const Format& format : kFormats) names.emplace_back(format.name);
  return names;
}

const Format& format_of(const std::string& name) {
  return *std::find_if(std::begin(kFormats), std::end(kFormats),
                       [&name](const Format& f) { return name == f.name; });
}

// ---- Ranges -----------------------------------------------------------------------------------------------

using Table = std::array<uint8_t, 256>;

// Maps values linearly so that zero becomes new_zero and a step of span becomes one of new_span.
Table stretch(double zero, double span, double new_zero, double new_span) {
  Table table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double value = new_zero + (static_cast<double>(i) - zero) * new_span / span;
    table[i] = static_cast<uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
  }
  return table;
}

void apply(Frame& frame, const Layout& layout, int64_t pixels, const Table& brightness, const Table& chroma) {
  for (std::size_t i = 0; i < frame.size(); ++i) {
    const bool is_brightness = layout.is_packed ? i % 2 == 1 : static_cast<int64_t>(i) < pixels;
    frame[i] = (is_brightness ? brightness : chroma)[frame[i]];
  }
}

// In the limited range, brightness goes from 16 to 235 and chroma from 16 to 240.
void limited_to_full(Frame& frame, const Layout& layout, int64_t pixels) {
  apply(frame, layout, pixels, stretch(16, 219, 0, 255), stretch(128, 112, 128, 127.5));
}
void full_to_limited(Frame& frame, const Layout& layout, int64_t pixels) {
  apply(frame, layout, pixels, stretch(0, 255, 16, 219), stretch(128, 127.5, 128, 112));
}

// ---- Conversion -------------------------------------------------------------------------------------------

struct Options {
  std::string format;
  std::string size;
  int32_t width = 0;  // 0: pictures become frames
  int32_t height = 0;
  std::string range = "full";
  std::vector<int32_t> rectangle;
  bool gray = false;
};

Rectangle rectangle_of(const Job& job, const Options& options, int32_t width, int32_t height) {
  if (options.rectangle.empty()) return {0, width - 1, 0, height - 1};
  const std::vector<int32_t>& r = options.rectangle;
  const Rectangle rectangle{r[0], r[1], r[2], r[3]};
  if (!rectangle.lies_in(width, height)) {
    throw PictureError(job.input, "the rectangle is empty, or not inside its " + size_text(width, height));
  }
  return rectangle;
}

PictureError refusal(const Job& job, const Options& options) {
  return {job.input, "the format " + options.format + " needs " + format_of(options.format).layout.demands};
}

// The picture of a frame in the order and the range of the file.
Picture picture_of_frame(Frame frame, const Job& job, const Options& options) {
  const Format& format = format_of(options.format);
  const Layout& layout = format.layout;
  const int64_t pixels = int64_t{options.width} * options.height;
  if (format.reorder != nullptr) format.reorder(frame, pixels);
  if (options.range == "limited") limited_to_full(frame, layout, pixels);
  const Rectangle r = rectangle_of(job, options, options.width, options.height);
  Picture picture = blank(r.columns(), r.rows(), options.gray ? 1 : 3);
  uint8_t* out = picture.pixels.data();
  const bool converted = options.rectangle.empty() && !options.gray
                             ? layout.to_rgb(frame.data(), options.width, options.height, out)
                             : (options.gray ? layout.cut_gray : layout.cut_rgb)(
                                   frame.data(), options.width, options.height, r.x1, r.x2, r.y1, r.y2, out);
  if (!converted) throw refusal(job, options);
  return picture;
}

Frame frame_of(Picture picture, const Rectangle& r, const Job& job, const Options& options) {
  const Format& format = format_of(options.format);
  if (options.gray) picture = to_gray(picture);
  picture = to_colour(picture);
  Picture part = blank(r.columns(), r.rows(), 3);
  NuvCopyRGBRect(picture.pixels.data(), picture.width, picture.height, r.x1, r.x2, r.y1, r.y2,
                 part.pixels.data());
  const int64_t pixels = int64_t{part.width} * part.height;
  Frame frame(static_cast<std::size_t>(format.layout.bytes_of(part.width, part.height)));
  if (!format.layout.from_rgb(part.pixels.data(), part.width, part.height, frame.data())) {
    throw refusal(job, options);
  }
  if (options.range == "limited") full_to_limited(frame, format.layout, pixels);
  if (format.reorder != nullptr) format.reorder(frame, pixels);
  return frame;
}

// ---- Files and streams ------------------------------------------------------------------------------------

int64_t frame_bytes(const Options& options) {
  return format_of(options.format).layout.bytes_of(options.width, options.height);
}

// The one frame of a file.
Frame read_frame(const Job& job, const Options& options) {
  const int64_t needed = frame_bytes(options);
  std::error_code unknown;
  const auto length = static_cast<int64_t>(std::filesystem::file_size(job.input, unknown));
  Frame frame;
  if (unknown || length == needed) frame = read_file(job.input, static_cast<uint64_t>(needed));
  const int64_t bytes = unknown ? static_cast<int64_t>(frame.size()) : length;
  if (bytes != needed) {
    std::string reason = std::to_string(bytes) + " bytes long; a frame of " +
                         size_text(options.width, options.height) + " in " + options.format + " has " +
                         std::to_string(needed);
    if (bytes > needed && bytes % needed == 0) {
      reason += ". For its " + std::to_string(bytes / needed) + " frames, pass the file to standard input";
    }
    throw PictureError(job.input, reason);
  }
  return frame;
}

// The next frame of standard input, or nothing at its end.
std::optional<Frame> next_frame(const Options& options, int64_t number) {
  Frame frame(static_cast<std::size_t>(frame_bytes(options)));
  const std::size_t bytes = std::fread(frame.data(), 1, frame.size(), stdin);
  if (bytes == frame.size()) return frame;
  if (bytes == 0) return std::nullopt;
  throw PictureError("-", "ends within frame " + std::to_string(number) + ": " + std::to_string(bytes) +
                              " of " + std::to_string(frame.size()) + " bytes");
}

// The name of one picture of a stream: frames/stdin.png becomes frames/stdin_000001.png.
std::string numbered(const std::string& name, int64_t number) {
  const std::filesystem::path path(name);
  const std::string digits = std::to_string(1000000 + number);
  const std::string text = number < 1000000 ? digits.substr(1) : std::to_string(number);
  return (path.parent_path() / (path.stem().string() + "_" + text + path.extension().string())).string();
}

// Writes the pictures of a stream to standard output, one after the other as PPM or PGM, or to numbered files.
int64_t convert_stream(const Job& job, const Options& options) {
  make_binary(stdin);
  int64_t count = 0;
  for (auto frame = next_frame(options, 1); frame; frame = next_frame(options, count + 1)) {
    ++count;
    job.says("frame " + std::to_string(count));
    const Picture picture = picture_of_frame(std::move(*frame), job, options);
    if (job.results[0] == "-") {
      write_file(pnm_of(picture), "-");
    } else {
      write_picture(picture, numbered(job.results[0], count));
    }
  }
  if (count == 0) throw PictureError("-", "is empty");
  return count;
}

Report work(const Job& job, const Options& options) {
  const bool to_picture = options.width > 0;
  Rectangle r{};
  int64_t count = 1;
  if (to_picture) {
    r = rectangle_of(job, options, options.width, options.height);
    if (job.input == "-") {
      count = convert_stream(job, options);
    } else {
      write_picture(picture_of_frame(read_frame(job, options), job, options), job.results[0]);
    }
  } else {
    const Picture picture = read_picture(job.input);
    r = rectangle_of(job, options, picture.width, picture.height);
    write_file(frame_of(picture, r, job, options), job.results[0]);
  }

  Report report;
  report.numbers = {r.columns(), r.rows(), count, options.format, options.range};
  report.conclusion = (to_picture ? "pictures of full range, " : "frame of " + options.range + " range, ") +
                      (options.gray ? "gray" : "colour") + ", written to " +
                      (count > 1 && job.results[0] != "-" ? numbered(job.results[0], 1) + " and following"
                       : job.results[0] == "-"            ? "standard output"
                       : job.input == "-"                 ? numbered(job.results[0], 1)
                                                          : job.results[0]);
  return report;
}

// Reads a size such as 640x480.
std::string check_size(const std::string& text, Options& options) {
  constexpr int32_t kMost = 32768;
  char end = 0;
  const int read = std::sscanf(text.c_str(), "%5dx%5d%c", &options.width, &options.height, &end);
  const bool is_good = read == 2 && options.width >= 1 && options.width <= kMost && options.height >= 1 &&
                       options.height <= kMost &&
                       int64_t{options.width} * options.height * 3 <= int64_t{1} << 30;
  return is_good
             ? ""
             : '"' + text + "\" is not a size such as 640x480, each side from 1 to 32768, of at most 1 GiB";
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  plan.name = "convert_frame";
  plan.purpose = "Converts raw camera frames to pictures, or pictures to raw frames.";
  plan.results = {{"-o,--output", "", {".png", ".bmp"}, "file to write: picture, or raw frame"}};
  plan.numbers = {{"width", "of the converted part, in pixels"},
                  {"height", "of the converted part, in pixels"},
                  {"frames", "number of frames"},
                  {"format", "of the raw frames"},
                  {"range", "of the raw frames: full or limited"}};
  plan.input_meaning =
      "with --size, file of one raw frame, folder of such files (.yuv, .raw or named after the format), or - "
      "for "
      "a stream of frames from standard input; else picture (PNG, JPEG, BMP, PGM or PPM), folder of "
      "pictures, or -";
  plan.notes =
      "From standard input, the result goes to standard output by default, as a stream of PPM pictures (PGM "
      "with "
      "--gray): ffmpeg -i film.mp4 -f rawvideo -pix_fmt nv12 - | convert_frame --format nv12 --size 640x480 "
      "--range limited - | ffmpeg -f image2pipe -c:v ppm -i - out.mp4. With --output=FOLDER/, each frame "
      "becomes a "
      "file: stdin_000001.png and following.\n"
      "Formats: uyvy (also cbycry), yuyv (yuy2), nv12 (420sp), nv21, i420 (yuv420p, 420p), yv12, yuv422p "
      "(i422, "
      "422p). Not taken: more than 8 bits (P010, Y210), 4:4:4 (I444, NV24), NV16, RGB, Bayer patterns and "
      "compressed frames (MJPEG, H.264).\n"
      "The colour matrix is that of BT.601. A raw frame becomes PICTURE.FORMAT, without its size in the "
      "name.";
  Host host(plan);
  Options options;
  host.choice("-f,--format", options.format, "format of the raw frames, for example nv12; see the notes",
              format_names())
      ->required();
  host.app()
      .add_option("-s,--size", options.size, "size of the raw frames; without it, pictures become raw frames")
      ->type_name("WxH")
      ->check(CLI::Validator([&options](const std::string& text) { return check_size(text, options); }, ""));
  host.choice(
      "--range", options.range,
      "range of the raw frames: full (0 to 255), or limited (16 to 235) as in films; pictures are full",
      {"full", "limited"});
  host.app()
      .add_option("-r,--rectangle", options.rectangle,
                  "convert only columns X1 to X2 and rows Y1 to Y2, both ends included")
      ->type_name("X1 X2 Y1 Y2")
      ->expected(4)
      ->check(CLI::Validator(
          [](const std::string& text) {
            const bool is_number = !text.empty() && text.size() <= 6 &&
                                   text.find_first_not_of("0123456789") == std::string::npos;
            return is_number ? "" : '"' + text + "\" is not a whole number from 0 to 999999";
          },
          ""));
  host.flag("-g,--gray", options.gray, "gray values only");
  host.check([&] {
    const std::vector<std::string> raw_endings = {"." + options.format, ".yuv", ".raw"};
    const bool to_picture = options.width > 0;
    if (!to_picture) host.plan().results[0].endings = raw_endings;
    if (to_picture) {
      host.plan().takes = [raw_endings](const std::string& file) {
        return std::find(raw_endings.begin(), raw_endings.end(), ending_of(file)) != raw_endings.end();
      };
    }
    host.plan().result_of_input = "-";
  });
  return host.run(argc, argv, [&options](const Job& job) { return work(job, options); });
}
