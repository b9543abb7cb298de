#include "tests/com-driver/Footprint.h"

#include <Seamlib_h.h>
#include <psapi.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "tests/com-driver/Bench.h"

namespace {

struct Quantity {
    const char* unit;
    long long allowance;
};
constexpr Quantity quantities[] = {
    {"heap blocks", 8}, {"heap bytes", 1024}, {"bytes of memory", 0x20000}, {"handles", 0}};
using Footprint = std::array<long long, std::size(quantities)>;

void WalkHeaps(long long& blocks, long long& bytes) {
    std::array<HANDLE, 256> heaps{};
    const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
    ASSERT_LT(count, heaps.size());
    for (DWORD index = 0; index < count; ++index) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[index]);
        while (HeapWalk(heaps[index], &entry)) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
            ++blocks;
            bytes += entry.cbData;
        }
        HeapUnlock(heaps[index]);
    }
}

long long CommittedMemory() {
    long long committed = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* address = nullptr; VirtualQuery(address, &region, sizeof region) != 0;) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) {
            committed += static_cast<long long>(region.RegionSize);
        }
        address = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
    }
    return committed;
}

// GetProcessHandleCount tells 0 under Wine 8, whatever there is.
long long OwnHandles() {
    constexpr int ExtendedHandleInformation = 64;
    constexpr LONG InfoLengthMismatch = static_cast<LONG>(0xC0000004U);
    struct Entry {
        void* object;
        ULONG_PTR process, handle;
        ULONG access;
        USHORT creator, type;
        ULONG attributes, reserved;
    };
    const auto query = reinterpret_cast<LONG(NTAPI*)(int, void*, ULONG, ULONG*)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll"), "NtQuerySystemInformation")));
    std::vector<ULONG_PTR> table(1 << 14);
    LONG result = InfoLengthMismatch;
    for (;; table.resize(2 * table.size())) {
        result =
            query(ExtendedHandleInformation, table.data(), static_cast<ULONG>(table.size() * sizeof table[0]), nullptr);
        if (result != InfoLengthMismatch) break;
    }
    EXPECT_EQ(result, 0);
    const auto entries = reinterpret_cast<const Entry*>(&table[2]);
    long long own = 0;
    for (ULONG_PTR index = 0; index < table[0]; ++index) own += entries[index].process == GetCurrentProcessId();
    EXPECT_GT(own, 0);
    return own;
}

Footprint TakeFootprint() {
    Footprint now{};
    now[3] = OwnHandles();
    now[2] = CommittedMemory();
    WalkHeaps(now[0], now[1]);
    return now;
}

}  // namespace

int Setting(const char* variable, int otherwise) {
    const char* text = std::getenv(variable);
    return text ? std::atoi(text) : otherwise;
}

void ExpectFlat(const std::string& name, int rounds, int cycles, const std::function<void()>& cycle) {
    const auto log = Create<IMessageLog>(__uuidof(clsMessageLog));
    std::vector<Footprint> footprints(static_cast<std::size_t>(rounds));
    for (auto& footprint : footprints) {
        for (int done = 0; done < cycles; ++done) {
            cycle();
            if (testing::Test::HasFailure()) return;
        }
        // Failures are logged, up to its capacity.
        ASSERT_EQ(log->Clear(), S_OK);
        footprint = TakeFootprint();
    }
    std::cout << "measured " << name << ", " << 8 * sizeof(void*) << "-bit, " << rounds << " x " << cycles << ':';
    for (std::size_t kind = 0; kind < std::size(quantities); ++kind) {
        std::cout << (kind ? "; " : " ") << quantities[kind].unit;
        for (const auto& footprint : footprints) std::cout << ' ' << footprint[kind];
    }
    std::cout << std::endl;
    ASSERT_GE(footprints.size(), 3u);
    for (std::size_t kind = 0; kind < std::size(quantities); ++kind) {
        for (auto later = footprints.begin() + 2; later != footprints.end(); ++later) {
            EXPECT_LE((*later)[kind], footprints[1][kind] + quantities[kind].allowance) << quantities[kind].unit;
        }
    }
}
