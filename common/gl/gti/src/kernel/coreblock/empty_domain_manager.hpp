#pragma once

#include "platform/compile_layer/domain_manager.hpp"

#include <memory>
#include <string>

namespace gl::gti {

/// A domain manager that does nothing: it keeps the host content while a domain has block prototypes but no manager of
/// its own yet.
std::unique_ptr<DADomainMgr> make_empty_domain_manager(const std::string& domainName);

}  // namespace gl::gti
