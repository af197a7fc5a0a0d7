// Camera frames. Where libyuv has no function for a conversion, two of its functions convert in turn, row by
// row.

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_LIBYUV
#include <libyuv.h>
#endif

namespace {

using Conversion = bool (*)(uint8_t*, int32_t, int32_t, uint8_t*);

// A camera frame of the photograph and room for RGB pixels.
struct Camera {
  BenchPicture rgb = colour_picture();
  int width = rgb.width;
  int height = rgb.height;
  LineVector<uint8_t> frame = LineVector<uint8_t>(rgb.pixels.size());

  explicit Camera(Conversion from_rgb) { from_rgb(rgb.data(), width, height, frame.data()); }
  uint8_t* luma() { return frame.data(); }
  uint8_t* chroma() { return luma() + width * height; }
};

auto to_rgb_work(Conversion from_rgb, Conversion to_rgb) {
  return [=, camera = Camera(from_rgb)]() mutable {
    to_rgb(camera.luma(), camera.width, camera.height, camera.rgb.data());
  };
}

auto from_rgb_work(Conversion from_rgb) {
  return [=, camera = Camera(from_rgb)]() mutable {
    from_rgb(camera.rgb.data(), camera.width, camera.height, camera.luma());
  };
}

const Row packed_to_rgb("NuvCbYCrY2RGB/nuv", [] { return to_rgb_work(NuvRGB2CbYCrY, NuvCbYCrY2RGB); });
const Row sp_to_rgb("NuvYUV420SP2RGB/nuv", [] { return to_rgb_work(NuvRGB2YUV420SP, NuvYUV420SP2RGB); });
const Row p_to_rgb("NuvYUV420P2RGB/nuv", [] { return to_rgb_work(NuvRGB2YUV420P, NuvYUV420P2RGB); });
const Row p422_to_rgb("NuvYUV422P2RGB/nuv", [] { return to_rgb_work(NuvRGB2YUV422P, NuvYUV422P2RGB); });
const Row packed_from_rgb("NuvRGB2CbYCrY/nuv", [] { return from_rgb_work(NuvRGB2CbYCrY); });
const Row sp_from_rgb("NuvRGB2YUV420SP/nuv", [] { return from_rgb_work(NuvRGB2YUV420SP); });
const Row p_from_rgb("NuvRGB2YUV420P/nuv", [] { return from_rgb_work(NuvRGB2YUV420P); });
const Row packed_to_gray("NuvCbYCrY2Gry/nuv", [] {
  return [camera = Camera(NuvRGB2CbYCrY), gray = gray_picture()]() mutable {
    NuvCbYCrY2Gry(camera.luma(), camera.width, camera.height, gray.data());
  };
});

#if NUV_WITH_OPENCV
auto cvt_color_work(Conversion from_rgb, int code, int channels, int rows) {
  return [=, camera = Camera(from_rgb), result = cv::Mat()]() mutable {
    const int type = channels == 1 ? CV_8UC1 : CV_8UC2;
    cv::cvtColor(cv::Mat(rows, camera.width, type, camera.luma()), result, code);
  };
}

const Row cv_packed("NuvCbYCrY2RGB/opencv cvtColor",
                    [] { return cvt_color_work(NuvRGB2CbYCrY, cv::COLOR_YUV2BGR_UYVY, 2, 960); });
const Row cv_packed_gray("NuvCbYCrY2Gry/opencv cvtColor",
                         [] { return cvt_color_work(NuvRGB2CbYCrY, cv::COLOR_YUV2GRAY_UYVY, 2, 960); });
const Row cv_sp("NuvYUV420SP2RGB/opencv cvtColor",
                [] { return cvt_color_work(NuvRGB2YUV420SP, cv::COLOR_YUV2BGR_NV12, 1, 1440); });
const Row cv_p("NuvYUV420P2RGB/opencv cvtColor",
               [] { return cvt_color_work(NuvRGB2YUV420P, cv::COLOR_YUV2BGR_I420, 1, 1440); });
const Row cv_to_p("NuvRGB2YUV420P/opencv cvtColor", [] {
  return [picture = colour_picture(), frame = cv::Mat()]() mutable {
    cv::cvtColor(picture.mat(), frame, cv::COLOR_BGR2YUV_I420);
  };
});
#endif

#if NUV_WITH_LIBYUV
const Row yuv_sp("NuvYUV420SP2RGB/libyuv NV12ToRGB24", [] {
  return [c = Camera(NuvRGB2YUV420SP)]() mutable {
    libyuv::NV12ToRGB24(c.luma(), c.width, c.chroma(), c.width, c.rgb.data(), 3 * c.width, c.width, c.height);
  };
});
const Row yuv_p("NuvYUV420P2RGB/libyuv J420ToRGB24", [] {
  return [c = Camera(NuvRGB2YUV420P)]() mutable {
    libyuv::J420ToRGB24(c.luma(), c.width, c.chroma(), c.width / 2, c.chroma() + c.width * c.height / 4,
                        c.width / 2, c.rgb.data(), 3 * c.width, c.width, c.height);
  };
});
const Row yuv_422("NuvYUV422P2RGB/libyuv I422ToRGB24", [] {
  return [c = Camera(NuvRGB2YUV422P)]() mutable {
    libyuv::I422ToRGB24(c.luma(), c.width, c.chroma(), c.width / 2, c.chroma() + c.width * c.height / 2,
                        c.width / 2, c.rgb.data(), 3 * c.width, c.width, c.height);
  };
});
const Row yuv_to_p("NuvRGB2YUV420P/libyuv RGB24ToJ420", [] {
  return [c = Camera(NuvRGB2YUV420P)]() mutable {
    libyuv::RGB24ToJ420(c.rgb.data(), 3 * c.width, c.luma(), c.width, c.chroma(), c.width / 2,
                        c.chroma() + c.width * c.height / 4, c.width / 2, c.width, c.height);
  };
});

// The functions above average the colours of four pixels and convert the mean. The library converts every pixel and
// averages the chroma. This is the same work by the peer: chroma for every pixel, then means of 2x2.
auto chroma_of_every_pixel(Conversion from_rgb, bool in_pairs) {
  return
      [=, c = Camera(from_rgb), rows = LineVector<uint8_t>(2 * 4 * 1280), u = LineVector<uint8_t>(2 * 1280),
       v = LineVector<uint8_t>(2 * 1280), means = LineVector<uint8_t>(1280)]() mutable {
        const int w = c.width;
        for (int y = 0; y < c.height; y += 2) {
          libyuv::RGB24ToARGB(c.rgb.data() + 3 * y * w, 3 * w, rows.data(), 4 * w, w, 2);
          libyuv::ARGBToI444(rows.data(), 4 * w, c.luma() + y * w, w, u.data(), w, v.data(), w, w, 2);
          uint8_t* cb = in_pairs ? means.data() : c.chroma() + y / 2 * (w / 2);
          uint8_t* cr = in_pairs ? means.data() + w / 2 : c.chroma() + w * c.height / 4 + y / 2 * (w / 2);
          libyuv::ScalePlane(u.data(), w, w, 2, cb, w / 2, w / 2, 1, libyuv::kFilterBox);
          libyuv::ScalePlane(v.data(), w, w, 2, cr, w / 2, w / 2, 1, libyuv::kFilterBox);
          if (in_pairs) libyuv::MergeUVPlane(cb, w / 2, cr, w / 2, c.chroma() + y / 2 * w, w, w / 2, 1);
        }
      };
}
const Row yuv_every_p("NuvRGB2YUV420P/libyuv ARGBToI444 + ScalePlane",
                      [] { return chroma_of_every_pixel(NuvRGB2YUV420P, false); });
const Row yuv_every_sp("NuvRGB2YUV420SP/libyuv ARGBToI444 + ScalePlane",
                       [] { return chroma_of_every_pixel(NuvRGB2YUV420SP, true); });

// These conversions use rows with four bytes per pixel in between.
const Row yuv_packed("NuvCbYCrY2RGB/libyuv UYVYToARGB + ARGBToRGB24", [] {
  return [c = Camera(NuvRGB2CbYCrY), row = LineVector<uint8_t>(4 * 1280)]() mutable {
    for (int y = 0; y < c.height; ++y) {
      libyuv::UYVYToARGB(c.luma() + 2 * y * c.width, 2 * c.width, row.data(), 4 * c.width, c.width, 1);
      libyuv::ARGBToRGB24(row.data(), 4 * c.width, c.rgb.data() + 3 * y * c.width, 3 * c.width, c.width, 1);
    }
  };
});
const Row yuv_to_packed("NuvRGB2CbYCrY/libyuv RGB24ToARGB + ARGBToUYVY", [] {
  return [c = Camera(NuvRGB2CbYCrY), row = LineVector<uint8_t>(4 * 1280)]() mutable {
    for (int y = 0; y < c.height; ++y) {
      libyuv::RGB24ToARGB(c.rgb.data() + 3 * y * c.width, 3 * c.width, row.data(), 4 * c.width, c.width, 1);
      libyuv::ARGBToUYVY(row.data(), 4 * c.width, c.luma() + 2 * y * c.width, 2 * c.width, c.width, 1);
    }
  };
});
const Row yuv_to_sp("NuvRGB2YUV420SP/libyuv RGB24ToARGB + ARGBToNV12", [] {
  return [c = Camera(NuvRGB2YUV420SP), rows = LineVector<uint8_t>(2 * 4 * 1280)]() mutable {
    for (int y = 0; y < c.height; y += 2) {
      libyuv::RGB24ToARGB(c.rgb.data() + 3 * y * c.width, 3 * c.width, rows.data(), 4 * c.width, c.width, 2);
      libyuv::ARGBToNV12(rows.data(), 4 * c.width, c.luma() + y * c.width, c.width,
                         c.chroma() + y / 2 * c.width, c.width, c.width, 2);
    }
  };
});
#endif

}  // namespace
