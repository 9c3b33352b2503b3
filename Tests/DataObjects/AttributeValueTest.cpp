// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributeValue.h"

#include "Core/Common/Settings.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Raises.h"

#include <QMetaType>
#include <QSequentialIterable>
#include <QVariant>

#include <boost/lexical_cast/try_lexical_convert.hpp>
#include <boost/numeric/conversion/cast.hpp>

#include <bit>
#include <climits>
#include <cmath>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <tuple>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using boost::numeric::negative_overflow;
using boost::numeric::positive_overflow;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

AttributeValue text(const char* value)
{
    return AttributeValue(QString::fromLatin1(value));
}

/// One value of each kind, with its number, count and text.
struct Kind
{
    AttributeValue value;
    unsigned int type;
    unsigned long long count;
    const char* text;
};

const std::vector<Kind>& kinds()
{
    using Signed = signed char;
    using Unsigned = unsigned char;
    static const std::vector<Kind> all{
        {AttributeValue(), 0, 0, ""},
        {AttributeValue(QStringLiteral("12.5")), 1, 1, "12.5"},
        {AttributeValue(std::string("a\xB0")), 1, 1, "a\xB0"},
        {AttributeValue("plain"), 1, 1, "plain"},
        {AttributeValue(Signed(-7)), 2, 1, "-7"},
        {AttributeValue(short(-300)), 3, 1, "-300"},
        {AttributeValue(INT_MIN), 4, 1, "-2147483648"},
        {AttributeValue(LLONG_MIN), 5, 1, "-9223372036854775808"},
        {AttributeValue(Unsigned(200)), 6, 1, "200"},
        {AttributeValue(static_cast<unsigned short>(65535)), 7, 1, "65535"},
        {AttributeValue(UINT_MAX), 8, 1, "4294967295"},
        {AttributeValue(ULLONG_MAX), 9, 1, "18446744073709551615"},
        {AttributeValue(0.1F), 10, 1, "0.1"},
        {AttributeValue(0.1), 11, 1, "0.1"},
        {AttributeValue(std::vector<unsigned short>{0, 65535}), 12, 2, "0,65535"},
        {AttributeValue(std::vector<int>{INT_MIN, 0, INT_MAX}), 13, 3, "-2147483648,0,2147483647"},
        {AttributeValue(std::vector<float>{1.5F, 2.F}), 14, 2, "1.5,2"},
        {AttributeValue(std::vector<double>{0.25}), 15, 1, "0.25"},
        {AttributeValue(std::vector<double>()), 15, 0, ""},
    };
    return all;
}

TEST(AttributeValue, KnowsItsKindAndText)
{
    for (const auto& [value, type, count, expected] : kinds()) {
        SCOPED_TRACE(type);
        EXPECT_EQ(value.GetType(), type);
        EXPECT_EQ(value.Count(), count);
        EXPECT_EQ(value.toStdString(), expected);
        EXPECT_EQ(value.toString(), QString::fromLatin1(expected));
        EXPECT_EQ(value.IsNull(), type == 0);
        EXPECT_EQ(value.IsScalar(), type >= 1 && type <= 11);
        EXPECT_EQ(value.IsList(), type >= 12);
        EXPECT_EQ(value.IsList<unsigned short>(), type == 12);
        EXPECT_EQ(value.IsList<int>(), type == 13);
        EXPECT_EQ(value.IsList<float>(), type == 14);
        EXPECT_EQ(value.IsList<double>(), type == 15);
        EXPECT_EQ(value.isFloatingPoint(), type == 10 || type == 11 || type == 14 || type == 15);
    }
    static_assert(!std::is_constructible_v<AttributeValue, long>);
    static_assert(!std::is_constructible_v<AttributeValue, unsigned long>);
}

TEST(AttributeValue, CopiesAreEqualAndMovingLeavesNull)
{
    for (const auto& [value, type, count, expected] : kinds()) {
        SCOPED_TRACE(type);
        AttributeValue copy(value);
        EXPECT_EQ(copy, value);
        EXPECT_EQ(*value.Clone(), value);
        AttributeValue moved("to be replaced");
        moved = std::move(copy);
        EXPECT_EQ(moved, value);
        EXPECT_TRUE(copy.IsNull());
        AttributeValue& same = moved;
        moved = std::move(same);
        EXPECT_EQ(moved, value);
    }
}

