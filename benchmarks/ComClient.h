#pragma once

#include <XTarn4x_h.h>

#include "benchmarks/Client.h"
#include "platform/com/ComPtr.h"

struct bench::Client::Parts {
    com::ComPtr<_clsTarn4x> driver;
    com::ComPtr<IDriverSetup> setup;
    com::ComPtr<INode> settings;

    Parts();
    void Set(const wchar_t* path, const std::string& value);
};
