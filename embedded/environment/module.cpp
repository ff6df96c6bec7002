#include "embedded/environment/module.hpp"

#include "platform/foundation/exception.hpp"

#include <boost/dll/shared_library.hpp>

namespace embedded {

namespace {

constexpr const char* kGroup = "kinemo:host:modules";
constexpr const char* kSymbol = "kinemo_domain_module";

std::unique_ptr<boost::dll::shared_library> open(const std::string& file) {
  try {
    // Global look-up stays off: two domains may use one name for different things.
    return std::make_unique<boost::dll::shared_library>(file, boost::dll::load_mode::rtld_now);
  } catch (const boost::system::system_error& error) {
    kmf::throw_message(kGroup, "CannotOpenModule", file, std::string(error.what()));
  }
}

const KinemoDomainModule* describe(boost::dll::shared_library& library, const std::string& file) {
  if (!library.has(kSymbol)) kmf::throw_message(kGroup, "NotADomainModule", file);
  const auto* description = &library.get<const KinemoDomainModule>(kSymbol);
  if (description->abi != KINEMO_DOMAIN_ABI) {
    kmf::throw_message(kGroup, "ModuleDoesNotFit", file, std::to_string(description->abi),
                       std::to_string(KINEMO_DOMAIN_ABI));
  }
  return description;
}

}  // namespace

Module::Module(const std::string& file, GtBlockContext* context)
    : library_(open(file)), description_(describe(*library_, file)) {
  try {
    description_->load(context);
  } catch (...) {
    description_->unload();
    throw;
  }
}

Module::~Module() {
  description_->unload();
}

}  // namespace embedded
