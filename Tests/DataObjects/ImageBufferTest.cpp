// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageBuffer.h"

#include "Core/DataObjects/ScalarField.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/Scales.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size3T<unsigned int>;

const QString noFrames = "Image volume list is empty";
const QString otherCount = "Buffers have different number of frames";

int attributeOf(const Attributes& attributes, const std::string& name)
{
    return attributes.attributeValue(name).value<int>();
}

/// Frame i has the value, the X scale and the attribute "Frame" `first` + i; "First" is global.
template <typename T>
ImageBuffer<T> recording(int first, unsigned int frames = 3, const Size& size = {4, 3, 2})
{
    ImageBuffer<T> buffer(size, frames, true);
    buffer.SetName(QStringLiteral("Run %1").arg(first));
    buffer.GetGlobalAttributes().set("First", first);
    for (unsigned int i = 0; i < frames; ++i) {
        const int value = first + static_cast<int>(i);
        buffer.getFrame(i) = static_cast<T>(value);
        buffer.getFrame(i).SetScaleX(scaleOf(value));
        buffer.getFrame(i).GetAttributes().set("Frame", value);
        buffer.getFrame(i).getPlane(1).GetScalarFields().Add("Field", 1.5F);
    }
    return buffer;
}

void expectRecording(const ImageBufferVariant& buffer, int first, unsigned int frames = 3)
{
    EXPECT_EQ(attributeOf(buffer.GetGlobalAttributes(), "First"), first);
    ASSERT_EQ(buffer.getFrameCount(), frames);
    for (unsigned int i = 0; i < frames; ++i) {
        const auto& frame = buffer.getFrame(i);
        Image<double> plane(4, 3, true);
        plane.Assign(frame.getPlane(1));
        EXPECT_EQ(plane(3, 2), static_cast<double>(first) + i);
        EXPECT_EQ(frame.GetScaleX(), scaleOf(static_cast<double>(first) + i));
        EXPECT_EQ(attributeOf(frame.GetAttributes(), "Frame"), first + static_cast<int>(i));
        const auto field = frame.getPlane(1).GetScalarFields().Get(QStringLiteral("Field"));
        EXPECT_EQ(CastScalarFieldTo<float>(*field).GetPixel(3, 2), 1.5F);
    }
}

/// Three frames that look at the voxels of this object.
template <typename T>
struct Viewed
{
    std::vector<T> voxels = std::vector<T>(72);

    ImageBuffer<T> buffer()
    {
        std::vector<ImageVolume<T>> volumes;
        for (T* frame = voxels.data(); frame != voxels.data() + voxels.size(); frame += 24) {
            std::vector<Image<T>> planes;
            planes.emplace_back(frame, 4U, 3U, false, true);
            planes.emplace_back(frame + 12, 4U, 3U, false, true);
            volumes.emplace_back(std::move(planes));
        }
        return {std::move(volumes), std::make_unique<AttributesContainer>()};
    }
};

template <typename T>
void expectConverted(const ImageBufferVariant& source)
{
    Viewed<T> viewed;
    auto view = viewed.buffer();
    view.GetGlobalAttributes().set("Kept", 1);
    view.Assign(source);
    expectRecording(view, 1);
    EXPECT_EQ(viewed.voxels[71], T{3});
    EXPECT_EQ(view.GetName(), "Run 1");
    EXPECT_EQ(attributeOf(view.GetGlobalAttributes(), "Kept"), 1);

    ImageBuffer<T> owner(1, 1, 1, 7, false);
    owner.GetGlobalAttributes().set("Old", 1);
    owner.Assign(source);
    expectRecording(owner, 1);
    EXPECT_FALSE(owner.getFrame(2).IsMaskValid(3, 2, 1));
    EXPECT_FALSE(owner.GetGlobalAttributes().contains("Old"));

    const auto copy = CreateImageBufferCopyOfOtherType(source, ImageBuffer<T>(1, 1, 1, 1, true));
    EXPECT_EQ(static_cast<int>(copy->GetDataType()), PixelTypes::number<T>);
    EXPECT_EQ(static_cast<const ImageBuffer<T>&>(*copy).GetName(), "Run 1");
    EXPECT_FALSE(AllValuesValid(*copy));
    expectRecording(*copy, 1);
}

