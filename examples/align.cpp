// Aligns pictures to another one of the same scene.
//
// All shifts up to a limit are tried, and the middle of the first picture is compared. The sums of the library
// have 32 bits. If the differences of a large picture could exceed them, a smaller middle is compared.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "host.h"
#include "picture.h"

namespace {

struct Options {
  std::string reference;
  int32_t limit = 16;
};

struct Alignment {
  Picture picture;
  int32_t dx = 0;
  int32_t dy = 0;
  int32_t mean = 0;
};

// The part of the picture that lies at least limit pixels inside, or as much of its middle as the sums can
// hold.
tagRECT compared_area(const Picture& picture, int32_t limit) {
  const int32_t columns = picture.width - 2 * limit;
  const int32_t rows = picture.height - 2 * limit;
  const double most_pixels = INT32_MAX / (255 * picture.channels);
  const double scale = std::min(std::sqrt(most_pixels / (static_cast<double>(columns) * rows)), 1.0);
  const auto width = static_cast<int32_t>(columns * scale);
  const auto height = static_cast<int32_t>(rows * scale);
  const int32_t left = (picture.width - width) / 2;
  const int32_t top = (picture.height - height) / 2;
  return {left, top, left + width - 1, top + height - 1};
}

Alignment aligned(Picture& first, Picture& second, int32_t limit, tagRECT area) {
  Alignment result{first};
  result.mean = NuvShiftImg2BasedImg1(first.pixels.data(), second.pixels.data(), result.picture.pixels.data(),
                                      first.width, first.height, first.channels == 3, limit, limit, area,
                                      &result.dx, &result.dy);
  return result;
}

// The absolute difference of each pixel; in colour, the largest of the three channels.
Picture difference_of(Picture& a, Picture& b) {
  Picture result = blank_like(a);
  NuvDifferenceImg12(a.pixels.data(), b.pixels.data(), a.width, a.height, a.channels == 3,
                     result.pixels.data());
  return result;
}

Report work(const Job& job, const Options& options) {
  Picture first = read_picture(options.reference);
  Picture second = read_picture(job.input);
  if (first.width != second.width || first.height != second.height) {
    throw PictureError(job.input, "is " + size_text(second) + " pixels large, and " + options.reference +
                                      " is " + size_text(first));
  }
  if (2 * options.limit + 2 > std::min(first.width, first.height)) {
    throw PictureError(job.input, size_text(first) + " pixels are too few for shifts of " +
                                      std::to_string(options.limit) + "; try a lower --limit");
  }
  if (first.channels != second.channels) {
    first = to_gray(first);
    second = to_gray(second);
  }
  const tagRECT area = compared_area(first, options.limit);
  job.says("trying shifts");
  Alignment alignment = aligned(first, second, options.limit, area);
  Picture difference = difference_of(first, alignment.picture);
  write_picture(alignment.picture, job.results[0]);
  write_picture(difference, job.results[1]);

  const bool is_at_limit = std::max(std::abs(alignment.dx), std::abs(alignment.dy)) == options.limit;
  Report report;
  report.numbers = {alignment.dx,
                    alignment.dy,
                    alignment.mean,
                    area.right - area.left + 1,
                    area.bottom - area.top + 1,
                    is_at_limit ? "yes" : "no"};
  if (is_at_limit) {
    report.conclusion = "the shift is at the limit: try --limit " + std::to_string(2 * options.limit) + "\n";
  }
  report.conclusion += "written to " + job.results[0] + " and " + job.results[1];
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  plan.name = "align";
  plan.purpose = "Finds the shift between pictures of a scene, and moves them onto the first one.";
  plan.results = {{"-o,--output", "_aligned", kPictureEndings, "picture to write: the moved one"},
                  {"--difference", "_difference", kPictureEndings,
                   "picture to write: the difference of the moved picture from the first one"}};
  plan.numbers = {{"dx", "shift to the right, in pixels, by which the picture is moved"},
                  {"dy", "shift downwards, in pixels"},
                  {"mean_difference", "of the compared pixels after the shift, in gray values"},
                  {"compared_width", "columns of the compared middle"},
                  {"compared_height", "rows of the compared middle"},
                  {"at_limit", "yes if the shift is the largest that was tried, or else no"}};
  Host host(plan);
  Options options;
  host.input_file("reference", options.reference, "picture onto which the others are moved, of the same size")
      ->required();
  host.number("-l,--limit", options.limit, "largest shift to try, in pixels along each axis", 1, 1000);
  host.check([&options] {
    if (options.reference == "-") throw UsageError("standard input cannot be the reference");
  });
  return host.run(argc, argv, [&options](const Job& job) { return work(job, options); });
}
