// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageToImage.h"

#include "Tests/DataObjects/Companions.h"
#include "Tests/Support/AllTypes.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;

TEST(RGBImageToImageTest, MonochromeImagesHaveTheMeanInTheirType)
{
    RGBImage image({{1, 2, 2}, {300, 300, 301}, {65535, 65535, 65534}}, 3, 1);
    addCompanions(image);
    forAllTypes([&]<typename T>(PixelTypes::Tag<T>) {
        const auto gray = createMonochromeImageFromRGBImage<T>(image);
        if constexpr (std::is_floating_point_v<T>) {
            EXPECT_EQ(gray(0, 0), T{5.0F / 3.0F});
            EXPECT_EQ(gray(2, 0), T{196604.0F / 3.0F});
        } else {
            EXPECT_EQ(gray(0, 0), T{1});
            EXPECT_EQ(gray(1, 0), sizeof(T) == 1 ? T{255} : static_cast<T>(300));
            EXPECT_EQ(gray(2, 0), sizeof(T) == 1 ? T{255} : static_cast<T>(65534));
        }
        expectCompanions(gray);
    });
}

} // namespace
