// Images for tests: drawn as text, or random.

#ifndef NUV_TESTS_IMAGES_H
#define NUV_TESTS_IMAGES_H

#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct TestImage {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> pixels;

  TestImage() = default;
  TestImage(int32_t w, int32_t h, uint8_t value = 0)
      : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), value) {}

  uint8_t* data() { return pixels.data(); }
  uint8_t& at(int32_t x, int32_t y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
  uint8_t at(int32_t x, int32_t y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }

  friend bool operator==(const TestImage& a, const TestImage& b) {
    return a.width == b.width && a.height == b.height && a.pixels == b.pixels;
  }
  // Draws the image in the notation of draw(). Other values stand in angle brackets.
  friend std::ostream& operator<<(std::ostream& out, const TestImage& image) {
    for (int32_t y = 0; y < image.height; ++y) {
      out << '\n';
      for (int32_t x = 0; x < image.width; ++x) {
        const int value = image.at(x, y);
        if (value == 0 || value == 255) {
          out << (value == 0 ? '.' : '#');
        } else {
          out << '<' << value << '>';
        }
      }
    }
    return out;
  }
};

// An image from rows of text: '#' is 255, '.' is 0, and a digit is its own value.
inline TestImage draw(std::initializer_list<std::string_view> rows) {
  TestImage image(static_cast<int32_t>(rows.begin()->size()), static_cast<int32_t>(rows.size()));
  auto pixel = image.pixels.begin();
  for (std::string_view row : rows) {
    for (char c : row) *pixel++ = c == '#' ? 255 : c == '.' ? 0 : static_cast<uint8_t>(c - '0');
  }
  return image;
}

inline TestImage transposed(const TestImage& image) {
  TestImage result(image.height, image.width);
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) result.at(y, x) = image.at(x, y);
  }
  return result;
}

class Random {
 public:
  explicit Random(uint32_t seed) : engine_(seed) {}

  // A number from low to high, both included. All platforms compute the same numbers.
  int32_t between(int32_t low, int32_t high) {
    return low + static_cast<int32_t>(engine_() % (static_cast<uint32_t>(high - low) + 1));
  }

  std::vector<uint8_t> bytes(std::size_t count) {
    std::vector<uint8_t> result(count);
    for (uint8_t& byte : result) byte = static_cast<uint8_t>(between(0, 255));
    return result;
  }

  TestImage gray(int32_t width, int32_t height) {
    TestImage image(width, height);
    image.pixels = bytes(image.pixels.size());
    return image;
  }

  // All values lie in a random range, so that images reach from flat ones and weak noise to all values.
  TestImage gray_in_a_range(int32_t width, int32_t height) {
    TestImage image(width, height);
    const int32_t low = between(0, 255);
    const int32_t high = between(low, 255);
    for (uint8_t& pixel : image.pixels) pixel = static_cast<uint8_t>(between(low, high));
    return image;
  }

  // Noise of random strength, from black to a random value.
  TestImage noise(int32_t width, int32_t height) {
    TestImage image(width, height);
    const int32_t most = between(1, 255);
    for (uint8_t& pixel : image.pixels) pixel = static_cast<uint8_t>(between(0, most));
    return image;
  }

  // Each pixel is 255 with the given probability in percent, else 0.
  TestImage binary(int32_t width, int32_t height, int32_t percent) {
    TestImage image(width, height);
    for (uint8_t& pixel : image.pixels) pixel = between(1, 100) <= percent ? 255 : 0;
    return image;
  }

 private:
  std::mt19937 engine_;
};

// Odd, wide and tall sizes, sizes near those of vectors, and single pixels.
inline const std::pair<int32_t, int32_t> kOddSizes[] = {{1, 1},  {1, 40},  {40, 1},  {2, 3},   {3, 3},
                                                        {5, 7},  {15, 16}, {16, 17}, {17, 33}, {31, 5},
                                                        {64, 9}, {65, 34}, {3, 129}, {257, 3}, {1100, 4}};

#endif
