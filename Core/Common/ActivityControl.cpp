// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/ActivityControl.h"

namespace RTE
{

I_ActivityControl::~I_ActivityControl() = default;

void I_ActivityControl::ReportProgress(double, const QString&) const {}

} // namespace RTE
