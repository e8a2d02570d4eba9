// Tries the files that it is given, one after the other.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

// The fuzzer that this is linked with.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// What only libFuzzer has, for the fuzzers that bring changes of their own: nothing changes here.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* /*data*/, std::size_t size,
                                        std::size_t /*max_size*/) {
  return size;
}

int main(int count, char** arguments) {
  for (const char* const name : std::vector<const char*>(arguments + 1, arguments + count)) {
    std::ifstream file(name, std::ios::binary);
    if (!file) {
      std::cerr << name << ": cannot be read\n";
      return 1;
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    std::cerr << name << '\n';
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
}