TEST(ImageBuffer, IsAssignedToBuffersOfEveryType)
{
    forAllPairs([]<typename From, typename To>(PixelTypes::Tag<From>, PixelTypes::Tag<To>) {
        auto source = recording<From>(1);
        source.getFrame(2).SetMaskValid(3, 2, 1, false);
        expectConverted<To>(source);
    });
}

TEST(ImageBuffer, TravelsAsAVariant)
{
    const auto buffer = recording<double>(1);
    const Variant& variant = buffer;
    const auto copy = variant.createCopy();
    EXPECT_EQ(copy->getTypeIdentifier(), "ImageBufferVariant");
    expectRecording(dynamic_cast<const ImageBuffer<double>&>(*copy), 1);
}

TEST(ImageBuffer, NewBuffersOfATypeHaveTheSizeAndMask)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const ImageBuffer<T> filled(4, 3, 2, 5, T{9}, true);
        EXPECT_EQ(filled.getFrame(4).GetVoxel(3, 2, 1), T{9});
        EXPECT_TRUE(AllValuesValid(filled));
        const auto buffer = CreateImageBufferOfOtherType(filled, 6, 7, 3, 2, false);
        EXPECT_EQ(static_cast<int>(buffer->GetDataType()), PixelTypes::number<T>);
        EXPECT_EQ(buffer->getFrameCount(), 2U);
        EXPECT_EQ(buffer->getFrame(1).GetSize(), Size(6, 7, 3));
        EXPECT_FALSE(AllValuesValid(*buffer));
    });
}

TEST(ImageBuffer, IsBuiltFromEveryKindOfList)
{
    AttributesContainer attributes;
    attributes.set("First", 7);
    const auto check = [](const ImageBuffer<int>& buffer, unsigned int frames) {
        EXPECT_EQ(buffer.size(), frames);
        EXPECT_EQ(buffer.getFrame(frames - 1).GetVoxel(1, 1, 0), 3);
        EXPECT_EQ(attributeOf(buffer.GetGlobalAttributes(), "First"), 7);
    };
    const auto taken = [&] { return std::make_unique<AttributesContainer>(attributes); };
    const auto image = [] { return Image<int>(2, 2, 3, true); };
    const auto volume = [] { return ImageVolume<int>(Size(2, 2, 1), 3, true); };
    const Image<int> constant = image();
    const auto shared = std::make_shared<Image<int>>(image());
    check({image(), attributes}, 1);
    check({constant, attributes}, 1);
    EXPECT_EQ(&ImageBuffer<int>(shared, attributes).getFrame(0).getPlane(0), shared.get());
    check({volume(), attributes}, 1);
    check({volume(), taken()}, 1);
    const auto listsOf = [&](auto make) {
        using List = std::vector<decltype(make())>;
        const auto list = [&] {
            List items;
            items.push_back(make());
            items.push_back(make());
            return items;
        };
        check({list(), attributes}, 2);
        check({list(), taken()}, 2);
        expectRaised({{noFrames, [&] { ImageBuffer<int>(List(), attributes); }},
                      {noFrames, [&] { ImageBuffer<int>(List(), taken()); }},
                      {"Attributes are not valid.",
                       [&] { ImageBuffer<int>(list(), std::unique_ptr<Attributes>()); }}});
    };
    listsOf(image);
    listsOf(volume);
    listsOf([&] { return std::make_unique<Image<int>>(image()); });
    listsOf([&] { return std::make_unique<ImageVolume<int>>(volume()); });
    listsOf([&] { return std::make_shared<ImageVolume<int>>(volume()); });
}

TEST(ImageBuffer, MissingFramesAndPlanesAreRefused)
{
    const AttributesContainer none;
    const QString noPlanes = "ImageVolume must have at least one z-plane";
    expectRaised(
        {{noFrames, [] { ImageBuffer<int>(Size(4, 3, 2), 0, true); }},
         {noFrames, [] { ImageBuffer<int>(4, 3, 2, 0, 7, true); }},
         {noPlanes, [] { ImageBuffer<int>(4, 3, 0, 1, true); }},
         {noPlanes, [&] { ImageBuffer<int>(std::shared_ptr<Image<int>>(), none); }},
         {noPlanes, [&] { ImageBuffer<int>(std::vector<std::unique_ptr<Image<int>>>(1), none); }},
         {"Image volume is not valid.",
          [&] { ImageBuffer<int>(std::vector<std::shared_ptr<ImageVolume<int>>>(1), none); }},
         {noFrames, [] { return ImageBuffer<int>::CreateEmptyImageBuffer()->AllVolumesHaveSameSize(); }}});
}

