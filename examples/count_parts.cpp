// Counts the parts in photographs and measures each.
//
// Most inspections take these steps: threshold, clean-up, contours. Parts are brighter than the background or,
// with --dark, darker. Objects below a least area are ignored, and holes below a least area are closed.

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "host.h"
#include "marks.h"
#include "picture.h"

namespace {

struct Options {
  int32_t threshold = -1;  // below 0: Otsu's
  bool dark = false;
  int32_t background = 0;
  int32_t smooth = 1;
  int32_t min_area = 100;
  int32_t min_hole = 100;
};

struct Part {
  tagRECT box{};
  int32_t x = 0;
  int32_t y = 0;
  int32_t area = 0;
  int32_t perimeter = 0;
  int32_t holes = 0;
  const NUV_CONTOUR_STRUCT* contour = nullptr;
};

// A threshold, and how it was found.
struct Threshold {
  int32_t level = 0;
  std::string method;  // "given", "otsu" or "flat"
  std::string reason;
};

// Evens out light that changes across the picture. The result is 128 plus the difference of each pixel from the
// mean of its surroundings.
Picture flattened(Picture& gray, int32_t half_size) {
  Picture mean = blank_like(gray);
  NuvGryAverageFilter(gray.pixels.data(), gray.width, gray.height, half_size, half_size, mean.pixels.data());
  for (std::size_t i = 0; i < mean.pixels.size(); ++i) {
    mean.pixels[i] = static_cast<uint8_t>(std::clamp(128 + gray.pixels[i] - mean.pixels[i], 0, 255));
  }
  return mean;
}

// The mean gray value from level first up to the level before last.
double mean_level(const Histogram& bins, int32_t first, int32_t last) {
  double sum = 0;
  double pixels = 0;
  for (int32_t level = first; level < last; ++level) {
    sum += static_cast<double>(level) * bins[static_cast<std::size_t>(level)];
    pixels += bins[static_cast<std::size_t>(level)];
  }
  return pixels > 0 ? sum / pixels : 0;
}

// The gray picture is as read; evened has even light. Rounding can make two levels of a flat picture there.
Threshold threshold_for(const Picture& gray, Picture& evened, const Options& options) {
  if (options.threshold >= 0) return {options.threshold, "given", "as given"};
  const auto [least, most] = std::minmax_element(gray.pixels.begin(), gray.pixels.end());
  if (*least == *most) return {*most, "flat", "the picture has a single gray value, so it has no parts"};
  const Histogram bins = histogram_of(evened);
  const int32_t level = otsu_threshold(evened);
  const std::string light = options.background > 0 ? ", after the light is evened out" : "";
  return {level, "otsu",
          "Otsu's method: it best separates a dark class of mean " + text_of(mean_level(bins, 0, level), 0) +
              " from a bright class of mean " + text_of(mean_level(bins, level, 256), 0) + light};
}

// Sets parts to 255 and the background to 0.
Picture binarised(Picture& gray, const Threshold& threshold, bool dark) {
  if (threshold.method == "flat") return blank_like(gray);
  Picture binary = gray;
  NuvThreshold(binary.pixels.data(), binary.width, binary.height, threshold.level);
  if (dark) NuvInvertGryValue(binary.pixels.data(), binary.width, binary.height);
  return binary;
}

// Smooths rough outlines. A picture that is smaller than the window stays as it is.
Picture smoothed(Picture binary, int32_t half_size) {
  const int32_t side = 2 * half_size + 1;
  if (half_size == 0 || side > std::min(binary.width, binary.height)) return binary;
  Picture result = blank_like(binary);
  NuvBinImgFilter(binary.pixels.data(), binary.width, binary.height, half_size, half_size,
                  static_cast<uint32_t>(side * side * 127), result.pixels.data());
  return result;
}

// A copy with a border of background pixels. Contours need it; without it, parts would lose their outermost
// pixels at the rim of the picture.
Picture framed(Picture& binary, int32_t border) {
  Picture result = blank(binary.width + 2 * border, binary.height + 2 * border);
  NuvPasteGryImg2ResImg(binary.pixels.data(), binary.width, binary.height, result.pixels.data(), result.width,
                        result.height, border, border);
  return result;
}

using Contours = std::unique_ptr<NUV_CONTOUR_STRUCT, decltype(&NuvFreeContours)>;

// The outlines of the objects and holes that have at least min_area pixels.
Contours contours_of(Picture& binary, int32_t min_area) {
  constexpr int32_t kBorder = 1;
  Picture image = framed(binary, kBorder);
  std::vector<uint8_t> work(image.pixels.size());
  Contours contours(
      NuvGetContours(image.pixels.data(), work.data(), image.width, image.height, 1, min_area, 0),
      NuvFreeContours);
  for (auto* c = contours.get(); c != nullptr; c = c->pNext) {
    c->x -= kBorder;
    c->y -= kBorder;
  }
  return contours;
}

// The outline of an object or of a hole. Everything inside belongs to it.
struct Outline {
  const NUV_CONTOUR_STRUCT* contour;
  tagRECT box;

