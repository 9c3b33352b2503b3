// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageExtraction.h"

#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/ImageVolume.h"
#include "Core/DataObjects/LazyMask.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/Scales.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size3T<unsigned int>;
using Voxel = Math::Point3T<unsigned int>;

constexpr unsigned int width = 4;
constexpr unsigned int height = 3;
constexpr unsigned int depth = 2;
const Voxel invalid(2, 1, 1);

/// No two voxels are equal.
unsigned int valueAt(const Voxel& voxel)
{
    return 1 + voxel.x + 10 * voxel.y + 100 * voxel.z;
}

template <typename T>
ImageVolume<T> makeVolume()
{
    ImageVolume<T> volume(Size(width, height, depth), true);
    for (unsigned int z = 0; z < depth; ++z) {
        for (unsigned int y = 0; y < height; ++y) {
            for (unsigned int x = 0; x < width; ++x) {
                volume.SetVoxel(x, y, z, static_cast<T>(valueAt({x, y, z})));
            }
        }
        volume.getPlane(z).GetScalarFields().Add("Field");
    }
    volume.SetMaskValid(invalid, false);
    volume.SetScaleX({2.0, 10.0, "mm", "x"});
    volume.SetScaleY({3.0, 20.0, "m", "y"});
    volume.SetScaleZ({4.0, 30.0, "km", "z"});
    volume.SetScaleI({5.0, 40.0, "counts", "I"});
    volume.GetAttributes().set("Key", 7);
    return volume;
}

template <typename T, typename VoxelOf>
void expectPixels(const ImageVariant& cut, unsigned int cutWidth, unsigned int cutHeight, VoxelOf voxelOf)
{
    ASSERT_EQ(cut.GetWidth(), cutWidth);
    ASSERT_EQ(cut.GetHeight(), cutHeight);
    const auto& image = dynamic_cast<const Image<T>&>(cut);
    for (unsigned int y = 0; y < cutHeight; ++y) {
        for (unsigned int x = 0; x < cutWidth; ++x) {
            const Voxel voxel = voxelOf(x, y);
            EXPECT_EQ(image(x, y), static_cast<T>(valueAt(voxel))) << x << ", " << y;
            EXPECT_EQ(image.IsMaskValid(x, y), !(voxel == invalid)) << x << ", " << y;
        }
    }
}

TEST(ImageExtraction, TakesTheVoxelsAndTheirValidityOfEachType)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const ImageVolume<T> volume = makeVolume<T>();
        expectPixels<T>(*ExtractXYImage(volume, 1), width, height,
                        [](auto x, auto y) { return Voxel(x, y, 1); });
        expectPixels<T>(*ExtractXZImage(volume, 1), width, depth,
                        [](auto x, auto z) { return Voxel(x, 1, z); });
        expectPixels<T>(*ExtractYZImage(volume, 2), height, depth,
                        [](auto y, auto z) { return Voxel(2, y, z); });
        expectPixels<T>(*ExtractZYImage(volume, 2), depth, height,
                        [](auto z, auto y) { return Voxel(2, y, z); });
    });
}

TEST(ImageExtraction, TurnsTheScalesWithTheAxesAndPutsTheCutIntoTheOffset)
{
    const ImageVolume<float> volume = makeVolume<float>();
    const FourScales scales = scalesOf(volume);
    const auto& [x, y, z, i] = scales;
    const auto at = [](const Zt::LinearScale& axis, double factor, double offset) {
        return Zt::LinearScale(factor, offset, axis.getUnit(), axis.getDescription());
    };
    const auto check = [](const char* name, const std::unique_ptr<ImageVariant>& cut,
                          const FourScales& expected, unsigned int scalarFields) {
        SCOPED_TRACE(name);
        EXPECT_EQ(scalesOf(*cut), expected);
        EXPECT_EQ(cut->GetAttributes().attributeValue("Key").value<int>(), 7);
        EXPECT_EQ(cut->GetScalarFields().size(), scalarFields);
    };
    check("XY", ExtractXYImage(volume, 1), {x, y, at(z, 4.0, 34.0), i}, 1);
    check("XZ", ExtractXZImage(volume, 2), {x, z, at(y, 3.0, 26.0), i}, 0);
    check("YZ", ExtractYZImage(volume, 3), {y, z, at(x, 2.0, 16.0), i}, 0);
    check("ZY", ExtractZYImage(volume, 3), {z, y, at(x, 2.0, 16.0), i}, 0);
    EXPECT_EQ(volume.GetScaleZ().getOffset(), 30.0) << "the cut shares nothing with the volume";
}

TEST(ImageExtraction, AMaskThatNobodyAskedForIsValidAndNotMade)
{
    std::vector<Image<float>> planes;
    planes.emplace_back(ImageData<float>(width, height, 1.0F),
                        std::make_unique<LazyMask>(width, height, true));
    const ImageVolume<float> volume(std::move(planes));
    for (const auto& cut : {ExtractXZImage, ExtractYZImage, ExtractZYImage}) {
        EXPECT_TRUE(AllValuesValid(*cut(volume, 0)));
    }
    EXPECT_FALSE(volume.getPlane(0).IsMaskSpawned());
}

TEST(ImageExtraction, RefusesIndicesBeyondTheAxis)
{
    const ImageVolume<int> volume = makeVolume<int>();
    expectRaised<RTE::OutOfRangeError>({{"z plane index", [&] { return ExtractXYImage(volume, depth); }},
                                        {"y plane index", [&] { return ExtractXZImage(volume, height); }},
                                        {"x plane index", [&] { return ExtractYZImage(volume, width); }},
                                        {"x plane index", [&] { return ExtractZYImage(volume, width); }}});
}

TEST(ImageExtraction, GivesOneRowAsNumbers)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto volume = makeVolume<T>();
        const auto& data = volume.getPlane(0).GetImageData();
        EXPECT_EQ(getImageDataLine(data, 2), (std::vector<double>{21, 22, 23, 24}));
        EXPECT_TRUE(getImageDataLine(data, height).empty());
    });
    ImageData<int> released(4, 3, 0);
    const std::unique_ptr<int[]> pixels(released.ReleaseRawPointer());
    EXPECT_TRUE(raises("data-pointer is null", [&] { return getImageDataLine(released, 0); }));
}

} // namespace
