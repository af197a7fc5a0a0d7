// Makes the pictures of docs/gallery.md, which show the effect of each family of the library.
//
// Each picture is made by a function of the two photographs, which is listed in the table at the end. It
// consists of panels: the last one shows the result, and those before it show the source.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "host.h"
#include "marks.h"
#include "picture.h"

namespace {

struct Photographs {
  Picture camera;  // 512x512
  Picture coins;   // 384x303
};

// ---- Panels -----------------------------------------------------------------------------------------------

Picture resized(Picture gray, int32_t width, int32_t height) {
  Picture result = blank(width, height);
  NuvGryImgBilinearInterpolattionStd(gray.pixels.data(), gray.width, gray.height, result.pixels.data(), width,
                                     height);
  return result;
}

Picture halved(Picture gray) {
  Picture result = blank(gray.width / 2, gray.height / 2);
  NuvShrinkGryImg2x2ByAvr(gray.pixels.data(), gray.width, gray.height, result.pixels.data());
  return result;
}

Picture cut(Picture gray, int32_t x, int32_t y, int32_t width, int32_t height) {
  Picture result = blank(width, height);
  NuvCopyGryRect(gray.pixels.data(), gray.width, gray.height, x, x + width - 1, y, y + height - 1,
                 result.pixels.data());
  return result;
}

Picture close_up(const Photographs& photographs) {
  return cut(photographs.camera, 144, 50, 200, 200);
}
Picture small_coins(const Photographs& photographs) {
  return resized(photographs.coins, 256, 202);
}

// A darker background for drawings in colour.
Picture dimmed(Picture gray) {
  for (uint8_t& pixel : gray.pixels) pixel = static_cast<uint8_t>(pixel / 2);
  return to_colour(gray);
}

void paste(Picture& panel, Picture& result, int32_t x, int32_t y) {
  const auto paste_any = result.channels == 1  ? NuvPasteGryImg2ResImg
                         : panel.channels == 1 ? NuvPasteGryImg2RGBImg
                                               : NuvPasteRGBImg2ResImg;
  paste_any(panel.pixels.data(), panel.width, panel.height, result.pixels.data(), result.width, result.height,
            x, y);
}

// Arranges panels on white, side by side or one below the other. The result is in colour if one of them is.
Picture arranged(std::vector<Picture> panels, bool across) {
  constexpr int32_t kGap = 8;
  Picture size;
  (across ? size.width : size.height) = -kGap;
  for (const Picture& panel : panels) {
    size.width = across ? size.width + panel.width + kGap : std::max(size.width, panel.width);
    size.height = across ? std::max(size.height, panel.height) : size.height + panel.height + kGap;
    size.channels = std::max(size.channels, panel.channels);
  }
  Picture result = blank(size.width, size.height, size.channels, 255);
  int32_t at = 0;
  for (Picture& panel : panels) {
    paste(panel, result, across ? at : 0, across ? 0 : at);
    at += (across ? panel.width : panel.height) + kGap;
  }
  return result;
}

Picture beside(std::vector<Picture> panels) {
  return arranged(std::move(panels), true);
}
Picture below(std::vector<Picture> panels) {
  return arranged(std::move(panels), false);
}

// ---- Colours and chains -----------------------------------------------------------------------------------

// Consecutive numbers get colours that lie far apart on the wheel.
Colour colour_of_number(int32_t number) {
  return hue(number * 137.5);
}

void draw_chain(Picture& picture, int32_t x0, int32_t y0, uint8_t* chain, int32_t n, Colour colour) {
  std::vector<int32_t> x(static_cast<std::size_t>(n) + 1);
  std::vector<int32_t> y(x.size());
  NuvChain2Points(x0, y0, chain, n, x.data(), y.data());
  for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
    NuvFillRGBRect(picture.pixels.data(), picture.width, picture.height, x[i], x[i], y[i], y[i], colour.r,
                   colour.g, colour.b);
  }
}

using Contours = std::unique_ptr<NUV_CONTOUR_STRUCT, decltype(&NuvFreeContours)>;

Contours outer_contours(Picture binary) {
  std::vector<uint8_t> work(binary.pixels.size());
  return {NuvGetContours(binary.pixels.data(), work.data(), binary.width, binary.height, 1, 0, 1),
          NuvFreeContours};
}

