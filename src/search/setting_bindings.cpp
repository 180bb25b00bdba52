#include "search/setting_bindings.h"

#include <vector>

#include "search/optimize_data_types.h"
#include "shell/checked_assert.h"

namespace OptimizeInterface {

std::unique_ptr<DataType> SettingBinding::MakeEmpty() const {
  if (booleans) return std::make_unique<Boolean>(std::string(name), size);
  return std::make_unique<Integer>(std::string(name), size, minimum, maximum);
}

std::unique_ptr<DataType> SettingBinding::Snapshot() const {
  const std::size_t count = static_cast<std::size_t>(size);
  if (booleans) {
    auto variable = std::make_unique<Boolean>(std::string(name), size);
    variable->Assign(std::vector<std::uint8_t>(booleans, booleans + count));
    return variable;
  }
  auto variable = std::make_unique<Integer>(std::string(name), size, minimum, maximum);
  variable->Assign(std::vector<std::int32_t>(integers, integers + count));
  return variable;
}

void SettingBinding::Store(const DataType& variable) const {
  // Checked before the first element is stored, so that a global is never half written.
  CHECKED_ASSERT(variable.Name() == name && variable.Size() == size && variable.Initialized(),
                 "only a complete variable can be stored, and only into its own global");
  if (booleans) {
    const auto& boolean = dynamic_cast<const Boolean&>(variable);
    for (std::int32_t i = 0; i < size; ++i) booleans[i] = boolean.Element(i) != 0;
  } else {
    const auto& integer = dynamic_cast<const Integer&>(variable);
    for (std::int32_t i = 0; i < size; ++i) integers[i] = integer.Element(i);
  }
}

}  // namespace OptimizeInterface
