#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/handles.hpp"
#include "embedded/network_data/records.hpp"

namespace {

bool isElement(const Connection_tag& record) {
  return record.near && record.near->getGantrelObjectType() == embedded::block_diagram::port_object_type;
}

const ListItem_tag* itemOrEnd(const ListItem_tag* item) {
  return item->head ? item : nullptr;
}

/// The port at one end of an element that has a connection; null otherwise.
const gtPort* portAt(const Connection_tag* connection, kmPortOrient orientation) {
  return orientation == KM_PORT_NEAR ? static_cast<const gtPort*>(connection->near) : connection->far;
}

}  // namespace

const char* kmGetMachineRootBDName(const KMMachineData_tag* machine) {
  return machine->model.c_str();
}
const ListItem_tag* kmGetMachineDataList(const KMMachineData_tag* machine) {
  return itemOrEnd(machine->items.data());
}
const ListItem_tag* kmGetListItemNextItem(const ListItem_tag* item) {
  return itemOrEnd(item + 1);
}
const Connection_tag* kmGetListItemConnection(const ListItem_tag* item) {
  return item->head;
}

const Connection_tag* kmGetConnectionNextConnection(const Connection_tag* connection) {
  return isElement(connection[1]) ? connection + 1 : nullptr;
}

double kmGetBlockHandle(const Connection_tag* head) {
  return head->near->getHandle();
}

ustring kmGetBlockFullName(const Connection_tag* head) {
  return static_cast<const GTBlock*>(head->near)->platformInfo().getGrFullPathNameUnicode(false);
}

double kmGetPortHandle(const Connection_tag* connection, kmPortOrient orientation) {
  return connection->far ? portAt(connection, orientation)->getHandle() : embedded::block_diagram::no_handle;
}

kmPortSide kmGetPortSide(const Connection_tag* connection, kmPortOrient orientation) {
  const gtPort* port = portAt(connection, orientation);
  return port && port->isLeft() ? KM_SIDE_LEFT : KM_SIDE_RIGHT;
}

int kmGetPortIndex(const Connection_tag* connection, kmPortOrient orientation) {
  const gtPort* port = portAt(connection, orientation);
  return port ? port->index : -1;
}