// ---- Histogram --------------------------------------------------------------------------------------------

Picture binarised(Picture gray) {
  NuvThreshold(gray.pixels.data(), gray.width, gray.height, otsu_threshold(gray));
  return gray;
}

Picture with_histogram(Picture gray) {
  Picture plot = blank(256, 56);
  NuvDrawHistogram2Img(histogram_of(gray).data(), 256, plot.pixels.data(), plot.width, plot.height);
  NuvFlipVertical(plot.pixels.data(), plot.width, plot.height, false);
  return below({gray, plot});
}

Picture equalised(const Photographs& photographs) {
  Picture dull = halved(photographs.camera);
  NuvGryImgNormalize(dull.pixels.data(), dull.width, dull.height, 110, 20);
  Picture result = dull;
  NuvHistogramEqualizeFast(result.pixels.data(), result.width, result.height);
  return beside({with_histogram(dull), with_histogram(result)});
}

Picture thresholded(const Photographs& photographs) {
  const Picture gray = halved(photographs.camera);
  return beside({gray, binarised(gray)});
}

// ---- Filters ----------------------------------------------------------------------------------------------

// The first call seeds the generator. A seed that is set after it takes effect, so the noise is always the
// same.
Picture noisy(Picture gray, double strength, uint32_t type) {
  Brindlemar2008AddNoise(nullptr, 0, strength, type);
  std::srand(1);
  Brindlemar2008AddNoise(gray.pixels.data(), static_cast<int32_t>(gray.pixels.size()), strength, type);
  return gray;
}

Picture median(Picture gray) {
  Picture result = blank_like(gray);
  NuvGryImgMedianBoundary0(gray.pixels.data(), gray.width, gray.height, 1, 1, result.pixels.data());
  return result;
}

// The picture without its outermost pixels, which these filters do not smooth.
Picture inner(const Picture& gray) {
  return cut(gray, 1, 1, gray.width - 2, gray.height - 2);
}

Picture smoothed(Picture gray, int32_t noise) {
  Picture result = gray;
  NuvGryZedFilter(gray.pixels.data(), gray.width, gray.height, noise, result.pixels.data());
  return result;
}

Picture salt_and_pepper(const Photographs& photographs) {
  const Picture gray = noisy(close_up(photographs), 12, 2);
  return beside({inner(gray), inner(median(gray))});
}

Picture grain(const Photographs& photographs) {
  Picture gray = close_up(photographs);
  NuvGryImgNormalize(gray.pixels.data(), gray.width, gray.height, 120, 50);
  gray = noisy(gray, 8, 0);
  return beside({inner(gray), inner(smoothed(smoothed(gray, 20), 12))});
}

// ---- Binary images ----------------------------------------------------------------------------------------

// Sets pixels to 255 that are brighter than the mean of their surroundings.
Picture bright_parts(Picture gray) {
  Picture mean = blank_like(gray);
  NuvGryAverageFilter(gray.pixels.data(), gray.width, gray.height, 40, 40, mean.pixels.data());
  NuvImg1Substract2To1(gray.pixels.data(), mean.pixels.data(), gray.width, gray.height);
  NuvThreshold(gray.pixels.data(), gray.width, gray.height, 18);
  return gray;
}

// Sets pixels to 255 if the mean of a square window of 2 * half + 1 pixels per side is above the threshold. A
// threshold of 0 grows, 127 smooths, 254 shrinks.
Picture box_filtered(Picture binary, int32_t half, int32_t threshold) {
  const int32_t side = 2 * half + 1;
  Picture result = blank_like(binary);
  NuvBinImgFilter(binary.pixels.data(), binary.width, binary.height, half, half,
                  static_cast<uint32_t>(side * side * threshold), result.pixels.data());
  return result;
}

