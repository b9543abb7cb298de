#include "tests/com-driver/Peer.h"

#include <winsock2.h>

#include <algorithm>
#include <chrono>
#include <utility>

Peer::Peer() : listener(INVALID_SOCKET), connection(INVALID_SOCKET) {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    answers["SYST:ERR?"] = "0,\"No error\"";
    listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address);
    listen(listener, 4);
    int size = sizeof address;
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    thread = std::thread([this] { Serve(); });
}

Peer::~Peer() {
    {
        const std::lock_guard lock(mutex);
        ending = true;
        closesocket(listener);
        if (connection != INVALID_SOCKET) shutdown(connection, SD_BOTH);
    }
    thread.join();
    WSACleanup();
}

void Peer::Answers(std::string_view dialogue) {
    const std::lock_guard lock(mutex);
    while (!dialogue.empty()) {
        const auto line = dialogue.substr(0, dialogue.find(" | "));
        const auto equals = line.find(" = ");
        answers[std::string(line.substr(0, equals))] = line.substr(equals + 3);
        dialogue.remove_prefix(std::min(line.size() + 3, dialogue.size()));
    }
}

void Peer::BreaksProtocolAfter(const std::string& line, int times) {
    const std::lock_guard lock(mutex);
    last = line;
    untilBreak = times;
}

bool Peer::Received(const std::string& line) {
    std::unique_lock lock(mutex);
    return arrived.wait_for(lock, std::chrono::seconds(5),
                            [&] { return std::find(lines.begin(), lines.end(), line) != lines.end(); });
}

std::size_t Peer::Count(const std::string& line) {
    const std::lock_guard lock(mutex);
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), line));
}

void Peer::Serve() {
    for (;;) {
        const SOCKET accepted = accept(listener, nullptr, nullptr);
        {
            const std::lock_guard lock(mutex);
            connection = accepted;
            if (ending || accepted == INVALID_SOCKET) break;
        }
        Talk();
        const std::lock_guard lock(mutex);
        closesocket(std::exchange(connection, INVALID_SOCKET));
    }
    if (connection != INVALID_SOCKET) closesocket(connection);
}

void Peer::Talk() {
    std::string pending;
    char buffer[1024];
    for (int count; (count = recv(connection, buffer, sizeof buffer, 0)) > 0;) {
        pending.append(buffer, static_cast<std::size_t>(count));
        for (std::size_t end; (end = pending.find('\n')) != std::string::npos; pending.erase(0, end + 1)) {
            std::string line = pending.substr(0, end);
            if (line.ends_with('\r')) line.pop_back();
            const std::string answer = Take(line);
            if (!answer.empty()) send(connection, answer.data(), static_cast<int>(answer.size()), 0);
        }
    }
}

std::string Peer::Take(const std::string& line) {
    const std::lock_guard lock(mutex);
    if (breaks) {
        breaks = false;
        return std::string(2'000'000, '7');
    }
    breaks = line == last && --untilBreak == 0;
    lines.push_back(line);
    arrived.notify_all();
    const auto answer = answers.find(line);
    if (answer == answers.end()) return "";
    std::string text = answer->second + '\n';
    if (const auto place = text.find("{n}"); place != std::string::npos) {
        text.replace(place, 3, std::to_string(std::count(lines.begin(), lines.end(), line)));
    }
    return text;
}
