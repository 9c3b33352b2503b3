// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageData.h"
#include "Tests/DataObjects/PixelReference.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SamePixels.h"

#include <algorithm>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

/// Into a view that begins at some pixel of an array; watches the pixels around it.
template <typename To, typename From>
void checkAssign(std::vector<From>& pixels)
{
    std::vector<To> expected(pixels.size());
    std::transform(pixels.begin(), pixels.end(), expected.begin(), PixelReference::converted<To, From>);
    const std::size_t lead = 1 + pixels.size() % 37;
    std::vector<To> guarded(lead + pixels.size() + 1, To{77});
    const auto width = static_cast<unsigned int>(pixels.size());
    const ImageData<From> source(pixels.data(), width, 1, false);
    ImageData<To> destination(guarded.data() + lead, width, 1, false);
    static_cast<ImageDataVariant&>(destination).Assign(source);
    ASSERT_TRUE(samePixels(destination, expected));
    ASSERT_EQ(guarded[lead - 1], To{77});
    ASSERT_EQ(guarded.back(), To{77});
}

TEST(ImageDataConversion, MatchesTheReferenceForAllPairs)
{
    forAllPairs([](auto from, auto to) {
        auto pixels = PixelReference::samples<typename decltype(from)::type>();
        onEachTarget([&] { checkAssign<typename decltype(to)::type>(pixels); });
    });
}

TEST(ImageDataConversion, MatchesTheReferenceInPlanesBeyondTheCache)
{
    forAllPairs([]<typename From, typename To>(PixelTypes::Tag<From>, PixelTypes::Tag<To>) {
        const auto once = PixelReference::samples<From>();
        std::vector<From> pixels;
        while (pixels.size() * (sizeof(From) + sizeof(To)) < PixelReference::bytesBeyondTheCache()) {
            pixels.insert(pixels.end(), once.begin(), once.end());
        }
        checkAssign<To>(pixels);
    });
}

TEST(ImageDataConversion, MatchesTheReferenceAtAllShortLengths)
{
    forAllPairs([](auto from, auto to) {
        const auto all = PixelReference::samples<typename decltype(from)::type>();
        onEachTarget([&] {
            for (std::size_t length = 1; length < 140; ++length) {
                std::vector<typename decltype(from)::type> pixels(
                    all.end() - static_cast<std::ptrdiff_t>(length), all.end());
                checkAssign<typename decltype(to)::type>(pixels);
            }
        });
    });
}

TEST(ImageDataConversion, RefusesAnotherShapeForAllPairs)
{
    forAllPairs([](auto from, auto to) {
        const ImageData<typename decltype(from)::type> source(6, 2, 1);
        ImageData<typename decltype(to)::type> destination(4, 3, 7);
        EXPECT_TRUE(
            raises("Source and destination have different sizes.", [&] { destination.Assign(source); }));
        EXPECT_EQ(destination[0], 7);
    });
}

/// An object of a type that the library does not have.
class StrangeData : public ImageDataVariant
{
public:
    const Math::Size2T<unsigned int>& GetSize() const noexcept override { return m_size; }
    unsigned int GetWidth() const noexcept override { return m_size.width; }
    unsigned int GetHeight() const noexcept override { return m_size.height; }
    std::unique_ptr<ImageDataVariant> CreateCopy() const override { return nullptr; }
    E_DataType GetDataType() const noexcept override { return static_cast<E_DataType>(2); }
    bool HasOwnerShip() const noexcept override { return false; }
    void Assign(const ImageDataVariant&) override {}

private:
    Math::Size2T<unsigned int> m_size{9, 9};
};

TEST(ImageDataConversion, RefusesAnUnknownTypeBeforeItLooksAtSizes)
{
    forAllTypes([](auto to) {
        ImageData<typename decltype(to)::type> destination(4, 3, 7);
        EXPECT_TRUE(raises<RTE::Exception>("Unsupported image data type",
                                           [&] { destination.Assign(StrangeData()); }));
    });
}

TEST(ImageDataConversion, CastsOnlyToTheRightType)
{
    forAllPairs([]<typename From, typename To>(PixelTypes::Tag<From>, PixelTypes::Tag<To>) {
        ImageData<From> data(2, 2, 5);
        ImageDataVariant& variant = data;
        if constexpr (std::is_same_v<From, To>) {
            EXPECT_EQ(&CastImageDataTo<To>(variant), &data);
            const ImageData<To> moved(CastImageDataTo<To>(std::move(variant)));
            EXPECT_EQ(moved[3], 5);
            EXPECT_TRUE(data.empty());
        } else {
            EXPECT_TRUE(
                raises("bad image data cast", [&] { return CastImageDataTo<To>(std::as_const(variant)); }));
            const auto converted = CreateImageDataOfType<To>(variant, true);
            EXPECT_EQ(converted[3], 5);
        }
    });
}

} // namespace
