// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QString>

namespace Qf
{

/// A bar on stderr when that is a terminal, else nothing; it disappears with the object.
class ProgressBar
{
public:
    /// \param total 0 when it is not known
    ProgressBar(const QString& activity, unsigned long long total);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    void advanceTo(unsigned long long done);

private:
    void draw(unsigned long long done) const;

    QString m_activity;
    unsigned long long m_total;
    bool m_visible;
    QElapsedTimer m_sinceDrawn;
};

} // namespace Qf
