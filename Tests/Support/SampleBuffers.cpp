// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/SampleBuffers.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/C_TypedScalarFrame.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/LazyPlane.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace TestSupport
{

namespace
{

using namespace BufferApi;

constexpr E_DataType elementTypes[] = {DT_BYTE, DT_WORD, DT_INT32, DT_UINT32, DT_FLOAT, DT_DOUBLE, DT_RGB};

BufferPointer emptyBuffer()
{
    return BufferPointer(CreateBuffer());
}

I_FrameImage& addImage(I_Buffer& buffer, E_DataType type, unsigned int width, unsigned int height,
                       unsigned int depth = 1)
{
    auto* frame = CreateImageFrame(type, width, height, depth);
    buffer.AddFrame(frame);
    fillWithNoise(*frame, buffer.GetFrameCount());
    if (type == DT_RGB) {
        for (unsigned int z = 0; z < depth; ++z) {
            auto* pixels = static_cast<RgbQuad*>(frame->GetPlane(0, z)->GetData());
            std::for_each(pixels, pixels + std::size_t{width} * height, [](RgbQuad& p) { p.reserved = 0; });
        }
    }
    return *frame;
}

/// Attributes of frames and buffers are created alike.
template <typename Owner>
I_AttributePlane& createPlaneAttribute(Owner& owner, const std::string& name)
{
    return dynamic_cast<I_AttributePlane&>(*owner.CreateAttribute(name, AT_PLANE));
}

template <typename T, typename Owner>
void setValues(Owner& owner, const std::string& name, unsigned int height, const std::vector<T>& values)
{
    const auto width = height == 0 ? 0U : static_cast<unsigned int>(values.size()) / height;
    I_PlaneBase* plane = CreatePlane(GetDataType<T>(), width, height);
    std::copy(values.begin(), values.end(), static_cast<T*>(plane->GetData()));
    createPlaneAttribute(owner, name).SetPlane(plane);
}

template <typename Owner>
void addAllAttributes(Owner& owner)
{
    const auto specialFloat = std::bit_cast<float>(0x7FA12345U);
    const auto specialDouble = std::bit_cast<double>(0xFFF0000000000001ULL);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    setText(owner, "Label", QStringLiteral("é ü ± 速度 \U0001F300 \"quoted\" \\ \n\t"));
    setText(owner, "Empty", QString());
    setText(owner, "Null character", QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
    setText(owner, "Trailing null", QStringLiteral("a") + QChar(0));
    setText(owner, "Surrogate", QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b"));
    setText(owner, "Long", QString(100000, QLatin1Char('x')));
    setText(owner, "Acq.Device/Name %41", QStringLiteral("42.5"));
    setText(owner,
            "Gr\xF6\xDF"
            "e",
            QStringLiteral("latin"));
    setText(owner, "qf_format", QStringLiteral("not ours"));
    setText(owner, "qf_user_x", QStringLiteral("nor this"));
    setText(owner, "_NCProperties", QStringLiteral("nor this"));
    setText(owner, "Conventions", QStringLiteral("mine"));
    setText(owner, "CLASS", QStringLiteral("mine"));
    setText(owner, "units", QStringLiteral("mine"));
    setText(owner, std::string("null\0name", 9), QStringLiteral("x"));
    setText(owner, std::string(300, 'n'), QStringLiteral("long name"));
    setText(owner, " . ", QStringLiteral("spaces"));
    setText(owner, "\xE9\x80\x9F\xE5\xBA\xA6", QStringLiteral("a name that is UTF-8"));
    setText(owner, "\xC3\xA9", QStringLiteral("a name that could be UTF-8"));
    setValues<unsigned char>(owner, "bytes", 1, {0, 255});
    setValues<unsigned short>(owner, "one word", 1, {65535});
    setValues<int>(owner, "ints", 1, {std::numeric_limits<int>::min(), 0, std::numeric_limits<int>::max()});
    setValues<unsigned int>(owner, "grid", 2, {1, 2, 3, 4, 5, 4294967295U});
    setValues<float>(owner, "floats", 1, {0.1F, -0.0F, specialFloat, 1e-45F, NAN});
    setValues<double>(owner, "doubles", 3,
                      {0.1, -0.0, specialDouble, 5e-324, infinity, -infinity, NAN, 1e308, 1});
    setValues<double>(owner, "time", 1, {0.001});
    setValues<RgbQuad>(owner, "colours", 1, {{1, 2, 3, 4}, {255, 255, 255, 255}});
    setValues<double>(owner, "no values", 1, {});
    setValues<double>(owner, "no rows", 0, {});
    setValues<double>(owner, "many", 1, std::vector<double>(20000, 0.25));
    static_cast<void>(createPlaneAttribute(owner, "no plane"));
}

void setAllScales(I_Frame& frame, double factor)
{
    frame.SetScaleX({factor, -3.25, QStringLiteral("mm"), QStringLiteral("position")});
    frame.SetScaleY({-factor, std::nextafter(1.0, 2.0), QStringLiteral("seconds"), QStringLiteral("Zeit")});
    frame.SetScaleZ({std::bit_cast<double>(0x7FF4000000000001ULL), -0.0, QStringLiteral("µm²"), QString()});
    frame.SetScaleI({1.5 * factor, 0.0, QStringLiteral("days since 1970"), QStringLiteral("counts")});
}

BufferPointer allTypes()
{
    auto buffer = emptyBuffer();
    for (const E_DataType type : elementTypes) {
        addImage(*buffer, type, 17, 5);
        addImage(*buffer, type, 1, 1, 3);
    }
    return buffer;
}

/// Several chunks a plane, the last one not full.
BufferPointer largePlanes()
{
    auto buffer = emptyBuffer();
    addImage(*buffer, DT_WORD, 1031, 1021);
    addImage(*buffer, DT_DOUBLE, 701, 401, 2);
    addImage(*buffer, DT_RGB, 803, 907);
    return buffer;
}

BufferPointer colours()
{
    auto buffer = emptyBuffer();
    addImage(*buffer, DT_RGB, 7, 3, 2);
    auto& frame = addImage(*buffer, DT_RGB, 7, 3, 2);
    static_cast<RgbQuad*>(frame.GetPlane(0, 1)->GetData())[20].reserved = 7;
    return buffer;
}

BufferPointer emptyPlanes()
{
    auto buffer = emptyBuffer();
    for (const auto& [width, height, depth] :
         {std::tuple(0U, 4U, 1U), {5U, 0U, 2U}, {0U, 0U, 0U}, {3U, 2U, 0U}}) {
        addImage(*buffer, DT_WORD, width, height, depth);
    }
    buffer->AddFrame(CreateImageFrame(DT_RGB, 0, 1, 1));
    buffer->AddFrame(CreateVectorFrame3C(0, 3, 1, 2));
    return buffer;
}

BufferPointer vectorsOfAllForms()
{
    auto buffer = emptyBuffer();
    for (const unsigned int choices : {1U, 4U}) {
        auto* planar = CreateVectorFrame2C(9, 7, 1, choices);
        buffer->AddFrame(planar);
        planar->SetGridX(16);
        planar->SetGridY(8);
        fillWithNoise(*planar, choices);
        auto* spatial = CreateVectorFrame3C(5, 4, 3, choices);
        buffer->AddFrame(spatial);
        spatial->SetGridZ(4294967295U);
        spatial->AddMask({});
        fillWithNoise(*spatial, choices + 1);
        spatial->GetComponent("V")->SetScale({0.5, 0, QStringLiteral("m/s"), QStringLiteral("v")});
        spatial->GetComponent("W", choices - 1)->SetScale({2, 1, QStringLiteral("m/s"), QStringLiteral("w")});
    }
    return buffer;
}

BufferPointer scalarFields()
{
    auto buffer = emptyBuffer();
    auto& frame = addImage(*buffer, DT_WORD, 6, 4, 2);
    frame.AddMask({});
    for (const char* name :
         {"Correlation", "PIXEL", "mask", "frame", "x", "set1", "qf_x", "a/b %", ".", "a.b", "x_PIXEL",
          "channel_4", "\xE9\x80\x9F\xE5\xBA\xA6", "\xC3\xA9", "\xFF\x80", "\n",
          "Gr\xF6\xDF"
          "e",
          "TS:"}) {
        CreateTypedScalarInFrame(&frame, name, DT_FLOAT);
    }
    CreateTypedScalarInFrame(&frame, std::string(500, 'n'), DT_BYTE);
    CreateTypedScalarInFrame(&frame, "colour", DT_RGB);
    C_TypedScalarFrame(&frame, "Correlation")
        .SetLinearScale(0.1, 2, QStringLiteral("%"), QStringLiteral("c"));
    frame.AddComponent("other", DT_INT32, {});
    frame.AddComponent("ENABLED", DT_DOUBLE, {});
    fillWithNoise(frame, 3);
    return buffer;
}

/// What only a reader of files or `RemoveComponent` makes.
BufferPointer unusualFrames()
{
    auto buffer = emptyBuffer();
    auto* vectors = CreateVectorFrame2C(4, 3, 1, 3);
    vectors->RemoveComponent(vectors->GetComponentIndex("U1"));
    vectors->RemoveComponent(vectors->GetComponentIndex("ENABLED"));
    fillWithNoise(*vectors, 1);
    buffer->AddFrame(vectors);
    addImage(*buffer, DT_BYTE, 4, 3).RemoveComponent(0);
    std::vector<ComponentParts> parts(2);
    for (unsigned int i = 0; i < 2; ++i) {
        parts[i].name = i == 0 ? "PIXEL" : "thumbnail";
        parts[i].type = i == 0 ? DT_FLOAT : DT_RGB;
        parts[i].planes.emplace_back(CreatePlane(parts[i].type, 8 >> i, 6 >> i));
    }
    auto frame = buildFrame({FrameKind::Image, 8, 6, 1, 1}, std::move(parts));
    fillWithNoise(*frame, 2);
    buffer->AddFrame(frame.release());
    return buffer;
}

BufferPointer changingScales()
{
    auto buffer = emptyBuffer();
    for (int i = 0; i < 5; ++i) {
        setAllScales(addImage(*buffer, DT_WORD, 3, 2), 1 + i / 2);
    }
    for (const double factor : {1.0, 1.0, 0.1}) {
        auto* vectors = CreateVectorFrame2C(3, 2, 1, 2);
        fillWithNoise(*vectors, 1);
        buffer->AddFrame(vectors);
        setAllScales(*vectors, factor);
        if (factor != 1) {
            vectors->GetComponent("V", 1)->SetScale(Zt::LinearScale(Zt::ScalePreset::I));
        }
    }
    return buffer;
}

/// What does not fit into one attribute of a file, and numbers that are equal and yet not the same.
BufferPointer extremeScales()
{
    auto buffer = emptyBuffer();
    buffer->SetName(QString(70000, QChar(0x901F)));
    auto& image = addImage(*buffer, DT_BYTE, 2, 2);
    image.SetScaleX({1, -0.0, QString(100000, QLatin1Char('x')), QString(70001, QChar(0xE9))});
    image.SetScaleI({1, -0.0, QString(60001, QLatin1Char('i')), QString()});
    auto* vectors = CreateVectorFrame2C(2, 2, 1, 2);
    fillWithNoise(*vectors, 1);
    buffer->AddFrame(vectors);
    vectors->GetComponent("U")->SetScale({1, -0.0, QStringLiteral("m/s"), QString()});
    vectors->GetComponent("U", 1)->SetScale({1, 0.0, QStringLiteral("m/s"), QString()});
    vectors->GetComponent("V")->SetScale({1, 0, QString(), QString(60001, QLatin1Char('v'))});
    return buffer;
}

BufferPointer withAllAttributes()
{
    auto buffer = emptyBuffer();
    buffer->SetName(QStringLiteral("Größe ") + QChar(0) + QChar(0xDC00));
    addAllAttributes(*buffer);
    for (int i = 0; i < 3; ++i) {
        auto& frame = addImage(*buffer, DT_BYTE, 3, 2);
        if (i == 1) {
            addAllAttributes(frame);
        }
        setNumber(frame, "exposure", 0.1 * i);
        setText(frame, "Acq.Time", i == 2 ? QStringLiteral("late") : QString::number(i));
    }
    return buffer;
}

} // namespace

void fillWithNoise(I_Frame& frame, unsigned int seed)
{
    std::mt19937 random(seed);
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        for (unsigned int z = 0; z < frame.GetComponent(i)->GetPlaneCount(); ++z) {
            const I_PlaneBase& plane = *frame.GetPlane(i, z);
            auto* bytes = static_cast<unsigned char*>(plane.GetData());
            const auto count = planeBytes(plane.GetDataType(), plane.GetWidth(), plane.GetHeight());
            std::generate(bytes, bytes + count, [&] { return static_cast<unsigned char>(random() >> 7U); });
        }
    }
}

void setText(I_Buffer& buffer, const std::string& name, const QString& text)
{
    dynamic_cast<I_Attribute<QString>&>(*buffer.CreateAttribute(name, AT_STRING)).SetValue(text);
}

void setText(I_Frame& frame, const std::string& name, const QString& text)
{
    dynamic_cast<I_Attribute<QString>&>(*frame.CreateAttribute(name, AT_STRING)).SetValue(text);
}

void setNumber(I_Frame& frame, const std::string& name, double value)
{
    setValues<double>(frame, name, 1, {value});
}

BufferPointer particleImages(unsigned int width, unsigned int height, unsigned int frames)
{
    auto buffer = emptyBuffer();
    std::mt19937 random(1);
    std::normal_distribution<float> noise(100.0F, 6.0F);
    for (unsigned int i = 0; i < frames; ++i) {
        auto* frame = CreateImageFrame(DT_WORD, width, height, 1);
        buffer->AddFrame(frame);
        frame->SetScaleX({0.05, -12, QStringLiteral("mm"), QStringLiteral("position x")});
        frame->SetScaleY({-0.05, 8, QStringLiteral("mm"), QStringLiteral("position y")});
        setNumber(*frame, "time", 0.001 * i);
        auto* pixels = static_cast<unsigned short*>(frame->GetPlane(0, 0)->GetData());
        const std::size_t count = std::size_t{width} * height;
        std::generate(pixels, pixels + count, [&] { return static_cast<unsigned short>(noise(random)); });
        for (std::size_t particle = 0; particle < count / 50; ++particle) {
            const std::size_t at = random() % count;
            for (const std::size_t near : {at, at + 1, at + width, at + width + 1}) {
                pixels[near % count] = static_cast<unsigned short>(500 + random() % 3000);
            }
        }
    }
    return buffer;
}

BufferPointer vectorFields(unsigned int frames)
{
    auto buffer = emptyBuffer();
    buffer->SetName(QStringLiteral("vortex"));
    for (unsigned int i = 0; i < frames; ++i) {
        auto* frame = CreateVectorFrame2C(12, 10, 1, 2);
        buffer->AddFrame(frame);
        frame->SetGridX(16);
        frame->SetGridY(16);
        frame->SetScaleX({0.05, -12, QStringLiteral("mm"), QStringLiteral("x")});
        frame->SetScaleY({-0.05, 8, QStringLiteral("mm"), QStringLiteral("y")});
        frame->SetScaleI({2.5, 0, QStringLiteral("m/s"), QStringLiteral("velocity")});
        frame->AddMask({});
        CreateTypedScalarInFrame(frame, "Correlation", DT_FLOAT);
        setNumber(*frame, "time", 0.001 * i);
        auto* u = static_cast<float*>(frame->GetComponent("U")->GetPlane(0)->GetData());
        std::generate(u, u + 120, [n = 0.0F]() mutable { return n += 0.25F; });
    }
    return buffer;
}

const std::vector<SampleBuffer>& sampleBuffers()
{
    static const std::vector<SampleBuffer> samples{
        {"NoFrames", emptyBuffer},          {"AllTypes", allTypes},
        {"LargePlanes", largePlanes},       {"Colours", colours},
        {"EmptyPlanes", emptyPlanes},       {"Vectors", vectorsOfAllForms},
        {"ScalarFields", scalarFields},     {"UnusualFrames", unusualFrames},
        {"ChangingScales", changingScales}, {"Attributes", withAllAttributes},
        {"ExtremeScales", extremeScales}};
    return samples;
}

} // namespace TestSupport
