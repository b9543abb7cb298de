#pragma once

// The system headers of the automation layers, in the order in which they work.
#include <windows.h>
// clang-format off
#include <ole2.h>
#include <comcat.h>
#include <oleauto.h>
#include <olectl.h>
// clang-format on