// Closes rims, fills holes, removes specks and smooths outlines.
Picture cleaned(const Picture& binary) {
  Picture grown = box_filtered(box_filtered(binary, 1, 100), 1, 0);
  Picture filled = blank_like(grown);
  std::vector<uint8_t> work(grown.pixels.size());
  NuvRemoveBlackRegionsByArea(grown.pixels.data(), work.data(), grown.width, grown.height, 0, 400,
                              filled.pixels.data());
  Picture shrunk = box_filtered(filled, 1, 254);
  Picture kept = blank_like(shrunk);
  NuvRemoveWhiteRegionsByArea(shrunk.pixels.data(), work.data(), shrunk.width, shrunk.height, 1, 150,
                              kept.pixels.data());
  return box_filtered(kept, 2, 127);
}

Picture clean_up(const Photographs& photographs) {
  const Picture binary = bright_parts(small_coins(photographs));
  return beside({binary, cleaned(binary)});
}

Picture thinned(const Photographs&) {
  Picture text = blank(64, 24);
  std::string digits = "2357";
  NuvSetNumberString20x16GryImg(text.pixels.data(), text.width, text.height, 0, 2, -1, 0, 255, digits.data());
  const Picture strokes = binarised(resized(text, 8 * text.width, 8 * text.height));
  Picture source = strokes;
  Picture work = blank_like(strokes);
  Picture lines = blank_like(strokes);
  NuvBinImgThin(source.pixels.data(), work.pixels.data(), source.width, source.height, lines.pixels.data());
  Picture result = dimmed(strokes);
  NuvOROneChannelInRGB(result.pixels.data(), result.width, result.height, 1, lines.pixels.data());
  return result;
}

Picture numbered(const Photographs& photographs) {
  Picture binary = cleaned(bright_parts(small_coins(photographs)));
  std::vector<RLX> runs(binary.pixels.size(), RLX{0, 0, -1, 0});  // empty runs are not drawn
  NuvRLXRegionsWithID(binary.pixels.data(), binary.width, binary.height, 1, 1, runs.data(),
                      static_cast<int32_t>(runs.size()));
  Picture result = blank(binary.width, binary.height, 3);
  for (const RLX& run : runs) {
    const Colour colour = colour_of_number(run.ID);
    NuvFillRGBRect(result.pixels.data(), result.width, result.height, run.x1, run.x2, run.y, run.y, colour.r,
                   colour.g, colour.b);
  }
  return beside({binary, result});
}

// ---- Contours ---------------------------------------------------------------------------------------------

Picture outlined(const Photographs& photographs) {
  const Picture gray = small_coins(photographs);
  const Contours contours = outer_contours(cleaned(bright_parts(gray)));
  Picture result = dimmed(gray);
  int32_t number = 0;
  for (NUV_CONTOUR_STRUCT* c = contours.get(); c != nullptr; c = c->pNext) {
    draw_chain(result, c->x, c->y, c->pChainCode, c->N, {60, 220, 60});
    int32_t x = 0;
    int32_t y = 0;
    NuvContourCenter(c->x, c->y, c->pChainCode, c->N, &x, &y);
    std::string text = std::to_string(++number);
    NuvSetNumberString2RGBImg(result.pixels.data(), result.width, result.height,
                              x - 4 * static_cast<int32_t>(text.size()), y - 4, 0, 255, 255, 255,
                              text.data());
  }
  return beside({gray, result});
}

// ---- Edges ------------------------------------------------------------------------------------------------

Picture gradient(const Photographs& photographs) {
  Picture gray = close_up(photographs);
  Picture result = blank_like(gray);
  NuvGryImgSobel(gray.pixels.data(), gray.width, gray.height, result.pixels.data());
  return beside({gray, result});
}

Picture edges(const Photographs& photographs) {
  Picture gray = halved(photographs.camera);
  Picture work = blank_like(gray);
  Picture found = blank_like(gray);
  Picture kept = blank_like(gray);
  NuvShenJunEdgeFast(gray.pixels.data(), work.pixels.data(), gray.width, gray.height, 2, 28,
                     found.pixels.data());
  Picture source = found;
  NuvEdgeDeleteNoiseByLength(source.pixels.data(), gray.width, gray.height, 24, kept.pixels.data());
  return beside({found, kept});
}

// ---- Lines ------------------------------------------------------------------------------------------------

