// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/FrameInputs.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/PlaneValues.h"
#include "Tools/qf/Session.h"

#include "Core/Buffer/LazyPlane.h"
#include "Core/Common/Raise.h"

#include <algorithm>
#include <limits>

namespace Qf
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_PlaneBase;

std::shared_ptr<const I_Buffer> importFile(const QString& path)
{
    checkInput(path);
    return std::shared_ptr<const I_Buffer>(BufferApi::ImportBuffer(path, {}));
}

} // namespace

OpenedFrame::OpenedFrame(std::shared_ptr<const I_Buffer> buffer, const QString& path, unsigned int index)
    : m_buffer(std::move(buffer)), m_frame(m_buffer->GetFrame(index))
{
    if (m_frame == nullptr) {
        RTE::raise(RTE::FileReadError(
            QStringLiteral("%1: frame %2 is gone; was the file replaced meanwhile?").arg(path).arg(index)));
    }
}

OpenedFrame::~OpenedFrame()
{
    forEachPlane(*m_frame,
                 [](const BufferApi::I_Component& /*component*/, unsigned int /*z*/, I_PlaneBase& plane) {
                     if (!isUnread(plane)) {
                         freePixels(&plane);
                     }
                 });
}

void OpenedFrame::load()
{
    forEachPlane(*m_frame,
                 [](const BufferApi::I_Component& /*component*/, unsigned int /*z*/, I_PlaneBase& plane) {
                     try {
                         static_cast<void>(plane.GetData());
                     } catch (const std::exception&) {
                         // The plane stays unread, and whoever asks for its data gets the reason.
                     }
                 });
}

FrameInputs::FrameInputs(const QStringList& paths, const Visitor& visit)
    : m_paths(paths), m_open(static_cast<std::size_t>(paths.size()))
{
    unsigned long long end = 0;
    for (const QString& path : paths) {
        Session::stopIfRequested();
        const auto buffer = importFile(path);
        m_first = m_first ? m_first : buffer;
        if (visit) {
            visit(path, *buffer);
        }
        end += buffer->GetFrameCount();
        if (end > std::numeric_limits<unsigned int>::max()) {
            RTE::raise(RTE::OutOfRangeError(QStringLiteral("more than 4294967295 frames")));
        }
        m_ends.push_back(static_cast<unsigned int>(end));
    }
    m_open.front() = m_first;
}

std::shared_ptr<OpenedFrame> FrameInputs::open(unsigned int number) const
{
    const auto end = std::upper_bound(m_ends.begin(), m_ends.end(), number);
    RTE::verify(end != m_ends.end(), "The sequence has no such frame");
    const auto file = static_cast<std::size_t>(end - m_ends.begin());
    const unsigned int start = file == 0 ? 0 : m_ends[file - 1];
    return std::make_shared<OpenedFrame>(bufferOf(file), m_paths[static_cast<qsizetype>(file)],
                                         number - start);
}

std::shared_ptr<const I_Buffer> FrameInputs::bufferOf(std::size_t file) const
{
    const std::lock_guard lock(m_mutex);
    m_latest = m_open[file].lock();
    if (!m_latest) {
        m_latest = importFile(m_paths[static_cast<qsizetype>(file)]);
        m_open[file] = m_latest;
    }
    return m_latest;
}

} // namespace Qf
