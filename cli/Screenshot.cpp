#include <filesystem>
#include <fstream>

#include "cli/Commands.h"
#include "cli/Png.h"

namespace cli {

namespace {

std::vector<std::uint8_t> Capture(Session& session) {
    static const Request request{.Name = "ScreenShot", .Member = &tarn4x::RowOf(tarn4x::Members::ScreenShot)};
    std::vector<std::uint8_t> bytes;
    bool captured = false;
    session.Try(request, [&] {
        constexpr auto mode = static_cast<tarn4x::TarnScreenShotModes>(tarn4x::tarnCapture | tarn4x::tarnTransfer);
        captured = session.OnLine().get_ScreenShot(mode, bytes);
    });
    if (captured && !bytes.empty()) return bytes;
    throw Failure{.Ends = Refused,
                  .Description = captured ? "The picture did not arrive" : "The receiver refused to capture its screen",
                  .Advice = "With --trace FILE the dialogue with the receiver is written down."};
}

void Save(const std::string& file, const std::vector<std::uint8_t>& bytes) {
    const std::filesystem::path path(std::u8string(file.begin(), file.end()));
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) throw Misuse(file + " cannot be written", "Is there such a folder, and may files be written in it?");
}

}  // namespace

Outcome Screenshot(Context& context, const std::string& file) {
    const auto ending = tarn4x::LowerCase(file.substr(std::min(file.rfind('.'), file.size())));
    if (ending != ".png" && ending != ".pcx") {
        throw Misuse(file + " ends neither in .png nor in .pcx", ".pcx keeps the picture as the receiver sends it.");
    }
    auto bytes = Capture(context.Receiver);
    const auto picture = DecodePcx(bytes);
    if (ending == ".png") {
        if (!picture) {
            throw Failure{.Ends = Refused,
                          .Description = "The receiver's picture is no PCX that this program can read",
                          .Advice = "Save it as it is: tarn4x screenshot FILE.pcx"};
        }
        bytes = EncodePng(*picture);
    }
    Save(file, bytes);
    Outcome outcome;
    Json result = {{"file", file}, {"bytes", bytes.size()}};
    if (picture) result.update({{"width", picture->Width}, {"height", picture->Height}});
    outcome.Results.push_back(result);
    if (context.Out.IsJson()) return outcome;
    const auto size =
        picture ? std::to_string(picture->Width) + " x " + std::to_string(picture->Height) + " pixels, " : "";
    context.Out.Line(file + "  " + size + std::to_string(bytes.size()) + " bytes");
    return outcome;
}

}  // namespace cli
