// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeReader.h"

#include "Core/Buffer/Formats/AttributeJson.h"
#include "Core/Buffer/Formats/NativeAttributes.h"
#include "Core/Buffer/Formats/NativeSetReader.h"
#include "Core/Buffer/LazyBuffer.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <limits>

namespace BufferApi::Formats::Native
{

namespace
{

/// The frames of a file in their order, whatever set they are in.
class NativeFrames final : public FrameSource
{
public:
    explicit NativeFrames(const std::shared_ptr<OpenFile>& file)
    {
        addSet(file->file, file);
        for (unsigned int number = 1; file->file.contains(setName(number)); ++number) {
            addSet(file->file.openGroup(setName(number)), file);
        }
        std::stable_sort(m_places.begin(), m_places.end(),
                         [](const Place& a, const Place& b) { return a.index < b.index; });
    }

    [[nodiscard]] unsigned long long count() const noexcept { return m_places.size(); }

    [[nodiscard]] std::unique_ptr<I_Frame> frame(unsigned int index) const override
    {
        const Place& place = m_places[index];
        return m_sets[place.set].frame(place.row);
    }

    [[nodiscard]] bool haveChecksums() const
    {
        return std::all_of(m_sets.begin(), m_sets.end(),
                           [](const SetReader& set) { return set.hasChecksums(); });
    }

private:
    struct Place
    {
        long long index = 0;
        unsigned int set = 0;
        unsigned int row = 0;
    };

    static std::string setName(unsigned int number) { return "set" + std::to_string(number); }

    void addSet(const Hdf5::Group& group, const std::shared_ptr<OpenFile>& file)
    {
        // A file without frames has no set.
        if (!group.contains(Name::frame)) {
            return;
        }
        const auto set = static_cast<unsigned int>(m_sets.size());
        const std::vector<long long>& indices = m_sets.emplace_back(group, file).indices();
        if (indices.size() > std::numeric_limits<unsigned int>::max() - m_places.size()) {
            group.fail(QStringLiteral("more frames than a buffer can hold"));
        }
        for (unsigned int row = 0; row < indices.size(); ++row) {
            m_places.push_back({indices[row], set, row});
        }
    }

    std::deque<SetReader> m_sets;
    std::vector<Place> m_places;
};

void checkVersion(const Hdf5::Attributes& root)
{
    const Hdf5::FileContext& file = root.object().file();
    if (root.findText("qf_format") != QByteArray(formatName)) {
        file.fail(QStringLiteral("it is an HDF5 file, but not one of frames"));
    }
    const auto major = root.findNumber("qf_version");
    if (!major || *major != formatMajor) {
        file.fail(QStringLiteral("it is of version %1, this library reads version %2")
                      .arg(major.value_or(0))
                      .arg(formatMajor));
    }
}

void readLargeAttributes(OpenFile& file, I_Buffer& buffer)
{
    if (!file.file.contains(Name::bufferAttributes)) {
        return;
    }
    const ColumnReader column(file.file.openDataset(Name::bufferAttributes), Hdf5::Element::U8, file);
    const QByteArray text = column.text(0, column.size());
    const QString source = QStringLiteral("Cannot read '%1': buffer attributes").arg(file.file.file().path());
    attributesFromJson(
        {text.constData(), static_cast<std::size_t>(text.size())}, source,
        [&](const std::string& name, E_AttributeKind kind) { return buffer.CreateAttribute(name, kind); });
}

} // namespace

std::unique_ptr<I_Buffer> readBuffer(const QString& path)
{
    const auto file = std::make_shared<OpenFile>(Hdf5::File::open(path));
    const Hdf5::Attributes root(file->file);
    checkVersion(root);
    const auto frames = std::make_shared<const NativeFrames>(file);
    std::unique_ptr<I_Buffer> buffer = createLazyBuffer(static_cast<unsigned int>(frames->count()), frames);
    buffer->SetName(readAnyText(root, "qf_name"));
    readBufferAttributes(root, *buffer);
    readLargeAttributes(*file, *buffer);
    buffer->SetModified(false);
    return buffer;
}

bool showsDamage(const QString& path)
{
    const auto file = std::make_shared<OpenFile>(Hdf5::File::open(path));
    checkVersion(Hdf5::Attributes(file->file));
    return NativeFrames(file).haveChecksums();
}

} // namespace BufferApi::Formats::Native
