#include <gtest/gtest.h>

#include "platform/com/Windows.h"

// The tests run in a single-threaded apartment, as the hosts do.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
