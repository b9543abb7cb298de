#include "simulator/ErrorQueue.h"

#include <algorithm>

namespace sim {

namespace {

struct Entry {
    int number;
    const char* text;
};

constexpr Entry kErrors[] = {
    {0, "No error"},
    {-101, "Invalid character"},
    {-104, "Data type error"},
    {-108, "Parameter not allowed"},
    {-109, "Missing parameter"},
    {-113, "Undefined header"},
    {-114, "Header suffix out of range"},
    {-138, "Suffix not allowed"},
    {-200, "Execution error"},
    {-221, "Settings conflict"},
    {-222, "Data out of range"},
    {-224, "Illegal parameter value"},
    {-230, "Data corrupt or stale"},
    {-241, "Hardware missing"},
    {-310, "System error"},
    {-350, "Queue overflow"},
    {-363, "Input buffer overrun"},
    {-410, "Query INTERRUPTED"},
};

}  // namespace

void ErrorQueue::Push(int number) {
    if (entries_.size() < kCapacity) {
        entries_.push_back(number);
    } else {
        entries_.back() = -350;
    }
}

std::string ErrorQueue::Pop() {
    int number = 0;
    if (!entries_.empty()) {
        number = entries_.front();
        entries_.pop_front();
    }
    const auto known = std::find_if(std::begin(kErrors), std::end(kErrors),
                                    [number](const Entry& entry) { return entry.number == number; });
    const char* text = known != std::end(kErrors) ? known->text : "Device-specific error";
    return std::to_string(number) + ",\"" + text + '"';
}

}  // namespace sim
