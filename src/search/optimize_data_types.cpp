#include "search/optimize_data_types.h"

#include <sstream>

#include "shell/conversions.h"

namespace OptimizeInterface {
namespace {

std::vector<std::string> SplitAtWhitespace(std::string_view text) {
  std::istringstream stream{std::string(text)};
  std::vector<std::string> tokens;
  for (std::string token; stream >> token;) tokens.push_back(token);
  return tokens;
}

}  // namespace

DataType::DataType(std::string name, std::int32_t size) : name_(std::move(name)), size_(size) {}

void DataType::CheckInitialized() const {
  if (!initialized_) throw DataTypeException("not initialized");
}

void DataType::CheckIndex(std::int32_t index) const {
  if (index < 0 || index >= size_) throw DataTypeException("index out of bounds");
}

void DataType::CheckSize(std::size_t size) const {
  if (size != static_cast<std::size_t>(size_)) throw DataTypeException("invalid size");
}

template <typename T>
void Elements<T>::SetFromText(std::string_view text) {
  const std::vector<std::string> tokens = SplitAtWhitespace(text);
  CheckSize(tokens.size());
  std::vector<T> values;
  for (const std::string& token : tokens) values.push_back(ParseElement(token));
  Assign(std::move(values));
}

template <typename T>
std::string Elements<T>::ToText() const {
  CheckInitialized();
  std::string text;
  for (const T value : values_) {
    if (!text.empty()) text += ' ';
    text += FormatElement(value);
  }
  return text;
}

template class Elements<std::int32_t>;
template class Elements<std::uint8_t>;

Integer::Integer(std::string name, std::int32_t size, std::int32_t minimum, std::int32_t maximum)
    : Elements(std::move(name), size), minimum_(minimum), maximum_(maximum) {}

std::string Integer::MinimumText() const { return IntToString(minimum_); }
std::string Integer::MaximumText() const { return IntToString(maximum_); }

std::int32_t Integer::ParseElement(const std::string& token) const {
  std::int32_t value;
  try {
    value = StringToInt(token);
  } catch (const string_conversion_error&) {
    throw DataTypeException("could not parse integer: " + token);
  }
  if (value < minimum_ || value > maximum_) throw DataTypeException("value out of bounds");
  return value;
}

std::string Integer::FormatElement(std::int32_t value) const { return IntToString(value); }

Boolean::Boolean(std::string name, std::int32_t size) : Elements(std::move(name), size) {}

std::uint8_t Boolean::ParseElement(const std::string& token) const {
  if (token == "true") return 1;
  if (token == "false") return 0;
  throw DataTypeException("could not parse boolean: " + token);
}

std::string Boolean::FormatElement(std::uint8_t value) const { return value ? "true" : "false"; }

}  // namespace OptimizeInterface
