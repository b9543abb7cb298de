#include <Seamcfg_h.h>

#include "host/com/NodeFace.h"
#include "platform/com/Server.h"

namespace com {

const Server& TheServer() {
    static constexpr ClassEntry classes[] = {
        {&CLSID_clsNode, "Seamcfg.clsNode", "Settings node", Threading::Apartment, CreateNode},
    };
    static constexpr Server server{&LIBID_Seamcfg, classes, {}, true};
    return server;
}

}  // namespace com
