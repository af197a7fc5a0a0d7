// Finds the straight edges of a gray photograph: find_lines PICTURE.bmp
#include <nuvimgsdk_c.h>
#include <stdio.h>

int main(int argc, char** argv) {
  int32_t width, height;
  uint8_t* gray = argc == 2 ? NuvRead8BitBmpFile2Img(argv[1], &width, &height) : NULL;
  if (gray == NULL || !NuvImgChainLines_Initialize(width, height, 0.9, 1.0, 25, 24, 3601)) return 1;
  const int32_t n = NuvImgChainLines_DoGryImg(gray, width, height, true);
  const TAVI_LINE_SEGMENT* s = NuvImgChainLines_GetLines();
  for (int32_t i = 0; i < n; ++i) printf("%d,%d,%d,%d\n", s[i].x1, s[i].y1, s[i].x2, s[i].y2);
  nuv_free(gray);
  return 0;
}
