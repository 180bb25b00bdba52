// A setting as the outside world sees it: a named list of typed values with a legal range, which
// reads and writes itself as text. Values are checked completely before any of them is stored.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/brask_exception.h"

namespace OptimizeInterface {

class DataType {
 public:
  class DataTypeException : public BraskException {
   public:
    using BraskException::BraskException;
  };

  DataType(std::string name, std::int32_t size);
  virtual ~DataType() = default;
  DataType(const DataType&) = delete;
  DataType& operator=(const DataType&) = delete;

  // Exactly `size` values separated by whitespace; on any failure the old value stays.
  virtual void SetFromText(std::string_view text) = 0;
  // The values separated by one blank.
  virtual std::string ToText() const = 0;
  virtual std::string TypeName() const = 0;
  virtual std::string MinimumText() const = 0;
  virtual std::string MaximumText() const = 0;

  const std::string& Name() const { return name_; }
  std::int32_t Size() const { return size_; }
  bool Initialized() const { return initialized_; }

 protected:
  void CheckInitialized() const;
  void CheckIndex(std::int32_t index) const;
  void CheckSize(std::size_t size) const;

  std::string name_;
  std::int32_t size_;
  bool initialized_ = false;
};

// The storage and text handling that integers and booleans share; T is the element type.
template <typename T>
class Elements : public DataType {
 public:
  using DataType::DataType;

  T Element(std::int32_t index) const {
    CheckInitialized();
    CheckIndex(index);
    return values_[static_cast<std::size_t>(index)];
  }

  void Assign(std::vector<T> values) {
    CheckSize(values.size());
    values_ = std::move(values);
    initialized_ = true;
  }

  void SetFromText(std::string_view text) final;
  std::string ToText() const final;

 protected:
  // Both throw DataTypeException with the text of the failure.
  virtual T ParseElement(const std::string& token) const = 0;
  virtual std::string FormatElement(T value) const = 0;

 private:
  std::vector<T> values_;
};

class Integer final : public Elements<std::int32_t> {
 public:
  Integer(std::string name, std::int32_t size, std::int32_t minimum, std::int32_t maximum);

  std::string TypeName() const override { return "integer"; }
  std::string MinimumText() const override;
  std::string MaximumText() const override;
  std::int32_t Minimum() const { return minimum_; }
  std::int32_t Maximum() const { return maximum_; }

 protected:
  std::int32_t ParseElement(const std::string& token) const override;
  std::string FormatElement(std::int32_t value) const override;

 private:
  std::int32_t minimum_;
  std::int32_t maximum_;
};

// Elements are bytes, 0 or 1.
class Boolean final : public Elements<std::uint8_t> {
 public:
  Boolean(std::string name, std::int32_t size);

  std::string TypeName() const override { return "boolean"; }
  std::string MinimumText() const override { return "false"; }
  std::string MaximumText() const override { return "true"; }

 protected:
  std::uint8_t ParseElement(const std::string& token) const override;
  std::string FormatElement(std::uint8_t value) const override;
};

}  // namespace OptimizeInterface
