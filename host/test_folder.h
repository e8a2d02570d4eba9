// A folder of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zelhost {

/// Empty at first, gone with the object.
class TestFolder {
 public:
  TestFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zelhost.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = name;
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  TestFolder(TestFolder&&) = delete;
  TestFolder& operator=(TestFolder&&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// @return the file's path.
  std::filesystem::path write(std::string_view name, std::string_view text) const {
    const auto file = path_ / name;
    std::ofstream out(file, std::ios::binary);
    out << text;
    if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
    return file;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace zelhost
