#include <Conduit_h.h>

#include "host/com/TransportFaces.h"
#include "platform/com/Server.h"

namespace com {

const Server& TheServer() {
    static constexpr ClassEntry classes[] = {
        {&CLSID_clsGPIB, GpibId, "GPIB transport", Threading::Apartment, CreateGpib},
        {&CLSID_clsComm, CommId, "Serial transport", Threading::Apartment, CreateComm},
        {&CLSID_clsEthernet, EthernetId, "TCP/IP transport", Threading::Apartment, CreateEthernet},
        {&CLSID_clsGUI, GuiId, "Front-panel transport", Threading::Apartment, CreateGui},
    };
    static constexpr Server server{&LIBID_Conduit, classes, {}, true};
    return server;
}

}  // namespace com
