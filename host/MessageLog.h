#pragma once

#include <deque>
#include <fstream>
#include <mutex>

#include "platform/Framework.h"

namespace host {

/// Kind of a log entry that tells of a failure and what to do about it.
inline constexpr std::int16_t FailureEntry = 1;

/// Message log of a process. Every member may be called from any thread.
class MessageLog : public platform::MessageLog {
  public:
    /// Entries held; the oldest make room for new ones.
    static constexpr std::size_t Capacity = 10'000;
    /// Bytes after which the file is renamed to FileName + ".1" (replacing an older one) and begun anew.
    static constexpr std::size_t FileLimit = std::size_t{64} << 20;

    void Log(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) override;

    std::int32_t Count();
    /// Entry counted from 1: kind, source, text and data separated by tab characters. Raises 9 when there is none.
    std::string Entry(std::int32_t index);
    void Clear();

    std::string FileName();
    /// Begins to append every further entry to that file, one line each with the time (UTC) in front, control
    /// characters escaped, flushed at once; empty for none. Raises 75 when it cannot be opened, and keeps the old one.
    void SetFileName(std::string_view fileName);

  private:
    void WriteLine(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data);

    std::mutex mutex_;
    std::deque<std::string> entries_;
    std::string fileName_;
    std::ofstream file_;
};

}  // namespace host
