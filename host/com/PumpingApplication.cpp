#include "host/com/PumpingApplication.h"

#include "platform/com/Windows.h"

namespace host {

void PumpingApplication::Wait(std::chrono::milliseconds time) {
    const auto slice = static_cast<DWORD>(time.count());
    const ULONGLONG end = GetTickCount64() + slice;
    if (MsgWaitForMultipleObjectsEx(0, nullptr, slice, QS_ALLINPUT, MWMO_INPUTAVAILABLE) != WAIT_OBJECT_0) return;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            // It belongs to the host's own message loop, and would be found again at once.
            PostQuitMessage(static_cast<int>(message.wParam));
            Sleep(slice);
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
        if (AbortRequested() || GetTickCount64() >= end) return;
    }
}

}  // namespace host
