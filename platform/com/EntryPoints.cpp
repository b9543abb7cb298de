#include "platform/com/Registration.h"
#include "platform/com/Server.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** factory) {
    return com::GetClassObject(com::TheServer(), clsid, iid, factory);
}

STDAPI DllCanUnloadNow() { return com::InUse() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return com::Register(com::TheServer()); }

STDAPI DllUnregisterServer() { return com::Unregister(com::TheServer()); }
