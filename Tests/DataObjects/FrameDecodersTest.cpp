// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DataObjects.h"
#include "Tests/Support/Raises.h"

#include <algorithm>

namespace
{

using namespace TestSupport;
using namespace DataObjects::FrameDecoder;
using RTE::InvalidArgumentError;

using Bytes = std::vector<unsigned char>;
using Words = std::vector<unsigned short>;

struct Description
{
    std::shared_ptr<I_FrameDecoder> decoder;
    const char* id;
    const char* label;
    QVersionNumber version;
    /// Encoded size of eight pixels.
    unsigned long long eightPixels;
};

std::vector<Description> descriptions()
{
    const QVersionNumber common(10, 2, 0);
    return {{std::make_shared<Mono10p>(), "mono-10p", "Mono10p to 16 bit", common, 10},
            {std::make_shared<Mono10pmsb>(), "mono-10pmsb", "Mono10pmsb to 16 bit", common, 10},
            {std::make_shared<Mono12p>(), "mono-12p", "Mono12p to 16 bit", common, 12},
            {std::make_shared<Mono12packed>(), "mono-12packed", "Mono12packed to 16 bit", common, 12},
            {std::make_shared<Mono12pmsb>(), "mono-12pmsb", "Mono12pmsb to 16 bit", common, 12},
            {std::make_shared<Raw16>(), "raw-16-bit", "Raw 16 bit", QVersionNumber(10, 0, 3), 16},
            {std::make_shared<Raw8>(), "raw-8-bit", "8 to 16 bit", common, 8},
            {std::make_shared<Rgb24>(), "rgb-24", "RGB 24", QVersionNumber(10, 2, 1), 24},
            {std::make_shared<InvalidDecoder>(), "", "INVALID", common, 0}};
}

/// What the bytes give in a destination of `pixels` words.
Words decoded(const I_FrameDecoder& decoder, const Bytes& source, std::size_t pixels)
{
    Words words(pixels, 0xEEEE);
    decoder.decode({source.data(), source.size()}, RTE::UnmanagedMemory(words.data(), pixels * 2));
    return words;
}

TEST(FrameDecoders, TellWhatTheyAre)
{
    for (const Description& expected : descriptions()) {
        SCOPED_TRACE(expected.label);
        const std::unique_ptr<I_FrameDecoder> clone = expected.decoder->clone();
        EXPECT_EQ(typeid(*clone), typeid(*expected.decoder));
        EXPECT_EQ(clone->id(), QLatin1String(expected.id));
        EXPECT_EQ(clone->label(), QLatin1String(expected.label));
        EXPECT_EQ(clone->minimalOrvaneVersion(), expected.version);
        EXPECT_EQ(clone->encodedSize(8), expected.eightPixels);
        EXPECT_EQ(clone->encodedSize(QSize(2, 4)), expected.eightPixels);
    }
}

TEST(FrameDecoders, DecodeTheirLayouts)
{
    const Bytes bytes{0x21, 0x43, 0x65};
    EXPECT_EQ(decoded(Mono12p(), bytes, 2), (Words{0x321, 0x654}));
    EXPECT_EQ(decoded(Mono12pmsb(), bytes, 2), (Words{0x214, 0x365}));
    EXPECT_EQ(decoded(Mono12packed(), bytes, 2), (Words{0x213, 0x654}));
    EXPECT_EQ(decoded(Mono10p(), {0xFF, 0x03, 0, 0, 0}, 4), (Words{1023, 0, 0, 0}));
    EXPECT_EQ(decoded(Mono10pmsb(), {0xFF, 0xC0, 0, 0, 0, 0, 0, 0, 3, 0xFF}, 8),
              (Words{1023, 0, 0, 0, 0, 0, 0, 1023}));
    EXPECT_EQ(decoded(Raw8(), bytes, 3), (Words{0x21, 0x43, 0x65}));
    EXPECT_EQ(decoded(Raw16(), {0x21, 0x43, 0x65, 0x87}, 2), (Words{0x4321, 0x8765}));
    EXPECT_EQ(decoded(Rgb24(), {255, 255, 255, 0, 0, 0, 10, 0, 0, 0, 10, 0, 0, 0, 10}, 5),
              (Words{25497, 0, 298, 114, 587}));
}

TEST(FrameDecoders, LeaveAloneWhatTheSourceDoesNotFill)
{
    EXPECT_EQ(decoded(Mono10p(), {0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 5), (Words{1023, 1023, 1023, 1023, 0xEEEE}));
    EXPECT_EQ(decoded(Mono10pmsb(), Bytes(5, 0xFF), 8),
              (Words{1023, 1023, 1023, 1023, 0xEEEE, 0xEEEE, 0xEEEE, 0xEEEE}));
    EXPECT_EQ(decoded(Mono12pmsb(), Bytes(3, 0xFF), 4), (Words{4095, 4095, 0xEEEE, 0xEEEE}));
    EXPECT_EQ(decoded(Raw16(), {1, 2}, 2), (Words{0x201, 0xEEEE}));
}

TEST(FrameDecoders, Mono12packedMeasuresTheSourceAndAdmitsAnOddCount)
{
    const Bytes bytes{0x21, 0x43, 0x65, 0x87, 0xA9, 0xCB};
    EXPECT_EQ(Mono12packed().encodedSize(3), 6U);
    EXPECT_EQ(decoded(Mono12packed(), bytes, 3), (Words{0x213, 0x654, 0x879}));
    EXPECT_EQ(decoded(Mono12packed(), bytes, 1), Words{0x213});
    for (std::size_t pixels = 1; pixels <= 200; ++pixels) {
        EXPECT_EQ(decoded(Mono12packed(), Bytes(306, 0xFF), pixels), Words(pixels, 4095));
    }
    Words word{0xEEEE, 0xEEEE};
    // The odd byte of a capacity of 3 bytes is not a pixel.
    Mono12packed().decode({bytes.data(), 3}, RTE::UnmanagedMemory(word.data(), 3));
    EXPECT_EQ(word, (Words{0x213, 0xEEEE}));
}

TEST(FrameDecoders, Rgb24TakesABrokenLastPixelIfThereIsRoom)
{
    EXPECT_EQ(decoded(Rgb24(), {0, 0, 0, 10}, 2), (Words{0, 298}));
    EXPECT_EQ(decoded(Rgb24(), {0, 0, 0, 10, 10}, 1), Words{0});
    EXPECT_EQ(decoded(Rgb24(), {10}, 0), Words{});
    for (std::size_t size = 1; size <= 200; ++size) {
        const Bytes source(size, 255);
        Words expected(size / 3, 25497);
        EXPECT_EQ(decoded(Rgb24(), source, expected.size()), expected) << size;
        if (size % 3 != 0) {
            expected.push_back(size % 3 == 1 ? 7621 : 10528);
        }
        expected.push_back(0xEEEE);
        EXPECT_EQ(decoded(Rgb24(), source, expected.size()), expected) << size;
    }
}

TEST(FrameDecoders, MakeFrames)
{
    const Bytes bytes{0x21, 0x43, 0x65, 0x21, 0x43, 0x65};
    for (const QSize size : {QSize(4, 1), QSize(2, 2)}) {
        const DataObjects::FrameData frame = Mono12p().decode({bytes.data(), bytes.size()}, size);
        EXPECT_EQ(frame.frameSize(), size);
        EXPECT_EQ(Words(frame.cbegin(), frame.cend()), (Words{0x321, 0x654, 0x321, 0x654}));
    }
    EXPECT_TRUE(raises<InvalidArgumentError>("Destination too small: need 8 bytes, but got 0 bytes", [&] {
        return Mono12p().decode({bytes.data(), bytes.size()}, QSize(-1, -1));
    }));
}

TEST(FrameDecoders, RefuseInOrderAndWriteNothing)
{
    const Bytes source(16, 0xFF);
    const auto refuses = [&](const I_FrameDecoder& decoder, std::size_t sourceSize,
                             unsigned long long capacity, const char* message) {
        SCOPED_TRACE(decoder.label().toStdString());
        Bytes destination(capacity, 0xEE);
        const RTE::UnmanagedMemory block(destination.data(), capacity);
        expectRaised<InvalidArgumentError>({{message,
                                             [&] {
                                                 decoder.decode({source.data(), sourceSize}, block);
                                             }},
                                            {"Null pointer for source", [&] {
                                                 decoder.decode({nullptr, 1}, block);
                                             }}});
        EXPECT_EQ(std::count(destination.begin(), destination.end(), 0xEE), std::ptrdiff_t(capacity));
    };
    refuses(Raw8(), 3, 5, "Destination too small: need 6 bytes, but got 5 bytes");
    refuses(Raw16(), 3, 0, "Source size 3 is not a multiple of 2 bytes");
    refuses(Raw16(), 4, 3, "Destination too small: need 4 bytes, but got 3 bytes");
    refuses(Mono10p(), 11, 0, "Source size 11 is not a multiple of 5 bytes");
    refuses(Mono10p(), 10, 15, "Destination too small: need 16 bytes, but got 15 bytes");
    refuses(Mono10pmsb(), 11, 8, "Source size 11 is not a multiple of 5 bytes");
    refuses(Mono10pmsb(), 10, 8, "Destination too small: need 16 bytes, but got 8 bytes");
    refuses(Mono10pmsb(), 5, 8, "Pixel count 4 is not a multiple of 8");
    refuses(Mono10pmsb(), 10, 19, "Pixel count 9 is not a multiple of 8");
    refuses(Mono12p(), 4, 0, "Source size 4 is not a multiple of 3 bytes");
    refuses(Mono12p(), 6, 7, "Destination too small: need 8 bytes, but got 7 bytes");
    refuses(Mono12pmsb(), 4, 6, "Source size 4 is not a multiple of 3 bytes");
    refuses(Mono12pmsb(), 6, 6, "Destination too small: need 8 bytes, but got 6 bytes");
    refuses(Mono12pmsb(), 3, 6, "Pixel count 3 is not a multiple of 2");
    refuses(Mono12packed(), 4, 100, "Source size 4 is not a multiple of 3 bytes");
    refuses(Mono12packed(), 3, 6, "Source too small: need 6 bytes for 3 pixels, but got 3 bytes");
    refuses(Mono12packed(), 0, 2, "Source too small: need 3 bytes for 1 pixels, but got 0 bytes");
    refuses(Mono12packed(), 3, 1, "Frame size is invalid");
    refuses(Rgb24(), 8, 3, "Destination too small: need 4 bytes, but got 3 bytes");
    EXPECT_TRUE(raises<RTE::LogicError>("The associated device does not provide frame data", [] {
        InvalidDecoder().decode({nullptr, 0}, RTE::UnmanagedMemory(nullptr, 0));
    }));
}

TEST(FrameDecoders, RefuseCountsThatTheyCannotHold)
{
    for (const Description& description : descriptions()) {
        const I_FrameDecoder& decoder = *description.decoder;
        SCOPED_TRACE(description.label);
        const auto invalid = [&](const QSize& size) {
            return raises<InvalidArgumentError>("Frame size is invalid",
                                                [&] { return decoder.encodedSize(size); });
        };
        EXPECT_TRUE(invalid(QSize(-1, 4)));
        // 2^32 pixels are none in the 32 bits of a pixel count.
        for (const QSize size : {QSize(0, 0), QSize(0, 7), QSize(1 << 16, 1 << 16)}) {
            if (decoder.id().isEmpty()) {
                EXPECT_EQ(decoder.encodedSize(size), 0U);
            } else {
                EXPECT_TRUE(invalid(size));
            }
        }
    }
    expectRaised<InvalidArgumentError>(
        {{"Mono10p: Invalid frame dimensions (6x%2)", [] { return Mono10p().encodedSize(6); }},
         {"Mono10pmsb: Invalid frame dimensions (6x%2)", [] { return Mono10pmsb().encodedSize(6); }},
         {"Mono12p: Invalid frame dimensions (3)", [] { return Mono12p().encodedSize(3); }},
         {"Mono12pmsb: Invalid frame dimensions (3)", [] { return Mono12pmsb().encodedSize(3); }}});
    // The product of 2^31 and more stays positive.
    EXPECT_EQ(Raw16().encodedSize(QSize(1 << 16, 1 << 15)), 1ULL << 32U);
}

TEST(FrameDecoders, RegistryCreatesByIdWhatTheLibraryRegistered)
{
    for (const Description& description : descriptions()) {
        const QString id = QLatin1String(description.id);
        const bool registered = !id.isEmpty() && id != QLatin1String("rgb-24");
        EXPECT_EQ(frameDecoders().exists(id), registered) << description.label;
        const auto created = frameDecoders().create(id);
        ASSERT_EQ(created.has_value(), registered) << description.label;
        if (registered) {
            EXPECT_EQ(typeid(**created), typeid(*description.decoder));
        }
    }
    const QStringList inOrder{"mono-10p",    "mono-10pmsb", "mono-12p", "mono-12packed",
                              "mono-12pmsb", "raw-16-bit",  "raw-8-bit"};
    EXPECT_EQ(frameDecoders().ids(), inOrder);
}

TEST(FrameDecoders, RegistryRefusesWhatItCannotKeep)
{
    FrameDecoders registry;
    EXPECT_EQ(registry.registerDecoder<Rgb24>(), 0);
    EXPECT_EQ(registry.registerDecoder<Raw8>(), 0);
    EXPECT_EQ(registry.deregisterDecoder("rgb-24"), 0);
    expectRaised<InvalidArgumentError>(
        {{"Frame decoder '8 to 16 bit' is already registered (id: raw-8-bit",
          [&] { registry.registerDecoder<Raw8>(); }},
         {"Decoder has invalid ID", [&] { registry.registerDecoder<InvalidDecoder>(); }},
         {"ID must not be empty", [&] { registry.deregisterDecoder({}); }},
         {"No frame decoder with id 'rgb-24' has been registered",
          [&] { registry.deregisterDecoder("rgb-24"); }}});
    EXPECT_TRUE(registry.exists("raw-8-bit"));
    EXPECT_FALSE(registry.create({}).has_value());
}

} // namespace
