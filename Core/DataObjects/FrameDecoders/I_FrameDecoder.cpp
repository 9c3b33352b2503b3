// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/I_FrameDecoder.h"

namespace DataObjects::FrameDecoder
{

I_FrameDecoder::~I_FrameDecoder() = default;

} // namespace DataObjects::FrameDecoder
