#include "simulator/Simulator.h"

#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <list>
#include <thread>

#include "simulator/Link.h"
#ifndef _WIN32
#include <boost/asio/posix/stream_descriptor.hpp>

#include "simulator/SerialLine.h"
#endif

namespace sim {

namespace asio = boost::asio;
using asio::ip::tcp;

struct Simulator::Parts {
    explicit Parts(Options options) : instrument(io, std::move(options)) {}
    ~Parts() {
        io.stop();
        if (thread.joinable()) thread.join();
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    void Accept(tcp::acceptor& port, Face face) {
        port.async_accept([this, &port, face](boost::system::error_code error, tcp::socket socket) {
            if (!error && !instrument.options.script.RefusesConnections()) {
                socket.set_option(tcp::no_delay{true}, error);
                std::make_shared<Link<tcp::socket>>(instrument, std::move(socket), face)->Open();
            }
            Accept(port, face);
        });
    }

    asio::io_context io{1};
    Instrument instrument;
    std::list<tcp::acceptor> ports;
#ifndef _WIN32
    std::list<SerialLine> serialLines;
#endif
    asio::signal_set signals{io};
    std::thread thread;
};

Simulator::Simulator(Options options) : parts_(std::make_unique<Parts>(std::move(options))) {}
Simulator::~Simulator() = default;

std::optional<std::string> Simulator::Answer(const std::string& line, Face face) {
    return parts_->instrument.Execute(line, face, parts_->instrument.Treat(line));
}

std::uint16_t Simulator::Listen(std::uint16_t port, Face face, const std::string& address) {
    boost::system::error_code error;
    const auto ip = asio::ip::make_address_v4(address, error);
    if (error) throw std::invalid_argument("not an IPv4 address: '" + address + "'");
#ifdef _WIN32
    constexpr bool kReuse = false;  // would let two programs listen on one port
#else
    constexpr bool kReuse = true;  // although connections of an earlier run linger
#endif
    try {
        tcp::acceptor& acceptor = parts_->ports.emplace_back(parts_->io, tcp::endpoint{ip, port}, kReuse);
        parts_->Accept(acceptor, face);
        return acceptor.local_endpoint().port();
    } catch (const boost::system::system_error& failure) {
        throw std::runtime_error("port " + std::to_string(port) + ": " + failure.code().message());
    }
}

void Simulator::OpenSerialLine(const std::string& path) {
#ifdef _WIN32
    throw std::invalid_argument(path + ": a serial line needs Linux");
#else
    SerialLine& line = parts_->serialLines.emplace_back();
    asio::posix::stream_descriptor stream{parts_->io, line.Instrument()};
    line.LinkAt(path);
    std::make_shared<Link<asio::posix::stream_descriptor>>(parts_->instrument, std::move(stream), Face::Remote)->Open();
#endif
}

void Simulator::StopOnSignals() {
    for (const int signal : {SIGINT, SIGTERM}) parts_->signals.add(signal);
#ifdef SIGBREAK
    parts_->signals.add(SIGBREAK);
#endif
    parts_->signals.async_wait([this](boost::system::error_code, int) { parts_->io.stop(); });
}

void Simulator::Run() { parts_->io.run(); }

void Simulator::Start() {
    parts_->thread = std::thread{[this] { Run(); }};
}

}  // namespace sim
