// write_pages FOLDER: writes the page of each sample there, for browsers to open.
#include <fstream>
#include <iostream>
#include <string>

#include "grasp/page_html.h"
#include "tests/grasp/page_samples.h"

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: write_pages FOLDER\n";
    return 2;
  }
  for (const page_samples::Sample& sample : page_samples::all_samples()) {
    const std::string path = std::string(arguments[1]) + "/" + sample.file + ".html";
    std::ofstream file(path, std::ios::binary);
    file << grasp::draw_html(sample.grasp, sample.answer);
    if (!file.flush()) {
      std::cerr << "cannot write " << path << '\n';
      return 1;
    }
  }
  return 0;
}
