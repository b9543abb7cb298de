#include "driver/Failure.h"

namespace tarn4x {

namespace {

struct Option {
    std::int32_t Mask;
    std::string_view Code;
};

// In the order of the tests; each code found goes in front of those before it.
constexpr Option Options[] = {
    {0x1, "TARN-B3,"},     {0x2, "EAMOD,"},          {0x4, "RB,"},           {0x8, "AD,"},
    {0x10, "TARN-B2,"},    {0x20, "TARN-B1,"},       {0x40, "TARN-B4,"},     {0x80, "TARN-B6,"},
    {0x100, "TARN-B8,"},   {0x200, "TARN-B5,"},      {0x400, "TARN-B10,"},   {0x800, "TARN-B7,"},
    {0x1000, "TARN-B20,"}, {0x2000, "TARN-K21,"},    {0x4000, "TARN-K22,"},  {0x8000, "TARN-K23,"},
    {0x7F0000, "EXTMEM,"}, {0x1000000, "TARN-K25,"}, {0x2000000, "EXTREF,"},
};

struct ChannelFilter {
    std::string_view Bandwidth;  ///< as the board information writes it
    TarnStatusSawFilterBWs Setting;
    std::string_view Code;
};

constexpr ChannelFilter ChannelFilters[] = {
    {"6.0", tarnSaw6MHz, "TARN-B11,"}, {"7.0", tarnSaw7MHz, "TARN-B12,"}, {"8.0", tarnSaw8MHz, "TARN-B13,"}};

constexpr std::string_view FilterBoards[] = {"0x83", "0x84"};
/// Members of IDriverIdentify fail with the short text only.
Operation IdentifyOf(Members member) {
    auto operation = GetOf(member);
    operation.Interface = "IDriverIdentify_";
    operation.AsksInstrument = false;
    return operation;
}

constexpr double BoardInfoFirmware = 5.0;  // first firmware that tells about its boards

}  // namespace

std::string clsTarn4x::get_Identity() {
    if (IdentityRead) return IdentityAnswer;
    ForgetPrefix();
    return Guarded(GetOf(Members::Identity), [&]() -> std::string {
        const auto response = channel.QueryString("*IDN?");
        if (AbortRequested()) return {};
        IdentityAnswer = answer.ParseResponse(response);
        IdentityRead = true;
        return IdentityAnswer;
    });
}

std::string clsTarn4x::IdentityField(Members member, std::size_t index) {
    return Guarded(IdentifyOf(member), [&]() -> std::string {
        const auto identity = get_Identity();
        const auto fields = Split(identity);
        return index < fields.size() ? std::string(fields[index]) : std::string();
    });
}

// A member is one line.
// clang-format off
std::string clsTarn4x::get_IDriverIdentify_Manufacturer() { return IdentityField(Members::Manufacturer, 0); }
std::string clsTarn4x::get_IDriverIdentify_ModelNumber() { return IdentityField(Members::ModelNumber, 1); }
std::string clsTarn4x::get_IDriverIdentify_SerialNumber() { return IdentityField(Members::SerialNumber, 2); }
std::string clsTarn4x::get_IDriverIdentify_FirmwareVersion() { return IdentityField(Members::FirmwareVersion, 3); }
std::string clsTarn4x::get_Manufacturer() { return get_IDriverIdentify_Manufacturer(); }
std::string clsTarn4x::get_ModelNumber() { return get_IDriverIdentify_ModelNumber(); }
std::string clsTarn4x::get_SerialNumber() { return get_IDriverIdentify_SerialNumber(); }
std::string clsTarn4x::get_FirmwareVersion() { return get_IDriverIdentify_FirmwareVersion(); }
std::string clsTarn4x::get_InstalledHardware() { return get_IDriverIdentify_InstalledHardware(); }
// clang-format on

std::string clsTarn4x::get_IDriverIdentify_InstalledHardware() {
    if (OptionsRead) return OptionText;
    return Guarded(IdentifyOf(Members::InstalledHardware), [&]() -> std::string {
        auto text = AskInstalledHardware();
        if (!text) return {};
        if (!text->empty()) text->pop_back();  // the comma behind the last code
        OptionText = *text;
        OptionsRead = true;
        return OptionText;
    });
}

std::optional<std::string> clsTarn4x::AskInstalledHardware() {
    const auto response = AskRaw("READ:INFO:DATA?");
    if (!response) return {};
    const auto mask = ToLong(LeadingNumber(*response));
    std::string text;
    for (const auto& option : Options) {
        if ((mask & option.Mask) != 0) text.insert(0, option.Code);
    }
    const auto filters = AskChannelFilters();
    if (!filters) return {};
    return *filters + text;
}

std::optional<std::string> clsTarn4x::AskChannelFilters() {
    const auto firmware = get_IDriverIdentify_FirmwareVersion();
    if (!IdentityRead) return {};  // the user has asked to stop
    std::optional<FiltersFound> found = FiltersFound{};
    bool boardFound = false;
    if (LeadingNumber(firmware) >= BoardInfoFirmware) {
        const auto response = AskRaw("SYSTEM:SERVICE:GET:BOARD:INFO?");
        if (!response) return {};
        // The second board is looked for in what the first one left of the text.
        std::string_view text = *response;
        for (const auto board : FilterBoards) {
            const auto start = text.find(board);
            if (start == std::string_view::npos) continue;
            boardFound = true;
            text = text.substr(start);
            text = text.substr(0, text.find(';'));
            for (std::size_t i = 0; i < std::size(ChannelFilters); ++i) {
                (*found)[i] |= text.find(ChannelFilters[i].Bandwidth) != std::string_view::npos;
            }
        }
    }
    if (!boardFound) found = TryChannelFilters();
    if (!found) return {};
    std::string text;
    for (std::size_t i = 0; i < std::size(ChannelFilters); ++i) {
        if ((*found)[i]) text.insert(0, ChannelFilters[i].Code);
    }
    return text;
}

// A filter is fitted when it can be selected. The one that was selected before comes back, whatever happens.
std::optional<clsTarn4x::FiltersFound> clsTarn4x::TryChannelFilters() {
    const auto kept = AskSawFilter();
    if (!kept) return {};
    FiltersFound found{};
    bool stopped = false;
    for (std::size_t i = 0; i < std::size(ChannelFilters) && !stopped; ++i) {
        IgnoringErrors([&] { put_StatusSawFilterBW(ChannelFilters[i].Setting); });  // the read decides
        IgnoringErrors([&] {
            const auto selected = AskSawFilter();
            found[i] = selected == ChannelFilters[i].Setting;
            stopped = !selected;
        });
        stopped |= AbortRequested();
    }
    put_StatusSawFilterBW(static_cast<TarnStatusSawFilterBWs>(*kept));
    return stopped || AbortRequested() ? std::nullopt : std::optional(found);
}

}  // namespace tarn4x
