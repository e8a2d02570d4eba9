#include "grasp/batch/line_answer.h"

#include <nlohmann/json.hpp>

#include "host/json_reader.h"
#include "host/text.h"

namespace grasp {

using zelhost::Json;

LineAnswer error_line(std::uint64_t number, std::string_view name, std::string_view why) {
  Json line = {{"line", number}};
  if (!name.empty()) line["name"] = name;
  line["error"] = zelhost::on_one_line(why);
  // A name may be any bytes.
  return {"", line.dump(-1, ' ', false, Json::error_handler_t::replace)};
}

}  // namespace grasp