TEST(AttributeValue, TextsMayBeMissingOrHoldAZero)
{
    const std::string bytes("12\0"
                            "34",
                            5);
    const AttributeValue value(bytes);
    EXPECT_EQ(value.toStdString(), bytes);
    EXPECT_EQ(value.toString(), QStringLiteral("12"));
    EXPECT_EQ(AttributeValue(QString::fromLatin1(bytes.data(), 5)).value<int>(), 12);
    const AttributeValue null(static_cast<const char*>(nullptr));
    EXPECT_EQ(null.GetType(), AttributeValue::TypeString);
    EXPECT_EQ(null.value<QString>(), QString());
}

TEST(AttributeValue, IsEqualByKindAndText)
{
    EXPECT_EQ(AttributeValue(nan), AttributeValue(-nan));
    EXPECT_EQ(text("\xE9"), AttributeValue("\xE9"));
    EXPECT_NE(AttributeValue(1), AttributeValue(1LL));
    EXPECT_NE(AttributeValue(), AttributeValue(""));
    EXPECT_NE(AttributeValue(0.1), AttributeValue(std::nextafter(0.1, 1.0)));
    EXPECT_EQ(AttributeValue(std::vector<double>{1e-7}), AttributeValue(std::vector<double>{2e-7}));
}

/// What the library's text to number conversion has to be: the stream behind boost::lexical_cast.
double referenceNumber(const std::string& number)
{
    double value = 0.0;
    return boost::conversion::try_lexical_convert(number, value) ? value : 0.0;
}

testing::AssertionResult readsAsReference(const std::string& number)
{
    const double expected = referenceNumber(number);
    for (const double read : {AttributeValue(number).value<double>(), text(number.c_str()).value<double>()}) {
        const bool same = std::isnan(expected)
                              ? std::isnan(read) && std::signbit(read) == std::signbit(expected)
                              : std::bit_cast<long long>(read) == std::bit_cast<long long>(expected);
        if (!same) {
            return testing::AssertionFailure()
                   << '"' << number << "\" reads as " << read << " instead of " << expected;
        }
    }
    return testing::AssertionSuccess();
}

TEST(AttributeValue, ReadsNumberTextAsLexicalCastDoes)
{
    const QString numbers = QStringLiteral(
        "|+|-|12.9|-12.9|+12.9| 12|12 |\t1|1,5|+-5|--5|-+5|++5|.|-.|.5|5.|-.5e1|1.e5|.e5|e5|1e|1e+|1E-"
        "|1e5e|1e5-|12-|1e05|1E+5|1e 5|0x10|1f|1.2.3|1e2.5|1_000|1'000|-0|-0.0|9007199254740993"
        "|nan|NaN|-nan|+NAN|nan()|nan(|nan)|nan(abc)|-nan((x)|nan(a)b|nanx|+-nan"
        "|inf|-INF|+Infinity|infinit|infinityx|-inf(|--inf|+-inf"
        "|1e308|1.7976931348623157e308|1.7976931348623159e308|1e309|-1e400|1e999999999999|0e999999999999"
        "|1e-307|2.2250738585072011e-308|4.9e-324|2e-324|1e-400|-1e-400|1e-999999999999"
        "|00000000000000000000000000001|0.1000000000000000055511151231257827021181583404541015625");
    for (const QString& number : numbers.split(u'|')) {
        EXPECT_TRUE(readsAsReference(number.toStdString()));
    }
    // Around the size of the buffer, and far beyond.
    for (const std::size_t digits : {63U, 64U, 65U, 1000U}) {
        EXPECT_TRUE(readsAsReference(std::string(digits, '7')));
    }
    EXPECT_TRUE(readsAsReference("0." + std::string(400, '0') + "1"));
    EXPECT_TRUE(readsAsReference("1\xA0"
                                 "0"));
}

TEST(AttributeValue, ReadsAnyTextAsLexicalCastDoes)
{
    const std::string letters = "0123456789012345+-..eEnaifty()IN ";
    std::mt19937 random(20240517);
    for (int i = 0; i < 60000; ++i) {
        std::string number;
        for (auto length = random() % 9; length > 0; --length) {
            number += letters[random() % letters.size()];
        }
        ASSERT_TRUE(readsAsReference(number));
    }
}