TEST(ImageBuffer, AppendedVolumesHaveTheSizeOfTheFirst)
{
    const auto buffer = ImageBuffer<int>::CreateEmptyImageBuffer();
    EXPECT_TRUE(buffer->empty());
    EXPECT_TRUE(AllValuesValid(*buffer));
    EXPECT_TRUE(buffer->HasOwnerShip());
    EXPECT_TRUE(buffer->HasMatchingFrameSizes(*ImageBuffer<float>::CreateEmptyImageBuffer()));
    buffer->AppendImageVolume(ImageVolume<int>(Size(4, 3, 2), 5, true));
    buffer->AppendImageVolume(buffer->getFrame(0));
    ImageVolume<int> other(4, 3, 1, true);
    const QString text = "Volumes in the resulting buffer would have different sizes";
    expectRaised({{text, [&] { buffer->AppendImageVolume(other); }},
                  {text, [&] { buffer->AppendImageVolume(std::move(other)); }}});
    EXPECT_EQ(other.GetDepth(), 1U);
    EXPECT_TRUE(buffer->AllVolumesHaveSameSize());
    const auto two = *buffer;
    buffer->_appendImageVolumeDontCheckSize(other);
    EXPECT_EQ(buffer->getFrameCount(), 3U);
    EXPECT_FALSE(buffer->AllVolumesHaveSameSize());
    EXPECT_TRUE(buffer->HasMatchingFrameSizes(*buffer));
    EXPECT_FALSE(buffer->HasMatchingFrameSizes(two));
    EXPECT_FALSE(buffer->HasMatchingFrameSizes(ImageBuffer<float>(4, 3, 2, 3, true)));
    EXPECT_EQ(buffer->getFrame(1).GetVoxel(0, 0, 1), 5);
}

TEST(ImageBuffer, CopiesShareNothingAndTakeTheName)
{
    auto buffer = recording<int>(1);
    auto copy = buffer;
    copy = 9;
    copy.getFrame(0).SetScaleX(scaleOf(9));
    copy.GetGlobalAttributes().set("First", 9);
    expectRecording(buffer, 1);
    EXPECT_EQ(copy.GetName(), "Run 1");
    const ImageBuffer<int> moved(std::move(buffer));
    EXPECT_EQ(moved.GetName(), "Run 1");
    buffer = moved;
    expectRecording(buffer, 1);
}

TEST(ImageBuffer, AnOwnerGetsNewFrames)
{
    auto buffer = recording<int>(50);
    const auto frame = buffer.getFrameTSPtr(0);
    buffer.GetGlobalAttributes().set("Old", 1);
    EXPECT_EQ(&buffer.DeepCopyFrom(recording<int>(1, 2)), &buffer);
    expectRecording(buffer, 1, 2);
    EXPECT_FALSE(buffer.GetGlobalAttributes().contains("Old"));
    EXPECT_EQ(frame->GetVoxel(0, 0, 0), 50) << "a frame outlives its buffer";

    auto source = recording<int>(5, 2);
    const auto taken = source.getFrameTConstSPtr(1);
    EXPECT_EQ(&buffer.MoveFrom(std::move(source)), &buffer);
    EXPECT_EQ(buffer.getFrameConstSPtr(1), taken);
    EXPECT_TRUE(source.empty());
    EXPECT_EQ(buffer.GetName(), "Run 5");
    expectRecording(buffer, 5, 2);
    source = std::move(buffer);
    expectRecording(source, 5, 2);
}

/// Looks at the frames of an owner in reverse order, one row of each plane less.
ImageBuffer<int> reversedViewOf(ImageBuffer<int>& owner)
{
    std::vector<ImageVolume<int>> volumes;
    for (unsigned int i = owner.getFrameCount(); i-- > 0;) {
        std::vector<Image<int>> planes;
        for (const auto& plane : owner.getFrame(i)) {
            planes.emplace_back(plane->GetRawPointer(), plane->GetWidth(), plane->GetHeight() - 1, false,
                                true);
        }
        volumes.emplace_back(std::move(planes));
    }
    return {std::move(volumes), AttributesContainer()};
}

