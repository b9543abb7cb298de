// Times what the driver does between the wire and its caller, and counts the allocations of the heap.
#include <benchmark/benchmark.h>

#include <string>

#include "benchmarks/Allocations.h"
#include "driver/Conversions.h"
#include "driver/ResponseParsing.h"
#include "driver/clsTarn4x.h"
#include "host/Framework.h"

namespace {

/// Counts the allocations of one iteration from its construction on.
class AllocationCounter {
  public:
    explicit AllocationCounter(benchmark::State& state) : state_(state) {}
    ~AllocationCounter() {
        state_.counters["allocations"] =
            static_cast<double>(bench::Allocations() - before_) / static_cast<double>(state_.iterations());
    }
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;

  private:
    benchmark::State& state_;
    std::size_t before_ = bench::Allocations();
};

void ParseNumber(benchmark::State& state, const std::string& text) {
    tarn4x::ParsedAnswer answer;
    benchmark::DoNotOptimize(answer.ParseResponse(text));
    const AllocationCounter counter(state);
    for (auto unused : state) {
        benchmark::DoNotOptimize(unused);
        benchmark::DoNotOptimize(tarn4x::LeadingNumber(answer.ParseResponse(text)));
    }
}

/// An answer of that many digits, between quotes, behind a marker and before a remark.
void ParseLongNumber(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    ParseNumber(state, "\"<1." + std::string(length, '3') + " (4/10)\"");
    state.SetComplexityN(state.range(0));
}

void SplitValues(benchmark::State& state) {
    std::string list = "1.0";
    for (int i = 1; i < 1000; ++i) list += ",-" + std::to_string(i) + ".25";
    const AllocationCounter counter(state);
    for (auto unused : state) {
        benchmark::DoNotOptimize(unused);
        for (const auto piece : tarn4x::Split(list)) benchmark::DoNotOptimize(tarn4x::LeadingNumber(piece));
    }
}

/// Answers at once, without a wire.
class InstantTransport : public platform::Transport {
  public:
    float Timeout() override { return 5.0F; }
    void SetTimeout(float) override {}
    void SendReceive(std::string_view, std::string* response) override {
        if (response) *response = "-45.3";
    }
    void WriteString(std::string_view) override {}
    std::string ReadString(std::optional<std::string_view>) override { return "0,\"No error\""; }
    std::vector<std::uint8_t> ReadBlock(std::int16_t, std::optional<std::string_view>) override { return {}; }
    void WriteBlock(std::int16_t, std::span<const std::uint8_t>, std::optional<std::string_view>) override {}
    void SetName(std::string_view) override {}
    std::shared_ptr<platform::SettingsNode> Settings() override { return settings_; }
    void Connect(bool connect) override { connected_ = connect; }
    bool IsConnected() override { return connected_; }

  private:
    static std::shared_ptr<platform::SettingsNode> MakeSettings() {
        auto node = host::Framework().CreateNode();
        node->AddSetting("Comm Port", 0, 0, "");
        node->AddSetting("Baud Rate", 0, 0, "");
        return node;
    }

    std::shared_ptr<platform::SettingsNode> settings_ = MakeSettings();
    bool connected_ = false;
};

/// A driver's command channel on its settings, without a wire.
void Exchange(benchmark::State& state) {
    host::Framework framework;
    const auto settings = framework.CreateNode();
    settings->AddSetting("Remote Control", 0, 0, "")->SetValue(true, true, "Conduit.clsEthernet");
    settings->AddSetting("Log Messages", 0, 0, "")->SetValue(true, true, false);
    tarn4x::CommandChannel channel(framework, *settings);
    channel.SetTransport(std::make_shared<InstantTransport>());
    std::string answer;
    const AllocationCounter counter(state);
    for (auto unused : state) {
        benchmark::DoNotOptimize(unused);
        channel.SendCommand("READ:RF:LEVEL?", answer);
    }
}

BENCHMARK_CAPTURE(ParseNumber, bare, std::string("-45.3"));
BENCHMARK_CAPTURE(ParseNumber, typical, std::string("\"<1.0E-8 (4/10)\""));
BENCHMARK(ParseLongNumber)->RangeMultiplier(4)->Range(64, 65'536)->Complexity(benchmark::oN);
BENCHMARK(SplitValues);
BENCHMARK(Exchange);

}  // namespace

BENCHMARK_MAIN();
