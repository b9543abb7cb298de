#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <system_error>

#include "host/SerialLink.h"

namespace host {

namespace {

HANDLE Handle(std::intptr_t line) { return reinterpret_cast<HANDLE>(line); }

LinkFailure Failure(platform::TransportError code, const std::string& doing) {
    return SystemFailure(code, doing, static_cast<int>(GetLastError()));
}

/// Why a line cannot be had; the error of the last call.
std::string Reason() {
    const auto error = GetLastError();
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return "no such port";
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
            return "port in use by another program";
    }
    return std::system_category().message(static_cast<int>(error));
}

/// Lets a single ReadFile or WriteFile wait that long and no longer. Zero would mean for ever.
void Limit(std::intptr_t line, std::chrono::milliseconds time) {
    const auto constant = static_cast<DWORD>(std::max<std::chrono::milliseconds::rep>(time.count(), 1));
    COMMTIMEOUTS limits{0, 0, constant, 0, constant};
    if (!SetCommTimeouts(Handle(line), &limits)) throw Failure(platform::ReadFailed, "Setting the line's time-outs");
}

DWORD BytesWaiting(std::intptr_t line) {
    DWORD errors = 0;
    COMSTAT state{};
    if (!ClearCommError(Handle(line), &errors, &state)) {
        throw LinkFailure{platform::LinkLost, "The serial line was disconnected"};
    }
    return state.cbInQue;
}

}  // namespace

std::string SerialLink::PathOf(const std::string& name) { return name.starts_with('\\') ? name : R"(\\.\)" + name; }

void SerialLink::OpenLine(const std::string& path) {
    line_ = reinterpret_cast<std::intptr_t>(
        CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!IsOpen()) throw OpeningFailure{Reason()};
}

void SerialLink::Configure(const SerialSettings& settings) {
    DCB mode{};
    mode.DCBlength = sizeof mode;
    if (!GetCommState(Handle(line_), &mode)) throw OpeningFailure{Reason()};
    const bool hardware = settings.Handshaking == SerialSettings::Hardware;
    const bool xonXoff = settings.Handshaking == SerialSettings::XonXoff;
    mode.BaudRate = static_cast<DWORD>(settings.BaudRate);
    mode.ByteSize = static_cast<BYTE>(settings.DataBits);
    mode.Parity = settings.Parity == 'E' ? EVENPARITY : settings.Parity == 'O' ? ODDPARITY : NOPARITY;
    mode.StopBits = settings.StopBits == 2 ? TWOSTOPBITS : ONESTOPBIT;
    mode.fBinary = TRUE;
    mode.fParity = settings.Parity != 'N';
    mode.fOutxCtsFlow = hardware;
    mode.fRtsControl = hardware ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
    mode.fOutxDsrFlow = FALSE;
    mode.fDsrSensitivity = FALSE;
    mode.fDtrControl = DTR_CONTROL_ENABLE;
    mode.fOutX = xonXoff;
    mode.fInX = xonXoff;
    mode.fTXContinueOnXoff = FALSE;
    mode.XonChar = 0x11;
    mode.XoffChar = 0x13;
    mode.XonLim = 1024;
    mode.XoffLim = 1024;
    mode.fErrorChar = FALSE;
    mode.fNull = FALSE;
    mode.fAbortOnError = FALSE;
    SetupComm(Handle(line_), 4096, 4096);
    if (!SetCommState(Handle(line_), &mode)) throw OpeningFailure{Reason()};
    PurgeComm(Handle(line_), PURGE_RXCLEAR | PURGE_TXCLEAR);
}

void SerialLink::CloseLine() noexcept {
    PurgeComm(Handle(line_), PURGE_TXABORT | PURGE_TXCLEAR);
    CloseHandle(Handle(line_));
}

std::size_t SerialLink::Write(std::span<const std::uint8_t> bytes, Milliseconds time) {
    Limit(line_, time);
    DWORD count = 0;
    if (!WriteFile(Handle(line_), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) &&
        GetLastError() != ERROR_TIMEOUT) {
        throw Failure(platform::WriteFailed, "Writing");
    }
    return count;
}

// WriteFile returns only when the bytes have left.
bool SerialLink::Flush(Milliseconds) { return true; }

std::size_t SerialLink::Read(std::span<std::uint8_t> bytes, Milliseconds time) {
    auto waiting = BytesWaiting(line_);
    if (waiting == 0) {
        if (time.count() == 0) return 0;
        waiting = 1;  // ReadFile returns with the first byte; the others are fetched next
    }
    Limit(line_, time);
    DWORD count = 0;
    if (!ReadFile(Handle(line_), bytes.data(), std::min(waiting, static_cast<DWORD>(bytes.size())), &count, nullptr) &&
        GetLastError() != ERROR_TIMEOUT) {
        throw Failure(platform::ReadFailed, "Reading");
    }
    return count;
}

}  // namespace host