TEST(AttributeValue, NumbersPassThroughTheirText)
{
    EXPECT_EQ(AttributeValue(0.1F).value<double>(), 0.1);
    EXPECT_EQ(AttributeValue(0.1F).value<float>(), 0.1F);
    EXPECT_EQ(AttributeValue(std::numeric_limits<float>::denorm_min()).value<double>(), 1e-45);
    EXPECT_EQ(AttributeValue(123456792.F).value<int>(), 123456792);
    EXPECT_EQ(AttributeValue((1LL << 53) + 1).value<long long>(), 1LL << 53);
    EXPECT_EQ(AttributeValue((1ULL << 63) + 1).value<unsigned long long>(), 1ULL << 63);
    EXPECT_FALSE(std::signbit(AttributeValue(-0.0).value<double>()));
    EXPECT_FALSE(std::signbit(AttributeValue(-0.F).value<double>()));
    EXPECT_TRUE(std::isnan(AttributeValue(-nan).value<float>()));

    // Whatever the value, what a number reads as is what its own text reads as.
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        const auto bits = random();
        const AttributeValue values[]{
            std::bit_cast<double>(bits),     std::bit_cast<float>(static_cast<unsigned int>(bits)),
            static_cast<long long>(bits),    static_cast<unsigned long long>(bits),
            static_cast<unsigned int>(bits), static_cast<short>(bits)};
        for (const AttributeValue& value : values) {
            const double read = value.value<double>();
            const double expected = referenceNumber(value.toStdString());
            ASSERT_TRUE(read == expected || (std::isnan(read) && std::isnan(expected)))
                << value.toStdString();
        }
    }
}

TEST(AttributeValue, TruncatesTowardZeroWithinTheRange)
{
    EXPECT_EQ(text("12.9").value<int>(), 12);
    EXPECT_EQ(text("-12.9").value<int>(), -12);
    EXPECT_EQ(text("abc").value<int>(), 0);
    EXPECT_EQ(text("255.99").value<unsigned char>(), 255);
    EXPECT_EQ(text("-0.99").value<unsigned short>(), 0);
    EXPECT_EQ(text("-128.5").value<signed char>(), -128);
    EXPECT_EQ(text("4294967295.5").value<unsigned int>(), UINT_MAX);
    EXPECT_EQ(text("-9223372036854774784").value<long>(), -9223372036854774784L);
    EXPECT_EQ(text("18446744073709549568").value<unsigned long>(), 18446744073709549568UL);
    EXPECT_EQ(text("nan").value<int>(), 0);
    EXPECT_EQ(text("Infinity").value<double>(), infinity);
    EXPECT_EQ(text("3.4028234663852886e38").value<float>(), std::numeric_limits<float>::max());
}

TEST(AttributeValue, OverflowsLeaveAsTheyAre)
{
    EXPECT_THROW(std::ignore = text("300").value<unsigned char>(), positive_overflow);
    EXPECT_THROW(std::ignore = text("-1").value<unsigned char>(), negative_overflow);
    EXPECT_THROW(std::ignore = text("-129").value<signed char>(), negative_overflow);
    EXPECT_THROW(std::ignore = text("32768").value<short>(), positive_overflow);
    EXPECT_THROW(std::ignore = text("65536").value<unsigned short>(), positive_overflow);
    EXPECT_THROW(std::ignore = text("Infinity").value<float>(), positive_overflow);
    EXPECT_THROW(std::ignore = text("Infinity").value<int>(), positive_overflow);
    EXPECT_THROW(std::ignore = text("-inf").value<unsigned long long>(), negative_overflow);
    EXPECT_THROW(std::ignore = text("3.402823466385289e38").value<float>(), positive_overflow);
    EXPECT_THROW(std::ignore = AttributeValue(std::numeric_limits<float>::max()).value<float>(),
                 positive_overflow);
    EXPECT_THROW(std::ignore = AttributeValue(-1).value<unsigned int>(), negative_overflow);
    EXPECT_THROW(std::ignore = AttributeValue(LLONG_MAX).value<long long>(), positive_overflow);
    EXPECT_THROW(std::ignore = AttributeValue(LLONG_MIN).value<long long>(), negative_overflow);
    EXPECT_THROW(std::ignore = AttributeValue(ULLONG_MAX).value<unsigned long>(), positive_overflow);
    EXPECT_THROW(std::ignore = AttributeValue(std::vector<int>{-1}).value<unsigned short>(),
                 negative_overflow);
    EXPECT_THROW(std::ignore = AttributeValue(std::vector<double>{1e39}).value<float>(), positive_overflow);
}