Picture chain_lines(const Photographs& photographs) {
  Picture gray = halved(photographs.camera);
  Picture result = dimmed(gray);
  NuvImgChainLines_Initialize(gray.width, gray.height, 0.9, 1.0, 12, 24, 1000);
  const int32_t n = NuvImgChainLines_DoGryImg(gray.pixels.data(), gray.width, gray.height, true);
  const TAVI_LINE_SEGMENT* segments = NuvImgChainLines_GetLines();
  for (const TAVI_LINE_SEGMENT* s = segments; s != segments + n; ++s) {
    const Colour colour = hue(2.0 * NuvABCLineAngleDegree2AxisX(s->A, s->B, s->C));
    NuvRGBLine(result.pixels.data(), result.width, result.height, s->x1, s->y1, s->x2, s->y2, colour.r,
               colour.g, colour.b);
  }
  return beside({gray, result});
}

// Five lines among specks. Noise has erased half of their pixels.
Picture hough_scene() {
  Picture scene = blank(256, 256);
  constexpr std::array<std::array<int32_t, 3>, 5> kLines = {
      {{128, 60, 10}, {70, 128, 75}, {190, 128, 105}, {128, 190, 160}, {128, 128, 45}}};
  for (const auto& [x, y, degrees] : kLines) {
    NuvDrawDegreeLine(scene.pixels.data(), scene.width, scene.height, x, y, degrees, 255);
  }
  Picture mask = noisy(blank(256, 256, 1, 255), 100, 2);
  NuvImg1AndImg2To1(scene.pixels.data(), mask.pixels.data(), static_cast<int32_t>(scene.pixels.size()));
  return noisy(scene, 5, 2);
}

Picture hough_lines(const Photographs&) {
  Picture scene = hough_scene();
  std::vector<int32_t> x;
  std::vector<int32_t> y;
  for (int32_t i = 0; i < scene.width * scene.height; ++i) {
    if (scene.pixels[static_cast<std::size_t>(i)] == 0) continue;
    x.push_back(i % scene.width);
    y.push_back(i / scene.width);
  }
  Picture result = dimmed(scene);
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
  int32_t thro = 0;
  int32_t theta = 0;
  NuvHoughLines_Initialize(scene.width, scene.height);
  int32_t strength =
      NuvHoughLines_HT(x.data(), y.data(), static_cast<int32_t>(x.size()), 0, 180, &a, &b, &c, &thro, &theta);
  while (strength >= 75) {
    int32_t is_vertical = 0;
    double k = 0.0;
    double kb = 0.0;
    NuvABCLine2KBLine(a, b, c, &is_vertical, &k, &kb);
    const Colour colour = hue(2.0 * theta);
    NuvDrawKBLine(result.pixels.data(), result.width, result.height, is_vertical, k, kb, colour.r, colour.g,
                  colour.b);
    strength = NuvHoughLines_GetNextLine(10, 10, &a, &b, &c, &thro, &theta);
  }
  return beside({scene, result});
}

// ---- Segmentation -----------------------------------------------------------------------------------------

Picture regions(const Photographs& photographs) {
  const Picture gray = small_coins(photographs);
  Picture source = gray;
  NuvInvertGryValue(source.pixels.data(), source.width, source.height);
  std::vector<uint8_t> work(2 * gray.pixels.size());
  const std::unique_ptr<RegionStruct, decltype(&NuvFreeRegionStruct)> list(
      NuvMergeSplit(source.pixels.data(), work.data(), gray.width, gray.height, 240, 0, 0.9),
      NuvFreeRegionStruct);
  Picture result = dimmed(gray);
  for (const RegionStruct* r = list.get(); r != nullptr; r = r->next) {
    draw_chain(result, r->x0, r->y0, r->pChainCode, r->N, colour_of_number(r->ID));
  }
  return beside({gray, result});
}

// ---- Transforms -------------------------------------------------------------------------------------------

