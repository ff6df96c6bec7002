#pragma once

// The host's data about a model's physical network, over opaque records that the host owns.
//
// Glossary
//   machine      the physical network of one model
//   list item    one block of the network; its chain begins with a head that stands for the block itself
//   connection   an element of a block's chain: one of the block's ports and one far port that it is joined to
// Blocks are leaves: blocks of a domain, and opaque subsystems. Ports at the far end are ports of leaves, wherever in the
// hierarchy they are. Of a net of n ports, n-1 pairs are told, each from both ends: within every system its
// members are joined to one of them, and the systems are joined upward by these.
// A null pointer ends a list or a chain.

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"

struct KMMachineData_tag;
struct ListItem_tag;
struct Connection_tag;

/// 0 is the port of the block being listed, 1 the port at the far end.
enum kmPortOrient { KM_PORT_NEAR = 0, KM_PORT_FAR = 1 };
enum kmPortSide { KM_SIDE_RIGHT = 0, KM_SIDE_LEFT = 1 };

KINEMO_PLATFORM_API const char* kmGetMachineRootBDName(const KMMachineData_tag* machine);
KINEMO_PLATFORM_API const ListItem_tag* kmGetMachineDataList(const KMMachineData_tag* machine);
KINEMO_PLATFORM_API const ListItem_tag* kmGetListItemNextItem(const ListItem_tag* item);
KINEMO_PLATFORM_API const Connection_tag* kmGetListItemConnection(const ListItem_tag* item);
KINEMO_PLATFORM_API const Connection_tag* kmGetConnectionNextConnection(const Connection_tag* connection);
KINEMO_PLATFORM_API double kmGetBlockHandle(const Connection_tag* head);
KINEMO_PLATFORM_API ustring kmGetBlockFullName(const Connection_tag* head);
KINEMO_PLATFORM_API double kmGetPortHandle(const Connection_tag* connection, kmPortOrient orientation);
KINEMO_PLATFORM_API kmPortSide kmGetPortSide(const Connection_tag* connection, kmPortOrient orientation);
KINEMO_PLATFORM_API int kmGetPortIndex(const Connection_tag* connection, kmPortOrient orientation);
