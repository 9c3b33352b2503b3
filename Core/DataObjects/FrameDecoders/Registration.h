// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/FrameDecoders.h"

namespace DataObjects::FrameDecoder::Private
{

/// Registers `Decoder` when the library is loaded; one stands at the end of a decoder's source.
template <typename Decoder>
class Registration
{
public:
    Registration() { frameDecoders().registerDecoder<Decoder>(); }
};

} // namespace DataObjects::FrameDecoder::Private

/// Objects of different sources are made in the order of their priorities, whatever the order of linking. The
/// numbers are the places in the registry: 201 Mono10p, 202 Mono10pmsb, 203 Mono12p, 204 Mono12packed,
/// 205 Mono12pmsb, 206 Raw16, 207 Raw8.
#define DATAOBJECTS_REGISTER_DECODER(Decoder, priority)                                                      \
    namespace                                                                                                \
    {                                                                                                        \
    [[gnu::init_priority(priority)]] const DataObjects::FrameDecoder::Private::Registration<Decoder>         \
        registration##Decoder;                                                                               \
    }
