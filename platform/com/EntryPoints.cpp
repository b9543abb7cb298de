#include "platform/com/Registration.h"
#include "platform/com/Server.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** factory) {
    return com::GetClassObject(com::TheServer(), clsid, iid, factory);
}

STDAPI DllCanUnloadNow() { return com::InUse() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return com::Register(com::TheServer(), com::Scope::Machine, com::ForceOnCommandLine()); }

STDAPI DllUnregisterServer() { return com::Unregister(com::TheServer(), com::Scope::Machine); }

STDAPI DllInstall(BOOL install, LPCWSTR words) { return com::Install(com::TheServer(), install != FALSE, words); }
