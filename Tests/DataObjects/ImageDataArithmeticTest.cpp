// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageData.h"
#include "Tests/DataObjects/PixelReference.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SamePixels.h"

#include "Tests/Support/PixelTypeList.h"

#include <algorithm>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

template <typename T>
class ImageDataArithmetic : public testing::Test
{
protected:
    using Operator = std::function<void(ImageData<T>&, double)>;
    using Rule = T (*)(T, double);

    /// Runs over a view that begins at some pixel of an array, and watches the pixels around it.
    static void check(const char* name, const Operator& change, Rule rule, const std::vector<T>& pixels,
                      const std::vector<double>& operands)
    {
        std::vector<T> expected(pixels.size());
        for (const double operand : operands) {
            SCOPED_TRACE(testing::Message() << name << ' ' << testing::PrintToString(operand));
            std::transform(pixels.begin(), pixels.end(), expected.begin(),
                           [&](T pixel) { return rule(pixel, operand); });
            const std::size_t lead = 1 + pixels.size() % 37;
            std::vector<T> guarded(lead + pixels.size() + 1, T{77});
            std::copy(pixels.begin(), pixels.end(), guarded.data() + lead);
            ImageData<T> view(guarded.data() + lead, static_cast<unsigned int>(pixels.size()), 1, false);
            change(view, operand);
            ASSERT_TRUE(samePixels(view, expected));
            ASSERT_EQ(guarded[lead - 1], T{77});
            ASSERT_EQ(guarded.back(), T{77});
        }
    }

    static void checkAll(const std::vector<T>& pixels, const std::vector<double>& operands)
    {
        using namespace PixelReference;
        check(
            "+=", [](auto& data, double operand) { data += operand; }, sum<T>, pixels, operands);
        check(
            "-=", [](auto& data, double operand) { data -= operand; }, difference<T>, pixels, operands);
        check(
            "*=", [](auto& data, double operand) { data *= operand; }, product<T>, pixels, operands);
        check(
            "/=", [](auto& data, double operand) { data /= operand; }, quotient<T>, pixels, operands);
    }
};

TYPED_TEST_SUITE(ImageDataArithmetic, PixelTypeList);

TYPED_TEST(ImageDataArithmetic, MatchesTheReferenceForAllOperands)
{
    const auto pixels = PixelReference::samples<TypeParam>();
    this->checkAll(pixels, PixelReference::remarkableNumbers());
    this->checkAll(pixels, PixelReference::randomNumbers(100, 2));
}

TYPED_TEST(ImageDataArithmetic, MatchesTheReferenceInLargePlanes)
{
    const auto once = PixelReference::samples<TypeParam>();
    std::vector<TypeParam> pixels;
    while (pixels.size() < 600'000) {
        pixels.insert(pixels.end(), once.rbegin(), once.rend());
    }
    onEachTarget([&] {
        this->checkAll(pixels,
                       {0.1, 0.5, 1.005, 2.0, 3.0, 10.0, 98.0, 1.0 / 3.0, 700.0, 1e-3, 1e9, -2.5, 0.0,
                        std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()});
    });
}

TYPED_TEST(ImageDataArithmetic, MatchesTheReferenceAtAllShortLengths)
{
    const auto all = PixelReference::samples<TypeParam>();
    onEachTarget([&] {
        for (std::size_t length = 0; length < 140; ++length) {
            const std::vector<TypeParam> pixels(all.end() - static_cast<std::ptrdiff_t>(length), all.end());
            this->checkAll(pixels, {3.0, 1.25});
        }
    });
}

TYPED_TEST(ImageDataArithmetic, PlainOperatorsLeaveTheirObjectAlone)
{
    const ImageData<TypeParam> data(3, 1, TypeParam{10});
    for (const auto& [result, expected] : {std::pair(data + 2.0, 12), std::pair(data - 2.0, 8),
                                           std::pair(data * 2.0, 20), std::pair(data / 2.0, 5)}) {
        EXPECT_EQ(result.GetPixel(2, 0), static_cast<TypeParam>(expected));
        EXPECT_TRUE(result.HasOwnerShip());
    }
    EXPECT_EQ(data.GetPixel(2, 0), TypeParam{10});
}

TYPED_TEST(ImageDataArithmetic, DividesPixelByPixel)
{
    const auto values = PixelReference::samples<TypeParam>();
    std::mt19937 generator(3);
    onEachTarget([&] {
        for (int round = 0; round < 10; ++round) {
            std::vector<TypeParam> pixels(values);
            std::vector<TypeParam> divisors(values);
            std::shuffle(pixels.begin(), pixels.end(), generator);
            std::shuffle(divisors.begin(), divisors.end(), generator);
            // Small divisors give the large quotients.
            for (std::size_t i = 0; i < divisors.size(); i += 5) {
                divisors[i] = static_cast<TypeParam>(i / 5 % 3 == 0 ? 0 : i % 300);
            }
            std::vector<TypeParam> expected(pixels.size());
            std::transform(pixels.begin(), pixels.end(), divisors.begin(), expected.begin(),
                           PixelReference::ratio<TypeParam>);
            const auto width = static_cast<unsigned int>(pixels.size());
            ImageData<TypeParam> data(pixels.data(), width, 1, false);
            data /= ImageData<TypeParam>(divisors.data(), width, 1, false);
            ASSERT_TRUE(samePixels<TypeParam>(pixels, expected));
        }
    });
}

