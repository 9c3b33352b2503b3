// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DataObjectAttributeSink.h"

#include "Core/Common/Settings.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;

TEST(DataObjectAttributeSink, WritesAndPassesOn)
{
    AttributesContainer attributes;
    DataObjectAttributeSink sink(attributes);
    const std::vector<double> doubles{0.5, 1e300};
    const std::vector<float> floats{0.1F};
    const std::vector<int> ints{-1, 2, 3};
    const std::vector<unsigned short> words{65535};
    sink.Add(QStringLiteral(u"\u00B5m"), QStringLiteral(u"\u0414"));
    sink.AddArray(QStringLiteral("double"), 2, doubles.data());
    sink.AddArray(QStringLiteral("float"), 1, floats.data());
    sink.AddArray(QStringLiteral("int"), 3, ints.data());
    sink.AddArray(QStringLiteral("word"), 1, words.data());
    sink.AddArray(QStringLiteral("empty"), 0, static_cast<const int*>(nullptr));
    std::vector<Attribute> expected{{"double", doubles}, {"empty", std::vector<int>{}},
                                    {"float", floats},   {"int", ints},
                                    {"word", words},     {"\xB5m", QStringLiteral(u"\u0414")}};
    EXPECT_EQ(attributes.toStdVector(), expected);

    attributes.set("number", 0.1F);
    Storage::Settings settings;
    settings.Set(QStringLiteral("TypeId"), 16U);
    AttributeValue unknown;
    unknown.DeserializeFrom(settings);
    attributes.set("unknown", unknown);
    AttributesContainer copy;
    DataObjectAttributeSink copySink(copy);
    sink.copyTo(&copySink);
    expected.erase(expected.begin() + 1);
    expected.insert(expected.begin() + 3, {"number", QStringLiteral("0.1")});
    EXPECT_EQ(copy.toStdVector(), expected);
}

TEST(DataObjectAttributeSink, RefusesANullSink)
{
    AttributesContainer attributes;
    const DataObjectAttributeSink sink(attributes);
    EXPECT_TRUE(raises<RTE::PreconditionFailed>("Precondition failed: attributesSink != nullptr",
                                                [&] { sink.copyTo(nullptr); }));
}

} // namespace