// A rotated photograph and a part of it that is copied upright.
Picture turned(const Photographs& photographs) {
  constexpr double kAngle = 20.0;
  const double c = std::cos(kAngle * 3.14159 / 180);
  const double s = std::sin(kAngle * 3.14159 / 180);
  Picture gray = photographs.camera;
  Picture askew;
  const std::unique_ptr<uint8_t[]> pixels(
      NuvRotateImgByCCS(gray.pixels.data(), gray.width, gray.height, kAngle, &askew.width, &askew.height));
  if (!pixels) throw std::bad_alloc();
  askew.pixels.assign(pixels.get(), pixels.get() + static_cast<std::size_t>(askew.width) * askew.height);

  // The places of source pixels in the rotated picture. The lower left corner lies in column 0.
  const auto x_of = [&](double x, double y) { return static_cast<int32_t>(x * c + (gray.height - y) * s); };
  const auto y_of = [&](double x, double y) { return static_cast<int32_t>(x * s + y * c); };
  constexpr int32_t kLeft = 120;
  constexpr int32_t kTop = 50;
  Picture upright = blank(256, 200);
  NuvCopyRectFromRotateCCS(askew.pixels.data(), askew.width, askew.height, x_of(kLeft, kTop),
                           y_of(kLeft, kTop), kAngle, upright.pixels.data(), upright.width, upright.height);

  const int32_t right = kLeft + upright.width;
  const int32_t bottom = kTop + upright.height;
  std::array<int32_t, 4> x = {x_of(kLeft, kTop), x_of(right, kTop), x_of(right, bottom), x_of(kLeft, bottom)};
  std::array<int32_t, 4> y = {y_of(kLeft, kTop), y_of(right, kTop), y_of(right, bottom), y_of(kLeft, bottom)};
  Picture marked = resized(askew, 256, 256);
  for (int32_t& v : x) v = v * marked.width / askew.width;
  for (int32_t& v : y) v = v * marked.height / askew.height;
  NuvDrawPolygon(marked.pixels.data(), marked.width, marked.height, x.data(), y.data(), 4, 0, 0, 255);
  return beside({marked, upright});
}

Picture enlarged(const Photographs& photographs) {
  const Picture gray = cut(halved(photographs.camera), 80, 30, 64, 64);
  Picture squares = blank(256, 256);
  for (int32_t i = 0; i < 64 * 64; ++i) {
    const int32_t x = i % 64 * 4;
    const int32_t y = i / 64 * 4;
    NuvFillGryRect(squares.pixels.data(), 256, 256, x, x + 3, y, y + 3,
                   gray.pixels[static_cast<std::size_t>(i)]);
  }
  return beside({squares, resized(gray, 256, 256)});
}

// The difference of two pictures. Three coins are turned round in the second.
Picture changed(const Photographs& photographs) {
  Picture gray = resized(photographs.coins, 192, 152);
  Picture other = gray;
  constexpr std::array<std::array<int32_t, 3>, 3> kCoins = {{{92, 83, 27}, {63, 14, 27}, {123, 46, 26}}};
  for (const auto& [x, y, side] : kCoins) {
    Picture coin = cut(gray, x, y, side, side);
    Picture reversed = blank_like(coin);
    NuvReverseImg(coin.pixels.data(), side, side, reversed.pixels.data());
    paste(reversed, other, x, y);
  }
  Picture difference = blank_like(gray);
  NuvDifferenceImg12(gray.pixels.data(), other.pixels.data(), gray.width, gray.height, false,
                     difference.pixels.data());
  return beside({gray, other, difference});
}

// ---- Colour -----------------------------------------------------------------------------------------------

// Shows dark pixels in blue and bright ones in red.
Picture false_colours(const Picture& gray) {
  Picture result = blank(gray.width, gray.height, 3);
  auto out = result.pixels.begin();
  for (const uint8_t pixel : gray.pixels) {
    const Colour colour = hue(240.0 * (255 - pixel) / 255);
    for (const uint8_t byte : {colour.b, colour.g, colour.r}) *out++ = byte;
  }
  return result;
}

// A colour picture, the three planes of its frame, and the frame converted back to colour.
Picture frame(const Photographs& photographs) {
  Picture colour = false_colours(resized(close_up(photographs), 128, 128));
  const int32_t width = colour.width;
  const int32_t height = colour.height;
  std::vector<uint8_t> bytes(colour.pixels.size() / 2);
  NuvRGB2YUV420P(colour.pixels.data(), width, height, bytes.data());
  const auto plane = [bytes](int32_t w, int32_t h, int32_t offset) {
    return Picture{w, h, 1, std::vector<uint8_t>(bytes.begin() + offset, bytes.begin() + offset + w * h)};
  };
  const int32_t chroma = width * height / 4;
  Picture back = blank(width, height, 3);
  NuvYUV420P2RGB(bytes.data(), width, height, back.pixels.data());
  return beside({colour, plane(width, height, 0),
                 below({plane(width / 2, height / 2, 4 * chroma), plane(width / 2, height / 2, 5 * chroma)}),
                 back});
}