TEST(AttributeValue, AListOfOneReadsAsItsElement)
{
    EXPECT_EQ(AttributeValue(std::vector<int>{7}).value<double>(), 7.0);
    EXPECT_EQ(AttributeValue(std::vector<unsigned short>{65535}).value<int>(), 65535);
    EXPECT_EQ(AttributeValue(std::vector<float>{-3.9F}).value<signed char>(), -3);
    EXPECT_EQ(AttributeValue(std::vector<float>{0.1F}).value<double>(), double{0.1F});
    EXPECT_EQ(AttributeValue(std::vector<double>{nan}).value<long>(), 0);
    EXPECT_EQ(AttributeValue(std::vector<double>{1.5}).value<QString>(), QStringLiteral("1.5"));
}

TEST(AttributeValue, ReadsTruth)
{
    const auto expect = [](bool expected, std::initializer_list<AttributeValue> values) {
        for (const AttributeValue& value : values) {
            EXPECT_EQ(value.value<bool>(), expected) << value.GetType() << ' ' << value.toStdString();
        }
    };
    expect(true, {text("1"), text("2"), text("0.5"), text("nan"), text(" 1")});
    expect(false, {text("0"), text("-0"), text("true"), text("")});
    // A std::string is held to a stricter rule.
    expect(true, {"1", "0001", "+1", "+001"});
    expect(false, {"0", "2", "0.5", "true", "x1", "11", "-1", "-0", "+", "", " 1", "nan"});
    expect(true, {-5, 1LL << 32, 0.4, 0.4F, nan, infinity});
    expect(false, {0, 0U, -0.0, 1e-50});
}

template <typename... Types, typename Check>
void forTypes(Check check)
{
    (check.template operator()<Types>(), ...);
}

template <typename Check>
void forNumbers(Check check)
{
    forTypes<signed char, unsigned char, short, unsigned short, int, unsigned int, long, unsigned long,
             long long, unsigned long long, float, double>(check);
}

TEST(AttributeValue, RefusesWhatItCannotConvert)
{
    const AttributeValue null;
    const AttributeValue two(std::vector<int>{1, 2});
    const AttributeValue none{std::vector<float>()};
    const AttributeValue one(std::vector<int>{1});
    const auto refuseNull = [&]<typename T>() {
        EXPECT_TRUE(raises<RTE::InvalidArgumentError>(QStringLiteral("Attribute value is null."),
                                                      [&] { std::ignore = null.value<T>(); }));
    };
    const auto refuseLists = [&]<typename T>() {
        for (const AttributeValue& list : {two, none}) {
            EXPECT_TRUE(
                raises(QStringLiteral("List is not convertible."), [&] { std::ignore = list.value<T>(); }));
        }
    };
    forNumbers(refuseNull);
    forNumbers(refuseLists);
    forTypes<bool, std::string, QString>(refuseNull);
    EXPECT_TRUE(raises(QStringLiteral("List is not convertible."), [&] { std::ignore = one.value<bool>(); }));
}

TEST(AttributeValue, AListReadsAsItsOwnElementTypeOnly)
{
    const auto onlyOwn = [&]<typename T>() {
        const std::vector<T> list{T(1), T(2.75), T(3)};
        EXPECT_EQ(AttributeValue(list).value<std::vector<T>>(), list);
        for (const Kind& kind : kinds()) {
            if (!kind.value.IsList<T>()) {
                EXPECT_TRUE(raises(QStringLiteral("Not convertible"),
                                   [&] { std::ignore = kind.value.value<std::vector<T>>(); }));
            }
        }
    };
    forTypes<unsigned short, int, float, double>(onlyOwn);
}