  // Whether an outline that starts at (x, y) and has the given area lies inside this one.
  bool holds(int32_t x, int32_t y, int32_t area) const {
    return contour->area > area && x >= box.left && x <= box.right && y >= box.top && y <= box.bottom &&
           NuvIsPointIncludedByChain(x, y, contour->x, contour->y, contour->pChainCode, contour->N);
  }
};

Part measured(const Outline& object) {
  const NUV_CONTOUR_STRUCT& c = *object.contour;
  Part part;
  part.contour = &c;
  part.box = object.box;
  part.area = c.area;
  part.perimeter = c.perimeter;
  NuvContourCenter(c.x, c.y, c.pChainCode, c.N, &part.x, &part.y);
  return part;
}

// The objects that are large enough, each with its holes. A hole that is too small is closed with everything in
// it.
std::vector<Part> parts_of(const NUV_CONTOUR_STRUCT* contours, const Options& options) {
  std::vector<Outline> objects;
  std::vector<Outline> holes;
  std::vector<Outline> closed;
  for (const auto* c = contours; c != nullptr; c = c->pNext) {
    tagRECT box{};
    NuvContourRect(c->x, c->y, c->pChainCode, c->N, &box.left, &box.right, &box.top, &box.bottom);
    (c->isOuter ? objects : c->area < options.min_hole ? closed : holes).push_back({c, box});
  }

  std::vector<Part> parts;
  std::vector<std::size_t> part_of(objects.size(), 0);  // number of the part, from 1; 0 for none
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const NUV_CONTOUR_STRUCT& c = *objects[i].contour;
    const auto holds_it = [&](const Outline& hole) { return hole.holds(c.x, c.y, c.area); };
    if (c.area < options.min_area || std::any_of(closed.begin(), closed.end(), holds_it)) continue;
    parts.push_back(measured(objects[i]));
    part_of[i] = parts.size();
  }
  for (const Outline& hole : holes) {
    const NUV_CONTOUR_STRUCT& h = *hole.contour;
    std::size_t owner = objects.size();  // the smallest object around the hole
    for (std::size_t i = 0; i < objects.size(); ++i) {
      const bool is_smaller =
          owner == objects.size() || objects[i].contour->area < objects[owner].contour->area;
      if (is_smaller && objects[i].holds(h.x, h.y, h.area)) owner = i;
    }
    if (owner == objects.size() || part_of[owner] == 0) continue;
    Part& part = parts[part_of[owner] - 1];
    ++part.holes;
    part.area -= h.area;
  }
  return parts;
}

// Draws the outline and the number of each part into the picture.
Marks drawn(const Picture& picture, const std::vector<Part>& parts) {
  Marks marks(picture);
  int64_t number = 0;
  for (const Part& part : parts) {
    const NUV_CONTOUR_STRUCT& c = *part.contour;
    const Box box = {double(part.box.left), double(part.box.top), double(part.box.right),
                     double(part.box.bottom)};
    marks.keep_free(box);
    marks.outline(c.x, c.y, c.pChainCode, c.N, kGreen, 1.4);
    marks.label(box, std::to_string(++number), kWhite);
  }
  marks.place_labels();
  return marks;
}

Report work(const Job& job, const Options& options) {
  Picture picture = read_picture(job.input);
  Picture gray = to_gray(picture);
  Picture evened = options.background > 0 ? flattened(gray, options.background) : gray;
  const Threshold threshold = threshold_for(gray, evened, options);
  Picture binary = smoothed(binarised(evened, threshold, options.dark), options.smooth);
  const Contours contours = contours_of(binary, std::min(options.min_area, options.min_hole));
  const std::vector<Part> parts = parts_of(contours.get(), options);
  job.says("drawing");
  Marks marks = drawn(picture, parts);
  write_picture(marks.drawing(), job.results[0]);

  Report report;
  report.numbers = {picture.width, picture.height, threshold.level, threshold.method};
  int64_t number = 0;
  for (const Part& part : parts) {
    report.rows.push_back({++number, part.box.left, part.box.top, part.box.right, part.box.bottom, part.x,
                           part.y, part.area, part.perimeter, part.holes});
  }
  report.conclusion = counted(parts.size(), "part") + " at threshold " + std::to_string(threshold.level) +
                      ", drawn into " + job.results[0] + "\nthreshold: " + threshold.reason + marks.remark();
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  plan.name = "count_parts";
  plan.purpose =
      "Counts and measures the parts in photographs: a table, and a picture with outlines and numbers.";
  plan.results = {
      {"-o,--output", "_parts", kPictureEndings, "picture to write, with the outlines and numbers"}};
  plan.numbers = {{"width", "of the picture, in pixels"},
                  {"height", "of the picture, in pixels"},
                  {"threshold", "gray value from which a pixel is bright"},
                  {"threshold_method", "given, otsu, or flat if the picture has a single gray value"}};
  plan.items = "parts";
  plan.columns = {{"number", "as in the picture"},
                  {"left", "first column of the part"},
                  {"top", "first row"},
                  {"right", "last column"},
                  {"bottom", "last row"},
                  {"x", "centre of the outline, in pixels"},
                  {"y", "centre of the outline, in pixels"},
                  {"area", "in pixels, without holes"},
                  {"perimeter", "length of the outline, in pixels"},
                  {"holes", "number of holes"}};
  plan.notes = "Coins on dark cloth, lit from one side: count_parts coins.png --background 40";
  Host host(plan);
  Options options;
  host.number("-t,--threshold", options.threshold, "gray value from which a pixel is bright", 0, 255,
              "Otsu's");
  host.flag("-d,--dark", options.dark, "parts are darker than the background");
  host.number(
      "-b,--background", options.background,
      "evens out light that changes across the picture: compares each pixel with the mean over this many "
      "pixels to each side, about the size of a part; 0: off",
      0, 1000);
  host.number("-s,--smooth", options.smooth,
              "smooths outlines by a majority over this many pixels to each side; 0: off", 0, 100);
  host.number("-a,--min-area", options.min_area, "parts of fewer pixels are dropped", 1, 1000000000);
  host.number("--min-hole", options.min_hole, "holes of fewer pixels are closed", 1, 1000000000);
  return host.run(argc, argv, [&options](const Job& job) { return work(job, options); });
}
