// A directory for the files of one test. No other test and no other run of the tests shares it.

#ifndef NUV_TESTS_TEMPORARY_DIRECTORY_H
#define NUV_TESTS_TEMPORARY_DIRECTORY_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            ("nuv_" + std::to_string(getpid()) + '_' + test.test_suite_name() + '_' + test.name());
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() { std::filesystem::remove_all(path_); }

  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

#endif
