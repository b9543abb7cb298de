#include "simulator/Server.h"

#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "simulator/Text.h"

namespace sim {

Server::Server(Receiver& receiver, Script& script, Replay& replay, Options options)
    : receiver_(receiver), interpreter_(receiver), script_(script), replay_(replay), options_(options) {}

uint16_t Server::ListenOn(uint16_t port, Face face) {
    ports_.push_back({TcpListener{port}, face});
    return ports_.back().listener.Port();
}

void Server::ServeSerialLine(const std::string& path) {
    peers_.emplace_back(serialLines_.emplace_back(path).Descriptor(), Face::Remote);
}

void Server::Run(int stopDescriptor) {
    while (true) {
        const bool busy = Steady::now() < busyUntil_;
        std::vector<pollfd> polled{{stopDescriptor, POLLIN, 0}};
        for (const Port& port : ports_) polled.push_back({port.listener.Descriptor(), POLLIN, 0});
        for (const Peer& peer : peers_) {
            const int input = busy || peer.Full() ? 0 : POLLIN;
            polled.push_back({peer.Descriptor(), static_cast<short>(input | (peer.Blocked() ? POLLOUT : 0)), 0});
        }
        ::poll(polled.data(), polled.size(), PollTimeout(Steady::now()));
        if (polled[0].revents != 0) return;

        if (waiting_ && Steady::now() >= busyUntil_) {
            const Waiting waiting = *std::exchange(waiting_, std::nullopt);
            Finish(*waiting.peer, waiting.line, waiting.treatment);
        }
        auto state = polled.begin() + 1 + static_cast<ptrdiff_t>(ports_.size());
        for (Peer& peer : peers_) {
            if (((state++)->revents & ~POLLOUT) != 0) peer.Receive();
            Work(peer);
            peer.Flush(Steady::now());
        }
        peers_.remove_if([&](const Peer& peer) {
            if (!peer.Closed()) return false;
            Log(peer, "--", "closed");
            if (waiting_ && waiting_->peer == &peer) waiting_.reset();
            return true;
        });
        state = polled.begin() + 1;
        for (Port& port : ports_) {
            if ((state++)->revents != 0) Accept(port);
        }
    }
}

void Server::Accept(Port& port) {
    FileDescriptor connection = port.listener.Accept();
    if (connection.Get() < 0 || script_.RefusesConnections()) return;
    peers_.emplace_back(std::move(connection), port.face);
    Log(peers_.back(), "--", "opened");
}

void Server::Work(Peer& peer) {
    while (!waiting_ && !peer.Closed() && !peer.Full() && Steady::now() >= busyUntil_) {
        const std::optional<LineBuffer::Line> line = peer.NextLine();
        if (!line) return;
        if (line->overrun) {
            Log(peer, "<-", "(a line that is too long)");
            if (peer.Face() == Face::Remote) receiver_.errors.Push(-363);
        } else {
            Execute(peer, line->text);
        }
    }
}

void Server::Execute(Peer& peer, const std::string& line) {
    Log(peer, "<-", line);
    Treatment treatment = script_.Treat(line);
    replay_.Apply(line, options_.replayTiming, treatment);
    if (treatment.busy.count() > 0) {
        busyUntil_ = Steady::now() + treatment.busy;
        waiting_ = {&peer, line, treatment};
    } else {
        Finish(peer, line, treatment);
    }
}

void Server::Finish(Peer& peer, const std::string& line, const Treatment& treatment) {
    if (!treatment.signal.empty()) {
        Signal signal = receiver_.OnAir();
        for (const SignalChange& change : treatment.signal) Change(signal, change);
        receiver_.Transmit(signal);
    }
    for (const int error : treatment.errors) receiver_.errors.Push(error);
    if (treatment.deaf) {
        peer.MakeDeaf();
        return;
    }
    std::optional<std::string> answer = interpreter_.Execute(line, peer.Face());
    if (treatment.answer || treatment.raw) answer = treatment.answer.value_or("");
    if (treatment.silence) answer.reset();
    if (answer) {
        Log(peer, "->", treatment.raw.value_or(*answer));
        peer.Send(*answer, treatment, script_.Terminator(), Steady::now());
    } else if (treatment.close != Close::No) {
        Treatment closing = treatment;
        closing.close = Close::Before;  // there is no answer to wait for
        peer.Send("", closing, "", Steady::now());
    }
}

int Server::PollTimeout(Steady::time_point now) const {
    std::optional<Steady::time_point> due;
    const auto consider = [&](Steady::time_point moment) { due = due ? std::min(*due, moment) : moment; };
    if (now < busyUntil_ || waiting_) consider(busyUntil_);
    for (const Peer& peer : peers_) {
        if (const auto moment = peer.Due()) consider(*moment);
    }
    if (!due) return -1;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*due - now).count();
    return static_cast<int>(std::clamp<long>(static_cast<long>(wait), 0, 60'000));
}

void Server::Log(const Peer& peer, std::string_view direction, std::string_view text) const {
    if (!options_.verbose) return;
    const char* face = peer.Serial() ? "serial" : peer.Face() == Face::FrontPanel ? "panel" : "tcp";
    std::string shown = Escape(text.substr(0, 200));
    if (text.size() > 200) shown += "... (" + std::to_string(text.size()) + " bytes)";
    std::fprintf(stderr, "%s %d %.*s %s\n", face, peer.Descriptor(), static_cast<int>(direction.size()),
                 direction.data(), shown.c_str());
}

}  // namespace sim
