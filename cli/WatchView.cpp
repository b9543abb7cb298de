#include "cli/WatchView.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "cli/Clean.h"
#include "cli/Json.h"
#include "cli/Terminal.h"
#include "cli/Trend.h"

namespace cli {

namespace {

class JsonView final : public WatchView {
  public:
    explicit JsonView(Output& out) : out_(out) {}

    void Show(const Sample& sample) override {
        Json document = {{"command", "watch"}, {"time", sample.Time}, {"results", Json::array()}};
        for (const auto& reading : sample.Readings) document["results"].push_back(ToJson(reading));
        if (!sample.Notice.empty()) document["notice"] = sample.Notice;
        if (sample.Outage) document["error"] = ToJson(*sample.Outage);
        out_.Line(Dump(document));
    }

  private:
    Output& out_;
};

/// A column for each member, and one for what is to be said about them. Outages are told on the standard error, too.
class CsvView final : public WatchView {
  public:
    CsvView(Output& out, std::span<const Request> requests) : out_(out), requests_(requests) {}

    void Show(const Sample& sample) override {
        if (!headerIsWritten_) Header(sample);
        headerIsWritten_ = true;
        std::string line = sample.Time, remarks = sample.Notice;
        const auto remark = [&](const std::string& text) { remarks.append(remarks.empty() ? "" : "; ").append(text); };
        for (std::size_t i = 0; i < requests_.size(); ++i) {
            const auto* reading = i < sample.Readings.size() ? &sample.Readings[i] : nullptr;
            line +=
                ',' + (reading && reading->HasValue() ? Field(ShowValue(reading->Result, requests_[i].Type())) : "");
            if (!reading) continue;
            std::string marks = reading->Prefix;
            if (!reading->Postfix.empty()) marks.append(marks.empty() ? "" : " ").append(reading->Postfix);
            if (!marks.empty()) remark(requests_[i].Name + ' ' + marks);
            if (reading->Error) remark(requests_[i].Name + ": " + reading->Error->Description);
        }
        if (sample.Outage) remark(sample.Outage->Description);
        if (sample.Outage.has_value() != isLost_ && !remarks.empty()) {
            std::fprintf(stderr, "tarn4x: %s %s\n", sample.Time.c_str(), Clean(remarks).c_str());
        }
        isLost_ = sample.Outage.has_value();
        out_.Line(line + ',' + Field(remarks));
    }

  private:
    static std::string Field(const std::string& text) {
        if (text.find_first_of(",\"") == text.npos) return text;
        std::string quoted = "\"";
        for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
        return quoted + '"';
    }

    void Header(const Sample& sample) {
        std::string line = "time";
        for (const auto& reading : sample.Readings) {
            line += ',' + Field(reading.Asked.Name + (reading.Unit.empty() ? "" : " (" + reading.Unit + ')'));
        }
        out_.Line(line + ",remarks");
    }

    Output& out_;
    std::span<const Request> requests_;
    bool headerIsWritten_ = false, isLost_ = false;
};

/// Drawn over itself from the second time on.
class TableView final : public WatchView {
  public:
    TableView(Output& out, std::size_t members) : out_(out), trends_(members), shown_(members) {}

    void Show(const Sample& sample) override {
        ++samples_;
        for (std::size_t i = 0; i < sample.Readings.size(); ++i) {
            const auto& reading = sample.Readings[i];
            trends_[i].Add(reading.Number());
            shown_[i] = {reading.Asked.Name, Clean(reading.Error ? reading.Error->Description : reading.Text())};
        }
        if (sample.Outage) {
            notice_ = sample.Outage->Description;
            for (auto& trend : trends_) trend.Add({});
            for (auto& cells : shown_) cells[1] = "no connection";
        } else if (!sample.Notice.empty()) {
            notice_ = sample.Notice;
        }
        Draw(sample.Time);
    }

  private:
    void Draw(const std::string& time) {
        const auto [columns, height] = terminal::GetSize();
        const auto width = columns - 1;
        auto lines = Table(width);
        constexpr std::size_t below = 3;  // lines of the foot, and the cursor's
        const auto shownLines = std::min(lines.size(), std::max(height, below + 1) - below);
        const auto hidden = lines.size() - shownLines;
        lines.resize(shownLines);
        lines.push_back(time + "  " + std::to_string(samples_) + (samples_ == 1 ? " sample" : " samples") +
                        (hidden > 0 ? "  " + std::to_string(hidden) + " more members" : "") + "  Ctrl-C ends");
        lines.push_back(notice_);

        if (height_ > 0) terminal::MoveUp(height_);
        height_ = lines.size();
        std::string text;
        for (const auto& line : lines) {
            const auto shown = Shortened(Clean(line), width);
            text.append(shown).append(width - Length(shown), ' ').append("\n");
        }
        out_.Raw(text);
    }

    /// A line for each member, the rest of which shows how its value went.
    std::vector<std::string> Table(std::size_t width) const {
        constexpr std::size_t longestHistory = 60;
        std::vector<std::vector<std::string>> rows{{"member", "value", "minimum", "mean", "maximum"}};
        for (std::size_t i = 0; i < trends_.size(); ++i) {
            rows.push_back({shown_[i][0], shown_[i][1], trends_[i].Minimum(), trends_[i].Mean(), trends_[i].Maximum()});
        }
        auto lines = InColumns(rows);
        std::size_t used = 0;
        for (const auto& line : lines) used = std::max(used, Length(line) + 2);
        const auto room = width > used ? std::min(width - used, longestHistory) : 0;
        for (std::size_t i = 0; i < trends_.size(); ++i) {
            auto& line = lines[i + 1];
            line.append(used - Length(line), ' ').append(trends_[i].History(room, terminal::KnowsUnicode()));
        }
        return lines;
    }

    Output& out_;
    std::vector<Trend> trends_;
    std::vector<std::array<std::string, 2>> shown_;  ///< name and value
    int samples_ = 0;
    std::string notice_;
    std::size_t height_ = 0;
};

}  // namespace

std::unique_ptr<WatchView> CreateWatchView(Output& out, std::span<const Request> requests) {
    if (out.IsJson()) return std::make_unique<JsonView>(out);
    if (terminal::ShowsOutput()) return std::make_unique<TableView>(out, requests.size());
    return std::make_unique<CsvView>(out, requests);
}

}  // namespace cli
