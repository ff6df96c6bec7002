#include "embedded/environment/domain_library.hpp"

#include "embedded/block_diagram/host_functions.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/exception.hpp"

#include <boost/system/system_error.hpp>

#include <filesystem>

namespace embedded {

namespace {

const char* const group = "kinemo:host:modules";
const char* const symbol = "kinemo_domain_module";

/// The path by which two spellings of one file are told to be the same.
std::string plainPath(const std::string& file) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::weakly_canonical(std::filesystem::absolute(file, error), error);
  return error ? file : path.string();
}

boost::dll::shared_library opened(const std::string& shown, const std::string& file) {
  try {
    return boost::dll::shared_library(file, boost::dll::load_mode::rtld_now | boost::dll::load_mode::rtld_local);
  } catch (const boost::system::system_error& error) {
    kmf::throw_message(group, "CannotOpenModule", shown, error.what());
  }
}

}  // namespace

DomainLibrary::DomainLibrary(const std::string& file) : file_(plainPath(file)), library_(opened(file, file_)) {
  if (!library_.has(symbol)) kmf::throw_message(group, "NotADomainModule", file);
  module_ = &library_.get<const KinemoDomainModule>(symbol);
  if (module_->abi != KINEMO_DOMAIN_ABI) {
    kmf::throw_message(group, "ModuleDoesNotFit", file, std::to_string(module_->abi),
                       std::to_string(KINEMO_DOMAIN_ABI));
  }
  if (!module_->name || !module_->load || !module_->unload) kmf::throw_message(group, "NotADomainModule", file);
  domain_ = module_->name;
}

void DomainLibrary::load() {
  loaded_ = true;  // what a failing load has registered is taken back by the destructor
  module_->load(&block_diagram::hostContext());
}

DomainLibrary::~DomainLibrary() {
  if (loaded_) module_->unload();
}

}  // namespace embedded
