// BMP files in the directory for temporary files.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_OPENCV
#include <opencv2/imgcodecs.hpp>
#endif

namespace {

// A temporary file that is deleted with the last copy of its owner.
class BenchFile {
 public:
  explicit BenchFile(const char* name)
      : path_(new std::string((std::filesystem::temp_directory_path() / name).string()),
              [](const std::string* path) {
                std::remove(path->c_str());
                delete path;
              }) {}
  const std::string& path() const { return *path_; }

 private:
  std::shared_ptr<const std::string> path_;
};

using Write = bool (*)(uint8_t*, int32_t, int32_t, const char*);
using Read = uint8_t* (*)(const char*, int32_t*, int32_t*);

auto write_work(Write write, BenchPicture picture, const char* name) {
  return [=, file = BenchFile(name)]() mutable {
    write(picture.data(), picture.width, picture.height, file.path().c_str());
  };
}
auto read_work(Write write, Read read, BenchPicture picture, const char* name) {
  const BenchFile file(name);
  write(picture.data(), picture.width, picture.height, file.path().c_str());
  return [=] {
    int32_t width = 0;
    int32_t height = 0;
    const std::unique_ptr<uint8_t[]> pixels(read(file.path().c_str(), &width, &height));
    benchmark::DoNotOptimize(pixels.get());
  };
}

const Row write_8("NuvWrite8BitImg2BmpFile/nuv",
                  [] { return write_work(NuvWrite8BitImg2BmpFile, gray_picture(), "nuv_bench_w8.bmp"); });
const Row write_24("NuvWrite24BitImg2BmpFile/nuv", [] {
  return write_work(NuvWrite24BitImg2BmpFile, colour_picture(), "nuv_bench_w24.bmp");
});
const Row read_8("NuvRead8BitBmpFile2Img/nuv", [] {
  return read_work(NuvWrite8BitImg2BmpFile, NuvRead8BitBmpFile2Img, gray_picture(), "nuv_bench_r8.bmp");
});
const Row read_24("NuvRead24BitBmpFile2Img/nuv", [] {
  return read_work(NuvWrite24BitImg2BmpFile, NuvRead24BitBmpFile2Img, colour_picture(), "nuv_bench_r24.bmp");
});

#if NUV_WITH_OPENCV
auto cv_write_work(BenchPicture picture, const char* name) {
  return [=, file = BenchFile(name)]() mutable { cv::imwrite(file.path(), picture.mat()); };
}
auto cv_read_work(Write write, BenchPicture picture, const char* name) {
  const BenchFile file(name);
  write(picture.data(), picture.width, picture.height, file.path().c_str());
  return [=] { benchmark::DoNotOptimize(cv::imread(file.path(), cv::IMREAD_UNCHANGED).data); };
}
const Row cv_write_8("NuvWrite8BitImg2BmpFile/opencv imwrite",
                     [] { return cv_write_work(gray_picture(), "cv_bench_w8.bmp"); });
const Row cv_write_24("NuvWrite24BitImg2BmpFile/opencv imwrite",
                      [] { return cv_write_work(colour_picture(), "cv_bench_w24.bmp"); });
const Row cv_read_8("NuvRead8BitBmpFile2Img/opencv imread",
                    [] { return cv_read_work(NuvWrite8BitImg2BmpFile, gray_picture(), "cv_bench_r8.bmp"); });
const Row cv_read_24("NuvRead24BitBmpFile2Img/opencv imread", [] {
  return cv_read_work(NuvWrite24BitImg2BmpFile, colour_picture(), "cv_bench_r24.bmp");
});
#endif

}  // namespace
