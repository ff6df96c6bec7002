#pragma once

// Look-ups and casts whose failures look the same on every standard library and every Boost.

#include <boost/lexical_cast.hpp>

#include <stdexcept>
#include <string>

namespace kmf {

/// A failed cast from text, with one fixed text.
class BadLexicalCast : public boost::bad_lexical_cast {
 public:
  const char* what() const noexcept override { return "bad cast"; }
};

/// `boost::lexical_cast`, raising `BadLexicalCast`.
template <class Target, class Source>
Target lexical_cast(const Source& source) {
  try {
    return boost::lexical_cast<Target>(source);
  } catch (const boost::bad_lexical_cast&) {
    throw BadLexicalCast();
  }
}

namespace detail {
template <class Map, class Key>
auto& at_or_throw(Map& map, const Key& key, const char* text) {
  const auto found = map.find(key);
  if (found == map.end()) throw std::out_of_range(text);
  return found->second;
}
}  // namespace detail

/// @throws std::out_of_range "invalid map<K, T> key"
template <class Map, class Key>
auto& map_at(Map& map, const Key& key) {
  return detail::at_or_throw(map, key, "invalid map<K, T> key");
}

/// For `std::unordered_map`. @throws std::out_of_range "invalid unordered_map<K, T> key"
template <class Map, class Key>
auto& unordered_map_at(Map& map, const Key& key) {
  return detail::at_or_throw(map, key, "invalid unordered_map<K, T> key");
}

/// For `boost::unordered_map`. @throws std::out_of_range "Unable to find key in unordered_map."
template <class Map, class Key>
auto& boost_unordered_map_at(Map& map, const Key& key) {
  return detail::at_or_throw(map, key, "Unable to find key in unordered_map.");
}

}  // namespace kmf
