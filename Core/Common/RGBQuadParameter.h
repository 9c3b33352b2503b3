// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace RTE
{

/// One entry of a colour table, 8 bits a channel.
struct RGBQuadParameter
{
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;

    friend constexpr bool operator==(const RGBQuadParameter&, const RGBQuadParameter&) = default;
};

} // namespace RTE
