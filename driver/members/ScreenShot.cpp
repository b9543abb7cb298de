#include <algorithm>

#include "driver/Failure.h"

namespace tarn4x {

namespace {

struct BaudTimeout {
    std::string_view BaudRate;
    float Seconds;
};

// Long enough for a full screen at each speed; at any other baud rate the time-out stays as it is.
constexpr BaudTimeout SerialTimeouts[] = {
    {"1200", 60.0F}, {"2400", 34.0F}, {"4800", 22.0F}, {"9600", 15.0F}, {"19200", 12.0F}};
constexpr float GpibTimeout = 9.0F, NetworkTimeout = 60.0F;

/// Number that a length field stands for, digit by digit in 16 bits: a step that overflows is left out, and so is a
/// digit that is none.
std::int16_t BlockLength(std::span<const std::uint8_t> digits, std::size_t count) {
    std::int32_t length = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (length * 10 <= INT16_MAX) length *= 10;
        if (i >= digits.size() || digits[i] < '0' || digits[i] > '9') continue;
        const auto digit = digits[i] - '0';
        if (length + digit <= INT16_MAX) length += digit;
    }
    return static_cast<std::int16_t>(length);
}

}  // namespace

bool clsTarn4x::get_ScreenShot(TarnScreenShotModes udtMode, std::vector<std::uint8_t>& bytBuffer) {
    constexpr auto member = Members::ScreenShot;
    const auto operation = GetOf(member);
    ForgetPrefix();
    if ((udtMode & tarnCapture) != 0) {
        const bool captured = Guarded(operation, [&] {
            std::string response = "---";
            channel.SendCommand("READ:SCREEN:BUFFER?", response);
            const bool done = answer.ParseResponse(response) == "0";
            return done && !AbortRequested();
        });
        if (!captured) return false;
    }
    if ((udtMode & tarnTransfer) == 0) return true;

    const auto timeout = Guarded(operation, [&] { return ChangeTimeoutForBlocks(); });
    if (!timeout) RaiseFor(member, xtarnBadRemoteControlPort, "Remote Control Port does not support operation");

    // The block is "#", the number of length digits, the length, the data (IEEE 488.2, definite length).
    const auto byte = [&](std::optional<std::string_view> command) {
        return Guarded(operation, [&] {
            const auto data = channel.QueryBinary(1, command);
            return data.empty() ? std::uint8_t{0} : data[0];
        });
    };
    const auto refuse = [&] { RaiseFor(member, xtarnQueryFailed, operation.Text()); };
    const auto mark = byte("READ:BUFFER:PCX?");
    if (mark != '#') refuse();
    const auto countByte = byte({});
    if (countByte < '1' || countByte > '9') refuse();

    // From here on whatever fails is passed over, and only a length of 0 is refused.
    const auto count = static_cast<std::int16_t>(countByte - '0');
    std::vector<std::uint8_t> digits;
    IgnoringErrors([&] { digits = channel.QueryBinary(count); });
    const auto length = BlockLength(digits, static_cast<std::size_t>(count));
    if (length == 0) refuse();
    const bool header = (udtMode & tarnIncludeHeader) != 0;
    std::optional<std::vector<std::uint8_t>> image;
    IgnoringErrors([&] { image = channel.QueryBinary(length); });
    if (header) {
        const auto dataStart = static_cast<std::size_t>(2 + count);
        std::vector<std::uint8_t> block(dataStart + static_cast<std::size_t>(length));
        block[0] = mark;
        block[1] = countByte;
        const auto copyTo = [&](std::size_t start, std::size_t room, const std::vector<std::uint8_t>& bytes) {
            std::copy_n(bytes.begin(), std::min(room, bytes.size()),
                        block.begin() + static_cast<std::ptrdiff_t>(start));
        };
        copyTo(2, static_cast<std::size_t>(count), digits);
        if (image) copyTo(dataStart, static_cast<std::size_t>(length), *image);
        bytBuffer = std::move(block);
    } else if (image) {
        bytBuffer = std::move(*image);
    }
    IgnoringErrors([&] { Restore(*timeout); });
    return true;
}

std::optional<clsTarn4x::KeptTimeout> clsTarn4x::ChangeTimeoutForBlocks() {
    const auto port = platform::ToText(settings->Item("Remote Control")->GetValue());
    if (port == "Conduit.clsGPIB") return ChangeTimeout(GpibTimeout);
    if (port == "Conduit.clsEthernet") return ChangeTimeout(NetworkTimeout);
    if (port != "Conduit.clsComm") return {};
    const auto baud = platform::ToText(settings->Item("RS232.Baud Rate")->GetValue());
    const auto entry = std::ranges::find(SerialTimeouts, baud, &BaudTimeout::BaudRate);
    const auto transport = mobjTransport();
    return entry == std::end(SerialTimeouts) ? KeptTimeout{transport, transport->Timeout()}
                                             : ChangeTimeout(entry->Seconds);
}

}  // namespace tarn4x