TYPED_TEST(ImageDataArithmetic, DividesByItself)
{
    auto pixels = PixelReference::samples<TypeParam>();
    std::vector<TypeParam> expected(pixels.size());
    std::transform(pixels.begin(), pixels.end(), pixels.begin(), expected.begin(),
                   PixelReference::ratio<TypeParam>);
    ImageData<TypeParam> data(pixels.data(), static_cast<unsigned int>(pixels.size()), 1, false);
    data /= data;
    EXPECT_TRUE(samePixels<TypeParam>(pixels, expected));
}

TYPED_TEST(ImageDataArithmetic, RefusesDivisorsOfAnotherShape)
{
    ImageData<TypeParam> data(6, 2, TypeParam{8});
    const ImageData<TypeParam> divisor(4, 3, TypeParam{2});
    EXPECT_TRUE(raises("Mismatching image sizes", [&] { data /= divisor; }));
    EXPECT_EQ(data[0], TypeParam{8});
}

TEST(ImageDataArithmeticWords, QuotientsJustBelowAndAtAWholeNumberAreExact)
{
    std::vector<unsigned short> pixels;
    std::vector<unsigned short> divisors;
    for (unsigned int divisor = 1; divisor <= 0xFFFF; ++divisor) {
        for (unsigned int multiple = divisor; multiple <= 0x10000; multiple += divisor) {
            pixels.push_back(static_cast<unsigned short>(multiple - 1));
            pixels.push_back(static_cast<unsigned short>(std::min(multiple, 0xFFFFU)));
            divisors.insert(divisors.end(), 2, static_cast<unsigned short>(divisor));
        }
    }
    std::vector<unsigned short> expected(pixels.size());
    std::transform(pixels.begin(), pixels.end(), divisors.begin(), expected.begin(), std::divides<>());
    const auto width = static_cast<unsigned int>(pixels.size());
    onEachTarget([&] {
        std::vector<unsigned short> quotients(pixels);
        ImageData<unsigned short> data(quotients.data(), width, 1, false);
        data /= ImageData<unsigned short>(divisors.data(), width, 1, false);
        EXPECT_TRUE(samePixels<unsigned short>(quotients, expected));
    });
}

TEST(ImageDataArithmeticWords, ProductsATraceBelowHalvesStayBelowThem)
{
    // Odd multiples of 3 end a trace below a half, up to the last pixels of a plane of odd length.
    onEachTarget([&] {
        ImageData<unsigned short> products(300'001, 1, 15);
        products *= 0x1.555555555554p-3;
        ImageData<unsigned short> quotients(300'001, 1, 15);
        quotients /= 0x1.8000000000018p+2;
        EXPECT_TRUE(std::all_of(products.begin(), products.end(), [](auto word) { return word == 2; }));
        EXPECT_TRUE(std::all_of(quotients.begin(), quotients.end(), [](auto word) { return word == 2; }));
    });
}

TEST(ImageDataArithmeticValues, KeptAsymmetries)
{
    const auto after = [](auto value, auto change) {
        ImageData<decltype(value)> data(1, 1, value);
        change(data);
        return data[0];
    };
    const auto nan = std::numeric_limits<float>::quiet_NaN();
    constexpr auto largest = std::numeric_limits<float>::max();
    EXPECT_EQ(after(static_cast<unsigned short>(101), [](auto& data) { data *= 1.005; }), 102);
    EXPECT_EQ(after(static_cast<unsigned short>(100), [](auto& data) { data *= 1.005; }), 100);
    EXPECT_EQ(after(static_cast<unsigned short>(100), [](auto& data) { data += 0.9; }), 100);
    EXPECT_EQ(after(-5, [](auto& data) { data /= ImageData<int>(1, 1, 0); }), 0);
    EXPECT_EQ(after(-5, [](auto& data) { data /= -0.0; }), 0x7FFFFFFF);
    EXPECT_EQ(after(-1.0F, [](auto& data) { data /= 0.0; }), largest);
    EXPECT_EQ(after(nan, [](auto& data) { data /= 0.0; }), largest);
    EXPECT_EQ(after(0, [=](auto& data) { data += nan; }), std::numeric_limits<int>::min());
    EXPECT_EQ(after(0x1.000002p0F, [](auto& data) { data /= 0x1.0000010000001p0; }), 1.0F);
}

} // namespace
