// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVolume.h"

#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/Scales.h"

#include <algorithm>
#include <limits>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size3T<unsigned int>;

const QString noPlanes = "ImageVolume must have at least one z-plane";
const QString notResizable = "Assigment of non owning image volume with different size not possible";

int attributeOf(const Attributes& attributes, const std::string& name)
{
    return attributes.attributeValue(name).value<int>();
}

/// Voxel (x, y, z) is `first` + z; scales, the attribute "First", the field "Field" tell `first` too.
template <typename T>
ImageVolume<T> stack(int first, const Size& size = {4, 3, 2})
{
    ImageVolume<T> volume(size, true);
    for (unsigned int z = 0; z < size.depth; ++z) {
        volume.getPlane(z) = static_cast<T>(static_cast<unsigned int>(first) + z);
        volume.getPlane(z).GetScalarFields().Add("Field");
    }
    volume.SetScaleX(scaleOf(first));
    volume.SetScaleI(scaleOf(first + 1));
    volume.GetAttributes().set("First", first);
    return volume;
}

void expectStack(const ImageVolumeVariant& volume, int first)
{
    EXPECT_EQ(volume.GetScaleX(), scaleOf(first));
    EXPECT_EQ(volume.GetScaleI(), scaleOf(first + 1));
    EXPECT_EQ(attributeOf(volume.GetAttributes(), "First"), first);
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        const ImageVariant& plane = volume.getPlane(z);
        Image<double> values(plane.GetWidth(), plane.GetHeight(), true);
        values.Assign(plane);
        EXPECT_EQ(values(0, 0), static_cast<double>(first) + z);
        EXPECT_EQ(plane.GetScalarFields().size(), 1U);
        EXPECT_EQ(&plane.GetScaleX(), &volume.GetScaleX()) << "scales are shared";
        EXPECT_EQ(&plane.GetScaleI(), &volume.GetScaleI());
        EXPECT_EQ(&plane.GetAttributes(), &volume.GetAttributes()) << "attributes are shared";
    }
}

/// Looks at the voxels of this object; mask, scales and attributes are the volume's own.
template <typename T>
struct Viewed
{
    std::vector<T> voxels = std::vector<T>(24);

    ImageVolume<T> volume()
    {
        std::vector<Image<T>> planes;
        planes.emplace_back(voxels.data(), 4U, 3U, false, true);
        planes.emplace_back(voxels.data() + 12, 4U, 3U, false, true);
        return ImageVolume<T>(std::move(planes));
    }
};

template <typename T>
void expectConverted(const ImageVolumeVariant& source)
{
    Viewed<T> viewed;
    ImageVolume<T> view = viewed.volume();
    view.GetAttributes().set("Kept", 1);
    view.GetAttributes().set("First", 99);
    view.SetMaskValid(0, 0, 0, false);
    const auto plane = view.getPlaneSPtrT(1);
    view.Assign(source);
    expectStack(view, 1);
    EXPECT_EQ(view[1], plane);
    EXPECT_TRUE(view.IsMaskValid(0, 0, 0));
    EXPECT_EQ(viewed.voxels[12], T{2});
    EXPECT_FALSE(view.IsMaskValid(3, 2, 1));
    EXPECT_EQ(attributeOf(view.GetAttributes(), "Kept"), 1);

    ImageVolume<T> owner(1, 1, 5, false);
    owner.Assign(source);
    EXPECT_EQ(static_cast<int>(owner.GetDataType()), PixelTypes::number<T>);
    EXPECT_EQ(owner.GetSize(), Size(4, 3, 2));
    EXPECT_FALSE(owner.IsMaskValid(3, 2, 1));
    EXPECT_TRUE(owner.IsMaskValid(3, 2, 0));
    expectStack(owner, 1);

    ImageVolume<T> movedFrom(1, 1, 1, false);
    const ImageVolume<T> taker(std::move(movedFrom));
    movedFrom.Assign(source);
    expectStack(movedFrom, 1);
}

TEST(ImageVolume, IsAssignedToVolumesOfEveryType)
{
    forAllPairs([]<typename From, typename To>(PixelTypes::Tag<From>, PixelTypes::Tag<To>) {
        auto source = stack<From>(1);
        source.SetMaskValid(3, 2, 1, false);
        expectConverted<To>(source);
    });
}

