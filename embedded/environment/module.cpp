#include "embedded/environment/module.hpp"

#include "platform/foundation/exception.hpp"

#include <boost/dll/shared_library.hpp>

#include <filesystem>

namespace embedded {

namespace {

constexpr const char* kGroup = "kinemo:host:modules";
constexpr const char* kSymbol = "kinemo_domain_module";

std::string plain_path(const std::string& file) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::weakly_canonical(std::filesystem::absolute(file, error), error);
  return error ? file : path.string();
}

std::unique_ptr<boost::dll::shared_library> open(const std::string& file, const std::string& path) {
  try {
    // Global look-up stays off: two domains may use one name for different things.
    return std::make_unique<boost::dll::shared_library>(path, boost::dll::load_mode::rtld_now);
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
  if (!description->name || !description->load || !description->unload)
    kmf::throw_message(kGroup, "NotADomainModule", file);
  return description;
}

}  // namespace

Module::Module(const std::string& file)
    : file_(plain_path(file)),
      library_(open(file, file_)),
      description_(describe(*library_, file)),
      name_(description_->name) {}

void Module::load(GtBlockContext* context) {
  loading_ = true;  // from here on there may be something to take back, whether or not it ends well
  description_->load(context);
}

void (*Module::address(const char* symbol) const)() {
  return library_->has(symbol) ? &library_->get<void()>(symbol) : nullptr;
}

Module::~Module() {
  if (loading_) description_->unload();
}

}  // namespace embedded
