#include "boundary/calls.h"

namespace {

using namespace calls;

uint8_t level_of_binary(Scene& s) {
  return s.one_of<uint8_t>({0, 255, 128});
}

}  // namespace

Calls arithmetic_calls() {
  return {
      EXPORT(NuvImg1Substract2To1, gray, gray, width, height),
      EXPORT(NuvImg1Substract2To2, gray, gray, width, height),
      EXPORT(NuvImg1SubstractImg2, image, image, width, height, in_color, image_result),
      EXPORT(NuvImg1Difference2To1, gray, gray, width, height),
      EXPORT(NuvDifferenceImg12, image, image, width, height, in_color, gray_result),
      EXPORT(NuvDifferenceImg12, image, image, width, height, in_color, gray_result, histogram_result),
      EXPORT(NuvImg1AndImg2To1, bytes(counted), bytes(counted), count),
      EXPORT(NuvImg1AndImg2ToRes, bytes(counted), bytes(counted), count, bytes(counted)),
      EXPORT(NuvImg1XorImg2To1, bytes(counted), bytes(counted), count),
      EXPORT(NuvImg1XorImg2ToRes, bytes(counted), bytes(counted), count, bytes(counted)),
      EXPORT(NuvImg1OrImg2To1, bytes(counted), bytes(counted), count),
      EXPORT(NuvImg1OrImg2ToRes, bytes(counted), bytes(counted), count, bytes(counted)),
      EXPORT(NuvRemainMaxGry, image, width, height, in_color, image),
      EXPORT(NuvRemainMinGry, image, width, height, in_color, image),
      EXPORT(NuvRemainMaxMinGry, image, width, height, in_color, image, image),

      EXPORT(NuvDoSumGryImg, gray, width, height, integers(pixels, -9, 9)),

      EXPORT(NuvInvertGryValue, gray, width, height),
      EXPORT(NuvInvertGryValue, gray, width, height, gray_result),
      EXPORT(NuvGryImgNormalize, gray, width, height, integer(0, 255), integer(0, 99)),
      EXPORT(NuvGryImg4Bit, gray, width, height),
      EXPORT(NuvSetPixelsTo255, binary, width, inner_x1, inner_x2, inner_y1, inner_y2, level_of_binary),
      EXPORT(NuvSetOddPixelsTo255, gray, width, height),
      EXPORT(NuvChange0and250PlusPixels, bytes(pixels), width, height),
      EXPORT(NuvCorrectPixelsGryValueByRow, gray, width, height, real(0.5, 2.5)),
      EXPORT(NuvCorrectPixelsGryValueByCol, gray, width, height, real(0.5, 2.5)),
      EXPORT(NuvLightCorretPerRow, gray, width, height),
      EXPORT(NuvLightCorretPerCol, gray, width, height),
      EXPORT(NuvSetImageBoundary, gray, width, height, color),
      EXPORT(NuvSetRGBImageBoundary, rgb, width, height, color),

      EXPORT(NuvPasteGryImg2ResImg, gray, width, height, bytes(result_pixels), result_width, result_height,
             integer(-9, 18), integer(-9, 18)),
      EXPORT(NuvPasteGryImg2RGBImg, gray, width, height, bytes(result_rgb), result_width, result_height,
             integer(-9, 18), integer(-9, 18)),
      EXPORT(NuvPasteRGBImg2ResImg, rgb, width, height, bytes(result_rgb), result_width, result_height,
             integer(-9, 18), integer(-9, 18)),
  };
}
