// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/FrameDecoders.h"

#include "Core/Common/Raise.h"

#include <algorithm>
#include <utility>

namespace DataObjects::FrameDecoder
{

FrameDecoders::FrameDecoders() = default;
FrameDecoders::~FrameDecoders() = default;

int FrameDecoders::deregisterDecoder(const QString& id)
{
    if (id.isEmpty()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("ID must not be empty")));
    }
    const auto found = find(id);
    if (found == m_decoders.cend()) {
        RTE::raise(RTE::InvalidArgumentError(
            QStringLiteral("No frame decoder with id '%1' has been registered").arg(id)));
    }
    m_decoders.erase(found);
    return 0;
}

bool FrameDecoders::exists(const QString& id) const
{
    return find(id) != m_decoders.cend();
}

QStringList FrameDecoders::ids() const
{
    QStringList ids;
    for (const auto& decoder : m_decoders) {
        ids << decoder->id();
    }
    return ids;
}

std::optional<std::unique_ptr<I_FrameDecoder>> FrameDecoders::create(const QString& id) const
{
    const auto found = find(id);
    if (found == m_decoders.cend()) {
        return std::nullopt;
    }
    return (*found)->clone();
}

int FrameDecoders::add(std::unique_ptr<I_FrameDecoder> decoder)
{
    const QString id = decoder->id();
    if (id.isEmpty()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Decoder has invalid ID")));
    }
    if (exists(id)) {
        RTE::raise(RTE::InvalidArgumentError(
            QStringLiteral("Frame decoder '%1' is already registered (id: %2").arg(decoder->label(), id)));
    }
    m_decoders.push_back(std::move(decoder));
    return 0;
}

FrameDecoders::Decoders::const_iterator FrameDecoders::find(const QString& id) const
{
    return std::find_if(m_decoders.cbegin(), m_decoders.cend(),
                        [&id](const auto& decoder) { return decoder->id() == id; });
}

FrameDecoders& frameDecoders()
{
    static FrameDecoders registry;
    return registry;
}

} // namespace DataObjects::FrameDecoder
