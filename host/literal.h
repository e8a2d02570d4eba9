// Values of ports as JSON, in both directions.
#pragma once

#include "host/json_reader.h"
#include "host/port.h"

namespace zelhost {

/// A value for a port from JSON. Floats: numbers, or "nan", "inf", "-inf"; for
/// more than one a list, a list of equally long lists (rows), or a list of such lists
/// of one size (matrices), read row after row.
/// A port of one float takes a number without a list too. Text: a text, or a list
/// of lines, each of which gets a line break.
/// @throws JsonError that names the element and what would be right.
/// Cost: one pass over the numbers.
PortValue read_value(const JsonNode& node, PortType type);

/// The double nearest to the shortest digits that read back as the float: JSON writes it
/// with the same digits again.
double shortest(float number);

/// The value as JSON: a number for a port of one float, a list for more, a text,
/// null for none. Numbers are the shortest that read back as the same float;
/// "nan", "inf" and "-inf" stand for those that JSON has not.
Json to_json(const PortValue& value, PortType type);

}  // namespace zelhost
