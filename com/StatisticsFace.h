#pragma once

#include <XTarn4x_h.h>

#include <memory>

#include "platform/com/ComPtr.h"

namespace tarn4x {
class clsStatistics;
}

namespace com {

/// The object by which clients see alarm statistics.
ComPtr<_clsStatistics> StatisticsFor(std::shared_ptr<tarn4x::clsStatistics> statistics);

}  // namespace com