TEST(ImageBuffer, AnOwnerIsAssignedAViewOfItself)
{
    for (const bool isMoved : {false, true}) {
        SCOPED_TRACE(isMoved);
        auto buffer = recording<int>(1);
        auto view = reversedViewOf(buffer);
        isMoved ? buffer = std::move(view) : buffer = std::as_const(view);
        EXPECT_TRUE(buffer.HasOwnerShip());
        EXPECT_EQ(buffer.getFrame(2).GetSize(), Size(4, 2, 2));
        EXPECT_EQ(buffer.getFrame(0).GetVoxel(3, 1, 1), 3);
        EXPECT_EQ(buffer.getFrame(2).GetVoxel(3, 1, 1), 1);
    }
}

TEST(ImageBuffer, AnAssignmentOfAnOwnerThatFailsChangesNothing)
{
    auto buffer = recording<int>(1);
    auto broken = recording<int>(50, 2);
    const std::unique_ptr<int[]> released(broken.getFrame(1).getPlane(1).GetImageData().ReleaseRawPointer());
    EXPECT_TRUE(raises("data-pointer is null", [&] { buffer = broken; }));
    expectRecording(buffer, 1);
    EXPECT_EQ(buffer.GetName(), "Run 1");
}

TEST(ImageBuffer, AVolumeThatWasMovedFromIsNoFrame)
{
    ImageVolume<int> movedFrom(Size(4, 3, 2), 5, true);
    const ImageVolume<int> taker(std::move(movedFrom));
    const auto buffer = ImageBuffer<int>::CreateEmptyImageBuffer();
    const QString text = "ImageVolume must have at least one z-plane";
    expectRaised({{text, [&] { buffer->AppendImageVolume(movedFrom); }},
                  {text, [&] { buffer->AppendImageVolume(std::move(movedFrom)); }},
                  {text, [&] { buffer->_appendImageVolumeDontCheckSize(movedFrom); }},
                  {text, [&] { ImageBuffer<int>(std::move(movedFrom), AttributesContainer()); }}});
    EXPECT_TRUE(buffer->empty());
}

TEST(ImageBuffer, AViewKeepsItsFrames)
{
    Viewed<int> viewed;
    auto view = viewed.buffer();
    view.GetGlobalAttributes().set("Kept", 1);
    auto two = recording<int>(1, 2);
    const auto small = recording<int>(1, 3, {4, 2, 2});
    expectRaised(
        {{otherCount, [&] { view = two; }},
         {otherCount, [&] { view = std::move(two); }},
         {otherCount, [&] { view.Assign(recording<float>(1, 2)); }},
         {"Assigment of non owning image volume with different size not possible", [&] { view = small; }}});
    expectRecording(two, 1, 2);
    EXPECT_TRUE(view.GetName().isEmpty());

    const auto frame = view.getFrameSPtr(2);
    view = recording<int>(1);
    EXPECT_EQ(viewed.voxels[71], 3);
    EXPECT_EQ(view.getFrameSPtr(2), frame);
    EXPECT_EQ(attributeOf(view.GetGlobalAttributes(), "Kept"), 1);
    expectRecording(view, 1);
    const auto five = recording<int>(5);
    view = five;
    EXPECT_EQ(viewed.voxels[71], 7);
    EXPECT_EQ(view.GetName(), "Run 5");
    expectRecording(view, 5);
    EXPECT_TRUE(ImageBuffer<int>(view).HasOwnerShip());
}

TEST(ImageBuffer, AssignmentToItselfAndToItsPartsChangesNothing)
{
    auto buffer = recording<int>(1);
    ImageBuffer<int>& same = buffer;
    buffer = same;
    buffer = std::move(same);
    buffer.Assign(same);
    buffer.SetGlobalAttributes(buffer.GetGlobalAttributes());
    expectRecording(buffer, 1);
    const ImageBuffer<int> sharesFrames(
        std::vector<std::shared_ptr<ImageVolume<int>>>(buffer.begin(), buffer.end()),
        static_cast<const AttributesContainer&>(buffer.GetGlobalAttributes()));
    buffer = sharesFrames;
    expectRecording(buffer, 1);

    Viewed<int> viewed;
    auto view = viewed.buffer();
    const ImageBuffer<int> sharesViews(
        std::vector<std::shared_ptr<ImageVolume<int>>>(view.begin(), view.end()), AttributesContainer());
    view = buffer;
    view = sharesViews;
    expectRecording(view, 1);
}

