#include "host/com/MessagePump.h"

#include "platform/com/Windows.h"

namespace host {

void PumpMessages(std::chrono::milliseconds time) {
    const auto most = static_cast<DWORD>(time.count());
    if (MsgWaitForMultipleObjectsEx(0, nullptr, most, QS_ALLINPUT, MWMO_INPUTAVAILABLE) != WAIT_OBJECT_0) return;
    MSG message;
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) return;
    if (message.message == WM_QUIT) {
        // It belongs to the host's own message loop, and would be found again at once.
        PostQuitMessage(static_cast<int>(message.wParam));
        Sleep(most);
        return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

}  // namespace host
