#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "formats/names.hpp"
#include "platform/block_diagram/library.hpp"
#include "views/block_library.hpp"

#include <algorithm>

namespace kinemo::app {

namespace {

/// The block of that name, or those whose names it begins. @throws UsageError where there are none
std::vector<std::string> select(const std::string& name) {
  const std::vector<std::string> all = gt_prototype_names();
  if (name.empty()) return all;
  if (std::find(all.begin(), all.end(), name) != all.end()) return {name};
  std::vector<std::string> some;
  const std::string start = name.back() == '/' ? name : name + "/";
  std::copy_if(all.begin(), all.end(), std::back_inserter(some),
               [&](const std::string& candidate) { return candidate.compare(0, start.size(), start) == 0; });
  if (some.empty()) throw UsageError("the library has no block '" + name + "'" + formats::did_you_mean(name, all));
  return some;
}

}  // namespace

int run_blocks(Session& session) {
  const std::vector<std::string> names = select(session.options().block);
  const std::vector<views::LibraryBlock> blocks = views::describe_blocks(names);
  Output output(session.options().output);
  if (session.options().format == "json") {
    views::write_library_json(output.stream(), blocks);
  } else if (blocks.size() == 1 && blocks.front().name == session.options().block) {
    views::write_block_text(output.stream(), blocks.front());
  } else {
    views::write_library_text(output.stream(), blocks);
  }
  output.commit();
  return exit_code::clean;
}

}  // namespace kinemo::app