// ---- Drawing ----------------------------------------------------------------------------------------------

// A photograph with the sums of its columns below it and the sums of its rows at its side.
Picture projections(const Photographs& photographs) {
  Picture gray = halved(photographs.camera);
  std::vector<int32_t> columns(static_cast<std::size_t>(gray.width));
  std::vector<int32_t> rows(static_cast<std::size_t>(gray.height));
  NuvGryImgPrjXY(gray.pixels.data(), gray.width, gray.height, columns.data(), rows.data());
  Picture of_columns = blank(gray.width, 64);
  Picture of_rows = blank(64, gray.height);
  NuvDrawPrjX(of_columns.pixels.data(), of_columns.width, of_columns.height, columns.data(), gray.width, 128);
  NuvDrawPrjY(of_rows.pixels.data(), of_rows.width, of_rows.height, rows.data(), gray.height, 128);
  return below({beside({gray, of_rows}), of_columns});
}

// Draws a shape into some channels of a colour picture (0 blue, 1 green, 2 red). draw(layer, width, height)
// draws it into a gray image, because some exports draw only into gray images.
template <class Draw>
void draw_layer(Picture& picture, std::initializer_list<int32_t> channels, const Draw& draw) {
  Picture layer = blank_like(picture);
  draw(layer.pixels.data(), layer.width, layer.height);
  for (const int32_t channel : channels) {
    NuvOROneChannelInRGB(picture.pixels.data(), picture.width, picture.height, channel, layer.pixels.data());
  }
}

void draw_shapes(Picture& board) {
  constexpr int32_t kCentre = 84;
  constexpr int32_t kTips = 5;
  std::array<int32_t, kTips> x{};
  std::array<int32_t, kTips> y{};
  for (int32_t i = 0; i < kTips; ++i) {
    const double angle = (144.0 * i - 90) * 3.14159 / 180;
    x[static_cast<std::size_t>(i)] = static_cast<int32_t>(std::lround(60 * std::cos(angle)));
    y[static_cast<std::size_t>(i)] = static_cast<int32_t>(std::lround(60 * std::sin(angle)));
  }
  draw_layer(board, {1}, [](uint8_t* layer, int32_t width, int32_t height) {
    for (int32_t r = 12; r <= 72; r += 12) NuvDrawCircle(layer, width, height, kCentre, kCentre, 72, r, 120);
  });
  draw_layer(board, {2, 1}, [&x, &y](uint8_t* layer, int32_t width, int32_t height) {
    NuvDrawPolygon(layer, width, height, x.data(), y.data(), kTips, kCentre, kCentre, 255);
  });
  draw_layer(board, {2}, [&x, &y](uint8_t* layer, int32_t width, int32_t height) {
    for (std::size_t i = 0; i < kTips; ++i) {
      NuvDrawGryCross(layer, width, height, kCentre + x[i], kCentre + y[i], 9, 255);
    }
  });
}

void draw_arrows(Picture& board) {
  uint8_t* pixels = board.pixels.data();
  NuvDrawUpArrow(pixels, board.width, board.height, 250, 80, 60, 255, 120, 60);
  NuvDrawDownArrow(pixels, board.width, board.height, 250, 92, 60, 120, 255, 60);
  NuvDrawLeftArrow(pixels, board.width, board.height, 244, 86, 60, 60, 180, 255);
  NuvDrawRightArrow(pixels, board.width, board.height, 256, 86, 60, 255, 230, 60);
  draw_layer(board, {0, 1}, [](uint8_t* layer, int32_t width, int32_t height) {
    NuvDrawLeftArrow(layer, width, height, 190, 230, 24, 34, 255);
    NuvDrawRightArrow(layer, width, height, 270, 310, 24, 34, 255);
    NuvDrawLeftArrow(layer, width, height, 190, 230, 138, 148, 255);
    NuvDrawRightArrow(layer, width, height, 270, 310, 138, 148, 255);
  });
}

