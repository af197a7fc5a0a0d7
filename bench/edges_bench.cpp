#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"
#include "vips_work.h"

namespace {

using Gradient = void (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using WindowGradient = void (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, uint8_t*);

auto gradient_work(Gradient gradient) {
  return [=, picture = gray_picture(), result = gray_picture()]() mutable {
    gradient(picture.data(), picture.width, picture.height, result.data());
  };
}

auto window_work(WindowGradient gradient) {
  return [=, picture = gray_picture(), result = gray_picture()]() mutable {
    gradient(picture.data(), picture.width, picture.height, 3, 3, result.data());
  };
}

// Half sizes of 15 by 15 and of 15 by 16, because windows that are higher than wide have code of their own.
auto large_window_work(int32_t m, int32_t n) {
  return [=, picture = gray_picture(), result = gray_picture()]() mutable {
    NuvGradientByPrewitt(picture.data(), picture.width, picture.height, m, n, result.data());
  };
}

const Row sobel("NuvGryImgSobel/nuv", [] { return gradient_work(NuvGryImgSobel); });
const Row robert("NuvRobert/nuv", [] { return gradient_work(NuvRobert); });
const Row robert_copy("NuvRobert/copy", [] { return copy_of_bytes(1280 * 960); });
const Row prewitt_0("NuvGradientByPrewitt0/nuv", [] { return window_work(NuvGradientByPrewitt0); });
const Row prewitt_90("NuvGradientByPrewitt90/nuv", [] { return window_work(NuvGradientByPrewitt90); });
const Row prewitt_0_5x5("NuvGradient0ByPrewitt5x5/nuv",
                        [] { return gradient_work(NuvGradient0ByPrewitt5x5); });
const Row prewitt_15_15("NuvGradientByPrewitt 15,15/nuv", [] { return large_window_work(15, 15); });
const Row prewitt_15_16("NuvGradientByPrewitt 15,16/nuv", [] { return large_window_work(15, 16); });
const Row prewitt("NuvGradientByPrewitt/nuv", [] { return window_work(NuvGradientByPrewitt); });

// Sums of the four directions in windows of 7 by 7 pixels, pixel by pixel.
void plain_four_directions(const uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
  constexpr int32_t kHalf = 3;
  constexpr int32_t kSize = 2 * kHalf + 1;
  int32_t d4 = 0;
  for (int32_t y = kHalf; y < height - kHalf; ++y) {
    for (int32_t x = kHalf; x < width - kHalf; ++x) {
      int32_t d1 = 0;
      int32_t d2 = 0;
      int32_t d3 = 0;
      int32_t falling = 0;
      const auto side = [](int32_t i, int32_t line) { return i < line ? 1 : i > line ? -1 : 0; };
      for (int32_t r = 0; r < kSize; ++r) {
        const uint8_t* row = p + (y - kHalf + r) * width + x - kHalf;
        for (int32_t c = 0; c < kSize; ++c) {
          d1 += side(r, kHalf) * row[c];
          d2 += side(c, kHalf) * row[c];
          d3 += side(c, kSize - 1 - r) * row[c];
          falling += side(c, r) * row[c];
        }
      }
      if (falling > 0) d4 = falling;
      const int32_t mean = (std::abs(d1) + std::abs(d2) + std::abs(d3) + d4) / 4;
      result[y * width + x] = static_cast<uint8_t>(d4 >= 255 ? 255 : std::min(mean, 255));
    }
  }
}
const Row prewitt_plain("NuvGradientByPrewitt/plain", [] {
  return [picture = gray_picture(), result = gray_picture()]() mutable {
    plain_four_directions(picture.data(), picture.width, picture.height, result.data());
  };
});

const Row local_range("NuvEdgeTripeDetection/nuv", [] {
  return [picture = gray_picture(), result = gray_picture()]() mutable {
    std::array<int32_t, 256> bins;
    NuvEdgeTripeDetection(picture.data(), picture.width, picture.height, 3, 3, result.data(), bins.data());
  };
});

const Row shen_jun("NuvShenJunEdgeFast/nuv", [] {
  return [picture = gray_picture(), scratch = gray_picture(), edges = gray_picture()]() mutable {
    NuvShenJunEdgeFast(picture.data(), scratch.data(), picture.width, picture.height, 2, 24, edges.data());
  };
});

// The strongest gradients of the photograph with noise among them, which gives many end points.
BenchPicture broken_edges() {
  BenchPicture picture = gray_picture();
  BenchPicture edges = picture;
  NuvGryImgSobel(picture.data(), picture.width, picture.height, edges.data());
  NuvThreshold(edges.data(), edges.width, edges.height, 100);
  uint32_t noise = 1;
  for (uint8_t& pixel : edges.pixels) {
    noise = noise * 1664525 + 1013904223;
    if (noise >> 24 < 12) pixel = 255;
  }
  return edges;
}

auto connect_work(int32_t gap) {
  BenchPicture mask = gray_picture();
  std::fill(mask.pixels.begin(), mask.pixels.end(), uint8_t{255});
  return [=, broken = broken_edges(), edges = broken_edges()]() mutable {
    edges.pixels = broken.pixels;
    NuvConnectEdge(edges.data(), mask.data(), edges.width, edges.height, gap);
  };
}
const Row connect_5("NuvConnectEdge gap 5/nuv", [] { return connect_work(5); });
const Row connect_20("NuvConnectEdge gap 20/nuv", [] { return connect_work(20); });
const Row connect_80("NuvConnectEdge gap 80/nuv", [] { return connect_work(80); });

const Row two_points("NuvExtractTwoEdgePointPerCol/nuv", [] {
  return [picture = gray_picture(), first = std::vector<int32_t>(1280),
          second = std::vector<int32_t>(1280)]() mutable {
    NuvExtractTwoEdgePointPerCol(picture.data(), picture.width, 10, 0, picture.width - 1, 0,
                                 picture.height - 1, first.data(), second.data());
  };
});

auto fine_work(int32_t width, int32_t height) {
  BenchPicture picture = gray_picture(width, height);
  return [picture, edges = picture, smoothed = LineVector<double>(picture.pixels.size())]() mutable {
    NuvShenJunEdgeFine(picture.data(), smoothed.data(), picture.width, picture.height, 0.25, 6, edges.data());
  };
}
const Row fine("NuvShenJunEdgeFine/nuv", [] { return fine_work(1280, 960); });
const Row fine_large("NuvShenJunEdgeFine 2560x1920/nuv", [] { return fine_work(2560, 1920); });

#if NUV_WITH_OPENCV
// The greater of the two differences of neighbours, by three passes over the interior.
const Row cv_robert("NuvRobert/opencv absdiff x2 + max", [] {
  return [picture = gray_picture(), across = cv::Mat(), down = cv::Mat(),
          result = cv::Mat(960, 1280, CV_8UC1)]() mutable {
    const auto moved = [image = picture.mat()](int x, int y) { return image(cv::Rect(x, y, 1278, 958)); };
    cv::absdiff(moved(2, 1), moved(0, 1), across);
    cv::absdiff(moved(1, 2), moved(1, 0), down);
    cv::Mat inner = result(cv::Rect(1, 1, 1278, 958));
    cv::max(across, down, inner);
  };
});

const Row cv_sobel("NuvGryImgSobel/opencv Sobel x2 + add", [] {
  return [picture = gray_picture(), x = cv::Mat(), y = cv::Mat(), result = cv::Mat()]() mutable {
    cv::Sobel(picture.mat(), x, CV_16S, 1, 0);
    cv::Sobel(picture.mat(), y, CV_16S, 0, 1);
    cv::convertScaleAbs(x, x);
    cv::convertScaleAbs(y, y);
    cv::add(x, y, result);
  };
});

auto filter_work(bool rows_differ, int half = 3) {
  const int size = 2 * half + 1;
  cv::Mat kernel = cv::Mat::zeros(size, size, CV_32F);
  for (int r = 0; r < size; ++r) {
    for (int c = 0; c < size; ++c) {
      const int i = rows_differ ? r : c;
      kernel.at<float>(r, c) = i < half ? 1.0F : i > half ? -1.0F : 0.0F;
    }
  }
  return [=, picture = gray_picture(), filtered = cv::Mat(), result = cv::Mat()]() mutable {
    cv::filter2D(picture.mat(), filtered, CV_16S, kernel);
    cv::convertScaleAbs(filtered, result);
  };
}
const Row filter_0_5x5("NuvGradient0ByPrewitt5x5/opencv filter2D + convertScaleAbs",
                       [] { return filter_work(true, 2); });
const Row filter_0("NuvGradientByPrewitt0/opencv filter2D + convertScaleAbs",
                   [] { return filter_work(true); });
const Row filter_90("NuvGradientByPrewitt90/opencv filter2D + convertScaleAbs",
                    [] { return filter_work(false); });

// The export also computes a histogram, so the peer does, too.
const Row morphology("NuvEdgeTripeDetection/opencv dilate + erode + subtract + calcHist", [] {
  const cv::Mat window = cv::getStructuringElement(cv::MORPH_RECT, {7, 7});
  return [=, picture = gray_picture(), most = cv::Mat(), least = cv::Mat(), result = cv::Mat(),
          bins = cv::Mat()]() mutable {
    cv::dilate(picture.mat(), most, window);
    cv::erode(picture.mat(), least, window);
    cv::subtract(most, least, result);
    const int channel = 0;
    const int size = 256;
    const float range[] = {0, 256};
    const float* ranges = range;
    cv::calcHist(&result, 1, &channel, cv::Mat(), bins, 1, &size, &ranges);
  };
});

// Canny also smooths, and follows edges from strong pixels. It is the peer of every Shen-Jun form.
auto canny_work(int32_t width, int32_t height) {
  return [picture = gray_picture(width, height), edges = cv::Mat()]() mutable {
    cv::Canny(picture.mat(), edges, 50, 100);
  };
}
const Row canny("NuvShenJunEdgeFast/opencv Canny", [] { return canny_work(1280, 960); });
const Row fine_canny("NuvShenJunEdgeFine/opencv Canny", [] { return canny_work(1280, 960); });
const Row fine_canny_large("NuvShenJunEdgeFine 2560x1920/opencv Canny",
                           [] { return canny_work(2560, 1920); });

// The peer finds the strongest pixel of each column; the export finds two edge points.
const Row strongest_of_columns("NuvExtractTwoEdgePointPerCol/opencv reduce", [] {
  return [picture = gray_picture(), most = cv::Mat()]() mutable {
    cv::reduce(picture.mat(), most, 0, cv::REDUCE_MAX);
  };
});
#endif

#if NUV_WITH_VIPS
const VipsRow vips_sobel_row("NuvGryImgSobel/vips sobel", [] {
  return vips_work(gray_picture(),
                   [](VipsImage* image, VipsImage** result) { return vips_sobel(image, result, nullptr); });
});
#endif

}  // namespace
