// Segments a photograph into a tree of dark regions.
//
// There is no threshold to choose. A level falls step by step, and a region that splits becomes a parent or is
// replaced by its parts.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "picture.h"

namespace {

struct Options {
  std::string picture;
  std::string result;
  int32_t min_area = 200;
  int32_t min_gray = 0;
  double ratio = 0.5;
  bool light = false;
};

using RegionList = std::unique_ptr<RegionStruct, decltype(&NuvFreeRegionStruct)>;

// The regions by number, and the numbers of the children of each. Regions without a parent are children of -1.
struct Tree {
  std::map<int32_t, const RegionStruct*> regions;
  std::map<int32_t, std::vector<int32_t>> children;

  explicit Tree(const RegionStruct* list) {
    for (const RegionStruct* r = list; r != nullptr; r = r->next) {
      regions[r->ID] = r;
      children[r->parentID].push_back(r->ID);
    }
  }
};

// Calls visit(region, depth) for all descendants of a region. It visits the children of a region in order of
// falling area.
template <class Visit>
void walk(const Tree& tree, int32_t parent, int depth, const Visit& visit) {
  const auto found = tree.children.find(parent);
  if (found == tree.children.end()) return;
  for (auto id = found->second.rbegin(); id != found->second.rend(); ++id) {
    visit(*tree.regions.at(*id), depth);
    walk(tree, *id, depth + 1, visit);
  }
}

void print_tree(const Tree& tree) {
  std::puts("region                     left   top right bottom      area perimeter  level");
  walk(tree, -1, 0, [](const RegionStruct& r, int depth) {
    int32_t x1 = 0;
    int32_t x2 = 0;
    int32_t y1 = 0;
    int32_t y2 = 0;
    NuvContourRect(r.x0, r.y0, r.pChainCode, r.N, &x1, &x2, &y1, &y2);
    const std::string name = std::string(static_cast<std::size_t>(2 * depth), ' ') + std::to_string(r.ID);
    std::printf("%-24s  %5d %5d %5d %6d  %8d %9d  %5d\n", name.c_str(), x1, y1, x2, y2, r.area, r.perimeter,
                r.gry);
  });
}

// Draws outlines in the colour of their depth, with the deeper ones on top.
Picture drawn(Picture picture, const Tree& tree) {
  constexpr std::array<std::array<uint8_t, 3>, 5> kColours = {
      {{60, 220, 60}, {40, 160, 255}, {255, 120, 60}, {60, 60, 240}, {240, 240, 80}}};
  Picture result = to_colour(picture);
  walk(tree, -1, 0, [&result, &kColours](const RegionStruct& r, int depth) {
    const auto& colour = kColours[static_cast<std::size_t>(depth) % kColours.size()];
    std::vector<int32_t> x(static_cast<std::size_t>(r.N) + 1);
    std::vector<int32_t> y(x.size());
    NuvChain2Points(r.x0, r.y0, r.pChainCode, r.N, x.data(), y.data());
    for (std::size_t i = 0; i < static_cast<std::size_t>(r.N); ++i) {
      std::copy(colour.begin(), colour.end(), result.pixels.begin() + (y[i] * result.width + x[i]) * 3);
    }
  });
  return result;
}

void run(Options options) {
  Picture picture = read_picture(options.picture);
  if (options.result.empty()) {
    options.result = std::filesystem::path(options.picture).stem().string() + "_regions.bmp";
  }
  check_result(options.picture, options.result);

  Picture gray = to_gray(picture);
  if (options.light) NuvInvertGryValue(gray.pixels.data(), gray.width, gray.height);
  std::vector<uint8_t> work(2 * gray.pixels.size());
  const RegionList list(NuvMergeSplit(gray.pixels.data(), work.data(), gray.width, gray.height,
                                      options.min_area, options.min_gray, options.ratio),
                        NuvFreeRegionStruct);
  const Tree tree(list.get());
  print_tree(tree);
  Picture result = drawn(picture, tree);
  write_picture(result, options.result);
  std::printf("%zu regions, drawn in %s\n", tree.regions.size(), options.result.c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  Options options;
  CLI::App app(
      "Segments a photograph: a tree of dark regions as a table, and a picture with their outlines.");
  app.add_option("picture", options.picture, "BMP file of 8 or 24 bits per pixel")->required();
  app.add_option("result", options.result,
                 "BMP file to write (default: PICTURE_regions.bmp in the current directory)");
  app.add_option("-a,--min-area", options.min_area, "least area of a region in pixels")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  app.add_option("-g,--min-gray", options.min_gray, "the lowest level considered")
      ->capture_default_str()
      ->check(CLI::Range(0, 255));
  app.add_option(
         "-r,--ratio", options.ratio,
         "a region that splits is dropped if its parts cover more than this share of it; 1: it always stays")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 1.0));
  app.add_flag("-l,--light", options.light, "light regions instead of dark ones");
  CLI11_PARSE(app, argc, argv);
  run(options);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "segment: %s\n", error.what());
  return 1;
}
