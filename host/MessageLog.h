#pragma once

#include <deque>
#include <fstream>
#include <mutex>

#include "platform/Framework.h"

namespace host {

/// Kinds of log entries: a failure and what to do about it, an answer of the instrument, a command about to be sent.
inline constexpr std::int16_t FailureEntry = 1, AnswerEntry = 5, CommandEntry = 6;

/// Message log of a process. Every member may be called from any thread.
class MessageLog : public platform::MessageLog {
  public:
    /// Entries held; the oldest make room for new ones.
    static constexpr std::size_t Capacity = 10'000;
    /// Bytes after which the file is renamed to FileName + ".1" (replacing an older one) and begun anew.
    static constexpr std::size_t FileLimit = std::size_t{64} << 20;

    explicit MessageLog(std::size_t fileLimit = FileLimit) : fileLimit_(fileLimit) {}

    void Log(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) override;

    std::int32_t Count();
    /// Entry counted from 1: kind, source, text and data separated by tab characters. Raises 9 when there is none.
    std::string Entry(std::int32_t index);
    void Clear();

    std::string FileName();
    /// Begins to append every further entry to that file; empty for none. An entry is a line, flushed at once, of six
    /// fields separated by tab characters: time (UTC), duration, kind, source, text and data, control characters and
    /// "\\" escaped. An answer has a duration: the milliseconds since the last command of the same thread, with 3
    /// decimals. Raises 75 when the file cannot be opened, and keeps the old one.
    void SetFileName(std::string_view fileName);

  private:
    void WriteLine(std::string_view duration, std::int16_t kind, std::string_view source, std::string_view text,
                   std::string_view data);

    const std::size_t fileLimit_;
    std::mutex mutex_;
    std::deque<std::string> entries_;
    std::string fileName_;
    std::ofstream file_;
};

}  // namespace host
