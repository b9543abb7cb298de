#pragma once

#include "platform/com/Windows.h"

namespace com {

inline constexpr char GpibId[] = "Conduit.clsGPIB";
inline constexpr char CommId[] = "Conduit.clsComm";
inline constexpr char EthernetId[] = "Conduit.clsEthernet";
inline constexpr char GuiId[] = "Conduit.clsGUI";

/// Create transports whose settings are nodes of the settings component.
HRESULT CreateGpib(REFIID iid, void** object);
HRESULT CreateComm(REFIID iid, void** object);
HRESULT CreateEthernet(REFIID iid, void** object);
HRESULT CreateGui(REFIID iid, void** object);

}  // namespace com
