// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/ProgressBar.h"

#include "Tools/qf/Session.h"

#include <algorithm>

#include <unistd.h>

namespace Qf
{

ProgressBar::ProgressBar(const QString& activity, unsigned long long total)
    : m_activity(activity), m_total(total), m_visible(!Session::isQuiet() && isatty(STDERR_FILENO) == 1)
{
}

ProgressBar::~ProgressBar()
{
    if (m_visible && m_sinceDrawn.isValid()) {
        Session::say(QStringLiteral("\r\x1b[K"));
    }
}

void ProgressBar::advanceTo(unsigned long long done)
{
    const qint64 intervalMs = 50;
    if (m_visible && (!m_sinceDrawn.isValid() || m_sinceDrawn.elapsed() >= intervalMs)) {
        draw(done);
        m_sinceDrawn.start();
    }
}

void ProgressBar::draw(unsigned long long done) const
{
    if (m_total == 0) {
        Session::say(QStringLiteral("\r%1 %2\x1b[K").arg(m_activity).arg(done));
        return;
    }
    const int width = 30;
    const int filled = static_cast<int>(std::min(done, m_total) * width / m_total);
    const QString bar = QString(filled, QLatin1Char('#')) + QString(width - filled, QLatin1Char('.'));
    Session::say(QStringLiteral("\r%1 [%2] %3 of %4\x1b[K").arg(m_activity, bar).arg(done).arg(m_total));
}

} // namespace Qf
