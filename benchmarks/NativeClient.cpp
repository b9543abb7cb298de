#include <malloc.h>

#include "benchmarks/Client.h"
#include "driver/clsTarn4x.h"
#include "host/Framework.h"

namespace bench {

namespace {

const std::shared_ptr<host::Framework>& Host() {
    static const auto host = [] {
        auto made = std::make_shared<host::Framework>();
        made->TheApplication().SetDelayScale(0.0);
        return made;
    }();
    return host;
}

}  // namespace

struct Client::Parts {
    void Set(const char* path, const std::string& value) {
        driver.get_IDriverSetup_Settings()->Item(path)->SetValue(true, true, value);
    }
    tarn4x::clsTarn4x driver{Host()};
};

Client::Client() : parts(std::make_unique<Parts>()) {}
Client::~Client() = default;

void Client::GoOnLine(const std::string& port) {
    parts->Set("Remote Control", "TCP/IP");
    parts->Set("TCP/IP.Port", port);
    parts->driver.put_IDriverSetup_OnLine(true);
    if (!parts->driver.get_IDriverSetup_OnLine()) throw std::runtime_error("no receiver on port " + port);
}

void Client::GoOffLine() { parts->driver.put_IDriverSetup_OnLine(false); }

double Client::Level() { return parts->driver.get_MeasureRfLevel(); }

std::size_t Client::Screen() {
    std::vector<std::uint8_t> image;
    parts->driver.get_ScreenShot(tarn4x::tarnTransfer, image);
    return image.size();
}

void Client::LogMessages(bool log) { parts->Set("Log Messages", log ? "Yes" : "No"); }

void LogInto(const std::string& fileName) { Host()->TheMessageLog().SetFileName(fileName); }

void Apartment::Enter() {}
void Apartment::Leave() {}

std::size_t MemoryInUse() {
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

}  // namespace bench