/// The text of a list as its definition tells it, with streams.
template <typename T>
std::string referenceListText(const std::vector<T>& list)
{
    std::ostringstream joined;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const T element = list[i];
        const bool inRange = element > T(-2147483648.0) && element < T(2147483648.0);
        std::stringstream fraction;
        fraction << std::abs(element - static_cast<T>(inRange ? static_cast<int>(element) : INT_MIN));
        const int decimals = static_cast<int>(fraction.str().size()) - 2;
        joined << (i > 0 ? "," : "") << std::fixed << std::setprecision(decimals < 1 ? 0 : decimals)
               << element;
    }
    return joined.str();
}

TEST(AttributeValue, WritesListElementsWithTheDecimalsOfTheirFraction)
{
    using Doubles = std::vector<double>;
    EXPECT_EQ(AttributeValue(Doubles{2.0, 1.5, -0.25, 0.1}).toStdString(), "2,1.5,-0.25,0.1");
    EXPECT_EQ(AttributeValue(Doubles{1.0 + 1e-7}).toStdString(), "1.000");
    EXPECT_EQ(AttributeValue(Doubles{1.5e-07}).toStdString(), "0.00000");
    EXPECT_EQ(AttributeValue(Doubles{3e9}).toStdString(), "3000000000.000000000");
    EXPECT_EQ(AttributeValue(Doubles{-2147483648.5, infinity, -infinity, nan}).toStdString(),
              "-2147483648.5,inf,-inf,nan");
    const auto asReference = []<typename T>() {
        using Bits = std::conditional_t<sizeof(T) == 4, unsigned int, unsigned long long>;
        using Limits = std::numeric_limits<T>;
        std::vector<T> list{T(0.1),          T(-0.0),          T(1.0 / 3.0),
                            Limits::max(),   Limits::lowest(), Limits::denorm_min(),
                            T(2147483647.0), T(-2147483648.0), T(-2147483904.0),
                            T(999999.5),     T(0.9999999)};
        std::mt19937_64 random(11);
        for (int i = 0; i < 5000; ++i) {
            list.push_back(std::bit_cast<T>(static_cast<Bits>(random())));
            list.push_back(static_cast<T>(static_cast<int>(random())) / T(1000));
        }
        EXPECT_EQ(AttributeValue(list).toStdString(), referenceListText(list));
    };
    forTypes<float, double>(asReference);
}

TEST(AttributeValue, RoundTripsThroughSettings)
{
    for (const Kind& kind : kinds()) {
        SCOPED_TRACE(kind.type);
        Storage::Settings settings;
        EXPECT_EQ(&kind.value.SerializeTo(settings), &settings);
        EXPECT_EQ(settings.Get<unsigned int>(QStringLiteral("TypeId")), kind.type);
        EXPECT_EQ(settings.Get<QString>(QStringLiteral("ValueId")), QString::fromLatin1(kind.text));
        AttributeValue restored("something else");
        restored.DeserializeFrom(settings);
        if (kind.count > 0) {
            EXPECT_EQ(restored, kind.value);
        } else {
            EXPECT_EQ(restored.GetType(), kind.type);
        }
    }
}

AttributeValue deserialized(int type, const QString& text, AttributeValue value = {})
{
    Storage::Settings settings;
    settings.Set(QStringLiteral("TypeId"), type);
    settings.Set(QStringLiteral("ValueId"), text);
    value.DeserializeFrom(settings);
    return value;
}

