// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

namespace RTE
{

/// A caller's hold on an operation that lasts: whether it is to stop, and how far it is.
///
/// Operations ask from the thread that they run in, several times a second. A stopped operation ends as it
/// tells itself, either with what it has or with an exception.
class DATAOBJECTS_COMMON_EXPORT I_ActivityControl
{
public:
    virtual ~I_ActivityControl();

    [[nodiscard]] virtual bool IsStopRequested() const = 0;
    /// Takes note of the progress, from 0 to 1, and of what is being done; the default does nothing.
    virtual void ReportProgress(double fraction, const QString& activity) const;

protected:
    I_ActivityControl() = default;
    I_ActivityControl(const I_ActivityControl&) = default;
    I_ActivityControl& operator=(const I_ActivityControl&) = default;
};

} // namespace RTE
