#pragma once

#include "host/InstrumentTransport.h"

namespace host {

/// The dialogue with the application behind the instrument's front panel, which knows text only.
class FrontPanelTransport : public InstrumentTransport {
  public:
    using InstrumentTransport::InstrumentTransport;

    std::vector<std::uint8_t> ReadBlock(std::int16_t, std::optional<std::string_view>) override {
        Refuse(platform::ReadFailed, "The front panel's link carries no blocks: nothing was read");
    }
    void WriteBlock(std::int16_t, std::span<const std::uint8_t>, std::optional<std::string_view>) override {
        Refuse(platform::WriteFailed, "The front panel's link carries no blocks: nothing was written");
    }
};

}  // namespace host
