#include <Seamlib_h.h>

#include "host/com/HostFace.h"
#include "host/com/ServiceFaces.h"
#include "platform/com/Categories.h"
#include "platform/com/Server.h"

namespace com {

const Server& TheServer() {
    static constexpr ClassEntry classes[] = {
        {&CLSID_clsApplication, "Seamlib.clsApplication", "Application services", Threading::Both, GetApplication},
        {&CLSID_clsMessageLog, "Seamlib.clsMessageLog", "Message log", Threading::Both, GetMessageLog},
        {&CLSID_clsErrorService, "Seamlib.clsErrorService", "Error service", Threading::Both, GetErrorService},
        {&CLSID_clsHost, "Seamlib.clsHost", "Finds and creates drivers", Threading::Both, CreateHost},
    };
    static constexpr Category categories[] = {{&DriverCategory, "Instrument drivers"}};
    static constexpr Server server{&LIBID_Seamlib, classes, categories, true};
    return server;
}

}  // namespace com
