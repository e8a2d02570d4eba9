// What tests of files share: a folder of their own and whole files.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace test_support {

inline void write_file(const std::string& path, std::string_view text) {
  std::ofstream file(path, std::ios::binary);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

inline std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// An empty folder that vanishes with the object. Its path holds no blank.
class TestFolder {
 public:
  TestFolder() {
    std::string name = "/tmp/sdpsol_test_XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = name;
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string path() const { return path_.string(); }
  std::string path(std::string_view name) const { return (path_ / name).string(); }

  /// Writes a file and returns its path.
  std::string file(std::string_view name, std::string_view text) const {
    write_file(path(name), text);
    return path(name);
  }

  bool exists(std::string_view name) const { return std::filesystem::exists(path_ / name); }

  /// The names of all that is in it, sorted; links are not followed.
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      found.push_back(entry.path().filename().string());
    }
    std::sort(found.begin(), found.end());
    return found;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace test_support
