// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/I_FrameDecoder.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace DataObjects::FrameDecoder
{

/// The decoders that can be created by their id, in order of registration.
///
/// The library registers Mono10p, Mono10pmsb, Mono12p, Mono12packed, Mono12pmsb, Raw16 and Raw8 when it is
/// loaded. There is no lock: who changes the registry while other threads look up guards it himself.
class DATAOBJECTS_DATAOBJECTS_EXPORT FrameDecoders
{
public:
    FrameDecoders();
    FrameDecoders(const FrameDecoders&) = delete;
    FrameDecoders& operator=(const FrameDecoders&) = delete;
    ~FrameDecoders();

    /// Adds an instance of `Decoder`; returns 0, so that a static initialiser can call it.
    /// \throws RTE::InvalidArgumentError for an empty id and for one that is registered already
    template <typename Decoder>
    int registerDecoder()
    {
        return add(std::make_unique<Decoder>());
    }

    /// Removes the decoder of this id and returns 0; the later ones move up.
    /// \throws RTE::InvalidArgumentError for an empty and for an unknown id
    int deregisterDecoder(const QString& id);

    [[nodiscard]] bool exists(const QString& id) const;

    /// All ids in order of registration.
    [[nodiscard]] QStringList ids() const;

    /// A clone of the decoder of this id; nothing for an unknown one.
    [[nodiscard]] std::optional<std::unique_ptr<I_FrameDecoder>> create(const QString& id) const;

private:
    using Decoders = std::vector<std::unique_ptr<I_FrameDecoder>>;

    int add(std::unique_ptr<I_FrameDecoder> decoder);
    [[nodiscard]] Decoders::const_iterator find(const QString& id) const;

    Decoders m_decoders;
};

/// The registry of the process, made on first use.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT FrameDecoders& frameDecoders();

} // namespace DataObjects::FrameDecoder
