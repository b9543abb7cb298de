#pragma once

#include <algorithm>
#include <string>

#include "host/ByteLink.h"
#include "simulator/Simulator.h"

namespace cli {

/// A link to a receiver inside the program. Answers are there at once.
class SimulatedLink final : public host::ByteLink {
  public:
    explicit SimulatedLink(sim::Simulator& receiver) : receiver_(receiver) {}

    void Open(host::Patience&) override { open_ = true; }
    void Close() noexcept override {
        open_ = false;
        line_.clear();
        answers_.clear();
    }
    bool IsOpen() const override { return open_; }
    std::string Address() const override { return "the simulated receiver"; }

    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds) override {
        for (const auto byte : bytes) {
            if (byte != '\n') {
                line_ += static_cast<char>(byte);
                continue;
            }
            if (const auto answer = receiver_.Answer(line_)) answers_ += *answer + '\n';
            line_.clear();
        }
        return bytes.size();
    }
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override {
        // Nothing comes later than at once.
        if (answers_.empty() && time.count() > 0) {
            throw host::LinkFailure{platform::ReceiveTimedOut, "Receive timed out"};
        }
        const auto count = std::min(bytes.size(), answers_.size());
        std::copy_n(answers_.begin(), count, bytes.begin());
        answers_.erase(0, count);
        return count;
    }
    void Resynchronise(host::Patience&) override { Close(); }

  private:
    sim::Simulator& receiver_;
    bool open_ = false;
    std::string line_, answers_;
};

}  // namespace cli
