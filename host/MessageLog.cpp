#include "host/MessageLog.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <optional>

#include "host/Escape.h"
#include "host/FailureWatch.h"

namespace host {

namespace {

std::filesystem::path ToPath(std::string_view utf8) { return std::u8string(utf8.begin(), utf8.end()); }

/// "2025-01-31T12:34:56.789Z"
std::string TimeStamp() {
    const auto now = std::chrono::time_point_cast<std::chrono::milliseconds>(std::chrono::system_clock::now());
    const auto day = std::chrono::floor<std::chrono::days>(now);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(now - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
    return text;
}

using Clock = std::chrono::steady_clock;

/// When the thread logged its last command; the clock's epoch before the first one.
thread_local Clock::time_point lastCommand{};

/// The time from a command to its answer, if this entry is one; notes the moment of a command.
std::optional<Clock::duration> Duration(std::int16_t kind) {
    if (kind == CommandEntry) lastCommand = Clock::now();
    if (kind != AnswerEntry || lastCommand == Clock::time_point{}) return {};
    return Clock::now() - lastCommand;
}

/// In milliseconds.
std::string Text(std::optional<Clock::duration> duration) {
    if (!duration) return {};
    const auto microseconds = std::chrono::floor<std::chrono::microseconds>(*duration).count();
    char text[32];  // in parts: "%f" would follow the process's locale
    std::snprintf(text, sizeof text, "%lld.%03lld", static_cast<long long>(microseconds / 1000),
                  static_cast<long long>(microseconds % 1000));
    return text;
}

}  // namespace

void MessageLog::Log(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) {
    if (kind == FailureEntry && !FailureWatch::Show(text, data)) return;
    const auto duration = Duration(kind);
    std::string entry = std::to_string(kind);
    for (const auto field : {source, text, data}) (entry += '\t') += field;
    const std::lock_guard lock(mutex_);
    if (entries_.size() == Capacity) entries_.pop_front();
    entries_.push_back(std::move(entry));
    if (file_.is_open()) WriteLine(Text(duration), kind, source, text, data);
}

std::int32_t MessageLog::Count() {
    const std::lock_guard lock(mutex_);
    return static_cast<std::int32_t>(entries_.size());
}

std::string MessageLog::Entry(std::int32_t index) {
    const std::lock_guard lock(mutex_);
    if (index < 1 || static_cast<std::size_t>(index) > entries_.size()) {
        throw platform::AutomationError(platform::SubscriptOutOfRange, "Seamlib.clsMessageLog",
                                        "There is no entry " + std::to_string(index) + " in the message log, it has " +
                                            std::to_string(entries_.size()));
    }
    return entries_[static_cast<std::size_t>(index) - 1];
}

void MessageLog::Clear() {
    const std::lock_guard lock(mutex_);
    entries_.clear();
}

std::string MessageLog::FileName() {
    const std::lock_guard lock(mutex_);
    return fileName_;
}

void MessageLog::SetFileName(std::string_view fileName) {
    std::ofstream file;
    if (!fileName.empty()) {
        file.open(ToPath(fileName), std::ios::app | std::ios::binary);
        if (!file) {
            throw platform::AutomationError(platform::PathFileAccessError, "Seamlib.clsMessageLog",
                                            "The log file " + std::string(fileName) + " cannot be opened for writing");
        }
    }
    const std::lock_guard lock(mutex_);
    file_ = std::move(file);
    fileName_ = fileName;
}

void MessageLog::WriteLine(std::string_view duration, std::int16_t kind, std::string_view source, std::string_view text,
                           std::string_view data) {
    std::string line = TimeStamp();
    line.append(1, '\t').append(duration).append(1, '\t').append(std::to_string(kind));
    for (const auto field : {source, text, data}) line.append(1, '\t').append(Escaped(field, Escape::Controls));
    line += '\n';
    file_ << line << std::flush;
    file_.clear();  // a full disk must not end the log for good
    if (const auto size = file_.tellp(); size >= 0 && static_cast<std::size_t>(size) >= fileLimit_) {
        file_.close();
        std::error_code ignored;
        std::filesystem::rename(ToPath(fileName_), ToPath(fileName_ + ".1"), ignored);
        file_.open(ToPath(fileName_), std::ios::trunc | std::ios::binary);
    }
}

}  // namespace host