TEST(ImageBuffer, AllAttributesGoOutAndIn)
{
    auto buffer = recording<float>(1);
    const GlobalAndFrameAttributes all = buffer.getAllAttributes();
    EXPECT_EQ(attributeOf(all, "First"), 1);
    ASSERT_EQ(all.frameAttributes.size(), 3U);
    EXPECT_EQ(attributeOf(all.frameAttributes[2], "Frame"), 3);
    EXPECT_EQ(all.scalesX, (std::vector{scaleOf(1), scaleOf(2), scaleOf(3)}));
    EXPECT_EQ(all.scalesY, std::vector(3, defaultScales[1]));
    EXPECT_EQ(all.scalesZ, std::vector(3, defaultScales[2]));
    EXPECT_EQ(all.scalesI, std::vector(3, defaultScales[3]));

    auto target = recording<int>(50);
    target.GetGlobalAttributes().set("Old", 1);
    target.getFrame(0).GetAttributes().set("Old", 1);
    target.setAllAttributes(all);
    EXPECT_EQ(attributeOf(target.GetGlobalAttributes(), "First"), 1);
    EXPECT_EQ(attributeOf(target.getFrame(2).getPlane(1).GetAttributes(), "Frame"), 3);
    EXPECT_FALSE(target.GetGlobalAttributes().contains("Old"));
    EXPECT_FALSE(target.getFrame(0).GetAttributes().contains("Old"));
    EXPECT_EQ(target.getFrame(0).GetScaleX(), scaleOf(50));

    // A wrong number is noticed after the global ones.
    const auto two = recording<int>(7, 2).getAllAttributes();
    const QString text = "Mismatch between frame count and frame attributes count";
    EXPECT_TRUE(raises(text, [&] { target.setAllAttributes(two); }));
    EXPECT_EQ(attributeOf(target.GetGlobalAttributes(), "First"), 7);
    EXPECT_EQ(attributeOf(target.getFrame(0).GetAttributes(), "Frame"), 1);
}

TEST(ImageBuffer, ItsOwnAttributesCanBeSet)
{
    auto all = std::make_unique<GlobalAndFrameAttributes>();
    GlobalAndFrameAttributes& own = *all;
    own.set("First", 7);
    own.frameAttributes.resize(1);
    own.frameAttributes[0].set("Frame", 8);
    ImageBuffer<int> buffer(ImageVolume<int>(2, 2, 1, true), std::move(all));
    buffer.setAllAttributes(own);
    EXPECT_EQ(attributeOf(buffer.GetGlobalAttributes(), "First"), 7);
    EXPECT_EQ(attributeOf(buffer.getFrame(0).GetAttributes(), "Frame"), 8);
}

TEST(ImageBuffer, AScalarFieldIsAddedToEveryPlane)
{
    auto buffer = recording<int>(1);
    buffer.AddScalarField("New", scaleOf(4));
    for (const auto& frame : buffer) {
        for (const auto& plane : *frame) {
            const auto field = plane->GetScalarFields().Get(QStringLiteral("New"));
            EXPECT_EQ(field->GetScaleI(), scaleOf(4));
            EXPECT_EQ(CastScalarFieldTo<float>(*field).GetPixel(3, 2), 0.0F);
        }
    }
}

TEST(ImageBuffer, ArithmeticTouchesThePixelsOfAllFrames)
{
    auto buffer = recording<int>(1);
    EXPECT_EQ((buffer * 10.0).getFrame(2).GetVoxel(3, 2, 1), 30);
    EXPECT_EQ((buffer / 2.0).getFrame(2).GetVoxel(3, 2, 1), 1);
    buffer *= 10.0;
    buffer /= 5.0;
    EXPECT_EQ(buffer.getFrame(2).GetVoxel(3, 2, 1), 6);
    EXPECT_EQ(buffer.getFrame(0).GetScaleX(), scaleOf(1));
}

} // namespace
