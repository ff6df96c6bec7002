#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/handles.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

#include <memory>
#include <string_view>

namespace {

/// Identifiers joined by single full stops.
bool isTypePath(std::string_view type) {
  for (;;) {
    const std::size_t stop = type.find('.');
    if (!kmf::VnId::isLegal(type.substr(0, stop))) return false;
    if (stop == std::string_view::npos) return true;
    type.remove_prefix(stop + 1);
  }
}

}  // namespace

gtPort::gtPort(GTBlock* owner, bool left, int position)
    : index(position), owner_(owner), left_(left), host_(new gtPortHostData) {
  std::unique_ptr<gtPortHostData> guard(host_);
  host_->handle = embedded::block_diagram::mintHandle(this);
  guard.release();
}

gtPort::~gtPort() {
  embedded::block_diagram::releaseHandle(host_->handle);
  delete host_;
}

int gtPort::getGantrelObjectType() const {
  return embedded::block_diagram::port_object_type;
}
double gtPort::getHandle() const {
  return host_->handle;
}

double gp_handle(const gtPort* port) {
  return port->host().handle;
}

gtpatch::portenum::Kind gtpatch::getPortKind(const gtPort* port) {
  return port->isLeft() ? portenum::LEFT_CONNECTION : portenum::RIGHT_CONNECTION;
}

GTDiagnostic* gtSetPortDomainPortType(gtPort* port, const std::string& type) {
  if (!isTypePath(type)) return new GTDiagnostic{"kinemo:host:block", "InvalidPortType", type};
  port->host().type = embedded::block_diagram::internName(type);
  return nullptr;
}

const std::string& gtGetPortDomainPortType(const gtPort* port) {
  static const std::string none;
  return port->host().type ? *port->host().type : none;
}

std::string gtsvString::get_converted_lcp_str() const {
  return kmf::ustring_to_local_encoded_string(text_);
}