TEST(ImageVolume, VoxelsAndMasksBelongToTheirPlanes)
{
    ImageVolume<int> volume(Size(4, 3, 2), 5, true);
    volume.SetVoxel({1, 2, 1}, 9);
    EXPECT_EQ(volume[1]->GetPixel(1, 2), 9);
    EXPECT_EQ(volume.GetVoxel({1, 2, 0}), 5);
    volume.SetMaskValid(1, 2, 1, false);
    EXPECT_TRUE(volume.IsMaskValid(1, 2, 0));
    EXPECT_FALSE(volume.IsMaskValid({1, 2, 1}));
    EXPECT_FALSE(AllValuesValid(volume));
    EXPECT_TRUE(volume.IsValidPosition({3, 2, 1}));
    EXPECT_FALSE(volume.IsValidPosition(4, 0, 0));
    EXPECT_FALSE(volume.IsValidPosition(0, 3, 0));
    EXPECT_FALSE(volume.IsValidPosition(0, 0, 2));
}

TEST(ImageVolume, NeedsAPlane)
{
    std::vector<std::shared_ptr<Image<int>>> withNull = {std::make_shared<Image<int>>(2, 2, true), nullptr};
    const QString nullPlane = "Given plane data pointer is null!";
    expectRaised({{noPlanes, [] { ImageVolume<int>(Size(4, 3, 0), true); }},
                  {noPlanes, [] { ImageVolume<int>(Size(0xFFFFFFFFU, 0xFFFFFFFFU, 0), 7, true); }},
                  {noPlanes, [] { ImageVolume<int>(4U, 3U, 0U, true); }},
                  {noPlanes, [] { ImageVolume<int>(std::shared_ptr<Image<int>>()); }},
                  {noPlanes, [] { ImageVolume<int>(std::vector<Image<int>>()); }},
                  {noPlanes, [] { ImageVolume<int>(std::vector<std::unique_ptr<Image<int>>>()); }},
                  {noPlanes, [] { ImageVolume<int>(std::vector<std::shared_ptr<Image<int>>>()); }},
                  {nullPlane, [&] { ImageVolume<int>{withNull}; }},
                  {nullPlane, [] { ImageVolume<int>(std::vector<std::unique_ptr<Image<int>>>(2)); }}});
}

TEST(ImageVolume, PlanesAreCheckedInOrder)
{
    const auto plane = std::make_shared<Image<int>>(2, 3, true);
    plane->SetScaleX(scaleOf(2));
    plane->SetScaleY(scaleOf(2));
    plane->SetScaleZ(scaleOf(2));
    plane->SetScaleI(scaleOf(2));
    plane->GetScalarFields().Add("Field");
    // Differs in the names of its fields only, but comes later.
    const auto last = std::make_shared<Image<int>>(3, 2, true);
    last->GetScalarFields().Add("Field");
    const Image<int> usual(3, 2, true);
    const std::vector<std::pair<QString, std::function<void()>>> failureAndRepair = {
        {"x axis has different scaling.", [&] { plane->SetScaleX(usual.GetScaleX()); }},
        {"y axis has different scaling.", [&] { plane->SetScaleY(usual.GetScaleY()); }},
        {"z axis has different scaling.", [&] { plane->GetScaleZ().setFactor(1.0); }},
        {"intensity has different scaling.", [&] { plane->SetScaleI(usual.GetScaleI()); }},
        {"z-planes have different sizes.",
         [&] {
             *plane = Image<int>(3, 2, true);
             plane->SetScaleZ(scaleOf(1, 77));
             plane->GetScalarFields().Add("field");
         }},
        {"scalar field names are different.", [&] { plane->GetScalarFields().Clear(); }},
        {"scalar field names are different.", [&] { last->GetScalarFields().Clear(); }}};
    const auto build = [&] {
        return ImageVolume<int>(
            std::vector<std::shared_ptr<Image<int>>>{std::make_shared<Image<int>>(usual), plane, last});
    };
    for (const auto& [text, repair] : failureAndRepair) {
        EXPECT_TRUE(raises(text, [&] { build(); }));
        repair();
    }
    const auto volume = build();
    EXPECT_EQ(plane->GetScaleZ(), usual.GetScaleZ()) << "the offset of plane 0 holds for all";
    EXPECT_EQ(volume.getPlane(2).GetScaleXShared(), plane->GetScaleXShared());
}

