// Runs the example gallery, which makes the pictures of docs/gallery.md, as a user does.

#include <gmock/gmock.h>

#include <iterator>
#include <sstream>

#include "examples/hosts.h"
#include "picture.h"

namespace {

namespace fs = std::filesystem;

class Gallery : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_GALLERY, arguments); }
};

TEST_F(Gallery, MakesThePicturesThatTheDocumentShows) {
  const Outcome outcome = run(NUV_PHOTOGRAPH " " NUV_COINS " made/pictures");
  ASSERT_EQ(outcome.status, 0) << outcome.err;

  const std::string document = text_of(NUV_GALLERY_DOCUMENT);
  std::istringstream names(outcome.out);
  int count = 0;
  for (std::string name; std::getline(names, name); ++count) {
    const Picture picture = read_picture((dir_ / name).string());
    EXPECT_GE(picture.width, 300) << name;
    EXPECT_GE(picture.height, 128) << name;
    EXPECT_THAT(document, testing::HasSubstr("(pictures/" + fs::path(name).stem().string() + ".png)"));
  }
  EXPECT_GE(count, 10);
  const fs::directory_iterator made(dir_ / "made/pictures");
  EXPECT_EQ(std::distance(fs::begin(made), fs::end(made)), count);
}

TEST_F(Gallery, RefusesBadInput) {
  EXPECT_EQ(run(NUV_PHOTOGRAPH " none.bmp made").status, 1);
  write("file", {0});
  EXPECT_EQ(run(NUV_PHOTOGRAPH " " NUV_COINS " file").status, 1);
}

}  // namespace
