// A directory for the files of one test. No other test and no other run of the tests shares it.

#ifndef NUV_TESTS_TEMPORARY_DIRECTORY_H
#define NUV_TESTS_TEMPORARY_DIRECTORY_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#if defined(__wasi__)
#include <dirent.h>
#include <sys/stat.h>
#else
#include <filesystem>
#endif

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    remove();
#if defined(__wasi__)
    mkdir(path_.c_str(), 0777);
#else
    std::filesystem::create_directories(path_);
#endif
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() {
    remove();
  }

  const std::string& path() const {
    return path_;
  }
  std::string file(const std::string& name) const {
    return path_ + '/' + name;
  }

 private:
  static std::string name_of_test() {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    return std::string(test.test_suite_name()) + '_' + test.name();
  }

#if defined(__wasi__)
  // There is no std::filesystem, and a program sees only the directory that it lies in.
  void remove() const {
    if (DIR* directory = opendir(path_.c_str())) {
      while (const dirent* entry = readdir(directory)) unlink(file(entry->d_name).c_str());
      closedir(directory);
      rmdir(path_.c_str());
    }
  }

  std::string path_ = "/nuv_" + name_of_test();
#else
  void remove() const {
    std::filesystem::remove_all(path_);
  }

  std::string path_ =
      (std::filesystem::temp_directory_path() / ("nuv_" + std::to_string(getpid()) + '_' + name_of_test()))
          .string();
#endif
};

#endif