TEST(AttributeValue, TakesItsValueFromTextByItsKind)
{
    // Texts of each kind, and the text of what it takes from them; -5 was there before.
    const std::map<unsigned int, std::vector<std::pair<const char*, const char*>>> textsByKind{
        {0, {{"7", ""}}},
        {1, {{"a,b", "a,b"}}},
        {2, {{"300", "44"}, {"-129", "127"}, {"2147483648", "-5"}}},
        {3, {{"32768", "-32768"}, {" 7 ", "7"}}},
        {4, {{"4294967297", "1"}, {"2147483648", "-2147483648"}, {"1.5", "-5"}, {"0x10", "-5"}}},
        {5, {{"-9223372036854775808", "-9223372036854775808"}, {"9223372036854775808", "-5"}}},
        {6, {{"999", "255"}, {"-1", "-5"}}},
        {7, {{"65536", "65535"}}},
        {8, {{"4294967295", "4294967295"}, {"4294967296", "0"}}},
        {9, {{"18446744073709551615", "18446744073709551615"}}},
        {10, {{"0.1", "0.1"}, {"1e39", "-5"}}},
        {11, {{"1e-5", "1e-05"}, {"1,5", "-5"}, {"nan", "nan"}, {"", "-5"}}},
        {12, {{"1,,65537", "1,0,1"}, {"", "0"}, {"-1,2", "0,2"}}},
        {13, {{"1,2147483648,-3", "1,0,-3"}}},
        {14, {{"1.5,1e39,x,2", "1.5,0,0,2"}}},
        {15, {{"1e400,0.25,", "0,0.25,0"}}},
        {16, {{"7", ""}}}};
    for (const auto& [type, texts] : textsByKind) {
        for (const auto& [text, stored] : texts) {
            const auto value =
                deserialized(static_cast<int>(type), QString::fromLatin1(text), AttributeValue(-5));
            EXPECT_EQ(value.GetType(), type);
            EXPECT_EQ(value.toStdString(), stored) << type << " from \"" << text << '"';
        }
    }
}

TEST(AttributeValue, UnreadableTextsAndUnknownKindsAreEmpty)
{
    const AttributeValue value = deserialized(AttributeValue::TypeInt32, QStringLiteral("x"));
    EXPECT_EQ(value.Count(), 1U);
    EXPECT_EQ(value.value<int>(), 0);
    EXPECT_FALSE(value.value<bool>());
    EXPECT_EQ(value.value<QString>(), QString());
    AttributeValue absent(5);
    absent.DeserializeFrom(Storage::Settings());
    EXPECT_TRUE(absent.IsNull());

    const AttributeValue unknown = deserialized(99, QStringLiteral("7"), AttributeValue(5));
    EXPECT_TRUE(unknown.IsList());
    EXPECT_FALSE(unknown.IsScalar());
    EXPECT_EQ(unknown.Count(), 0U);
    EXPECT_EQ(unknown.value<QString>(), QString());
    EXPECT_TRUE(raises("List is not convertible.", [&] { return unknown.value<int>(); }));
}

TEST(AttributeValue, AListReadInPlaceLeavesItsCopiesAlone)
{
    Storage::Settings settings;
    AttributeValue(std::vector<int>{3}).SerializeTo(settings);
    AttributeValue list(std::vector<int>{1, 2});
    const AttributeValue copy(list);
    for (const char* sharing : {"shared", "alone"}) {
        SCOPED_TRACE(sharing);
        list.DeserializeFrom(settings);
        EXPECT_EQ(list.value<std::vector<int>>(), std::vector<int>{3});
        EXPECT_EQ(copy.Count(), 2U);
    }
}

TEST(AttributeValue, ReadsNumberTextWithoutAllocation)
{
    const std::string longNumber = "0.1000000000000000055511151231257827021181583404541015625";
    for (const AttributeValue& value :
         {AttributeValue(longNumber), text(longNumber.c_str()), AttributeValue(0.1F), AttributeValue(0.1)}) {
        double read = 0.0;
        EXPECT_EQ(allocationsDuring([&] { read = value.value<double>(); }), 0U);
        EXPECT_EQ(read, 0.1);
    }
    // The counter itself sees what is taken by new and what Qt takes.
    std::string grown;
    EXPECT_EQ(allocationsDuring([&] { grown.resize(100); }), 1U);
    QString written;
    EXPECT_GT(allocationsDuring([&] { written = AttributeValue(0.1).toString(); }), 0U);
}

TEST(AttributeValue, ItsTypesAreKnownToQt)
{
    const AttributeValue value(std::string("x"));
    EXPECT_TRUE(QMetaType::fromName("std::string").isValid());
    const auto iterable = []<typename T>() {
        const QVariant list = QVariant::fromValue(std::vector<T>{T(1), T(2)});
        ASSERT_TRUE(list.canConvert<QSequentialIterable>());
        EXPECT_EQ(list.value<QSequentialIterable>().at(1).toInt(), 2);
        using View = QIterable<QMetaSequence>;
        EXPECT_TRUE((QMetaType::hasRegisteredMutableViewFunction<std::vector<T>, View>()));
    };
    forTypes<unsigned short, int, float, double>(iterable);
}

} // namespace
