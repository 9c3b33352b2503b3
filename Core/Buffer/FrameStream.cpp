// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/FrameStream.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/Formats/AtomicFile.h"
#include "Core/Buffer/Formats/FileFormat.h"
#include "Core/Common/Raise.h"

namespace BufferApi
{

class FrameStream::Implementation
{
public:
    Implementation(const QString& path, const BufferOptions& options, Appearance appearance)
        : m_path(path), m_appearance(appearance), m_file(path),
          m_writer(Formats::createWriter(path, m_file.output(), options, Formats::Lasting::Yes)),
          m_description(CreateBuffer())
    {
        m_writer->acknowledge(*m_description);
    }

    ~Implementation()
    {
        try {
            if (m_state == State::Open) {
                finish();
            } else if (m_state == State::Failed && m_isLasting) {
                m_file.commit();
            }
        } catch (...) {
            // Whoever cares calls `finish`; what was acknowledged stays.
            static_cast<void>(m_path);
        }
    }

    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    [[nodiscard]] I_Buffer& description() noexcept { return *m_description; }
    [[nodiscard]] unsigned long long frameCount() const noexcept { return m_frames; }

    void append(const I_Frame& frame)
    {
        checkOpen();
        m_state = State::Failed;
        m_writer->append(frame);
        const bool isWhole = m_writer->acknowledge(*m_description);
        if (isWhole && m_frames == 0 && m_appearance == Appearance::FirstFrame) {
            m_file.commit();
        }
        m_isLasting = isWhole;
        m_state = State::Open;
        ++m_frames;
    }

    void finish()
    {
        if (m_state == State::Finished) {
            return;
        }
        checkOpen();
        m_state = State::Failed;
        m_writer->finish(*m_description);
        m_writer.reset();
        m_file.commit();
        m_state = State::Finished;
    }

    void discard() noexcept
    {
        m_state = State::Finished;
        m_writer.reset();
        m_file.discard();
    }

private:
    enum class State
    {
        Open,
        Failed,
        Finished
    };

    void checkOpen() const
    {
        if (m_state == State::Finished) {
            RTE::raise(RTE::LogicError(QStringLiteral("The stream is finished")));
        }
        if (m_state == State::Failed) {
            RTE::raise(RTE::FileWriteError(
                QStringLiteral("Cannot write '%1': writing frame %2 has failed").arg(m_path).arg(m_frames)));
        }
    }

    QString m_path;
    Appearance m_appearance;
    Formats::AtomicFile m_file;
    std::unique_ptr<Formats::FrameWriter> m_writer;
    std::unique_ptr<I_Buffer> m_description;
    unsigned long long m_frames = 0;
    bool m_isLasting = false;
    State m_state = State::Open;
};

FrameStream::FrameStream(const QString& path, const BufferOptions& options, Appearance appearance)
    : m_implementation(std::make_unique<Implementation>(path, options, appearance))
{
}

FrameStream::~FrameStream() = default;

I_Buffer& FrameStream::description() noexcept
{
    return m_implementation->description();
}

unsigned long long FrameStream::frameCount() const noexcept
{
    return m_implementation->frameCount();
}

void FrameStream::append(const I_Frame& frame)
{
    m_implementation->append(frame);
}

void FrameStream::finish()
{
    m_implementation->finish();
}

void FrameStream::discard() noexcept
{
    m_implementation->discard();
}

} // namespace BufferApi