void draw_plot(Picture& board) {
  std::array<int32_t, 152> series{};
  for (std::size_t i = 0; i < series.size(); ++i) {
    const double t = static_cast<double>(i) / 16;
    series[i] = static_cast<int32_t>(1000 * (1 + std::sin(t) * std::cos(t / 6)));
  }
  Picture plot = blank(static_cast<int32_t>(series.size()), 56);
  NuvDrawPrjXMinV0(plot.pixels.data(), plot.width, plot.height, series.data(), plot.width, 200);
  paste(plot, board, 344, 116);
}

void draw_text(Picture& board) {
  uint8_t* pixels = board.pixels.data();
  std::string hanzi = "\xcd\xbc\xcf\xf1\xb4\xa6\xc0\xed";  // image processing, in GB2312
  NuvDrawChineseString32x32(pixels, board.width, board.height, 344, 24, 8, 24, 32, 56, 255, 230, 60,
                            hanzi.data());
  hanzi = "\xbb\xfa\xc6\xf7\xca\xd3\xbe\xf5";  // machine vision
  NuvDrawChineseString16x16(pixels, board.width, board.height, 344, 72, 8, 24, 32, 56, 120, 255, 60,
                            hanzi.data());
  std::string digits = "0123456789";
  NuvSetNumberString20x16RGBImg(pixels, board.width, board.height, 16, 200, 4, 24, 32, 56, 255, 255, 255,
                                digits.data());
  NuvSetPrivateLogo(pixels, board.width, board.height, true, 467, 205);
}

Picture board(const Photographs&) {
  Picture result = blank(512, 240, 3);
  NuvFillRGBRect(result.pixels.data(), result.width, result.height, 0, 511, 0, 239, 24, 32, 56);
  draw_shapes(result);
  draw_arrows(result);
  draw_plot(result);
  draw_text(result);
  return result;
}

// ---- The table --------------------------------------------------------------------------------------------

struct Entry {
  const char* name;
  Picture (*make)(const Photographs&);
};

constexpr Entry kGallery[] = {
    {"histogram_equalised", equalised},
    {"histogram_thresholded", thresholded},
    {"filters_salt_and_pepper", salt_and_pepper},
    {"filters_grain", grain},
    {"binary_clean_up", clean_up},
    {"binary_thinned", thinned},
    {"binary_numbered", numbered},
    {"contours_outlined", outlined},
    {"edges_gradient", gradient},
    {"edges_shen_jun", edges},
    {"lines_chains", chain_lines},
    {"lines_hough", hough_lines},
    {"segmentation_regions", regions},
    {"geometry_turned", turned},
    {"geometry_enlarged", enlarged},
    {"arithmetic_changed", changed},
    {"colour_frame", frame},
    {"drawing_projections", projections},
    {"drawing_board", board},
};

struct Options {
  std::string camera;
  std::string coins;
  std::string folder;
};

Picture read_gray(const std::string& file, int32_t width, int32_t height) {
  Picture picture = read_picture(file);
  return resized(to_gray(picture), width, height);
}

void run(const Options& options) {
  const Photographs photographs{read_gray(options.camera, 512, 512), read_gray(options.coins, 384, 303)};
  std::filesystem::create_directories(options.folder);
  for (const Entry& entry : kGallery) {
    Picture picture = entry.make(photographs);
    const std::string file = (std::filesystem::path(options.folder) / entry.name).string() + ".bmp";
    write_picture(picture, file);
    std::puts(file.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) try {
  Options options;
  CLI::App app("Makes the pictures of the gallery and prints the names of their files.");
  app.add_option("camera", options.camera, "photograph, made 512x512")->required();
  app.add_option("coins", options.coins, "photograph of bright parts on a dark ground, made 384x303")
      ->required();
  app.add_option("folder", options.folder, "folder to write BMP files to, made if missing")->required();
  app.footer("Hanzi are drawn if hzk16.dat (tools/make_hzk16) lies beside this program.");
  app.set_version_flag("--version", version_text("gallery"), "print the version and exit");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  run(options);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "gallery: %s\n", error.what());
  return 1;
}
