#pragma once

// The kinds of payload, one for each family of classes.

#include "embedded/scripting_array/array.hpp"

#include <complex>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kmf::embedded {

/// Numbers of any class. They come and go as doubles through the interface, so they are kept as such.
class NumericPayload : public Payload {
 public:
  NumericPayload(Shape its_shape, bool is_complex);

  Payload* clone() const override { return new NumericPayload(*this); }
  Payload* gathered(Shape new_shape, const std::vector<std::size_t>& sources) const override;

  std::vector<double> real;
  std::vector<double> imaginary;  ///< as long as `real` for a complex array, empty for a real one
  bool complex = false;
};

class TextPayload : public Payload {
 public:
  TextPayload(Shape its_shape, ustring characters) : Payload(std::move(its_shape)), text(std::move(characters)) {}

  Payload* clone() const override { return new TextPayload(*this); }
  Payload* gathered(Shape new_shape, const std::vector<std::size_t>& sources) const override;

  ustring text;
};

/// Inner arrays, owned. A null stands for an empty array.
class Places {
 public:
  explicit Places(std::size_t count) : arrays_(count) {}
  Places(const Places& other);
  Places(Places&&) noexcept = default;
  Places& operator=(Places&& other) noexcept {
    arrays_.swap(other.arrays_);
    return *this;
  }
  ~Places();

  std::size_t size() const noexcept { return arrays_.size(); }
  const cvArray_tag* get(std::size_t i) const noexcept { return arrays_[i] ? arrays_[i] : empty_array(); }
  void set(std::size_t i, cvArray_tag* value) noexcept;  ///< takes over `value`
  Places gathered(const std::vector<std::size_t>& sources) const;
  void release(ArrayChain& out) noexcept;

 private:
  std::vector<cvArray_tag*> arrays_;
};

class CellPayload : public Payload {
 public:
  explicit CellPayload(Shape its_shape) : Payload(std::move(its_shape)), places(shape.count()) {}

  Payload* clone() const override { return new CellPayload(*this); }
  Payload* gathered(Shape new_shape, const std::vector<std::size_t>& sources) const override;
  void release_children(ArrayChain& out) noexcept override { places.release(out); }

  Places places;
};

/// Names in the order in which they were added, each with one place for every element.
class Fields {
 public:
  explicit Fields(std::size_t elements) : elements_(elements) {}

  std::size_t size() const noexcept { return names_.size(); }
  const std::vector<std::string>& names() const noexcept { return names_; }
  const Places& places(std::size_t field) const noexcept { return places_[field]; }
  Places& places(std::size_t field) noexcept { return places_[field]; }
  int find(std::string_view name) const;
  /// The number of the field, which is added where it is missing.
  std::size_t add(std::string_view name);
  Fields gathered(const std::vector<std::size_t>& sources) const;
  void release(ArrayChain& out) noexcept;

 private:
  std::size_t elements_;
  std::vector<std::string> names_;
  std::vector<Places> places_;
  std::unordered_map<std::string, int> index_;  ///< only where there are many fields
};

class StructPayload : public Payload {
 public:
  explicit StructPayload(Shape its_shape) : Payload(std::move(its_shape)), fields(shape.count()) {}

  Payload* clone() const override { return new StructPayload(*this); }
  Payload* gathered(Shape new_shape, const std::vector<std::size_t>& sources) const override;
  void release_children(ArrayChain& out) noexcept override { fields.release(out); }

  Fields fields;
};

/// One object: its class, its properties, and what stands behind it.
class ObjectPayload : public Payload {
 public:
  ObjectPayload(std::string name, std::shared_ptr<void> its_native)
      : Payload(Shape(1, 1)), class_name(std::move(name)), native(std::move(its_native)), properties(1) {}

  Payload* clone() const override { return new ObjectPayload(*this); }
  Payload* gathered(Shape, const std::vector<std::size_t>&) const override { return clone(); }
  void release_children(ArrayChain& out) noexcept override { properties.release(out); }
  /// Whether what stands behind two objects of one class is equal.
  virtual bool same_natives(const ObjectPayload& other) const { return native == other.native; }
  /// A new array of the class with new objects at all places; null for classes whose arrays hold one object only.
  virtual ObjectPayload* of_shape(Shape) const { return nullptr; }
  /// Puts an object of an array of the same class to a place. Only for what `of_shape` gives.
  virtual void put(std::size_t, const ObjectPayload&, std::size_t) {}

  std::string class_name;
  std::shared_ptr<void> native;
  Fields properties;
};

class FunctionPayload : public Payload {
 public:
  FunctionPayload(std::string its_text, std::shared_ptr<void> its_callable)
      : Payload(Shape(1, 1)), text(std::move(its_text)), callable(std::move(its_callable)) {}

  Payload* clone() const override { return new FunctionPayload(*this); }
  Payload* gathered(Shape, const std::vector<std::size_t>&) const override { return clone(); }

  std::string text;
  std::shared_ptr<void> callable;
};

}  // namespace kmf::embedded
