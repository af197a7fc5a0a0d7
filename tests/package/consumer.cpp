// A host that needs no more than C++11.
#include <NuvImgSDK2014DLL.h>

#include <cstdio>

int main() {
  uint8_t image[25] = {};
  NuvFillGryRect(image, 5, 5, 1, 3, 1, 3, 255);
  uint8_t work[25];
  NUV_CONTOUR_STRUCT* contours = NuvGetContours(image, work, 5, 5, 0, 0, 0);
  const int32_t area = contours != nullptr ? contours->area : 0;
  NuvFreeContours(contours);
  std::printf("area %d\n", area);
  return area == 9 ? 0 : 1;
}
