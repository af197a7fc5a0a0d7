// Runs the Hough detector with any points in every form of the transform and fetches all lines.

#include "input.h"
#include "nuv/lines.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  Input input(data, size);
  for (int32_t round = input.between(1, 3); round > 0; --round) {
    NuvHoughLines_Initialize(input.between(0, 80), input.between(0, 80));
    const int32_t n = input.between(0, 40);
    const auto count = static_cast<std::size_t>(n);
    std::vector<int32_t> x(count);
    std::vector<int32_t> y(count);
    std::vector<int32_t> thetas(count);
    const bool wild = input.any<uint8_t>() % 8 == 0;
    for (std::size_t i = 0; i < count; ++i) {
      x[i] = wild ? input.number() : input.between(0, 79);
      y[i] = wild ? input.number() : input.between(0, 79);
      thetas[i] = wild ? input.number() : input.between(0, 180);
    }
    double a = 0;
    double b = 0;
    double c = 0;
    int32_t thro = 0;
    int32_t theta = 0;
    int32_t strength = 0;
    const int32_t form = input.between(0, 2);
    if (form == 0) {
      strength =
          NuvHoughLines_HT(x.data(), y.data(), n, input.number(), input.number(), &a, &b, &c, &thro, &theta);
    } else if (form == 1) {
      bool mask[181];
      for (bool& enabled : mask) enabled = input.flag();
      strength = NuvHoughLines_HT(x.data(), y.data(), n, mask, &a, &b, &c, &thro, &theta);
    } else {
      bool mask[40];
      for (bool& left_out : mask) left_out = input.flag();
      strength = NuvHoughLines_HT(x.data(), y.data(), thetas.data(), mask, n, input.number(), &a, &b, &c,
                                  &thro, &theta);
    }
    NUV_CHECK(strength >= 0);
    for (int32_t i = input.between(0, 30); i > 0; --i) {
      const int32_t next =
          NuvHoughLines_GetNextLine(input.number(), input.number(), &a, &b, &c, &thro, &theta);
      NUV_CHECK(next >= 0);
      if (next == 0) break;
    }
    uint8_t image[20 * 20];
    NuvHoughLines_Debug(image, 20, 20, 255);
  }
  return 0;
}