TEST(ImageVolume, OnePlaneFitsToItselfWhateverItsScales)
{
    std::vector<Image<int>> planes;
    planes.emplace_back(4, 3, true);
    planes.back().SetScaleZ(scaleOf(std::numeric_limits<double>::quiet_NaN()));
    planes.back().SetScaleX(scaleOf(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(ImageVolume<int>(std::move(planes)).GetDepth(), 1U);
}

TEST(ImageVolume, TheOrderOfScalarFieldsIsNoDifference)
{
    // A frame lists its fields as they were added.
    const auto frame = newFrame(BufferApi::DT_INT32, 3, 2);
    const auto fields = GetScalarFields(*frame, 0);
    Image<int> sorted(3, 2, true);
    for (const char* const name : {"b", "a"}) {
        fields->Add(name);
        sorted.GetScalarFields().Add(name);
    }
    const auto build = [&] {
        std::vector<Image<int>> planes = {sorted};
        planes.push_back(GetImageT<int>(*frame, 0, false));
        return ImageVolume<int>(std::move(planes));
    };
    EXPECT_EQ(build().GetDepth(), 2U);
    fields->Add("c");
    EXPECT_TRUE(raises("scalar field names are different.", [&] { build(); }));
}

TEST(ImageVolume, PlanesShareScalesAndAttributesAndOutliveIt)
{
    auto volume = stack<float>(1, {4, 3, 3});
    volume.getPlane(1).GetAttributes().set("New", 7);
    EXPECT_EQ(attributeOf(volume.getPlane(0).GetAttributes(), "New"), 7);
    volume.getPlane(2).SetScaleX(scaleOf(44));
    EXPECT_EQ(volume.GetScaleX(), scaleOf(44));
    const auto held = volume.getPlaneSPtrT(0);
    EXPECT_EQ(volume.getPlaneSPtr(0), held);
    volume = ImageVolume<float>(2, 2, 1, true);
    EXPECT_EQ(held->GetPixel(0, 0), 1.0F);
}

TEST(ImageVolume, APlaneBeyondTheDepthIsRefused)
{
    ImageVolume<int> volume(4, 3, 2, true);
    const QString text = "z-plane does not exist";
    expectRaised({{text, [&] { static_cast<void>(std::as_const(volume).getPlane(2)); }},
                  {text, [&] { static_cast<void>(volume.getPlane(2)); }},
                  {text, [&] { return volume.getPlaneSPtr(2); }},
                  {text, [&] { return volume.getPlaneSPtrT(0xFFFFFFFFU); }}});
}

TEST(ImageVolume, CopiesShareNothing)
{
    Viewed<int> viewed;
    const auto view = viewed.volume();
    ImageVolume<int> copy(view);
    EXPECT_FALSE(view.HasOwnerShip());
    EXPECT_TRUE(copy.HasOwnerShip());
    copy = 5;
    copy.GetAttributes().set("New", 7);
    copy.SetScaleX(scaleOf(3));
    EXPECT_EQ(viewed.voxels, std::vector<int>(24));
    EXPECT_TRUE(view.GetAttributes().isEmpty());
    EXPECT_EQ(view.GetScaleX(), Zt::LinearScale(Zt::ScalePreset::X));
    EXPECT_EQ(&copy.getPlane(1).GetAttributes(), &copy.GetAttributes());
    EXPECT_EQ(copy.CreateCopy()->GetSize(), Size(4, 3, 2));
}

TEST(ImageVolume, OnlyAnOwnerChangesItsSize)
{
    for (const Size size : {Size(4, 3, 1), Size(4, 2, 2), Size(3, 3, 2)}) {
        const auto source = stack<int>(7, size);
        Viewed<int> viewed;
        auto view = viewed.volume();
        expectRaised({{notResizable, [&] { view = source; }},
                      {notResizable, [&] { view.Assign(source); }},
                      {notResizable, [&] { view.Assign(stack<float>(7, size)); }}});
        EXPECT_EQ(viewed.voxels, std::vector<int>(24));

        auto owner = stack<int>(1);
        owner.GetAttributes().set("Old", 1);
        owner.DeepCopyFrom(source);
        EXPECT_EQ(owner.GetSize(), size);
        EXPECT_FALSE(owner.GetAttributes().contains("Old"));
        expectStack(owner, 7);
    }
}

/// A volume of the upper rows of the planes of `whole`.
ImageVolume<int> upperRows(ImageVolume<int>& whole, unsigned int rows)
{
    std::vector<Image<int>> planes;
    for (const auto& plane : whole) {
        planes.emplace_back(plane->GetRawPointer(), whole.GetWidth(), rows, false, true);
        planes.back().ReplaceMaskStrategy(std::make_unique<LazyMask>(whole.GetWidth(), rows, true));
    }
    return ImageVolume<int>(std::move(planes));
}

TEST(ImageVolume, AnOwnerIsAssignedAViewOfItself)
{
    const std::vector<std::function<void(ImageVolume<int>&, ImageVolume<int> &&)>> assignments = {
        [](ImageVolume<int>& volume, ImageVolume<int>&& view) { volume = view; },
        [](ImageVolume<int>& volume, ImageVolume<int>&& view) { volume.Assign(view); },
        [](ImageVolume<int>& volume, ImageVolume<int>&& view) { volume = std::move(view); }};
    for (const auto& assign : assignments) {
        auto volume = stack<int>(1);
        assign(volume, upperRows(volume, 2));
        EXPECT_TRUE(volume.HasOwnerShip());
        EXPECT_EQ(volume.GetSize(), Size(4, 2, 2));
        EXPECT_EQ(volume.GetVoxel(3, 1, 0), 1);
        EXPECT_EQ(volume.GetVoxel(3, 1, 1), 2);
    }
}

TEST(ImageVolume, AnAssignmentOfAnOwnerThatFailsChangesNothing)
{
    auto volume = stack<int>(1);
    const auto plane = volume.getPlaneSPtrT(0);
    auto broken = stack<int>(5, {4, 3, 3});
    const std::unique_ptr<int[]> released(broken.getPlane(2).GetImageData().ReleaseRawPointer());
    ImageVolume<int> movedFrom(stack<int>(1));
    const ImageVolume<int> taker(std::move(movedFrom));
    expectRaised({{"data-pointer is null", [&] { volume = broken; }},
                  {noPlanes, [&] { volume = movedFrom; }},
                  {noPlanes, [&] { ImageVolume<int>{movedFrom}; }}});
    EXPECT_EQ(volume[0], plane);
    expectStack(volume, 1);
}

TEST(ImageVolume, MovingTakesThePlanesOfAnOwner)
{
    auto owner = stack<int>(50, {1, 1, 5});
    auto source = stack<int>(1);
    const auto plane = source.getPlaneSPtrT(1);
    owner = std::move(source);
    EXPECT_EQ(owner[1], plane);
    EXPECT_EQ(source.GetSize(), Size());
    source = std::move(owner);
    expectStack(source, 1);
    owner = source;
    expectStack(owner, 1);
    EXPECT_NE(owner[1], plane);
}

TEST(ImageVolume, AVolumeWhosePlaneWasMovedAwayIsRebuiltByAssignment)
{
    const auto good = stack<int>(1);
    const std::vector<std::function<void(ImageVolume<int>&)>> assignments = {
        [&](ImageVolume<int>& volume) { volume = good; },
        [&](ImageVolume<int>& volume) { volume = ImageVolume<int>(good); },
        [&](ImageVolume<int>& volume) { volume.Assign(stack<float>(1)); }};
    for (const auto& assign : assignments) {
        for (const unsigned int z : {0U, 1U}) {
            auto volume = stack<int>(50);
            const Image<int> taken(std::move(volume.getPlane(z)));
            EXPECT_TRUE(volume.HasOwnerShip());
            assign(volume);
            expectStack(volume, 1);
        }
    }
}

TEST(ImageVolume, MovingIntoAViewCopies)
{
    Viewed<int> viewed;
    auto view = viewed.volume();
    auto source = stack<int>(1);
    view.MoveFrom(std::move(source));
    EXPECT_EQ(viewed.voxels[12], 2);
    expectStack(view, 1);
    expectStack(source, 1);
    auto deep = stack<int>(1, {4, 3, 3});
    auto wide = stack<int>(1, {5, 3, 2});
    expectRaised({{"Depth of image volumes has to be identical!", [&] { view = std::move(deep); }},
                  {"Source and destination have different sizes.", [&] { view = std::move(wide); }}});
    expectStack(deep, 1);
    expectStack(view, 1);
}

TEST(ImageVolume, AssignmentToItselfAndToItsPartsChangesNothing)
{
    auto volume = stack<int>(1);
    ImageVolume<int>& same = volume;
    volume = same;
    volume = std::move(same);
    volume.Assign(same);
    volume.SetAttributes(volume.GetAttributes());
    volume.SetAttributes(volume.getPlane(1).GetAttributes());
    volume.SetScaleX(volume.getPlane(1).GetScaleX());
    expectStack(volume, 1);
    auto copied = volume;
    copied.getPlane(0) = std::as_const(copied.getPlane(1));
    EXPECT_EQ(copied.GetVoxel(0, 0, 0), 2);
    EXPECT_EQ(attributeOf(copied.GetAttributes(), "First"), 1);

    const ImageVolume<int> sharesPlanes(
        std::vector<std::shared_ptr<Image<int>>>(volume.begin(), volume.end()));
    volume = sharesPlanes;
    expectStack(volume, 1);
    const ImageVolume<int> lastPlane(volume.getPlaneSPtrT(1));
    volume = lastPlane;
    EXPECT_EQ(volume.GetSize(), Size(4, 3, 1));
    EXPECT_EQ(volume.GetVoxel(0, 0, 0), 2);
    EXPECT_EQ(volume.GetScaleX(), scaleOf(1));
}

TEST(ImageVolume, CopiesKeepLazyMasksLazy)
{
    auto source = stack<int>(1);
    for (const auto& plane : source) {
        plane->ReplaceMaskStrategy(std::make_unique<LazyMask>(4, 3, true));
    }
    auto target = stack<int>(5);
    target.SetMaskValid(0, 0, 0, false);
    target = source;
    EXPECT_FALSE(ImageVolume<int>(source).getPlane(1).IsMaskSpawned());
    EXPECT_FALSE(source.getPlane(1).IsMaskSpawned());
    EXPECT_TRUE(AllValuesValid(target));
}

TEST(ImageVolume, ArithmeticTouchesThePixelsOfAllPlanes)
{
    auto volume = stack<unsigned short>(1);
    EXPECT_EQ((volume * 10.0).GetVoxel(3, 2, 1), 20);
    EXPECT_EQ((volume + 10.0).GetVoxel(3, 2, 1), 12);
    EXPECT_EQ((volume - 10.0).GetVoxel(3, 2, 1), 0);
    EXPECT_EQ((volume / 2.0).GetVoxel(3, 2, 1), 1);
    volume *= 10.0;
    volume += 4.0;
    volume /= 2.0;
    volume -= 2.0;
    EXPECT_EQ(volume.GetVoxel(3, 2, 0), 5);
    EXPECT_EQ(volume.GetVoxel(3, 2, 1), 10);
    volume = static_cast<unsigned short>(3);
    EXPECT_EQ(volume.GetVoxel(3, 2, 1), 3);
}

TEST(ImageVolume, ScalesAndAttributesAreCopiedButForTheIntensity)
{
    auto source = stack<int>(1);
    source.SetScaleY(scaleOf(8));
    source.SetScaleZ(scaleOf(9));
    auto target = stack<float>(5, {2, 2, 3});
    target.GetAttributes().set("Old", 1);
    CopyScalesAndAttributes(source, target);
    EXPECT_EQ(scalesOf(target), (FourScales{scaleOf(1), scaleOf(8), scaleOf(9), scaleOf(6)}));
    EXPECT_EQ(attributeOf(target.GetAttributes(), "First"), 1);
    EXPECT_FALSE(target.GetAttributes().contains("Old"));
}

/// Lists an attribute without a value after the others, as a frame does for one of a kind that has none.
class WithNullAttribute : public AttributesContainer
{
public:
    std::vector<Attribute> toStdVector() const override
    {
        auto attributes = AttributesContainer::toStdVector();
        attributes.push_back({"First*", {}});
        return attributes;
    }
};

TEST(ImageVolume, AnAttributeWithoutAValueRemovesNoOther)
{
    WithNullAttribute source;
    source.set("First", 7);
    auto volume = stack<int>(1);
    volume.SetAttributes(source);
    EXPECT_EQ(attributeOf(volume.GetAttributes(), "First"), 7);
}

TEST(ImageVolume, ImagesOfOneTypeMoveIntoAVolume)
{
    const auto move = [](auto... image) {
        std::vector<std::unique_ptr<ImageVariant>> list;
        (list.push_back(std::move(image)), ...);
        return MoveImageVariantListToImageVolumeVariantT<float>(std::move(list));
    };
    const auto words = [] { return std::make_unique<Image<unsigned short>>(4, 3, 7, true); };
    const auto floats = [] { return std::make_unique<Image<float>>(4, 3, 7.0F, true); };
    const QString name = "MoveImageVariantListToImageVolumeVariantT: ";
    expectRaised({{name + "planes is empty", [&] { return move(); }},
                  {name + "vector of planes is empty", [&] { return move(words()); }},
                  {"bad image data cast", [&] { return move(floats(), words()); }},
                  {"Given plane data pointer is null!",
                   [&] { return move(floats(), std::unique_ptr<ImageVariant>()); }}});
    EXPECT_EQ(move(floats(), floats())->GetSize(), Size(4, 3, 2));
}

} // namespace
