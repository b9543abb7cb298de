#include "platform/com/Server.h"

#include <XTarn4x_h.h>

#include "com/DriverFace.h"
#include "com/RegisterFace.h"
#include "platform/com/Categories.h"

namespace com {

const Server& TheServer() {
    // Only the class by which a host finds the driver is in a category; none is marked as safe for scripting.
    static constexpr const CATID* categories[] = {&DriverCategory};
    static const ClassEntry classes[] = {
        {&CLSID_clsTarn4x, "XTarn4x.clsTarn4x", "Driver of a Tarn 4x DVB-T test receiver", Threading::Apartment,
         CreateDriver},
        {&CLSID_clsRegister, "XTarn4x.clsRegister", "Registration of the Tarn 4x driver", Threading::Apartment,
         CreateRegister, categories},
    };
    static const Server server{&LIBID_XTarn4x, classes};
    return server;
}

}  // namespace com
