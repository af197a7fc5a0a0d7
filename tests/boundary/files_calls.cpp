#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "boundary/calls.h"

namespace {

using namespace calls;

// ---- Texts and files ----

constexpr char kPicture[] = "boundary_picture.bmp";
constexpr char kList[] = "boundary_list.txt";
constexpr char kNowhere[] = "boundary_nowhere/file";
#if defined(_WIN32)
constexpr char kLog[] = "d:\\tmp\\NuvDebugInfo.txt";
#else
constexpr char kLog[] = "/tmp/NuvDebugInfo.txt";
#endif

// A text whose terminating zero is the last byte of its memory.
char* text_in(Scene& s, const std::string& text) {
  char* memory = s.memory<char>(text.size() + 1);
  std::copy_n(text.c_str(), text.size() + 1, memory);
  return memory;
}

std::string word(Scene& s, const std::string& letters, int32_t longest) {
  std::string word(static_cast<std::size_t>(s.between(0, longest)), ' ');
  for (char& c : word)
    c = letters[static_cast<std::size_t>(s.between(0, static_cast<int32_t>(letters.size()) - 1))];
  return word;
}

void write_file(const char* name, const std::string& bytes) {
  std::ofstream(name, std::ios::binary) << bytes;
}
std::string content(const char* name, std::ios::openmode mode = std::ios::binary) {
  std::ifstream file(name, std::ios::in | mode);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void add_text(Scene& s, const std::string& text) {
  for (char c : text) s.add_result(c);
}

// ---- Bitmaps ----

// In a hostile scene the header of the file may state any size, and the file may end anywhere.
std::string bitmap(Scene& s, int32_t channels) {
  const int32_t offset = channels == 1 ? 1078 : 54;
  std::string bytes(static_cast<std::size_t>(offset), '\0');
  const auto put = [&bytes](std::size_t at, int32_t value) {
    for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(static_cast<uint32_t>(value) >> 8 * i);
  };
  const auto sometimes_wild = [&s](int32_t value) {
    return s.hostile && s.between(0, 3) == 0 ? s.integer(0, 1100) : value;
  };
  put(0, 0x4D42);
  put(10, sometimes_wild(offset));
  put(14, 40);
  put(18, sometimes_wild(s.width));
  put(22, sometimes_wild(s.height));
  put(26, 1 + (8 * channels << 16));
  const std::size_t row = (Scene::length(s.width) * static_cast<std::size_t>(channels) + 3) / 4 * 4;
  for (std::size_t left = row * Scene::length(s.height); left > 0; --left) {
    bytes += static_cast<char>(s.between(0, 255));
  }
  if (s.hostile && s.between(0, 3) == 0) bytes.resize(s.between(0, static_cast<int32_t>(bytes.size())));
  return bytes;
}

auto reads_bitmap(int32_t channels) {
  return [=](Scene& s, auto read) {
    if (!s.hostile || s.between(0, 7) != 0) write_file(kPicture, bitmap(s, channels));
    const char* name = text_in(s, kPicture);
    int32_t* width = integer_result(s);
    int32_t* height = integer_result(s);
    s.remember();
    uint8_t* image = read(name, width, height);
    s.add_result(image != nullptr);
    if (image != nullptr)
      add_text(s, {image, image + Scene::area(*width, *height) * static_cast<std::size_t>(channels)});
    delete[] image;
    std::remove(kPicture);
  };
}

auto writes_bitmap(int32_t channels) {
  return [=](Scene& s, auto write) {
    uint8_t* image = s.picture(channels);
    const char* name = text_in(s, s.hostile ? s.one_of({kPicture, kNowhere, ""}) : kPicture);
    run(s, write, image, s.width, s.height, name);
    add_text(s, content(kPicture));
    std::remove(kPicture);
  };
}

// ---- Lists of files ----

// Lines, some with blanks at their ends, and a rest without a line end.
std::string list_text(Scene& s) {
  std::string text;
  for (int32_t i = 0; i < s.count; ++i) {
    text += word(s, s.hostile ? std::string("a \r\n\t\0", 6) : "abc.\\  ", 20) + "\r\n";
  }
  return text + word(s, "ab", 3);
}

template <class Initialize>
void read_list(Scene& s, Initialize initialize) {
  if (!s.hostile || s.between(0, 7) != 0) write_file(kList, list_text(s));
  char* name =
      text_in(s, s.hostile && s.between(0, 3) == 0 ? std::string(s.between(1000, 1100), 'a') : kList);
  run(s, initialize, name);
  std::remove(kList);
}

template <class Get>
void get_line(Scene& s, Get get) {
  const int32_t size = s.hostile ? s.count : s.between(8, 24);
  char* line = reinterpret_cast<char*>(s.noise(Scene::length(size)));
  run(s, get, line, size);
}

}  // namespace

Calls file_calls() {
  return {
      EXPORT_BY(NuvGetFileNakeName, void, (char*, char*),
                [](Scene& s, auto get) {
                  const std::string path = word(s, "ab.\\/ ", 30);
                  char* name = text_in(s, path);
                  const std::size_t bare = path.size() - (path.rfind('\\') + 1);
                  char* result = s.between(0, 3) == 0 ? name : s.memory<char>(bare + 1);
                  run(s, get, name, result);
                }),
      EXPORT_BY(NuvRead8BitBmpFile2Img, uint8_t*, (const char*, int32_t*, int32_t*), reads_bitmap(1))
          .with_state(),
      EXPORT_BY(NuvWrite8BitImg2BmpFile, bool, (uint8_t*, int32_t, int32_t, const char*), writes_bitmap(1))
          .with_state(),
      EXPORT_BY(NuvWrite8BitImg2BmpFileMarkColor, bool, (uint8_t*, int32_t, int32_t, const char*),
                writes_bitmap(1))
          .with_state(),
      EXPORT_BY(NuvRead24BitBmpFile2Img, uint8_t*, (const char*, int32_t*, int32_t*), reads_bitmap(3))
          .with_state(),
      EXPORT_BY(NuvWrite24BitImg2BmpFile, bool, (uint8_t*, int32_t, int32_t, const char*), writes_bitmap(3))
          .with_state(),

      EXPORT_BY(NuvSequenceFiles_Initialize, bool, (char*),
                [](Scene& s, auto initialize) {
                  read_list(s, initialize);
                  get_line(s, NuvSequenceFiles_GetNextFileName);
                })
          .with_state(),
      EXPORT_BY(NuvSequenceFiles_GetNextFileName, bool, (char*, int32_t),
                [](Scene& s, auto get) {
                  read_list(s, NuvSequenceFiles_Initialize);
                  for (int32_t lines = s.between(1, 20); lines > 0; --lines) get_line(s, get);
                })
          .with_state(),
      EXPORT_BY(NuvSequenceFiles_GetFileName, bool, (int32_t, char*, int32_t),
                [](Scene& s, auto get) {
                  read_list(s, NuvSequenceFiles_Initialize);
                  const int32_t index = s.integer(0, 20);
                  get_line(s, [=](char* line, int32_t size) { return get(index, line, size); });
                })
          .with_state(),

      EXPORT_BY(NuvDebugInfo, void, (char*, int32_t),
                [](Scene& s, auto log) {
                  std::remove(kLog);
                  std::string lines;
                  for (int i = 0; i < 2; ++i) {
                    const std::string text = word(s, "abc %sdn\n,", 40);
                    const int32_t value = s.integer(-1000, 1000);
                    run(s, log, text_in(s, text), value);
                    lines += "\n" + text + "," + std::to_string(value);
                  }
                  // If the directory of the log is missing, lines are lost.
                  const std::string logged = content(kLog, std::ios::openmode{});
                  s.add_result(logged.empty() || logged == lines);
                  std::remove(kLog);
                })
          .with_state(),
  };
}
