#include "domains/physical/boundary.hpp"

#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::physical {

namespace {

/// As many names as a reader takes in at once; the error's objects hold all of them.
constexpr std::size_t names_in_text = 5;

std::string first_names(const std::vector<ustring>& paths) {
  std::string names;
  for (std::size_t i = 0; i < paths.size() && i < names_in_text; ++i)
    names += (i == 0 ? "'" : ", '") + kmf::ustring_to_utf8_string(paths[i]) + "'";
  return paths.size() > names_in_text ? names + ", ..." : names;
}

}  // namespace

void refuse_crossing(const std::vector<gl::core::Component>& components) {
  std::vector<ustring> paths;
  for (const gl::core::Component& component : components) paths.push_back(gl::core::object(component));
  kmf::MessageException error{kmf::Message(kmf::MessageId("kinemo:physical:compile", "NetworkCrossesAtomicSubsystem",
                                                          first_names(paths), std::to_string(paths.size())))};
  for (const ustring& path : paths) error.addObject(path);
  throw error;
}

}  // namespace kinemo::physical
